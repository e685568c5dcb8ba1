#include "common/path.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

struct Row {
    const char* path;
    const char* root;
    const char* parent;
    const char* name;
};

class PathParts : public ::testing::TestWithParam<Row> {};

TEST_P(PathParts, AreRootParentAndName) {
    const Row& row = GetParam();
    EXPECT_EQ(path::Root(row.path), row.root);
    EXPECT_EQ(path::Parent(row.path), row.parent);
    EXPECT_EQ(path::Name(row.path), row.name);
}

INSTANTIATE_TEST_SUITE_P(
    Path, PathParts,
    ::testing::Values(Row{"", "", "", ""}, Row{"C:", "", "", "C:"}, Row{"C:a", "", "", "C:a"},
                      Row{"C:\\", "C:\\", "", ""}, Row{"C:\\a", "C:\\", "C:\\", "a"},
                      Row{"C:\\a\\", "C:\\", "C:\\", "a"}, Row{"C:\\a\\b", "C:\\", "C:\\a", "b"},
                      Row{"\\\\server\\share", "\\\\server\\share", "", ""},
                      Row{"\\\\server\\share\\", "\\\\server\\share\\", "", ""},
                      Row{"\\\\server\\share\\a", "\\\\server\\share\\", "\\\\server\\share\\",
                          "a"},
                      Row{"\\\\server", "\\\\server", "", ""}, Row{"\\", "\\", "", ""},
                      Row{"\\a", "\\", "\\", "a"}, Row{"a", "", "", "a"}, Row{"a\\b", "", "a", "b"},
                      Row{"a\\b\\", "", "a", "b"}));

TEST(Path, JoinPutsOneBackslashBetween) {
    EXPECT_EQ(path::Join("C:\\", "a"), "C:\\a");
    EXPECT_EQ(path::Join("C:\\a", "b"), "C:\\a\\b");
    EXPECT_EQ(path::Join("C:\\a\\", "b"), "C:\\a\\b");
    EXPECT_EQ(path::Join("", "a"), "a");
    EXPECT_EQ(path::Join("C:\\a", ""), "C:\\a");
}

TEST(Path, WithBackslashEndsInOne) {
    EXPECT_EQ(path::WithBackslash(""), "\\");
    EXPECT_EQ(path::WithBackslash("C:"), "C:\\");
    EXPECT_EQ(path::WithBackslash("C:\\"), "C:\\");
}

TEST(Path, SplitsAtTheLastBackslash) {
    EXPECT_EQ(path::Split("a\\b\\c").folder, "a\\b");
    EXPECT_EQ(path::Split("a\\b\\c").name, "c");
    EXPECT_EQ(path::Split("c").folder, "");
    EXPECT_EQ(path::Split("c").name, "c");
    EXPECT_EQ(path::Split("a\\").name, "");
}

TEST(Path, OnlyExactlyOneBackslashInFrontTakesTheOtherPathsDrive) {
    EXPECT_EQ(path::OnDriveOf("C:\\Vantrel", "\\Data\\"), "C:\\Data\\");
    EXPECT_EQ(path::OnDriveOf("C:\\Vantrel", "\\"), "C:\\");
    for (const char* path : {"\\\\server\\share", "D:\\Data", "D:", "Data", ""}) {
        EXPECT_EQ(path::OnDriveOf("C:\\Vantrel", path), path);
    }
    EXPECT_EQ(path::OnDriveOf("\\\\server\\share\\Vantrel", "\\Data"), "\\Data");
    EXPECT_EQ(path::OnDriveOf("", "\\Data"), "\\Data");
}

TEST(Path, NormalizedHasACapitalDriveAndABackslashAtARootOnly) {
    EXPECT_EQ(path::Normalize("c:"), "C:\\");
    EXPECT_EQ(path::Normalize("c: [SYSTEM]"), "C:\\");
    EXPECT_EQ(path::Normalize("c:\\Data\\"), "C:\\Data");
    EXPECT_EQ(path::Normalize("c:/Data/Sub"), "C:\\Data\\Sub");
    EXPECT_EQ(path::Normalize("\\\\server\\share\\Folder\\"), "\\\\server\\share\\Folder");
}

TEST(Path, NormalizedIsEmptyForWhatIsNeitherOnADriveNorOnTheNetwork) {
    for (const char* text :
         {"", "\\", "\\Data", "Data", "C", "C:Data", "1:\\", "\\\\", "\\\\\\x"}) {
        EXPECT_EQ(path::Normalize(text), "") << text;
    }
}

TEST(Path, AncestorsLeadFromTheRootToThePath) {
    using Paths = std::vector<std::string>;
    EXPECT_EQ(path::Ancestors("C:\\"), (Paths{"C:\\"}));
    EXPECT_EQ(path::Ancestors("C:\\a\\b"), (Paths{"C:\\", "C:\\a", "C:\\a\\b"}));
    EXPECT_EQ(path::Ancestors("\\\\server\\share"), (Paths{"\\\\server\\share"}));
    EXPECT_EQ(path::Ancestors("\\\\server\\share\\a"),
              (Paths{"\\\\server\\share", "\\\\server\\share\\a"}));
}

TEST(Path, HasADriveWithALetterAndAColon) {
    EXPECT_TRUE(path::HasDrive("C:"));
    EXPECT_TRUE(path::HasDrive("z:a"));
    for (const char* text : {"", "C", "1:\\", "\\\\server", "\xC3\xA4:"}) {
        EXPECT_FALSE(path::HasDrive(text)) << text;
    }
}

}  // namespace
}  // namespace vantrel::test
