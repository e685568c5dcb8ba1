#include "tests/zip/earlier_samples.h"

#include <exception>

#include "tests/zip/archive_reader.h"
#include "tests/zip/sample_data.h"
#include "zip/deflate/deflate.h"
#include "zip/records/compact_directory.h"

namespace vantrel::test {

namespace {

constexpr const char* kEarlier = "C:\\Earlier.zip";
constexpr int kLevel = 1;

class Lines : public zip::RunEvents {
  public:
    std::vector<std::string> lines;

    void OnProgress(int, bool&) override {}
    void OnFileProgress(int) override {}
    void OnMessage(const zip::ComponentMessage& message) override { lines.push_back(message.text); }
    bool WantsEachFile() const override { return false; }
    zip::Questions* QuestionHandler() override { return nullptr; }
};

// More than one chunk, and few bytes when compressed.
std::string TwoChunks() { return Prose(2000) + std::string(zip::kChunkSize, '-') + Prose(2000); }

}  // namespace

const std::map<std::string, std::string>& EarlierSamples() {
    static const std::map<std::string, std::string> kSamples = {
        {"a.txt", Prose(3000, 2)}, {"big", TwoChunks()}, {"noise", Noise(400)}, {"z", Prose(700)}};
    return kSamples;
}

void PutEarlierSamples(MemoryFileSystem& files) {
    for (const auto& [name, content] : EarlierSamples()) {
        files.Put("C:\\Data\\" + name, content);
    }
}

SampleRun BackUpSamples(MemoryFileSystem& files, const platform::Machine& machine,
                        const std::string& earlier, int threads) {
    zip::WriterOptions options;
    options.archive = "C:\\New.zip";
    options.source = {"C:\\Data", "*.*", true};
    options.level = kLevel;
    options.threads = threads;
    if (!earlier.empty()) {
        files.Put(kEarlier, earlier);
        options.earlier = kEarlier;
    }
    Lines events;
    SampleRun run;
    run.result = zip::WriteArchive(machine, options, events);
    run.archive = files.Exists(options.archive) ? files.Content(options.archive) : "";
    run.lines = events.lines;
    return run;
}

std::string WrongIn(const std::string& archive, const MemoryFileSystem& files) {
    try {
        const ReadResult read = ReadArchive(archive);
        if (read.entries.size() != EarlierSamples().size()) {
            return "number of entries";
        }
        for (const ReadEntry& entry : read.entries) {
            if (entry.content != files.Content("C:\\Data\\" + entry.name)) {
                return "content of " + entry.name;
            }
        }
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

std::string SampleMark() {
    return zip::CompressorMark(zip::kCompressorGeneration, kLevel, zip::CompressorDescription());
}

}  // namespace vantrel::test
