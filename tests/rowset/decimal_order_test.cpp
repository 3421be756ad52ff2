#include "rowset/decimal_order.h"

#include <gtest/gtest.h>

namespace tolvane::rowset {
namespace {

TEST(DecimalOrderTest, NumbersCompareByValue) {
  struct Case {
    const char* left;
    const char* right;
    int order;
  };
  const Case cases[] = {{"1.50", "1.5", 0}, {"2", "10", -1},    {"-2", "-10", 1},      {"-1", "1", -1},
                        {"0.00", "0", 0},   {"1.5", "1.45", 1}, {"-0.5", "-0.25", -1}, {"100", "99.99", 1},
                        {"0.1", "0.09", 1}, {"-0.00", "0", 0}};
  for (const auto& test : cases) {
    EXPECT_EQ(compareDecimalTexts(test.left, test.right), test.order) << test.left << " / " << test.right;
    EXPECT_EQ(compareDecimalTexts(test.right, test.left), -test.order) << test.right << " / " << test.left;
  }
}

}  // namespace
}  // namespace tolvane::rowset
