#include "zip/records/entry_records.h"

#include <gtest/gtest.h>

#include "tests/zip/archive_reader.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {
namespace {

constexpr platform::Ticks k2026 = 134392215090000000ull;  // 2026-11-15 13:05:09 UTC

Entry Plain() {
    Entry entry;
    entry.name = "a.txt";
    entry.attributes = platform::attribute::kArchive;
    entry.times = {k2026, k2026 + 1, k2026 + 2};
    entry.modified_local = {2026, 11, 15, 13, 5, 9};
    return entry;
}

std::string Central(const Entry& entry) {
    std::string bytes;
    AppendCentralRecord(bytes, entry);
    return bytes;
}
std::string Local(const Entry& entry) {
    std::string bytes;
    AppendLocalHeader(bytes, entry);
    return bytes;
}
std::uint16_t At16(const std::string& bytes, std::size_t offset) {
    return GetNumber<std::uint16_t>(bytes, offset);
}
std::uint32_t At32(const std::string& bytes, std::size_t offset) {
    return GetNumber<std::uint32_t>(bytes, offset);
}

TEST(DosDateTime, IsRoundedDownToTwoSeconds) {
    EXPECT_EQ(DosDateTime({2026, 11, 15, 13, 5, 9}),
              (46u << 25) | (11u << 21) | (15u << 16) | (13u << 11) | (5u << 5) | 4u);
    EXPECT_EQ(DosDateTime({2026, 11, 15, 13, 5, 8}), DosDateTime({2026, 11, 15, 13, 5, 9}));
}

TEST(DosDateTime, IsClampedTo1980And2107) {
    EXPECT_EQ(DosDateTime({1979, 12, 31, 23, 59, 59}), (1u << 21) | (1u << 16));
    EXPECT_EQ(DosDateTime({1980, 1, 1, 0, 0, 0}), (1u << 21) | (1u << 16));
    const std::uint32_t last =
        (127u << 25) | (12u << 21) | (31u << 16) | (23u << 11) | (59u << 5) | 29u;
    EXPECT_EQ(DosDateTime({2107, 12, 31, 23, 59, 59}), last);
    EXPECT_EQ(DosDateTime({2108, 1, 1, 0, 0, 0}), last);
}

TEST(CentralRecord, HasHostZeroAndAttributesInTheLowByte) {
    Entry entry = Plain();
    entry.attributes = 0x400 | platform::attribute::kHidden | platform::attribute::kReadOnly;
    const std::string record = Central(entry);
    EXPECT_EQ(At16(record, 4) >> 8, 0);
    EXPECT_EQ(At32(record, 38), 0x03u);
}

TEST(CentralRecord, HasNtfsTimesAndNothingElse) {
    const std::string record = Central(Plain());
    const std::string extra = record.substr(46 + 5);
    std::string expected;
    Put16(expected, 0x000A);
    Put16(expected, 32);
    Put32(expected, 0);
    Put16(expected, 1);
    Put16(expected, 24);
    Put64(expected, k2026);
    Put64(expected, k2026 + 1);
    Put64(expected, k2026 + 2);
    EXPECT_EQ(extra, expected);
}

TEST(LocalHeader, HasTheUnixTimeOnly) {
    const std::string header = Local(Plain());
    EXPECT_EQ(At16(header, 28), 9);
    EXPECT_EQ(At16(header, 30 + 5), 0x5455);
    EXPECT_EQ(header.size(), 30u + 5 + 9);
}

TEST(LocalHeader, LeavesOutAUnixTimeThatDoesNotFit) {
    Entry entry = Plain();
    entry.times.modified = 159000000000000000ull;  // in 2104
    EXPECT_EQ(Local(entry).size(), 30u + 5);
    entry.times.modified = 1;
    EXPECT_EQ(Local(entry).size(), 30u + 5);
}

TEST(LocalHeader, HasAnEmptyFieldAfterANameInUtf8WithoutAUnixTime) {
    Entry entry = Plain();
    entry.name = "\xC3\xA4.txt";
    entry.times.modified = 1;
    const std::string header = Local(entry);
    EXPECT_EQ(header.substr(30 + 6), std::string("UT\1\0\0", 5));
}

TEST(Headers, FlagUtf8OnlyForOtherThanAsciiNamesInBoth) {
    Entry entry = Plain();
    EXPECT_EQ(At16(Central(entry), 8), 0);
    EXPECT_EQ(At16(Local(entry), 6), 0);
    entry.name = "\xC3\xA4.txt";
    EXPECT_EQ(At16(Central(entry), 8), 0x0800);
    EXPECT_EQ(At16(Local(entry), 6), 0x0800);
}

TEST(Headers, VersionNeededFollowsTheContent) {
    Entry entry = Plain();
    EXPECT_EQ(At16(Central(entry), 6), 10);
    entry.method = Method::kDeflated;
    EXPECT_EQ(At16(Central(entry), 6), 20);
    EXPECT_EQ(At16(Local(entry), 4), 20);
    entry.method = Method::kStored;
    entry.name = "folder/";
    entry.attributes = platform::attribute::kFolder;
    EXPECT_EQ(At16(Local(entry), 4), 20);
    EXPECT_EQ(At32(Central(entry), 38), 0x10u);
}

// What the Zip64 field of a central record holds.
std::string Wide(const Entry& entry) {
    const std::string record = Central(entry);
    const std::string extra = record.substr(46 + entry.name.size());
    return At16(extra, 0) == 1 ? extra.substr(4, At16(extra, 2)) : "";
}

TEST(CentralRecord, NeedsZip64FromFourGigabytesMinusOne) {
    Entry entry = Plain();
    entry.size = entry.packed_size = 0xFFFFFFFE;
    entry.location.offset = 0xFFFFFFFE;
    EXPECT_EQ(Wide(entry), "");
    EXPECT_EQ(At16(Central(entry), 6), 10);
    entry.size = 0xFFFFFFFF;
    std::string numbers;
    Put64(numbers, 0xFFFFFFFF);
    EXPECT_EQ(Wide(entry), numbers);
    EXPECT_EQ(At32(Central(entry), 24), 0xFFFFFFFF);
    EXPECT_EQ(At16(Central(entry), 6), 45);
}

TEST(CentralRecord, Zip64HoldsOnlyWhatIsSaturatedInOrder) {
    Entry entry = Plain();
    entry.size = 0x100000001;
    entry.packed_size = 5;
    entry.location.offset = 0x200000002;
    std::string numbers;
    Put64(numbers, entry.size);
    Put64(numbers, entry.location.offset);
    EXPECT_EQ(Wide(entry), numbers);
    EXPECT_EQ(At32(Central(entry), 20), 5u);
    entry.location.disk = 0xFFFF;
    Put32(numbers, 0xFFFF);
    EXPECT_EQ(Wide(entry), numbers);
}

TEST(LocalHeader, WideSizesAreBothThereAndKeepTheLength) {
    Entry entry = Plain();
    entry.zip64_sizes = true;
    const std::size_t reserved = Local(entry).size();
    entry.size = 0x100000001;
    entry.packed_size = 5;
    const std::string header = Local(entry);
    EXPECT_EQ(header.size(), reserved);
    EXPECT_EQ(At32(header, 18), 0xFFFFFFFF);
    EXPECT_EQ(At32(header, 22), 0xFFFFFFFF);
    EXPECT_EQ(GetNumber<std::uint64_t>(header, 30 + 5 + 4), 0x100000001u);
    EXPECT_EQ(GetNumber<std::uint64_t>(header, 30 + 5 + 12), 5u);
}

std::size_t EndSize(std::uint64_t entries, std::uint64_t size, std::uint64_t offset) {
    std::string bytes;
    AppendDirectoryEnd(bytes, {entries, size, offset, offset + size});
    return bytes.size();
}

TEST(DirectoryEnd, NeedsZip64FromTheFirstNumberThatDoesNotFit) {
    EXPECT_EQ(EndSize(65534, 0xFFFFFFFE, 0xFFFFFFFE), 22u);
    EXPECT_EQ(EndSize(65535, 1, 1), 22u + 20 + 56);
    EXPECT_EQ(EndSize(1, 0xFFFFFFFF, 1), 22u + 20 + 56);
    EXPECT_EQ(EndSize(1, 1, 0xFFFFFFFF), 22u + 20 + 56);
}

}  // namespace
}  // namespace vantrel::zip
