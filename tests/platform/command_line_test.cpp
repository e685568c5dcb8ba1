#include "platform/command_line.h"

#include <gtest/gtest.h>

namespace vantrel::platform {
namespace {

TEST(CommandLine, NothingAfterTheNameIsEmpty) {
    EXPECT_EQ(ParameterText("C:\\Vantrel\\Vantrel.exe"), "");
    EXPECT_EQ(ParameterText("\"C:\\Program Files\\Vantrel.exe\""), "");
    EXPECT_EQ(ParameterText(""), "");
}

TEST(CommandLine, ParameterIsTakenVerbatim) {
    EXPECT_EQ(ParameterText("Vantrel.exe Daily.INI"), "Daily.INI");
    EXPECT_EQ(ParameterText("\"C:\\Program Files\\Vantrel.exe\" My set.ini"), "My set.ini");
}

TEST(CommandLine, BlanksBeforeTheFirstCharacterOnlySeparate) {
    EXPECT_EQ(ParameterText("Vantrel.exe     Daily.INI"), "Daily.INI");
}

TEST(CommandLine, BlanksAtTheEndStay) {
    EXPECT_EQ(ParameterText("Vantrel.exe Daily.INI  "), "Daily.INI  ");
}

TEST(CommandLine, OneBlankOnlyIsEmpty) { EXPECT_EQ(ParameterText("\"Vantrel.exe\" "), ""); }

TEST(CommandLine, TextOfBlanksOnlyLosesExactlyOne) {
    EXPECT_EQ(ParameterText("Vantrel.exe  "), " ");
    EXPECT_EQ(ParameterText("\"V a n.exe\"    "), "   ");
}

TEST(CommandLine, QuotationMarksInTheParameterStay) {
    EXPECT_EQ(ParameterText("Vantrel.exe \"Daily.INI\""), "\"Daily.INI\"");
    EXPECT_EQ(ParameterText("Vantrel.exe  \"\""), "\"\"");
}

TEST(CommandLine, QuotedNameMayHoldBlanks) {
    EXPECT_EQ(ParameterText("\"C:\\A B\\C D.exe\" x"), "x");
    EXPECT_EQ(ParameterText("C:\\\"A B\"\\V.exe x"), "x");
}

TEST(CommandLine, UnclosedQuotationMarkIsAllName) {
    EXPECT_EQ(ParameterText("\"C:\\A B\\Vantrel.exe x"), "");
}

TEST(CommandLine, TabEndsTheNameButIsNoBlank) {
    EXPECT_EQ(ParameterText("Vantrel.exe\tDaily.INI"), "\tDaily.INI");
}

TEST(CommandLine, OtherLettersPassUnchanged) {
    EXPECT_EQ(ParameterText("V.exe T\xC3\xA4glich.ini"), "T\xC3\xA4glich.ini");
}

}  // namespace
}  // namespace vantrel::platform
