// The set of names taken.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "zip/reader/target_folders.h"

namespace vantrel::zip {
namespace {

// Gives every key an owner, who remembers it.
class TakenNamesTest : public ::testing::Test {
  protected:
    TakenNames Names(std::size_t expected) {
        return {expected, [this](std::uint32_t owner) { return keys_.at(owner); }};
    }
    // Whether the key is new.
    bool Take(TakenNames& names, std::string_view key) {
        const auto owner = static_cast<std::uint32_t>(keys_.size());
        keys_.emplace_back(key);
        return names.Take(key, owner) == owner;
    }
    std::vector<std::string> keys_;
};

TEST_F(TakenNamesTest, EachNameIsNewOnceAndKeepsItsOwner) {
    TakenNames names = Names(2);
    const std::string_view with_nul("a\0", 2);
    EXPECT_TRUE(Take(names, "a"));
    EXPECT_TRUE(Take(names, ""));
    EXPECT_TRUE(Take(names, with_nul));
    EXPECT_EQ(names.Take("a", 9), 0u);
    EXPECT_EQ(names.Take("", 9), 1u);
    EXPECT_EQ(names.Take(with_nul, 9), 2u);
}

TEST_F(TakenNamesTest, MoreThanExpectedFit) {
    TakenNames names = Names(0);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 10'000; ++i) {
            ASSERT_EQ(Take(names, "name " + std::to_string(i)), round == 0);
        }
    }
}

}  // namespace
}  // namespace vantrel::zip
