#include "common/display_text.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace std::string_literals;

namespace vantrel::test {
namespace {

TEST(EscapeControls, MakesControlCharactersVisible) {
    EXPECT_EQ(EscapeControls("a\0b"s), "a\\x00b");
    EXPECT_EQ(EscapeControls("a\r\nb\t"), "a\\x0d\\x0ab\\x09");
    EXPECT_EQ(EscapeControls("\x1b[2J\x1f\x7f"), "\\x1b[2J\\x1f\\x7f");
    EXPECT_EQ(EscapeControls("\xC2\x80 \xC2\x85 \xC2\x9F"), "\\u0080 \\u0085 \\u009f");
}

TEST(EscapeControls, KeepsWhatCanBeSeen) {
    for (const std::string text :
         {"", "a b~.txt", "C:\\x00\\a", "\xC2\xA0\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\x81"}) {
        EXPECT_EQ(EscapeControls(text), text);
    }
}

TEST(EscapeControls, EscapesBytesThatAreNoUtf8) {
    EXPECT_EQ(EscapeControls("\x9b"
                             "31m\xFF"),
              "\\x9b31m\\xff");
    EXPECT_EQ(EscapeControls("\xE2\x82"), "\\xe2\\x82");
    EXPECT_EQ(EscapeControls("\xEF\xBF\xBD"), "\xEF\xBF\xBD") << "the replacement itself is valid";
}

TEST(EscapeControls, DoneTwiceChangesNothingMore) {
    const std::string once = EscapeControls("\x1b\xC2\x85\xFF\\x1b");
    EXPECT_EQ(EscapeControls(once), once);
}

TEST(Counted, OneIsSingular) {
    EXPECT_EQ(Counted(0, "file", "files"), "0 files");
    EXPECT_EQ(Counted(1, "file", "files"), "1 file");
    EXPECT_EQ(Counted(2, "entry", "entries"), "2 entries");
    EXPECT_EQ(Counted(~std::uint64_t{0}, "byte", "bytes"), "18446744073709551615 bytes");
}

using Rows = std::vector<std::pair<std::uint64_t, std::string>>;
void ExpectInEnglish(std::string (*text)(std::uint64_t, const NumberFormat&), const Rows& rows) {
    for (const auto& [value, expected] : rows) {
        EXPECT_EQ(text(value, NumberFormat()), expected);
    }
}

TEST(NumberText, HasGroupsOfThreeInEnglish) {
    ExpectInEnglish(NumberText, {{0, "0"},
                                 {999, "999"},
                                 {1000, "1,000"},
                                 {16909, "16,909"},
                                 {18'446'744'073'709'551'615u, "18,446,744,073,709,551,615"}});
}

TEST(NumberText, HasTheGroupsOfTheRegion) {
    EXPECT_EQ(NumberText(1234567, {",", ".", 3, 3}), "1.234.567");
    EXPECT_EQ(NumberText(123456789, {".", ",", 3, 2}), "12,34,56,789");
    EXPECT_EQ(NumberText(1234567, {".", ",", 3, 0}), "1234,567");
    EXPECT_EQ(NumberText(1234567, {".", ",", 0, 0}), "1234567");
    EXPECT_EQ(NumberText(1234567, {",", "\xC2\xA0", 3, 3}),
              "1\xC2\xA0"
              "234\xC2\xA0"
              "567");
}

TEST(SizeText, HasOneDecimalBelowTen) {
    ExpectInEnglish(SizeText, {{0, "0 bytes"},
                               {1, "1 byte"},
                               {1023, "1,023 bytes"},
                               {1024, "1.0 KB"},
                               {10188, "9.9 KB"},
                               {10189, "10 KB"},
                               {287ull << 20, "287 MB"}});
    EXPECT_EQ(SizeText(5ull << 30, {",", ".", 3, 3}), "5,0 GB");
}

TEST(SizeText, RoundsUpToTheNextUnit) {
    ExpectInEnglish(
        SizeText,
        {{(1ull << 20) - 513, "1,023 KB"}, {(1ull << 20) - 512, "1.0 MB"}, {~0ull, "16 EB"}});
}

}  // namespace
}  // namespace vantrel::test
