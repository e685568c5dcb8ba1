#include "tools/vzip_create.h"

#include <charconv>
#include <cstdio>
#include <stdexcept>

#include "tools/vzip_common.h"
#include "zip/writer/archive_writer.h"

namespace vantrel::tools {

namespace {

struct Request {
    zip::WriterOptions options;
    bool quiet = false;
};

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

Request ParseRequest(const std::vector<std::string>& arguments) {
    Request request;
    request.options.source.sub_folders = true;
    std::vector<std::string> places;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size()) {
                throw std::invalid_argument(word + " takes a value");
            }
            return arguments[++i];
        };
        if (word == "--level") {
            request.options.level = Number(word, value(), 0, 9);
        } else if (word == "--threads") {
            request.options.threads = Number(word, value(), 1, 256);
        } else if (word == "--mask") {
            request.options.source.mask = value();
        } else if (word == "--no-sub-folders") {
            request.options.source.sub_folders = false;
        } else if (word == "--quiet") {
            request.quiet = true;
        } else if (word.starts_with("--")) {
            throw std::invalid_argument("unknown option " + word);
        } else {
            places.push_back(word);
        }
    }
    if (places.size() != 2) {
        throw std::invalid_argument("an archive and a folder are needed");
    }
    request.options.archive = SeamPath(places[0]);
    request.options.source.folder = SeamPath(places[1]);
    return request;
}

// Warnings and errors go to standard error, and a line of progress too where somebody looks on.
class Console : public zip::RunEvents {
  public:
    explicit Console(bool quiet) : quiet_(quiet) {}

    void Overall(int percent, bool&) override {
        if (!quiet_ && percent != percent_) {
            percent_ = percent;
            std::fprintf(stderr, "\r%3d %%", percent);
            std::fflush(stderr);
        }
    }
    void OfFile(int) override {}
    void Told(const zip::ComponentMessage& message) override {
        if (message.kind != zip::MessageKind::kInformation) {
            EndLine();
            std::fprintf(stderr, "%s\n", message.text.c_str());
        }
    }
    zip::Questions* Answers() override { return nullptr; }

    void EndLine() {
        if (percent_ >= 0) {
            std::fputs("\n", stderr);
            percent_ = -1;
        }
    }

  private:
    bool quiet_;
    int percent_ = -1;
};

}  // namespace

int CreateArchive(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    const Request request = ParseRequest(arguments);
    Console console(request.quiet);
    const zip::WriterResult result = zip::WriteArchive(machine, request.options, console);
    console.EndLine();
    return Report({result.outcome, result.entries, result.skipped, "skipped"}, request.quiet);
}

}  // namespace vantrel::tools
