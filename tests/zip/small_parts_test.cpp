// Paths, file specifications, the compressed list and the taken names.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "zip/base/paths.h"
#include "zip/deflate/block_store.h"
#include "zip/reader/target_folders.h"
#include "zip/writer/file_spec.h"

namespace vantrel::zip {
namespace {

TEST(Paths, ParentStopsAtRoots) {
    EXPECT_EQ(ParentOf("C:\\Data\\a.txt"), "C:\\Data");
    EXPECT_EQ(ParentOf("C:\\a.txt"), "C:\\");
    EXPECT_EQ(ParentOf("C:\\"), "");
    EXPECT_EQ(ParentOf("\\\\server\\share\\a"), "\\\\server\\share\\");
    EXPECT_EQ(ParentOf("\\\\server\\share\\"), "");
    EXPECT_EQ(ParentOf("\\\\server\\share"), "");
    EXPECT_EQ(ParentOf("\\Data\\a"), "\\Data");
    EXPECT_EQ(ParentOf("\\a"), "\\");
    EXPECT_EQ(ParentOf("\\"), "");
    EXPECT_EQ(ParentOf("a"), "");
}

TEST(Paths, LeafIsTheLastComponent) {
    EXPECT_EQ(LeafOf("C:\\Data\\a.txt"), "a.txt");
    EXPECT_EQ(LeafOf("C:\\Data\\"), "Data");
    EXPECT_EQ(LeafOf("C:\\"), "");
}

TEST(Paths, JoinAddsOneBackslash) {
    EXPECT_EQ(JoinPath("C:\\", "a"), "C:\\a");
    EXPECT_EQ(JoinPath("C:\\Data", "a"), "C:\\Data\\a");
    EXPECT_EQ(JoinPath("", "a"), "a");
    EXPECT_EQ(JoinPath("C:\\Data", ""), "C:\\Data");
}

TEST(Paths, CutIsFolderAndLeafOfAPathWithoutRoot) {
    EXPECT_EQ(Cut("a\\b\\c.txt").folder, "a\\b");
    EXPECT_EQ(Cut("a\\b\\c.txt").leaf, "c.txt");
    EXPECT_EQ(Cut("c.txt").folder, "");
    EXPECT_EQ(Cut("c.txt").leaf, "c.txt");
}

TEST(Paths, ExactlyOneBackslashIsTheApplicationsDrive) {
    EXPECT_EQ(WithDrive("\\Data\\a", "D:\\Vantrel"), "D:\\Data\\a");
    EXPECT_EQ(WithDrive("\\", "D:\\"), "D:\\");
    for (const char* path : {"C:\\a", "\\\\server\\share\\a", "C:a", "a", ""}) {
        EXPECT_EQ(WithDrive(path, "D:\\Vantrel"), path);
    }
    EXPECT_EQ(WithDrive("\\Data", "\\\\server\\share\\Vantrel"), "\\Data");
    EXPECT_EQ(WithDrive("\\Data", ""), "\\Data");
}

TEST(FileSpec, QuotesAreTakenOffAndFolderAndMaskCut) {
    EXPECT_EQ(ParseFileSpec("\"C:\\My Data\\*.txt\"").folder, "C:\\My Data");
    EXPECT_EQ(ParseFileSpec("\"C:\\My Data\\*.txt\"").mask, "*.txt");
    EXPECT_EQ(ParseFileSpec("C:\\Data\\*.*").folder, "C:\\Data");
    EXPECT_EQ(ParseFileSpec("\"C:\\*.*\"").folder, "C:\\");
    EXPECT_EQ(ParseFileSpec("\"C:\\Data\\\"").mask, "*.*");
    EXPECT_EQ(ParseFileSpec("\"\\\\s\\d\\x\\*.*\"").folder, "\\\\s\\d\\x");
    EXPECT_EQ(ParseFileSpec("\"\\\\s\\d\\*.*\"").folder, "\\\\s\\d\\");
    EXPECT_EQ(ParseFileSpec("\"\\*.*\"").folder, "\\");
    EXPECT_EQ(ParseFileSpec("\"\\Data\\*.*\"").folder, "\\Data");
    EXPECT_EQ(ParseFileSpec("").folder, "");
}

TEST(TakenNames, EachNameIsNewOnceAndKeepsItsNumber) {
    TakenNames names(2);
    EXPECT_TRUE(names.Take("a").is_new);
    EXPECT_TRUE(names.Take("").is_new);
    EXPECT_TRUE(names.Take(std::string_view("a\0", 2)).is_new);
    EXPECT_FALSE(names.Take("a").is_new);
    EXPECT_EQ(names.Take("a").number, 0u);
    EXPECT_EQ(names.Take("").number, 1u);
    EXPECT_EQ(names.Take(std::string_view("a\0", 2)).number, 2u);
}

TEST(TakenNames, MoreThanExpectedFit) {
    TakenNames names(0);
    for (std::size_t round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < 10'000; ++i) {
            const auto place = names.Take("name " + std::to_string(i));
            ASSERT_EQ(place.number, i);
            ASSERT_EQ(place.is_new, round == 0);
        }
    }
}

TEST(BlockStore, GivesBackWhatWasPutInOrder) {
    BlockStore store;
    std::uint64_t bytes = 0;
    for (int i = 0; i < 50000; ++i) {
        const std::string record = "Folder\\Sub\\file" + std::to_string(i);
        store.Append(record);
        bytes += record.size();
    }
    store.Append("");
    EXPECT_EQ(store.Count(), 50001u);
    EXPECT_EQ(store.Bytes(), bytes);
    std::string record;
    for (int i = 0; i < 50000; ++i) {
        ASSERT_TRUE(store.Take(record));
        ASSERT_EQ(record, "Folder\\Sub\\file" + std::to_string(i));
    }
    ASSERT_TRUE(store.Take(record));
    EXPECT_EQ(record, "");
    EXPECT_FALSE(store.Take(record));
    EXPECT_FALSE(store.Take(record));
}

TEST(BlockStore, WithoutRecordsGivesNone) {
    BlockStore store;
    std::string record;
    EXPECT_FALSE(store.Take(record));
}

TEST(BlockStore, HoldsRecordsLongerThanABlock) {
    BlockStore store;
    store.Append(std::string(1000000, 'x'));
    store.Append("y");
    std::string record;
    ASSERT_TRUE(store.Take(record));
    EXPECT_EQ(record, std::string(1000000, 'x'));
    ASSERT_TRUE(store.Take(record));
    EXPECT_EQ(record, "y");
}

}  // namespace
}  // namespace vantrel::zip
