// Every class of names that an archive may hold, and the path that it is written to.
#include <gtest/gtest.h>

#include <string>

#include "zip/records/entry_name.h"

namespace vantrel::test {
namespace {

using zip::MakeSafeName;

std::string PathOf(std::string_view stored) {
    const zip::SafeName name = MakeSafeName(stored);
    return name.refusal.empty() ? name.path : "refused: " + name.refusal;
}
bool IsRefused(std::string_view stored) {
    const zip::SafeName name = MakeSafeName(stored);
    return !name.refusal.empty() && name.path.empty();
}
std::size_t Changes(std::string_view stored) { return MakeSafeName(stored).changes.size(); }

TEST(EntryName, OrdinaryNamesStayAsTheyAre) {
    EXPECT_EQ(PathOf("a.txt"), "a.txt");
    EXPECT_EQ(PathOf("Docs/My file (1).txt"), "Docs\\My file (1).txt");
    EXPECT_EQ(PathOf(".profile"), ".profile");
    EXPECT_EQ(PathOf("a..b/..c/c.."), "a..b\\..c\\c__");
    EXPECT_EQ(Changes("Docs/a.b.c"), 0u);
}

TEST(EntryName, BothSlashesSeparate) { EXPECT_EQ(PathOf("a\\b/c"), "a\\b\\c"); }

TEST(EntryName, OneSlashAtTheEndIsDropped) {
    EXPECT_EQ(PathOf("Docs/"), "Docs");
    EXPECT_EQ(PathOf("Docs\\"), "Docs");
    EXPECT_TRUE(IsRefused("Docs//"));
}

TEST(EntryName, DotDotIsRefusedWithTrailingDotsAndSpacesToo) {
    for (const char* name : {"..", "../x", "a/../x", "a/..", "a\\..\\x", "../", "... /x", "a/.. /x",
                             "a/... ./x", ".. ./x", "...."}) {
        EXPECT_TRUE(IsRefused(name)) << name;
        EXPECT_NE(PathOf(name).find("\"..\""), std::string::npos) << name;
    }
}

TEST(EntryName, DotAndEmptyComponentsInsideAreRefused) {
    for (const char* name : {"a/./b", "a//b", "a\\\\b", "a/. /b", "././a", "a/."}) {
        EXPECT_TRUE(IsRefused(name)) << name;
    }
    EXPECT_TRUE(IsRefused(""));
}

TEST(EntryName, DotSlashAtTheStartIsDropped) {
    EXPECT_EQ(PathOf("./a/b"), "a\\b");
    EXPECT_EQ(PathOf("./"), "");
    EXPECT_EQ(Changes("./a"), 0u);
    EXPECT_TRUE(IsRefused("./../a"));
    EXPECT_TRUE(IsRefused(".//a"));
    EXPECT_TRUE(IsRefused("./C:/a"));
}

TEST(EntryName, LeadingSlashIsStrippedAndReported) {
    EXPECT_EQ(PathOf("/etc/passwd"), "etc\\passwd");
    EXPECT_EQ(PathOf("\\a"), "a");
    EXPECT_EQ(Changes("/a"), 1u);
}

TEST(EntryName, DrivesAndSystemPathsAreRefused) {
    for (const char* name :
         {"C:x", "c:\\x", "C:/x", "/C:/x", "z:", "\\\\server\\share\\x", "//server/share/x",
          "\\\\?\\C:\\x", "\\\\.\\PhysicalDrive0", "\\??\\C:\\x", "//?/C:/x"}) {
        EXPECT_TRUE(IsRefused(name)) << name;
    }
}

TEST(EntryName, ColonElsewhereIsMappedNeverAStream) {
    EXPECT_EQ(PathOf("a.txt:stream"), "a.txt_stream");
    EXPECT_EQ(PathOf("a/C:x"), "a\\C_x");
    EXPECT_EQ(Changes("a.txt:stream"), 1u);
}

TEST(EntryName, ReservedNamesGetAnUnderscore) {
    for (const char* name : {"CON", "con", "PRN", "AUX", "Nul", "CONIN$", "conout$", "COM0", "com1",
                             "COM9", "LPT0", "lpt9", "COM\xC2\xB9", "LPT\xC2\xB2", "com\xC2\xB3",
                             "NUL.txt", "con.tar.gz", "AUX .txt"}) {
        EXPECT_EQ(PathOf(name), std::string("_") + name);
        EXPECT_EQ(Changes(name), 1u) << name;
    }
    EXPECT_EQ(PathOf("a/nul/b"), "a\\_nul\\b");
    for (const char* name : {"CONS", "COM", "COM10", "COM\xC2\xB4", "LPTX", "xCON", "CONIN"}) {
        EXPECT_EQ(PathOf(name), name);
    }
}

TEST(EntryName, TrailingDotsAndSpacesBecomeUnderscores) {
    EXPECT_EQ(PathOf("a."), "a_");
    EXPECT_EQ(PathOf("a. ./b "), "a___\\b_");
    EXPECT_EQ(PathOf("   "), "___");
    EXPECT_EQ(Changes("a. ./b "), 1u);
}

TEST(EntryName, ForbiddenCharactersBecomeUnderscores) {
    EXPECT_EQ(PathOf("a<b>c\"d|e?f*g\x01h\x1Fi"), "a_b_c_d_e_f_g_h_i");
    EXPECT_EQ(Changes("a<b>c"), 1u);
}

TEST(EntryName, NulIsRefused) { EXPECT_TRUE(IsRefused(std::string_view("a\0b", 3))); }

TEST(EntryName, ComponentOf255UnitsIsTheLongest) {
    EXPECT_FALSE(IsRefused(std::string(255, 'a')));
    EXPECT_TRUE(IsRefused(std::string(256, 'a')));
    EXPECT_TRUE(IsRefused("a/" + std::string(256, 'a') + "/b"));
    std::string umlauts;  // 255 units, 510 bytes
    for (int i = 0; i < 255; ++i) {
        umlauts += "\xC3\xA4";
    }
    EXPECT_EQ(PathOf(umlauts), umlauts);
    // The underscore of a reserved name counts.
    EXPECT_TRUE(IsRefused("nul." + std::string(251, 'a')));
}

TEST(EntryName, PathsEndBeforeTheSystemsLimit) {
    EXPECT_FALSE(zip::IsTooLongPath(std::string(32762, 'a')));
    EXPECT_TRUE(zip::IsTooLongPath(std::string(32763, 'a')));
}

TEST(EntryName, NumbersStandBeforeTheExtension) {
    EXPECT_EQ(zip::NumberedPath("a.txt", 2), "a (2).txt");
    EXPECT_EQ(zip::NumberedPath("d.x\\a", 3), "d.x\\a (3)");
    EXPECT_EQ(zip::NumberedPath("d\\.profile", 2), "d\\.profile (2)");
}

}  // namespace
}  // namespace vantrel::test
