#include "platform/machine_support.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel::test {
namespace {

using platform::ClassicDiskSpace;
using platform::ParameterText;

constexpr std::uint64_t kTwoGigabytes = std::uint64_t{1} << 31;
constexpr std::uint32_t kEndless = std::numeric_limits<std::uint32_t>::max();

TEST(ClassicDiskSpace, CapIsTwoGigabytesMinusOneCluster) {
    for (const std::uint32_t sectors : {1u, 3u, 8u, 64u, 128u}) {
        const auto space = ClassicDiskSpace({sectors, 512, kEndless, kEndless});
        const std::uint64_t cluster = std::uint64_t{sectors} * 512;
        EXPECT_LE(cluster * space.free_clusters, kTwoGigabytes - cluster);
        EXPECT_GT(cluster * (space.free_clusters + 1u), kTwoGigabytes - cluster);
        EXPECT_EQ(space.free_clusters, space.total_clusters);
        EXPECT_EQ(space.sectors_per_cluster, sectors);
        EXPECT_EQ(space.bytes_per_sector, 512u);
    }
}

TEST(ClassicDiskSpace, ProductStaysBelowTheSigned32BitLimit) {
    const auto space = ClassicDiskSpace({1, 1, kEndless, kEndless});
    EXPECT_EQ(space.free_clusters, 2'147'483'647u);
}

TEST(ClassicDiskSpace, SmallerVolumesStayAsTheyAre) {
    const auto space = ClassicDiskSpace({8, 512, 100'000, 200'000});
    EXPECT_EQ(space.free_clusters, 100'000u);
    EXPECT_EQ(space.total_clusters, 200'000u);
}

TEST(ClassicDiskSpace, ImpossibleSizesAreAllZero) {
    EXPECT_EQ(ClassicDiskSpace({0, 512, 5, 5}).free_clusters, 0u);
    EXPECT_EQ(ClassicDiskSpace({8, 0, 5, 5}).total_clusters, 0u);
    EXPECT_EQ(ClassicDiskSpace({1u << 22, 512, 5, 5}).sectors_per_cluster, 0u);
}

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
}  // namespace vantrel::test
