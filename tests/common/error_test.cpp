#include "common/error.h"
#include "tests/support/error_of.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

TEST(ErrorText, HasTheUsualWords) {
    const struct {
        int number;
        const char* words;
    } expected[] = {
        {6, "Overflow"},           {7, "Out of memory"},           {52, "Bad file name or number"},
        {53, "File not found"},    {55, "File already open"},      {58, "File already exists"},
        {61, "Disk full"},         {62, "Input past end of file"}, {68, "Device unavailable"},
        {70, "Permission denied"}, {71, "Disk not ready"},         {75, "Path/File access error"},
        {76, "Path not found"},
    };
    for (const auto& row : expected) {
        EXPECT_EQ(ErrorText(row.number), row.words) << row.number;
    }
}

TEST(ErrorText, NumberWithoutWordsIsApplicationDefined) {
    EXPECT_EQ(ErrorText(12345), "Application-defined or object-defined error");
    EXPECT_EQ(ErrorText(-2147211505), "Application-defined or object-defined error");
}

TEST(RaiseError, CarriesNumberAndWords) {
    const Error error = RaisedBy([&] { RaiseError(error_number::kFileNotFound); });
    EXPECT_EQ(error.number(), 53);
    EXPECT_EQ(error.description(), "File not found");
    EXPECT_STREQ(error.what(), "File not found");
}

TEST(RaiseError, NamesThePathBehindTheWords) {
    const Error error = RaisedBy([&] { RaiseError(error_number::kPathNotFound, "S:\\NOTHERE"); });
    EXPECT_EQ(error.number(), 76);
    EXPECT_EQ(error.source(), "Vantrel");
    EXPECT_EQ(error.description(), "Path not found: S:\\NOTHERE");
}

TEST(ReportError, NumberIsTheObjectBasePlus9999AndTheDescriptionStays) {
    const Error error = RaisedBy(
        [&] { ReportError("clsLog:LogFile Method", Error(70, "Vantrel", "Permission denied")); });
    EXPECT_EQ(error.number(), -2147211505);
    EXPECT_EQ(error.source(), "clsLog:LogFile Method");
    EXPECT_EQ(error.description(), "Permission denied");
}

TEST(Reported, PassesTheValueOn) {
    EXPECT_EQ(Reported("a label", [] { return 7; }), 7);
}

TEST(Reported, NestedReportsKeepTheFirstDescriptionAndTheLastLabel) {
    const Error error = RaisedBy([&] {
        Reported("outer", [] { Reported("inner", [] { RaiseError(error_number::kDiskFull); }); });
    });
    EXPECT_EQ(error.number(), -2147211505);
    EXPECT_EQ(error.source(), "outer");
    EXPECT_EQ(error.description(), "Disk full");
}

}  // namespace
}  // namespace vantrel::test
