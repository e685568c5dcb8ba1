#include "common/dos_mask.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

class DosMaskTest : public ::testing::Test {
  protected:
    bool Matches(const std::string& mask, const std::string& name) {
        return DosMask(machine_.code_page().Fold(mask)).Matches(machine_.code_page().Fold(name));
    }
    TestMachine machine_;
};

TEST_F(DosMaskTest, OnlyStarsAreEveryName) {
    EXPECT_TRUE(DosMask("*.*").IsEverything());
    EXPECT_FALSE(DosMask("*.txt").IsEverything());
}

TEST_F(DosMaskTest, MatchesAsTheCommandPromptDoes) {
    struct Case {
        const char* rule;
        const char* mask;
        std::vector<const char*> matching;
        std::vector<const char*> other;
    };
    const std::vector<const char*> any = {"a.txt", "a", "a.b.c", ".hidden", "README"};
    for (const Case& test : std::vector<Case>{
             {"*.* is every name, with a dot or without", "*.*", any, {}},
             {"* is every name", "*", any, {}},
             {"case is ignored in the name", "*.TXT", {"readme.txt"}, {}},
             {"case is ignored in the mask", "*.txt", {"README.TXT"}, {}},
             {"case is ignored beyond ASCII", "\xC3\x84*", {"\xC3\xA4pfel"}, {}},
             {"a star extends to the last dot", "*.txt", {"a.b.txt"}, {"a.txt.bak", "txt"}},
             {"*. is every name without a dot", "*.", {"README"}, {"README.txt"}},
             {"so is a dot at the end", "READ*.", {"README"}, {"README.1"}},
             {"the dot before a star may be missing",
              "readme.*",
              {"README", "README.txt"},
              {"README2"}},
             {"also with two stars", "a*.*", {"abc"}, {}},
             {"? is one character, or none before a dot",
              "file?.txt",
              {"file1.txt", "file.txt"},
              {"file12.txt"}},
             {"? is one character, or none at the end", "???", {"ab"}, {"abcd"}},
             {"? elsewhere is one character", "?b", {}, {"b"}},
             {"? is one character of several bytes",
              "?.txt",
              {"\xE2\x82\xAC.txt", "\xF0\x9F\x98\x80.txt"},
              {}},
             {"no wildcard: one name", "a.txt", {"A.TXT"}, {"aa.txt"}},
             {"a dot at the end alone is dropped", "README.", {"README"}, {}},
         }) {
        for (const char* name : test.matching) {
            EXPECT_TRUE(Matches(test.mask, name)) << test.rule << ": " << name;
        }
        for (const char* name : test.other) {
            EXPECT_FALSE(Matches(test.mask, name)) << test.rule << ": " << name;
        }
    }
}

TEST_F(DosMaskTest, ManyStarsTakeBoundedTime) {
    const std::string name(200, 'a');
    EXPECT_FALSE(Matches("*a*a*a*a*a*a*a*a*a*a*a*a*b", name));
    EXPECT_TRUE(Matches("*a*a*a*a*a*a*a*a*a*a*a*a*", name));
}

}  // namespace
}  // namespace vantrel::test
