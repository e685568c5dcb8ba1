#include "common/dated_folder.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

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
