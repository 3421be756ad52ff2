// The rule of GetExistRpt, said once more in plain words and held against the answers of every day of a year.
#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

#include "csreports/statements.h"
#include "frame/sql_text.h"

namespace tolvane::test {
namespace {

struct Statement {
  std::int32_t cycle;
  std::int32_t type;
  std::int32_t year;
  std::int32_t period;
  std::optional<Date> day;
  std::int32_t currency = 1;
};

std::string groupNum(std::int32_t cycle) {
  return cycle < 10 ? "G0" + std::to_string(cycle) : "G" + std::to_string(cycle);
}

/// Whether two days lie in the same slot of a cycle.
bool sameSlot(std::int32_t cycle, Date a, Date b) {
  if (cycle == 0) return a == b;
  const CalendarTime x = toCalendar(a);
  const CalendarTime y = toCalendar(b);
  return x.year == y.year && (x.month - 1) / cycle == (y.month - 1) / cycle;
}

bool isThere(const Statement& s, std::int32_t year, std::int32_t month, Date day, std::int32_t currency) {
  if (s.currency != currency) return false;
  const bool isOfThatDay = s.year < 0 && s.period < 0 && s.day == day;
  // Of a daily group a statement of type 5 counts only under the year that marks such statements.
  const bool sharesItsSlot = s.type == 5 && s.day && sameSlot(s.cycle, *s.day, day) && (s.cycle != 0 || s.year == -100);
  bool coversTheMonth = false;
  for (std::int32_t m = s.cycle * (s.period - 1) + 1; m <= s.cycle * s.period; ++m) {
    coversTheMonth = coversTheMonth || (s.year == year && m == month);
  }
  return isOfThatDay || sharesItsSlot || coversTheMonth;
}

std::vector<Statement> allKinds() {
  std::vector<Statement> all;
  for (const std::int32_t cycle : {0, 1, 3, 6, 12}) {
    for (std::int32_t month = 1; month <= 12; ++month) {
      all.push_back({cycle, 1, -1, -1, dateOf(2012, month, 1 + month)});
      all.push_back({cycle, 5, -100, -100, dateOf(2012, month, 28)});
      all.push_back({cycle, 1, 2012, month, dateOf(1900, 1, 1)});
    }
    all.push_back({cycle, 1, -1, -1, dateOf(2012, 5, 20), 2});
    all.push_back({cycle, 5, -100, -100, dateOf(2012, 2, 29), 2});
    all.push_back({cycle, 1, 2012, 1, dateOf(1900, 1, 1), 2});
    all.push_back({cycle, 5, -100, -100, dateOf(2011, 12, 31)});
    all.push_back({cycle, 5, -100, -100, dateOf(2013, 1, 1)});
    all.push_back({cycle, 5, -1, -1, dateOf(2012, 7, 7)});
    all.push_back({cycle, 5, 2012, 4, dateOf(2012, 9, 9)});
    all.push_back({cycle, 5, -100, -100, std::nullopt});
    all.push_back({cycle, 1, -1, -1, std::nullopt});
    all.push_back({cycle, 1, -1, 1, dateOf(2012, 8, 8)});
    all.push_back({cycle, 1, 2012, -1, dateOf(2012, 8, 9)});
    all.push_back({cycle, 1, 2012, 0, dateOf(2012, 8, 10)});
    all.push_back({cycle, 1, 2013, 1, dateOf(1900, 1, 1)});
    all.push_back({cycle, 3, 2012, 2, dateOf(1900, 1, 1)});
  }
  return all;
}

struct GetExistRptRule : testing::Test {
  AccountSet set;
  std::vector<Statement> statements = allKinds();

  GetExistRptRule() {
    addGroups(set);
    std::string inserts;
    for (const Statement& s : statements) {
      const std::string day = s.day ? "'" + compactText(*s.day) + "'" : "null";
      inserts += sql(
          " insert into t_CsRptContent (FRptGroupID,FRptType,FCurrencyID,FYear,FPeriod,FDay) select FRptGroupID,",
          s.type, ",", s.currency, ",", s.year, ",", s.period, ",", day, " from t_CsRptGroup where FCycleID=", s.cycle);
    }
    // In one piece: a statement alone waits for the disk.
    set.sql("begin transaction" + inserts + " commit");
  }

  void expectTheRule(std::int32_t year, std::int32_t month, Date day, std::int32_t currency = 1) {
    std::vector<std::string> expected;
    for (const Statement& s : statements) {
      if (isThere(s, year, month, day, currency)) expected.push_back(groupNum(s.cycle) + "|" + std::to_string(s.type));
    }
    std::sort(expected.begin(), expected.end());
    const Value found = set.call("CsRetrieve.GetExistRpt",
                                 {{"lYear", year}, {"lMonth", month}, {"dDay", day}, {"lCurrencyID", currency}})
                            .out.at("oExistRptList");
    const auto numbers = column(found, "FRptGroupNum");
    const auto types = column(found, "FRptType");
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    std::vector<std::string> answered;
    for (std::size_t i = 0; i < numbers.size(); ++i) answered.push_back(numbers[i] + "|" + types[i]);
    std::sort(answered.begin(), answered.end());
    EXPECT_EQ(answered, expected) << isoText(day) << " month " << month << " of " << year;
  }
};

TEST_F(GetExistRptRule, HoldsOnEveryDayOfALeapYear) {
  for (std::int32_t i = 0; i < 366; ++i) {
    const Date day{dateOf(2012, 1, 1).days + i};
    expectTheRule(2012, toCalendar(day).month, day);
  }
}

TEST_F(GetExistRptRule, HoldsForMonthsThatAreNotTheDaysAndForMonthsThatThereAreNot) {
  for (std::int32_t year = 2011; year <= 2013; ++year) {
    for (std::int32_t month = -1; month <= 14; ++month) expectTheRule(year, month, dateOf(2012, 7, 7));
  }
  expectTheRule(-1, 1, dateOf(2012, 8, 8));
  expectTheRule(-100, 1, dateOf(2012, 2, 29));
}

TEST_F(GetExistRptRule, HoldsForAnotherCurrency) {
  for (std::int32_t month = 1; month <= 12; ++month) expectTheRule(2012, month, dateOf(2012, month, 20), 2);
  expectTheRule(2012, 1, dateOf(2012, 1, 1), 3);
}

}  // namespace
}  // namespace tolvane::test
