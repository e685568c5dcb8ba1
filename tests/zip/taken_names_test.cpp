// The set of names taken.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "zip/reader/target_folders.h"

namespace vantrel::zip {
namespace {

TEST(TakenNames, EachNameIsNewOnceAndKeepsItsNumber) {
    TakenNames names(2);
    EXPECT_TRUE(names.Take("a").is_new);
    EXPECT_TRUE(names.Take("").is_new);
    EXPECT_TRUE(names.Take(std::string_view("a\0", 2)).is_new);
    EXPECT_FALSE(names.Take("a").is_new);
    EXPECT_EQ(names.Take("a").number, 0u);
    EXPECT_EQ(names.Take("").number, 1u);
    EXPECT_EQ(names.Take(std::string_view("a\0", 2)).number, 2u);
}

TEST(TakenNames, MoreThanExpectedFit) {
    TakenNames names(0);
    for (std::size_t round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < 10'000; ++i) {
            const auto place = names.Take("name " + std::to_string(i));
            ASSERT_EQ(place.number, i);
            ASSERT_EQ(place.is_new, round == 0);
        }
    }
}

}  // namespace
}  // namespace vantrel::zip
