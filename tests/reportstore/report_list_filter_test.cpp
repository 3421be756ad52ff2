// The conditions that a caller's filter puts on the report list.
#include "reportstore/report_list_filter.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "standalone/objects.h"

namespace tolvane::test {
namespace {

std::string conditionOf(const standalone::Dictionary& filter) {
  ReportListFilter list("FRptName_en");
  list.addStandard(1002);
  std::string condition;
  const auto unknown = list.addConditions(filter, condition);
  return unknown ? "unknown: " + *unknown : condition;
}

std::string conditionOf(const char* column, const Value& value) {
  standalone::Dictionary filter;
  filter.set(column, value);
  return conditionOf(filter);
}

TEST(ReportListFilter, HasNoConditionWithoutEntries) {
  EXPECT_EQ(conditionOf(standalone::Dictionary()), "");
}

TEST(ReportListFilter, JoinsItsEntriesWithAnd) {
  standalone::Dictionary filter;
  filter.set("FYear", std::int32_t{2012});
  filter.set("F1002", std::int16_t{126});
  EXPECT_EQ(conditionOf(filter), " Where a.FYear=2012 And a.F1002=126");
}

TEST(ReportListFilter, QuotesTextsAndDaysAndLeavesNumbersBare) {
  EXPECT_EQ(conditionOf("FRptName", "O'Brien"), " Where a.FRptName='O''Brien'");
  EXPECT_EQ(conditionOf("FLastDate", dateOf(2012, 3, 15)), " Where a.FLastDate='20120315'");
  EXPECT_EQ(conditionOf("FOwner", true), " Where a.FOwner=1");
}

TEST(ReportListFilter, ComparesNullWithIsNull) {
  EXPECT_EQ(conditionOf("FSysName", Null{}), " Where a.FSysName is null");
}

TEST(ReportListFilter, KnowsTheListsColumnsInAnyLetterCaseAndNoOthers) {
  EXPECT_EQ(conditionOf("frightcode", std::int32_t{4}), " Where a.frightcode=4");
  EXPECT_EQ(conditionOf("F1001", std::int32_t{1}), " Where a.F1001=1");
  EXPECT_EQ(conditionOf("FRptData", "x"), "unknown: FRptData");
  EXPECT_EQ(conditionOf("F1003", std::int32_t{1}), "unknown: F1003");
  EXPECT_EQ(conditionOf("1=1 --", std::int32_t{1}), "unknown: 1=1 --");
}

TEST(ReportListFilter, HoldsTheAccountingRegimeOnce) {
  ReportListFilter list("FRptName");
  list.addStandard(1001);
  const std::string columns = list.columns();
  EXPECT_EQ(columns.find("F1001"), columns.rfind("a.F1001 F1001") + 2);
}

}  // namespace
}  // namespace tolvane::test
