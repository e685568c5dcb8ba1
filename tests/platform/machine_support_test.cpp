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

TEST(NumberFormat, HasTheSizesOfGroupsAsWindowsWritesThem) {
    const struct {
        const char* sizes;
        int last, other;
    } cases[] = {{"3;0", 3, 3}, {"3", 3, 0},   {"3;2;0", 3, 2},
                 {"0", 0, 0},   {"0;0", 0, 0}, {"", 0, 0}};
    for (const auto& each : cases) {
        const NumberFormat format = platform::MakeNumberFormat(",", ".", each.sizes);
        EXPECT_EQ(format.decimal, ",");
        EXPECT_EQ(format.group, ".");
        EXPECT_EQ(format.last_group, each.last) << each.sizes;
        EXPECT_EQ(format.other_groups, each.other) << each.sizes;
    }
}

TEST(NumberFormat, OfAnUnknownRegionIsTheEnglishOne) {
    const NumberFormat format = platform::MakeNumberFormat("", "", "");
    EXPECT_EQ(NumberText(1234567, format), "1,234,567");
    EXPECT_EQ(format.decimal, ".");
}

TEST(CommandLine, IsWhatFollowsTheExecutablesName) {
    struct Case {
        const char* what;
        const char* line;
        const char* parameter;
    };
    for (const Case& test : {
             Case{"nothing after the name", "C:\\Vantrel\\Vantrel.exe", ""},
             {"nothing after a quoted name", "\"C:\\Program Files\\Vantrel.exe\"", ""},
             {"an empty line", "", ""},
             {"a parameter", "Vantrel.exe Daily.INI", "Daily.INI"},
             {"spaces in it", "\"C:\\Program Files\\Vantrel.exe\" My set.ini", "My set.ini"},
             {"spaces before it only separate", "Vantrel.exe     Daily.INI", "Daily.INI"},
             {"spaces at the end stay", "Vantrel.exe Daily.INI  ", "Daily.INI  "},
             {"one space only", "\"Vantrel.exe\" ", ""},
             {"of spaces only, the first is dropped", "Vantrel.exe  ", " "},
             {"no further one is", "\"V a n.exe\"    ", "   "},
             {"quotation marks in it stay", "Vantrel.exe \"Daily.INI\"", "\"Daily.INI\""},
             {"empty quotation marks too", "Vantrel.exe  \"\"", "\"\""},
             {"a quoted name with spaces", "\"C:\\A B\\C D.exe\" x", "x"},
             {"a name quoted inside", "C:\\\"A B\"\\V.exe x", "x"},
             {"an unclosed quotation mark", "\"C:\\A B\\Vantrel.exe x", ""},
             {"a tab ends the name and stays", "Vantrel.exe\tDaily.INI", "\tDaily.INI"},
             {"letters beyond ASCII", "V.exe T\xC3\xA4glich.ini", "T\xC3\xA4glich.ini"},
         }) {
        EXPECT_EQ(ParameterText(test.line), test.parameter) << test.what;
    }
}

}  // namespace
}  // namespace vantrel::test
