#include "backupset/profile_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/backupset/lost_bytes.h"

namespace vantrel::profile {
namespace {

const std::string kSet =
    ";---\r\n; a comment\r\n[BACKUP SOURCE]\r\nBackupFiles=C:\\Data\\*.*\r\n"
    "BackupSubDirectories=OFF\r\n\r\n[DESTINATION]\r\nBackupFileName=WEEKLY\r\n"
    "TimeBackup=ON\r\n\r\n";

std::string Value(const std::string& text, const std::string& section, const std::string& key) {
    return FindValue(text, section, key).value_or("(missing)");
}

TEST(ProfileText, FindsAValue) {
    EXPECT_EQ(Value(kSet, "BACKUP SOURCE", "BackupFiles"), "C:\\Data\\*.*");
    EXPECT_EQ(Value(kSet, "DESTINATION", "TimeBackup"), "ON");
}

TEST(ProfileText, MatchesSectionAndKeyWithoutCase) {
    EXPECT_EQ(Value(kSet, "Destination", "timebackup"), "ON");
    EXPECT_EQ(Value("[destination]\nTIMEBACKUP=x\n", "DESTINATION", "TimeBackup"), "x");
}

TEST(ProfileText, KeyCountsInItsSectionOnly) {
    EXPECT_FALSE(FindValue(kSet, "BACKUP SOURCE", "TimeBackup"));
    EXPECT_FALSE(FindValue(kSet, "RESTORE SOURCE", "TimeBackup"));
    EXPECT_FALSE(FindValue("TimeBackup=ON\r\n[DESTINATION]\r\n", "DESTINATION", "TimeBackup"));
}

TEST(ProfileText, ValueOfKeyKInSectionS) {
    struct Case {
        const char* rule;
        std::string text;
        const char* value;
    };
    for (const Case& test : std::vector<Case>{
             {"spaces around key, value and section are dropped", " [ S ] \r\n\t K \t= a b \t\r\n",
              "a b"},
             {"one pair of quotes is dropped", "[S]\nK=\" a \"\n", " a "},
             {"of either kind", "[S]\nK='a'\n", "a"},
             {"a second pair stays", "[S]\nK=\"\"a\"\"\n", "\"a\""},
             {"one quote alone stays", "[S]\nK=\"\n", "\""},
             {"two different quotes stay", "[S]\nK=\"a'\n", "\"a'"},
             {"the first key of a name counts", "[S]\nK=1\nK=2\n", "1"},
             {"the first section of a name counts", "[S]\nK=1\n[s]\nK=2\n", "1"},
             {"no second one", "[S]\nL=1\n[s]\nK=2\n", "(missing)"},
             {"lines without = are ignored", "[S]\nK\n=x\nK=1\n", "1"},
             {"a key without = is none", "[S]\nK\n", "(missing)"},
             {"a comment is no key", "[S]\n;K=1\n  ;K=2\n", "(missing)"},
             {"a comment is no section", ";[S]\nK=1\n", "(missing)"},
             {"semicolon and = belong to the value", "[S]\nK=a=b ;c\n", "a=b ;c"},
             {"lines end in CR", "[S]\rL=1\rK=2", "2"},
             {"lines end in LF", "[S]\nK=1", "1"},
             {"lines end in CR LF", "[S]\r\nK=1\r\n", "1"},
             {"an empty value is a value", "[S]\nK=\n", ""},
             {"also at the end", "[S]\nK=", ""},
             {"a value ends at NUL", std::string("[S]\nK=a\0b\n", 10), "a"},
             {"a section line without ] opens none", "[S]\nA=1\n[T\nK=1\n", "1"},
         }) {
        EXPECT_EQ(Value(test.text, "S", "K"), test.value) << test.rule;
    }
    EXPECT_FALSE(FindValue("[S]\n;K=1\n", "S", ";K"));
    EXPECT_FALSE(FindValue("[T\nK=1\n", "T", "K"));
}

TEST(ProfileText, SetsInPlaceAndKeepsEveryOtherByte) {
    std::string expected = kSet;
    expected.replace(expected.find("WEEKLY"), 6, "MONTHLY");
    EXPECT_EQ(SetValue(kSet, "Destination", "BACKUPFILENAME", "MONTHLY"), expected);
}

TEST(ProfileText, SettingKeepsBlanksCommentsAndMixedLineEnds) {
    EXPECT_EQ(SetValue("; c\n\n [s] \r Key\t= old \t\n\n;K=1\rL=2", "S", "key", "new"),
              "; c\n\n [s] \r Key\t= new \t\n\n;K=1\rL=2");
}

TEST(ProfileText, SettingExchangesTheQuotesToo) {
    EXPECT_EQ(SetValue("[S]\nK=\"old\"\n", "S", "K", "new"), "[S]\nK=new\n");
}

TEST(ProfileText, SettingTheFirstOfTwoKeysLeavesTheSecond) {
    EXPECT_EQ(SetValue("[S]\nK=1\nK=2\n", "S", "K", "x"), "[S]\nK=x\nK=2\n");
}

TEST(ProfileText, NewKeyGoesToTheEndOfItsSectionBeforeBlankLines) {
    EXPECT_EQ(SetValue("[A]\r\nK=1\r\n\r\n\r\n[B]\r\nL=2\r\n", "a", "N", "3"),
              "[A]\r\nK=1\r\nN=3\r\n\r\n\r\n[B]\r\nL=2\r\n");
    EXPECT_EQ(SetValue("[A]\n\n[B]\n", "A", "N", "3"), "[A]\nN=3\n\n[B]\n");
    EXPECT_EQ(SetValue("[A]\n[B]\nL=2\n\n", "B", "N", "3"), "[A]\n[B]\nL=2\nN=3\n\n");
}

TEST(ProfileText, NewKeyClosesALastLineWithoutEnd) {
    EXPECT_EQ(SetValue("[A]\nK=1", "A", "N", "3"), "[A]\nK=1\nN=3\n");
    EXPECT_EQ(SetValue("[A]", "A", "N", "3"), "[A]\r\nN=3\r\n");
    EXPECT_EQ(SetValue("[A]\rK=1", "A", "N", "3"), "[A]\rK=1\rN=3\r");
}

TEST(ProfileText, NewSectionGoesToTheEnd) {
    EXPECT_EQ(SetValue("[A]\nK=1\n", "B", "N", "3"), "[A]\nK=1\n[B]\nN=3\n");
    EXPECT_EQ(SetValue("; no end", "B", "N", "3"), "; no end\r\n[B]\r\nN=3\r\n");
    EXPECT_EQ(SetValue("", "B", "N", "3"), "[B]\r\nN=3\r\n");
}

TEST(ProfileText, CannotHoldLineEndsOrNul) {
    EXPECT_TRUE(CanHold(""));
    EXPECT_TRUE(CanHold("C:\\Data\\*.*"));
    EXPECT_FALSE(CanHold("a\rb"));
    EXPECT_FALSE(CanHold("a\nb"));
    EXPECT_FALSE(CanHold(std::string("a\0b", 3)));
}

// The bytes of `after` that a write of `value` did not put there must be those of `before`.
void ExpectOnlyInsertedOrExchanged(const std::string& before, const std::string& after) {
    const std::string lost = test::LostBytes(before, after);
    EXPECT_EQ(lost.find_first_of("\r\n[];"), std::string::npos) << "lost: " << lost;
}

TEST(ProfileText, EveryPrefixReadsAndTakesEveryKey) {
    for (std::size_t size = 0; size <= kSet.size(); ++size) {
        const std::string prefix = kSet.substr(0, size);
        for (const char* key : {"BackupFiles", "BackupFileName", "TimeBackup", "New"}) {
            const std::string after = SetValue(prefix, "DESTINATION", key, "v:1");
            EXPECT_EQ(Value(after, "Destination", key), "v:1") << size << key;
            ExpectOnlyInsertedOrExchanged(prefix, after);
        }
    }
}

TEST(ProfileText, BinaryRubbishReadsAndTakesAKey) {
    std::mt19937 random(19);
    const std::string alphabet("[]=;\r\n \t\"'AsSkK\0\x1A\xFF", 18);
    for (int round = 0; round < 5000; ++round) {
        std::string text(random() % 40, ' ');
        for (char& byte : text) {
            byte = alphabet[random() % alphabet.size()];
        }
        const std::string after = SetValue(text, "S", "K", "v");
        EXPECT_EQ(Value(after, "S", "K"), "v") << ::testing::PrintToString(text);
        EXPECT_EQ(SetValue(after, "S", "K", "v"), after);
    }
}

}  // namespace
}  // namespace vantrel::profile
