// The test library, with its matchers under their plain names for the tests of this project.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantrel::test {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

}  // namespace vantrel::test
