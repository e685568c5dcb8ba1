#include "tools/vzip_commands.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "common/display_text.h"
#include "common/product.h"
#include "zip/deflate/deflate.h"
#include "zip/reader/archive_extractor.h"
#include "zip/reader/searched_archive.h"
#include "zip/records/directory_reader.h"
#include "zip/writer/archive_writer.h"

namespace vantrel::tools {

namespace {

int Number(const std::string& option, const std::string& text, int lowest, int highest) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < lowest ||
        value > highest) {
        throw std::invalid_argument(option + " takes a number from " + std::to_string(lowest) +
                                    " to " + std::to_string(highest));
    }
    return value;
}

// Returns the words that are not options. `handle` gets each other option's name and a function
// that takes the option's value from the words; it returns false for an option that it does not
// know.
template <typename Handle>
std::vector<std::string> ParseOptions(const std::vector<std::string>& words, Handle&& handle) {
    std::vector<std::string> operands;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == words.size()) {
                throw std::invalid_argument(word + " takes a value");
            }
            return words[++i];
        };
        if (!word.starts_with("--")) {
            operands.push_back(word);
        } else if (!handle(word, value)) {
            throw std::invalid_argument("unknown option " + word);
        }
    }
    return operands;
}

void RequireOperands(const std::vector<std::string>& operands, std::size_t count) {
    if (operands.size() != count) {
        throw std::invalid_argument(count == 1 ? "an archive is needed"
                                               : "an archive and a folder are needed");
    }
}

// Asks on standard error and reads the answer from standard input; its end means Cancel.
class Terminal : public zip::Questions {
  public:
    bool AskRetry(const std::string& text) override {
        return Ask(text + "\n[r]etry or [q]uit? ", "rq") == 'r';
    }
    DiskAnswer AskForDisk(const std::string& text) override {
        switch (Ask(text + "\n[r]etry, [c]ontinue without this disk, or [q]uit? ", "rcq")) {
            case 'r':
                return DiskAnswer::kRetry;
            case 'c':
                return DiskAnswer::kContinue;
            default:
                return DiskAnswer::kCancel;
        }
    }

  private:
    // One of `letters`, in either case; any other answer is asked for again.
    static char Ask(const std::string& question, std::string_view letters) {
        for (char line[80];;) {
            std::fputs(question.c_str(), stderr);
            if (std::fgets(line, sizeof line, stdin) == nullptr) {
                return 'q';
            }
            const char letter = static_cast<char>(line[0] | 0x20);
            if (letters.find(letter) != std::string_view::npos) {
                return letter;
            }
        }
    }
};

// Warnings and errors go to standard error; so do information and a line of progress, if wanted,
// and questions for disks.
class Console : public zip::RunEvents {
  public:
    Console(bool shows_progress, bool asks) : shows_progress_(shows_progress), asks_(asks) {}

    void OnProgress(int percent, bool&) override {
        if (shows_progress_ && percent != percent_) {
            percent_ = percent;
            std::fprintf(stderr, "\r%3d %%", percent);
            std::fflush(stderr);
        }
    }
    void OnFileProgress(int) override {}
    void OnMessage(const zip::ComponentMessage& message) override {
        if (message.kind != zip::MessageKind::kInformation || shows_progress_) {
            EndLine();
            std::fprintf(stderr, "%s\n", message.text.c_str());
        }
    }
    bool WantsEachFile() const override { return false; }
    zip::Questions* QuestionHandler() override { return asks_ ? &terminal_ : nullptr; }

    void EndLine() {
        if (percent_ >= 0) {
            std::fputs("\n", stderr);
            percent_ = -1;
        }
    }

  private:
    bool shows_progress_;
    bool asks_;
    Terminal terminal_;
    int percent_ = -1;
};

// The result of a run: how many entries, how many not, and the word for the latter.
struct Summary {
    zip::RunOutcome outcome;
    std::uint64_t entries;
    std::int32_t left_out;
    const char* left_out_means;
};

// Prints the figures of a complete run unless `quiet`; returns the exit code.
int Report(const Summary& summary, bool quiet) {
    if (summary.outcome != zip::RunOutcome::kComplete) {
        return kExitFailed;
    }
    if (!quiet) {
        std::printf("%s, %d %s\n", Counted(summary.entries, "entry", "entries").c_str(),
                    static_cast<int>(summary.left_out), summary.left_out_means);
    }
    return summary.left_out > 0 ? kExitSomeSkipped : kExitComplete;
}

}  // namespace

std::string PlatformPath(const std::string& path) {
    // As UTF-8 also where the system's texts are UTF-16.
    const std::filesystem::path given(std::u8string(path.begin(), path.end()));
    const std::u8string absolute = std::filesystem::absolute(given).lexically_normal().u8string();
    std::string full(absolute.begin(), absolute.end());
#ifndef _WIN32
    full = "Z:" + full;
#endif
    std::replace(full.begin(), full.end(), '/', '\\');
    while (full.size() > 3 && full.back() == '\\') {
        full.pop_back();
    }
    return full;
}

int CreateArchive(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    zip::WriterOptions options;
    options.source.sub_folders = true;
    bool quiet = false;
    bool fresh = false;
    const auto operands = ParseOptions(arguments, [&](const std::string& name, auto value) {
        if (name == "--level") {
            options.level = Number(name, value(), 0, 9);
        } else if (name == "--threads") {
            options.threads = Number(name, value(), 1, 256);
        } else if (name == "--mask") {
            options.source.mask = value();
        } else if (name == "--no-sub-folders") {
            options.source.sub_folders = false;
        } else if (name == "--earlier") {
            options.earlier = PlatformPath(value());
        } else if (name == "--fresh") {
            fresh = true;
        } else if (name == "--disks") {
            options.spanning = true;
        } else {
            quiet |= name == "--quiet";
            return name == "--quiet";
        }
        return true;
    });
    RequireOperands(operands, 2);
    options.archive = PlatformPath(operands[0]);
    options.source.folder = PlatformPath(operands[1]);
    if (fresh && !options.earlier.empty()) {
        throw std::invalid_argument("--fresh uses no earlier archive");
    }
    if (!fresh && options.earlier.empty()) {
        options.earlier = options.archive;
    }
    Console console(!quiet, options.spanning);
    const zip::WriterResult result = zip::WriteArchive(machine, options, console);
    console.EndLine();
    return Report({result.outcome, result.entries, result.skipped, "skipped"}, quiet);
}

int ListArchive(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    const auto operands = ParseOptions(arguments, [](const std::string&, auto) { return false; });
    RequireOperands(operands, 1);
    const zip::Directory directory =
        zip::ReadDamagedDirectory(machine, PlatformPath(operands[0]), {}, [](std::uint64_t) {});
    for (const zip::StoredEntry entry : directory.entries) {
        std::printf("%12llu  %s\n", static_cast<unsigned long long>(entry.size),
                    EscapeControls(entry.name).c_str());
    }
    if (directory.IsComplete() && !directory.searched) {
        return kExitComplete;
    }
    std::fprintf(stderr, "%s\n", directory.trouble.c_str());
    for (const zip::LostEntry& lost : directory.lost) {
        std::fprintf(stderr, "%s cannot be restored: %s.\n",
                     EscapeControls(lost.entry.name).c_str(), lost.why.c_str());
    }
    return directory.entries.empty() ? kExitFailed : kExitSomeSkipped;
}

namespace {

// Extracts or verifies, with the options of both.
int RunExtraction(const platform::Machine& machine, const std::vector<std::string>& arguments,
                  zip::ExtractOptions options, const char* left_out_means) {
    bool quiet = false;
    bool asks = false;
    options.search = true;
    options.use_local_headers = true;
    const auto operands = ParseOptions(arguments, [&](const std::string& name, auto value) {
        if (name == "--threads") {
            options.threads = Number(name, value(), 1, 256);
        } else if (name == "--keep-broken" && !options.verify_only) {
            options.keep_broken = true;
        } else if (name == "--disks") {
            asks = true;
        } else {
            quiet |= name == "--quiet";
            return name == "--quiet";
        }
        return true;
    });
    RequireOperands(operands, options.verify_only ? 1 : 2);
    options.archive = PlatformPath(operands[0]);
    options.destination = options.verify_only ? "" : PlatformPath(operands[1]);
    Console console(false, asks);
    const zip::ExtractResult result = zip::ExtractArchive(machine, options, console);
    const int exit_code =
        Report({result.outcome, result.entries, result.failed, left_out_means}, quiet);
    return exit_code == kExitComplete && result.directory_damaged ? kExitSomeSkipped : exit_code;
}

}  // namespace

int ExtractFiles(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    return RunExtraction(machine, arguments, {}, "failed");
}

int VerifyFiles(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    zip::ExtractOptions options;
    options.verify_only = true;
    return RunExtraction(machine, arguments, options, "damaged");
}

int ShowVersion() {
    std::printf("vzip %s\n%s\n", product::VersionText().c_str(),
                zip::CompressorDescription().c_str());
    return kExitComplete;
}

}  // namespace vantrel::tools
