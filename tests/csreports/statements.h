// What the tests on an account set with companies' statements in it have in common.
#pragma once

#include <string>

#include "platform/calendar.h"
#include "support/account_set.h"

namespace tolvane::test {

/// Groups 1 to 5, numbered by their cycle: G00 daily, G01 monthly, G03 quarterly, G06 half-yearly, G12 yearly.
inline void addGroups(AccountSet& set) {
  set.sql(
      "insert into t_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID) values "
      "(1, 'G00', N'日报', 0), (2, 'G01', N'月报', 1), (3, 'G03', N'季报', 3), (4, 'G06', N'半年报', 6), "
      "(5, 'G12', N'年报', 12)");
}

/// Names one statement of company 001 in currency 1, as the methods are given it.
struct StatementName {
  std::int32_t group = 3;
  std::int32_t year = 2012;
  std::int32_t period = 1;
  Date day = dateOf(2012, 3, 15);
  std::string company = "001";

  /// The name as the arguments of `SaveCsData`, `GetCsData` or, with the currency under its name there, `DelOneCsRpt`.
  [[nodiscard]] Named arguments(const char* currencyName = "lCurrencyID") const {
    return {{"lYear", year},
            {"lPeriod", period},
            {"dDay", day},
            {"lngRptGroupID", group},
            {currencyName, std::int32_t{1}},
            {"sCompanyNum", company}};
  }
  [[nodiscard]] Named with(const char* name, const Value& value) const {
    Named all = arguments();
    all.emplace_back(name, value);
    return all;
  }
};

}  // namespace tolvane::test
