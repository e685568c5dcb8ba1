#include "common/utf.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel::test {
namespace {

std::vector<char32_t> Points(std::string_view utf8) {
    std::vector<char32_t> points;
    for (std::size_t i = 0; i < utf8.size();) {
        points.push_back(utf::Next(utf8, i));
    }
    return points;
}

using List = std::vector<char32_t>;

TEST(Utf, EveryCodePointRoundTripsThroughUtf16) {
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        std::string text;
        utf::Append(text, point);
        ASSERT_EQ(Points(text), List{point});
        ASSERT_EQ(utf::ToUtf8(utf::ToUtf16(text)), text);
    }
}

TEST(Utf, AstralCharactersArePairs) {
    EXPECT_EQ(utf::ToUtf16("\xF0\x9F\x92\xBE"), u"\xD83D\xDCBE");
    EXPECT_EQ(utf::ToUtf8(u"\xD83D\xDCBE"), "\xF0\x9F\x92\xBE");
    EXPECT_EQ(utf::Utf16Length("a\xF0\x9F\x92\xBE"), 3u);
}

TEST(Utf, LoneSurrogatesSurvive) {
    for (const std::u16string& text :
         {std::u16string(u"a\xD800"), std::u16string(u"\xDC00z"), std::u16string(u"\xDC00\xD800"),
          std::u16string(u"\xD800\xD800\xDC00")}) {
        EXPECT_EQ(utf::ToUtf16(utf::ToUtf8(text)), text);
    }
}

TEST(Utf, BytesOfNoSequenceBecomeReplacementsOneByOne) {
    EXPECT_EQ(Points("\x80"), List{utf::kReplacement});
    EXPECT_EQ(Points("a\xFFz"), (List{'a', utf::kReplacement, 'z'}));
    EXPECT_EQ(Points("\xC3"), List{utf::kReplacement});
    EXPECT_EQ(Points("\xE2\x82"), (List{utf::kReplacement, utf::kReplacement}));
    EXPECT_EQ(Points("\xE2\x82z"), (List{utf::kReplacement, utf::kReplacement, 'z'}));
}

TEST(Utf, OverlongAndTooLargeSequencesAreInvalid) {
    EXPECT_EQ(Points("\xC0\xAF"), (List{utf::kReplacement, utf::kReplacement}));
    EXPECT_EQ(Points("\xE0\x80\x80").front(), utf::kReplacement);
    EXPECT_EQ(Points("\xF0\x80\x80\x80").front(), utf::kReplacement);
    EXPECT_EQ(Points("\xF4\x90\x80\x80").front(), utf::kReplacement);
    EXPECT_EQ(Points("\xF5\x80\x80\x80").front(), utf::kReplacement);
}

TEST(Utf, EmptyTextIsEmpty) {
    EXPECT_EQ(utf::ToUtf16(""), u"");
    EXPECT_EQ(utf::ToUtf8(u""), "");
    EXPECT_EQ(utf::Utf16Length(""), 0u);
}

TEST(Utf, LongerThanCountsUnitsNotBytes) {
    EXPECT_FALSE(utf::IsLongerThan("", 0));
    EXPECT_FALSE(utf::IsLongerThan("abc", 3));
    EXPECT_TRUE(utf::IsLongerThan("abcd", 3));
    EXPECT_FALSE(utf::IsLongerThan("\xE2\x82\xAC", 1));
    EXPECT_FALSE(utf::IsLongerThan("\xF0\x9F\x92\xBE", 2));
    EXPECT_TRUE(utf::IsLongerThan("\xF0\x9F\x92\xBE", 1));
}

TEST(Utf, OneByteAboveTheFirst128IsNoAscii) {
    EXPECT_TRUE(utf::IsAscii(""));
    EXPECT_TRUE(utf::IsAscii("Name\x7F"));
    EXPECT_FALSE(utf::IsAscii("na\xC3\xAFve"));
    EXPECT_FALSE(utf::IsAscii("\x80"));
}

TEST(Utf, UpperOfAsciiIsNothingForOtherLetters) {
    EXPECT_EQ(utf::UpperOfAscii("a[z]{9}\\Name"), "A[Z]{9}\\NAME");
    EXPECT_EQ(utf::UpperOfAscii(""), "");
    EXPECT_EQ(utf::UpperOfAscii("na\xC3\xAFve"), std::nullopt);
}

}  // namespace
}  // namespace vantrel::test
