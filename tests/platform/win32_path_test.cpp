#include <gtest/gtest.h>

#include "common/error.h"
#include "platform/win32/disk_path.h"
#include "tests/platform/win32_support.h"

namespace vantrel::platform {
namespace {

std::wstring Text(const std::string& path) { return DiskPath(path).Text(); }
int Refusal(const std::string& path) {
    return test::ErrorOf([&] { DiskPath refused(path); });
}

TEST(DiskPath, DriveLetterAloneIsItsRoot) {
    EXPECT_EQ(Text("C:"), L"\\\\?\\C:\\");
    EXPECT_EQ(Text("c:\\"), L"\\\\?\\C:\\");
    EXPECT_TRUE(DiskPath("C:").IsRoot());
    EXPECT_EQ(DiskPath("C:").Name(), L"");
}

TEST(DiskPath, NetworkPathsTakeTheirOwnForm) {
    EXPECT_EQ(Text("\\\\server\\share"), L"\\\\?\\UNC\\server\\share\\");
    EXPECT_EQ(Text("\\\\server\\share\\a b\\c"), L"\\\\?\\UNC\\server\\share\\a b\\c");
    EXPECT_EQ(DiskPath("\\\\server\\share\\x").PlainRoot(), L"\\\\server\\share\\");
    EXPECT_EQ(Refusal("\\\\server"), error_number::kBadFileName);
}

TEST(DiskPath, LiteralFormsAreUnderstood) {
    EXPECT_EQ(Text("\\\\?\\C:\\a"), L"\\\\?\\C:\\a");
    EXPECT_EQ(Text("\\\\?\\UNC\\server\\share\\a"), L"\\\\?\\UNC\\server\\share\\a");
}

TEST(DiskPath, TrailingDotsAndBlanksStay) {
    EXPECT_EQ(Text("C:\\a.\\b \\c..."), L"\\\\?\\C:\\a.\\b \\c...");
}

TEST(DiskPath, RepeatedAndTrailingSeparatorsAreOne) {
    EXPECT_EQ(Text("C:\\\\a\\\\\\b\\"), L"\\\\?\\C:\\a\\b");
    EXPECT_EQ(Text("C:/a/b"), L"\\\\?\\C:\\a\\b");
}

TEST(DiskPath, DotNamesAreResolvedAndNeverLeaveTheDrive) {
    EXPECT_EQ(Text("C:\\a\\.\\b\\..\\c"), L"\\\\?\\C:\\a\\c");
    EXPECT_EQ(Text("C:\\..\\..\\a"), L"\\\\?\\C:\\a");
}

TEST(DiskPath, RelativePathsAreMalformed) {
    for (const char* path : {"", "a", "\\a", ".", "a\\b", "1:\\a"}) {
        EXPECT_EQ(Refusal(path), error_number::kBadFileName) << path;
    }
}

TEST(DiskPath, CharactersThatNoNameHoldsAreMalformed) {
    for (const char* path : {"C:\\a:b", "C:\\a*", "C:\\a?", "C:\\<a", "C:\\a>", "C:\\\"a\"",
                             "C:\\a|b", "C:\\a\x01", "C:\\a\nb", "C:\\a:stream\\b"}) {
        EXPECT_EQ(Refusal(path), error_number::kBadFileName) << path;
    }
}

TEST(DiskPath, NameOf255UnitsIsTheLongest) {
    EXPECT_EQ(Refusal("C:\\" + std::string(255, 'n')), 0);
    EXPECT_EQ(Refusal("C:\\" + std::string(256, 'n')), error_number::kBadFileName);
}

TEST(DiskPath, ParentsEndAtTheRoot) {
    EXPECT_EQ(DiskPath("C:\\a\\b").Parent().Text(), L"\\\\?\\C:\\a");
    EXPECT_EQ(DiskPath("C:\\a").Parent().Text(), L"\\\\?\\C:\\");
    EXPECT_EQ(DiskPath("C:\\").Parent().Text(), L"\\\\?\\C:\\");
}

TEST(DiskPath, SearchesOfRootsAndFoldersDiffer) {
    EXPECT_EQ(DiskPath("C:\\").Everything(), L"\\\\?\\C:\\*");
    EXPECT_EQ(DiskPath("C:\\a").Everything(), L"\\\\?\\C:\\a\\*");
}

TEST(DiskPath, SameDriveIgnoresLetterCase) {
    EXPECT_TRUE(DiskPath("c:\\a").OnSameDrive(DiskPath("C:\\b")));
    EXPECT_TRUE(DiskPath("\\\\S\\t\\a").OnSameDrive(DiskPath("\\\\s\\T")));
    EXPECT_FALSE(DiskPath("C:\\a").OnSameDrive(DiskPath("D:\\a")));
}

TEST(Wide, LoneSurrogatesRoundTrip) {
    const std::wstring names[] = {L"\xD800", L"a\xDC00z", L"\xDC00\xD800", L"\xD83D\xDE00",
                                  L"\xD800\xD83D\xDE00"};
    for (const std::wstring& name : names) {
        EXPECT_EQ(Wide(Narrow(name)), name);
    }
}

TEST(Wide, PairsBecomeOneCharacter) {
    EXPECT_EQ(Narrow(L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Wide("\xF0\x9F\x98\x80"), L"\xD83D\xDE00");
    EXPECT_EQ(Narrow(L"\x00E4\x4E2D"), "\xC3\xA4\xE4\xB8\xAD");
}

}  // namespace
}  // namespace vantrel::platform
