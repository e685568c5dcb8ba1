// Two backups of the same folder, the second with the first one's archive: what it compresses
// again, and that its archive is the one of a run without an earlier archive.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "tests/zip/writer_fixture.h"
#include "zip/deflate/deflate.h"

namespace vantrel::test {

// The right compressor, which counts its calls.
class CountingCompressor : public zip::RawCompressor {
  public:
    CountingCompressor(std::atomic<int>& calls, int level)
        : calls_(calls), compressor_(zip::MakeCompressor(level)) {}

    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t capacity) override {
        ++calls_;
        return compressor_->Compress(in, size, out, capacity);
    }
    std::size_t CompressAfter(std::size_t history, const std::uint8_t* in, std::size_t size,
                              std::uint8_t* out, std::size_t capacity) override {
        ++calls_;
        return compressor_->CompressAfter(history, in, size, out, capacity);
    }
    std::size_t Bound(std::size_t size) override { return compressor_->Bound(size); }

  private:
    std::atomic<int>& calls_;
    std::unique_ptr<zip::RawCompressor> compressor_;
};

class EarlierTest : public WriterTest {
  protected:
    static constexpr const char* kEarlier = "C:\\Backup\\Earlier.zip";

    EarlierTest() { UseLevel(9, zip::kTunedLevel); }
    // A level of the program, and of the compressor behind it.
    void UseLevel(int level, int compressor) {
        options.level = level;
        options.make_compressor = [this, compressor] {
            return std::make_unique<CountingCompressor>(compressed, compressor);
        };
    }

    std::string Fresh() {
        zip::WriterOptions fresh = options;
        fresh.earlier.clear();
        fresh.archive = "C:\\Backup\\Fresh.zip";
        Recorder silent;
        EXPECT_EQ(zip::WriteArchive(Machine(), fresh, silent).outcome, zip::RunOutcome::kComplete);
        return files.Content(fresh.archive);
    }
    // The first run; its archive becomes the earlier one.
    void RunFirst() {
        files.Put(kEarlier, Fresh());
        compressed = 0;
    }
    // The second run. Leaves the number of chunks and files that it compressed in `compressed`.
    void RunSecond() {
        options.earlier = kEarlier;
        events.messages.clear();
        compressed = 0;
        ASSERT_EQ(Run(), zip::RunOutcome::kComplete);
        const int calls = compressed;
        EXPECT_TRUE(files.Content(options.archive) == Fresh()) << "differs from a fresh archive";
        compressed = calls;
    }
    // The line about the earlier archive, without those about single files.
    Strings Lines() const {
        Strings lines;
        for (const std::string& text : events.Texts(zip::MessageKind::kInformation)) {
            if (!text.starts_with("Adding ")) {
                lines.push_back(text);
            }
        }
        return lines;
    }
    void ExpectUnused(const std::string& why) {
        RunSecond();
        EXPECT_EQ(result.reused_bytes, 0u);
        EXPECT_EQ(Lines(), Strings{"The earlier archive is not reused: " + std::string(kEarlier) +
                                   " (" + why + "). Everything is compressed."});
        EXPECT_EQ(events.Texts(zip::MessageKind::kWarning), Strings{});
    }

    std::atomic<int> compressed{0};
};

}  // namespace vantrel::test
