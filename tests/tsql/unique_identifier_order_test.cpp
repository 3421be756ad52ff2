#include "tsql/unique_identifier_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tolvane::tsql {
namespace {

TEST(UniqueIdentifierOrder, GoesFromTheLastGroupToTheFirst) {
  // Each one has its only digit in a place that counts for more than that of the one before.
  const std::vector<std::string> ascending{
      "00000000-0000-0000-0000-000000000000", "01000000-0000-0000-0000-000000000000",
      "00010000-0000-0000-0000-000000000000", "00000100-0000-0000-0000-000000000000",
      "00000001-0000-0000-0000-000000000000", "00000000-0100-0000-0000-000000000000",
      "00000000-0001-0000-0000-000000000000", "00000000-0000-0100-0000-000000000000",
      "00000000-0000-0001-0000-000000000000", "00000000-0000-0000-0001-000000000000",
      "00000000-0000-0000-0100-000000000000", "00000000-0000-0000-0000-000000000001",
      "00000000-0000-0000-0000-010000000000"};
  for (std::size_t i = 1; i < ascending.size(); ++i) {
    EXPECT_LT(compareUniqueIdentifiers(ascending[i - 1], ascending[i]), 0) << ascending[i];
    EXPECT_GT(compareUniqueIdentifiers(ascending[i], ascending[i - 1]), 0) << ascending[i];
  }
}

TEST(UniqueIdentifierOrder, TheSameIsEqual) {
  EXPECT_EQ(compareUniqueIdentifiers("6F9619FF-8B86-D011-B42D-00C04FC964FF", "6F9619FF-8B86-D011-B42D-00C04FC964FF"),
            0);
}

}  // namespace
}  // namespace tolvane::tsql
