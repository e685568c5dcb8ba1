// The folders that are listed before an extraction are those that it writes into.

#include "common/path.h"
#include "tests/support/matchers.h"
#include "tests/zip/hostile_archives.h"
#include "tests/zip/reader_fixture.h"
#include "zip/pkunzip.h"

namespace vantrel::test {
namespace {

using namespace zip::unzip_id;

class TargetFolders : public ReaderTest {
  protected:
    Strings FoldersOf(const std::string& bytes) {
        files.Put(options.archive, bytes);
        platform::Machine over = Machine();
        zip::PKUNZIP component(over);
        component.Set(kArchive, options.archive);
        component.Set(kAction, kActionCount);
        return component.TargetFolders(options.destination);
    }
    Strings FoldersOf(const std::vector<BuiltEntry>& entries) {
        BuiltArchive archive;
        archive.entries = entries;
        return FoldersOf(archive.Bytes());
    }
    std::string Fold(const std::string& text) { return machine.code_page().Fold(text); }
};

TEST_F(TargetFolders, EachIsListedOnceInTheArchivesOrder) {
    EXPECT_THAT(
        FoldersOf({{.name = "Sub/b"}, {.name = "a"}, {.name = "./Sub/c"}, {.name = "Empty/"}}),
        ElementsAre("Sub", "", "Empty"));
}

TEST_F(TargetFolders, RefusedNamesAndTheDestinationItselfHaveNone) {
    EXPECT_THAT(FoldersOf({{.name = "../x"}, {.name = "C:/x"}, {.name = "./"}}), IsEmpty());
}

TEST_F(TargetFolders, ShortNameOfAnotherFolderGetsItsSign) {
    files.PutFolder("C:\\Out\\Long folder name");
    files.Alias("C:\\Out\\LONGFO~1", "C:\\Out\\Long folder name");
    EXPECT_THAT(FoldersOf({{.name = "longfo~1/Sub/a"}}), ElementsAre("longfo~1_\\Sub"));
}

TEST_F(TargetFolders, FolderThatMayNotBeLookedAtKeepsItsName) {
    FailCalls(files, {.name = "Find", .path = "C:\\Out\\Sub"}, error_number::kPermissionDenied);
    EXPECT_THAT(FoldersOf({{.name = "Sub/Deep/a"}}), ElementsAre("Sub\\Deep"));
}

TEST_F(TargetFolders, NothingIsMade) {
    FoldersOf({{.name = "Sub/Deep/a"}});
    EXPECT_FALSE(files.Exists("C:\\Out"));
}

class TargetFoldersOfTricks : public TargetFolders,
                              public ::testing::WithParamInterface<HostileArchive> {};

TEST_P(TargetFoldersOfTricks, EverythingThatIsRestoredIsInAListedFolder) {
    const Strings listed = FoldersOf(GetParam().bytes);
    ASSERT_EQ(Run(), GetParam().outcome);
    for (const std::string& path : Restored()) {
        const bool is_folder = path.back() == '\\';
        const std::string folder =
            is_folder ? path.substr(0, path.size() - 1) : std::string(path::Split(path).folder);
        const auto holds = [&](const std::string& each) {
            return Fold(each) == Fold(folder) || (is_folder && Fold(each).starts_with(Fold(path)));
        };
        EXPECT_THAT(listed, Contains(::testing::ResultOf(holds, true))) << path;
    }
}

INSTANTIATE_TEST_SUITE_P(Tricks, TargetFoldersOfTricks, ::testing::ValuesIn(HostileArchives()),
                         [](const auto& tested) { return tested.param.trick; });

}  // namespace
}  // namespace vantrel::test
