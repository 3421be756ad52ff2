// How new identifiers are given.
#include "classification/identifier_ranges.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

TEST(NextIdentifier, IsOneAboveTheLargest) {
  EXPECT_EQ(nextIdentifier(std::int32_t{1005}, 1000), 1006);
}

TEST(NextIdentifier, IsOneAboveTheFloorWhenNothingInUseReachesIt) {
  EXPECT_EQ(nextIdentifier(Null{}, 1000), 1001);
  EXPECT_EQ(nextIdentifier(std::int32_t{3}, 100), 101);
  EXPECT_EQ(nextIdentifier(std::int32_t{-3}, 100), 101);
}

TEST(NextIdentifier, FailsWhenTheRangeIsUsedUp) {
  EXPECT_THROW((void)nextIdentifier(std::int32_t{2147483647}, 1000), AutomationError);
}

}  // namespace
}  // namespace tolvane::test
