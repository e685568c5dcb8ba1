#include "zip/records/entry_list.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace vantrel::zip {

static bool operator==(const StoredEntry& a, const StoredEntry& b) {
    return a.name == b.name && a.raw_name == b.raw_name && a.size == b.size &&
           a.packed_size == b.packed_size && a.data_at == b.data_at && a.offset == b.offset &&
           a.times.modified == b.times.modified && a.times.accessed == b.times.accessed &&
           a.times.created == b.times.created && a.crc == b.crc && a.attributes == b.attributes &&
           a.method == b.method && a.flags == b.flags && a.is_folder == b.is_folder &&
           a.is_link == b.is_link;
}

namespace {

constexpr platform::Ticks kModified = 134392215090000000ull;  // 2026-11-15 13:05:09 UTC

StoredEntry EntryOf(const std::string& name) {
    StoredEntry entry;
    entry.name = name;
    entry.size = 1000;
    entry.packed_size = 300;
    entry.times = {kModified, kModified + 70'000'000, kModified - 500'000'000'000};
    entry.crc = 0x12345678;
    entry.attributes = platform::attribute::kArchive;
    entry.method = Method::kDeflated;
    return entry;
}

EntryList ListOf(const std::vector<StoredEntry>& entries) {
    EntryList list;
    for (const StoredEntry& entry : entries) {
        list.Append(entry);
    }
    return list;
}

void ExpectKept(const std::vector<StoredEntry>& entries) {
    const EntryList list = ListOf(entries);
    ASSERT_EQ(list.size(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_TRUE(list[i] == entries[i]) << i << ": " << entries[i].name;
        const EntryList::Extent extent = list.ExtentOf(i);
        EXPECT_EQ(extent.offset, entries[i].offset);
        EXPECT_EQ(extent.packed_size, entries[i].packed_size);
        EXPECT_EQ(extent.header_length,
                  entries[i].data_at != 0 ? 0 : 30 + entries[i].RawName().size());
    }
}

TEST(EntryList, KeepsNamesInFoldersOfAnyKind) {
    std::vector<StoredEntry> entries;
    for (const char* name : {"a.txt", "docs/", "docs/a.txt", "docs/b.txt", "docs/deep/c", "docs\\d",
                             "docs/e", "", "/", "//", "x", "docs/a.txt"}) {
        entries.push_back(EntryOf(name));
    }
    entries.push_back(EntryOf(std::string("n\0l/\0", 5)));
    entries.push_back(EntryOf(std::string(70'000, 'y') + "/" + std::string(70'000, 'z')));
    ExpectKept(entries);
}

TEST(EntryList, KeepsTheLargestAndSmallestNumbers) {
    StoredEntry largest = EntryOf("largest");
    largest.raw_name = std::string(65'535, '\xFF');
    largest.size = largest.packed_size = largest.offset = largest.data_at = ~std::uint64_t{0};
    largest.times = {~platform::Ticks{0}, 0, 1};
    largest.crc = largest.attributes = ~std::uint32_t{0};
    largest.method = static_cast<Method>(0xFFFF);
    largest.flags = 0xFFFF;
    largest.is_folder = largest.is_link = true;
    StoredEntry only_modified = EntryOf("only modified");
    only_modified.times = {kModified, 0, 0};
    StoredEntry only_accessed = EntryOf("only accessed");
    only_accessed.times = {0, kModified, 0};
    StoredEntry far_apart = EntryOf("far apart");
    far_apart.times = {platform::Ticks{1} << 63, 0, ~platform::Ticks{0}};
    ExpectKept({StoredEntry{}, largest, only_modified, only_accessed, far_apart, StoredEntry{}});
}

TEST(EntryList, KeepsRandomEntriesBeyondOneBlock) {
    std::mt19937_64 random(7);
    const auto number = [&random] { return random() >> (random() % 64); };
    std::vector<StoredEntry> entries;
    for (int i = 0; i < 10'000; ++i) {
        StoredEntry entry = EntryOf("folder " + std::to_string(number() % 20) + "/" +
                                    std::string(number() % 40, 'n') + std::to_string(i));
        if (number() % 8 == 0) {
            entry.raw_name = entry.name.substr(1);
        }
        entry.size = number();
        entry.packed_size = number();
        entry.offset = number();
        entry.times = {number(), number(), number()};
        entry.crc = static_cast<std::uint32_t>(number());
        entry.flags = static_cast<std::uint16_t>(number());
        entries.push_back(entry);
    }
    ExpectKept(entries);
}

TEST(EntryList, IsReadInOrder) {
    std::string names;
    for (const StoredEntry entry : ListOf({EntryOf("a"), EntryOf("b/c"), EntryOf("b/d")})) {
        names += entry.name + " ";
    }
    EXPECT_EQ(names, "a b/c b/d ");
    EXPECT_EQ(ListOf({EntryOf("a"), EntryOf("b/c")}).back().name, "b/c");
    EXPECT_TRUE(EntryList().empty());
}

}  // namespace
}  // namespace vantrel::zip
