#include "common/display_text.h"

#include <gtest/gtest.h>

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

TEST(NumberText, HasGroupsOfThreeInEnglish) {
    const NumberFormat english;
    EXPECT_EQ(NumberText(0, english), "0");
    EXPECT_EQ(NumberText(999, english), "999");
    EXPECT_EQ(NumberText(1000, english), "1,000");
    EXPECT_EQ(NumberText(16909, english), "16,909");
    EXPECT_EQ(NumberText(18'446'744'073'709'551'615u, english), "18,446,744,073,709,551,615");
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
    const NumberFormat english;
    EXPECT_EQ(SizeText(0, english), "0 bytes");
    EXPECT_EQ(SizeText(1, english), "1 byte");
    EXPECT_EQ(SizeText(1023, english), "1,023 bytes");
    EXPECT_EQ(SizeText(1024, english), "1.0 KB");
    EXPECT_EQ(SizeText(10188, english), "9.9 KB");
    EXPECT_EQ(SizeText(10189, english), "10 KB");
    EXPECT_EQ(SizeText(287ull << 20, english), "287 MB");
    EXPECT_EQ(SizeText(5ull << 30, {",", ".", 3, 3}), "5,0 GB");
}

TEST(SizeText, RoundsUpToTheNextUnit) {
    const NumberFormat english;
    EXPECT_EQ(SizeText((1ull << 20) - 513, english), "1,023 KB");
    EXPECT_EQ(SizeText((1ull << 20) - 512, english), "1.0 MB");
    EXPECT_EQ(SizeText(~0ull, english), "16 EB");
}

}  // namespace
}  // namespace vantrel::test
