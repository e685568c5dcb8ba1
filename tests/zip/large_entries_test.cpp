// Entries that are too large for a thread's own memory: held in that of all threads, or streamed.
#include "tests/zip/reader_fixture.h"
#include "zip/reader/entry_data.h"

namespace vantrel::test {
namespace {

class LargeEntries : public ReaderTest {};

TEST_F(LargeEntries, AreRestored) {
    const std::string noise = Noise((17 << 20) + 3);
    const std::string prose = Prose((32 << 20) + 5);
    const std::string larger = Noise(static_cast<std::size_t>(zip::kMaxHeld) + 1);
    Extract({{.name = "noise", .content = noise},
             {.name = "larger", .content = larger},
             {.name = "prose", .content = prose, .method = 8}});
    EXPECT_EQ(Content("noise") == noise, true);
    EXPECT_EQ(Content("larger") == larger, true);
    EXPECT_EQ(Content("prose") == prose, true);
}

TEST_F(LargeEntries, ShareTheMemoryOfAllThreads) {
    std::vector<BuiltEntry> entries;
    for (int i = 0; i < 24; ++i) {
        entries.push_back({.name = std::to_string(i),
                           .content = Noise(3 << 20, static_cast<std::uint64_t>(i)),
                           .method = static_cast<std::uint16_t>(i % 2 * 8)});
    }
    options.threads = 32;
    Extract(entries);
    for (const BuiltEntry& entry : entries) {
        EXPECT_TRUE(Content(entry.name) == entry.content) << entry.name;
    }
}

TEST(HeldMemory, LendsNoMoreThanItsLimit) {
    for (const int threads : {1, 32}) {
        zip::HeldMemory memory(threads);
        const std::size_t left = zip::HeldMemory::kLimit -
                                 static_cast<std::size_t>(threads) * zip::HeldMemory::kOfEachThread;
        for (const std::size_t size : {std::size_t{600'000}, std::size_t{5} << 20, zip::kMaxHeld}) {
            std::vector<zip::HeldMemory::Loan> loans;
            std::size_t lent = 0;
            while (auto loan = memory.TryBorrow(size)) {
                ASSERT_GE(loan->capacity(), size);
                lent += loan->capacity();
                loans.push_back(std::move(loan));
            }
            EXPECT_LE(lent, left);
            EXPECT_GT(lent, left - std::min(2 * size, zip::kMaxHeld)) << size;
        }
    }
}

TEST(HeldMemory, ManyEntriesLeaveLess) {
    constexpr std::size_t kMillion = 1'000'000;
    const auto lends = [](int threads, std::size_t entries, std::size_t size) {
        return zip::HeldMemory(threads, entries).TryBorrow(size) != nullptr;
    };
    EXPECT_TRUE(lends(2, kMillion / 2, zip::kMaxHeld));
    EXPECT_TRUE(lends(2, kMillion, 4 << 20));
    EXPECT_FALSE(lends(2, kMillion, 16 << 20));
    EXPECT_FALSE(lends(32, kMillion, 1));
    EXPECT_FALSE(lends(1, std::size_t{1} << 40, 1));
}

TEST(HeldMemory, LendsTheSameBufferAgain) {
    zip::HeldMemory memory(1);
    auto loan = memory.TryBorrow(3 << 20);
    const zip::Buffer* const first = loan.get();
    loan.reset();
    EXPECT_EQ(memory.TryBorrow(4 << 20).get(), first);
}

TEST_F(LargeEntries, WrongChecksumLeavesNothing) {
    Extract(
        {{.name = "bad", .content = Noise(17 << 20), .crc = 1}, {.name = "good", .content = "y"}});
    EXPECT_EQ(Restored(), Strings{"good"});
    EXPECT_EQ(Warning(), "bad is not restored: its checksum is wrong.");
}

TEST_F(LargeEntries, LyingSizes) {
    const std::string text = Prose(33 << 20);
    for (const int lie : {-1, 1}) {
        Extract({{.name = "a", .content = text, .method = 8, .size = (33 << 20) + lie}});
        EXPECT_TRUE(Restored().empty());
        EXPECT_EQ(result.failed, 1);
    }
}

}  // namespace
}  // namespace vantrel::test
