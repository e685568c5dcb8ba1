#include "zip/base/dos_mask.h"

#include <gtest/gtest.h>

#include "tests/support/test_machine.h"

namespace vantrel::zip {
namespace {

class DosMaskTest : public ::testing::Test {
  protected:
    bool Matches(const std::string& mask, const std::string& name) {
        return DosMask(machine_.code_page(), mask).Matches(name);
    }
    test::TestMachine machine_;
};

TEST_F(DosMaskTest, StarDotStarIsEveryFileDottedOrNot) {
    for (const char* name : {"a.txt", "a", "a.b.c", ".hidden", "README"}) {
        EXPECT_TRUE(Matches("*.*", name)) << name;
        EXPECT_TRUE(Matches("*", name)) << name;
    }
    EXPECT_TRUE(DosMask(machine_.code_page(), "*.*").IsEverything());
    EXPECT_FALSE(DosMask(machine_.code_page(), "*.txt").IsEverything());
}

TEST_F(DosMaskTest, CaseIsIgnored) {
    EXPECT_TRUE(Matches("*.TXT", "readme.txt"));
    EXPECT_TRUE(Matches("*.txt", "README.TXT"));
    EXPECT_TRUE(Matches("\xC3\x84*", "\xC3\xA4pfel"));
}

TEST_F(DosMaskTest, StarReachesUpToTheLastDot) {
    EXPECT_TRUE(Matches("*.txt", "a.b.txt"));
    EXPECT_FALSE(Matches("*.txt", "a.txt.bak"));
    EXPECT_FALSE(Matches("*.txt", "txt"));
}

TEST_F(DosMaskTest, StarDotIsEveryNameWithoutADot) {
    EXPECT_TRUE(Matches("*.", "README"));
    EXPECT_FALSE(Matches("*.", "README.txt"));
    EXPECT_TRUE(Matches("READ*.", "README"));
    EXPECT_FALSE(Matches("READ*.", "README.1"));
}

TEST_F(DosMaskTest, ADotBeforeAStarMayBeMissing) {
    EXPECT_TRUE(Matches("readme.*", "README"));
    EXPECT_TRUE(Matches("readme.*", "README.txt"));
    EXPECT_FALSE(Matches("readme.*", "README2"));
    EXPECT_TRUE(Matches("a*.*", "abc"));
}

TEST_F(DosMaskTest, QuestionMarkIsOneCharacterOrNoneAtTheEndAndBeforeADot) {
    EXPECT_TRUE(Matches("file?.txt", "file1.txt"));
    EXPECT_TRUE(Matches("file?.txt", "file.txt"));
    EXPECT_FALSE(Matches("file?.txt", "file12.txt"));
    EXPECT_TRUE(Matches("???", "ab"));
    EXPECT_FALSE(Matches("???", "abcd"));
    EXPECT_FALSE(Matches("?b", "b"));
}

TEST_F(DosMaskTest, QuestionMarkIsOneCharacterHoweverManyBytes) {
    EXPECT_TRUE(Matches("?.txt", "\xE2\x82\xAC.txt"));
    EXPECT_TRUE(Matches("?.txt", "\xF0\x9F\x98\x80.txt"));
}

TEST_F(DosMaskTest, WithoutWildcardsItIsOneName) {
    EXPECT_TRUE(Matches("a.txt", "A.TXT"));
    EXPECT_FALSE(Matches("a.txt", "aa.txt"));
    EXPECT_TRUE(Matches("README.", "README"));
}

TEST_F(DosMaskTest, ManyStarsTakeNoLongerThanTheyMust) {
    const std::string name(200, 'a');
    EXPECT_FALSE(Matches("*a*a*a*a*a*a*a*a*a*a*a*a*b", name));
    EXPECT_TRUE(Matches("*a*a*a*a*a*a*a*a*a*a*a*a*", name));
}

}  // namespace
}  // namespace vantrel::zip
