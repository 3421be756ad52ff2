// The order that a view text stands for.
#include "reportstore/view_order.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

TEST(ViewOrder, MapsEveryWordToItsColumn) {
  EXPECT_EQ(viewToOrder("年度"), " Order by  FYear ");
  EXPECT_EQ(viewToOrder("期间"), " Order by  FPeriod ");
  EXPECT_EQ(viewToOrder("报表来源"), " Order by  FSysName ");
  EXPECT_EQ(viewToOrder("创建人"), " Order by  FOwner ");
  EXPECT_EQ(viewToOrder("报表类型"), " Order by  FRptType ");
}

TEST(ViewOrder, KeepsTheBlanksOfTheJoinedFragments) {
  EXPECT_EQ(viewToOrder("年度!期间"), " Order by  FYear ,  FPeriod ");
}

TEST(ViewOrder, LeavesAGapForAWordThatIsNone) {
  EXPECT_EQ(viewToOrder("年度!x!期间"), " Order by  FYear , ,  FPeriod ");
  EXPECT_EQ(viewToOrder(" 年度"), " Order by ");
  EXPECT_EQ(viewToOrder("!"), " Order by , ");
}

}  // namespace
}  // namespace tolvane::test
