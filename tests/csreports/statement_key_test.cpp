// How one statement is told from another in SQL.
#include "csreports/statement_key.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "platform/error.h"

namespace tolvane::test {
namespace {

const Date midMarch = dateOf(2012, 3, 15);

TEST(StatementKey, ADayIsEightDigitsWithoutMarks) {
  EXPECT_EQ(dayText(dateOf(2012, 3, 4)), "20120304");
}

TEST(StatementKey, ATimeOfDayFollowsTheDay) {
  EXPECT_EQ(dayText(Date{dateOf(2012, 3, 4).days + 0.5}), "20120304 12:00:00.000");
}

TEST(StatementKey, BothEndsOfTheDateRangeHaveAText) {
  EXPECT_EQ(dayText(dateOf(100, 1, 1)), "01000101");
  EXPECT_EQ(dayText(dateOf(9999, 12, 31)), "99991231");
  EXPECT_THROW((void)dayText(Date{2958466}), AutomationError);
}

TEST(StatementKey, YearAndPeriodDecideWhenEitherIsNotNegative) {
  EXPECT_EQ(periodOrDay(2012, 1, midMarch), " AND FYear=2012 AND  FPeriod=1");
  EXPECT_EQ(periodOrDay(0, 0, midMarch), " AND FYear=0 AND  FPeriod=0");
  EXPECT_EQ(periodOrDay(2012, -1, midMarch), " AND FYear=2012 AND  FPeriod=-1");
  EXPECT_EQ(periodOrDay(-1, 3, midMarch), " AND FYear=-1 AND  FPeriod=3");
}

TEST(StatementKey, TheDayDecidesWhenBothAreNegative) {
  EXPECT_EQ(periodOrDay(-1, -1, midMarch), " AND FYear < 0 AND FPeriod <0 AND FDay='20120315'");
}

TEST(StatementKey, ACompanysNumberStandsAsItCame) {
  EXPECT_EQ(statementOf(1, 2, "O'Brien", 2012, 1, midMarch),
            " AND FRptType=1 AND FCurrencyID=2 AND FCompanyNum='O'Brien' AND FYear=2012 AND  FPeriod=1");
}

}  // namespace
}  // namespace tolvane::test
