#include "tools/vzip_extract.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "common/display_text.h"
#include "tools/vzip_common.h"
#include "zip/disks/archive_reader.h"
#include "zip/reader/archive_extractor.h"
#include "zip/records/directory_reader.h"

namespace vantrel::tools {

namespace {

struct Request {
    std::vector<std::string> places;
    int threads = 0;
    bool quiet = false;
};

Request ParseRequest(const std::vector<std::string>& arguments) {
    Request request;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (word == "--quiet") {
            request.quiet = true;
        } else if (word == "--threads") {
            request.threads = i + 1 < arguments.size() ? std::atoi(arguments[++i].c_str()) : 0;
            if (request.threads < 1) {
                throw std::invalid_argument("--threads takes a number from 1");
            }
        } else if (word.starts_with("--")) {
            throw std::invalid_argument("unknown option " + word);
        } else {
            request.places.push_back(word);
        }
    }
    return request;
}

// Warnings and errors on standard error; nothing else is said on the way.
class Quiet : public zip::RunEvents {
  public:
    void Overall(int, bool&) override {}
    void OfFile(int) override {}
    void Told(const zip::ComponentMessage& message) override {
        if (message.kind != zip::MessageKind::kInformation) {
            std::fprintf(stderr, "%s\n", message.text.c_str());
        }
    }
    bool WantsEachFile() const override { return false; }
    zip::Questions* Answers() override { return nullptr; }
};

}  // namespace

int ListArchive(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    const Request request = ParseRequest(arguments);
    if (request.places.size() != 1) {
        throw std::invalid_argument("an archive is needed");
    }
    zip::ArchiveSource source(machine.files, SeamPath(request.places[0]));
    const zip::Directory directory = zip::ReadDirectory(source, machine.code_page, machine.clock);
    for (const zip::StoredEntry& entry : directory.entries) {
        std::printf("%12llu  %s\n", static_cast<unsigned long long>(entry.size),
                    EscapeControls(entry.name).c_str());
    }
    if (!directory.IsComplete()) {
        std::fprintf(stderr, "%s\n", directory.trouble.c_str());
        return kExitFailed;
    }
    return kExitComplete;
}

int ExtractFiles(const platform::Machine& machine, const std::vector<std::string>& arguments) {
    const Request request = ParseRequest(arguments);
    if (request.places.size() != 2) {
        throw std::invalid_argument("an archive and a folder are needed");
    }
    zip::ExtractOptions options;
    options.archive = SeamPath(request.places[0]);
    options.destination = SeamPath(request.places[1]);
    options.threads = request.threads;
    Quiet events;
    const zip::ExtractResult result = zip::ExtractArchive(machine, options, events);
    return Report({result.outcome, result.entries, result.failed, "failed"}, request.quiet);
}

}  // namespace vantrel::tools
