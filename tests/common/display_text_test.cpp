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

}  // namespace
}  // namespace vantrel::test
