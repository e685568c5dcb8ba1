#include "common/file_name.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel::test {
namespace {

TEST(FileName, ForbidsControlCharactersAndSevenOthers) {
    const std::string forbidden = "<>:\"|?*";
    for (int code = 0; code < 256; ++code) {
        const char byte = static_cast<char>(code);
        const bool expected = code < 0x20 || forbidden.find(byte) != std::string::npos;
        EXPECT_EQ(IsForbiddenInName(byte), expected) << code;
        EXPECT_EQ(IsForbiddenInName(static_cast<wchar_t>(code)), expected) << code;
    }
}

// Units whose low byte is that of a character which is forbidden.
TEST(FileName, AllowsEveryUnitBeyondAscii) {
    for (int unit = 0x80; unit <= 0xFFFF; ++unit) {
        ASSERT_FALSE(IsForbiddenInName(static_cast<wchar_t>(unit))) << unit;
    }
}

TEST(FileName, DevicesAreKnownInAnyCaseAndWithAnyExtension) {
    for (const char* name :
         {"CON", "con.txt", "Prn", "aux ", "NUL .ini", "conin$", "CONOUT$.x", "COM0", "com9.INI",
          "LPT1", "lpt\xC2\xB9", "COM\xC2\xB2", "COM\xC2\xB3.a"}) {
        EXPECT_TRUE(IsDeviceName(name)) << name;
    }
}

TEST(FileName, WhatOnlyLooksLikeADeviceIsNone) {
    for (const char* name : {"", ".", ".con", "xCON", "CONS", "COM", "COM10", "COMX", "LPT\xC2\xB4",
                             "CONIN", "CONOUT$$", " NUL"}) {
        EXPECT_FALSE(IsDeviceName(name)) << name;
    }
}

TEST(FileName, IsValidWhereEveryProgramCanReachTheFile) {
    for (const char* name : {"a", "WEEKLY", "a b.c", ".INI", "Conrad", "COM10", "\xC3\xA4"}) {
        EXPECT_TRUE(IsValidFileName(name)) << name;
    }
    EXPECT_TRUE(IsValidFileName(std::string(255, 'n')));
    for (const char* name : {"", ".", "..", "a.", "a ", "a/b", "a\\b", "x:y", "what?", "con",
                             "nul.", "nul.txt", "tab\t"}) {
        EXPECT_FALSE(IsValidFileName(name)) << name;
    }
    EXPECT_FALSE(IsValidFileName(std::string(256, 'n')));
    EXPECT_FALSE(IsValidFileName(std::string("a\0b", 3)));
}

TEST(DatedFolder, NameHasTwoDigitsForAllButTheYear) {
    EXPECT_EQ(DatedFolderName(2026, 1, 2, 3, 4, 5), "20260102_030405");
    EXPECT_EQ(DatedFolderName(2026, 11, 15, 13, 5, 9).size(), kDatedFolderNameLength);
}

TEST(DatedFolder, NameIsKnownByItsForm) {
    EXPECT_TRUE(IsDatedFolderName("20261115_130509"));
    for (const char* name :
         {"", "20261115", "20261115-130509", "2026_11151130509", "20261115_13050",
          "20261115_1305090", "2026111x_130509", "20261115__30509"}) {
        EXPECT_FALSE(IsDatedFolderName(name)) << name;
    }
}

}  // namespace
}  // namespace vantrel::test
