#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& dateRows() {
  static const Datum date = packed(TypeKind::DateTime);
  static const char* const moment = "2012-03-15 13:02:03.123";
  static const std::vector<CallRow> rows{
      {"ts_now", {}, "'2012-03-15 13:02:03.123'"},
      {"ts_datepart", {"month", moment}, "3"},
      {"ts_datepart", {"weekday", moment}, "5"},
      {"ts_datepart", {"month", Datum()}, "null"},
      {"ts_datepart", {"months", moment}, "155 'months' is not a recognized datepart option."},
      {"ts_datename", {"month", moment}, "'March'"},
      {"ts_datename", {"year", moment}, "'2012'"},
      {"ts_dateadd", {"month", 1, "2012-01-31 00:00:00.000", date}, "'2012-02-29 00:00:00.000'"},
      {"ts_dateadd", {"day", 1, "2012-02-28", packed(TypeKind::Date)}, "'2012-02-29'"},
      {"ts_dateadd",
       {"second", 40, "2012-03-15 13:02:00.000", packed(TypeKind::SmallDateTime)},
       "'2012-03-15 13:03:00.000'"},
      {"ts_dateadd", {"day", 1, "Mar 15 2012", date}, "'2012-03-16 00:00:00.000'"},
      {"ts_dateadd", {"day", 1, 0, date}, "'1900-01-02 00:00:00.000'"},
      {"ts_dateadd", {"year", 8000, moment, date}, "517 Adding a value to a 'datetime' column caused an overflow."},
      {"ts_dateadd",
       {"hour", 1, "2012-02-28", packed(TypeKind::Date)},
       "9810 The datepart hour is not supported by date function dateadd for data type date."},
      {"ts_dateadd", {"day", Datum(), moment, date}, "null"},
      {"ts_datediff", {"year", "2011-12-31 00:00:00.000", "2012-01-01 00:00:00.000"}, "1"},
      {"ts_datediff", {"day", moment, "2012-03-14 23:59:59.000"}, "-1"},
      {"ts_datediff",
       {"millisecond", "1900-01-01 00:00:00.000", moment},
       "535 The datediff function resulted in an overflow. The number of dateparts separating two date/time instances "
       "is "
       "too large. Try to use datediff with a less precise datepart."},
      {"ts_datediff",
       {"iso_week", moment, moment},
       "9806 The datepart iso_week is not supported by date function datediff."},
      {"ts_datediff", {"millisecond", "2012-03-15 13:02:03.0010000", "2012-03-15 13:02:03.0029999"}, "1"},
      {"ts_datepart", {"nanosecond", "2012-03-15 13:02:03.0010001"}, "1000100"},
      {"ts_datepart",
       {"hour", "2012-03-15"},
       "9810 The datepart hour is not supported by date function datepart for data type date."},
      {"ts_moment", {"1/2/1700 10:11:12.1234567"}, "'1700-01-02 10:11:12.1234567'"},
      {"ts_moment", {"10:11"}, "'1900-01-01 10:11:00.0000000'"},
      {"ts_moment", {"2012-02-30"}, "241 Conversion failed when converting date and/or time from character string."},
      {"ts_moment", {Datum()}, "null"},
      {"ts_datediff_big", {"millisecond", "1900-01-01 00:00:00.000", "2020-01-01 00:00:00.000"}, "3786825600000"},
      {"ts_datediff_big",
       {"nanosecond", "1900-01-01 00:00:00.000", "9999-01-01 00:00:00.000"},
       "535 The datediff_big function resulted in an overflow. The number of dateparts separating two date/time "
       "instances is too large. Try to use datediff_big with a less precise datepart."},
      {"ts_utc_now", {}, "'2012-03-15 05:02:03.123'"},
      {"ts_eomonth", {"2020-02-10"}, "'2020-02-29'"},
      {"ts_eomonth", {"2020-01-31", 1}, "'2020-02-29'"},
      {"ts_eomonth", {"2020-01-31", Datum()}, "'2020-01-31'"},
      {"ts_eomonth", {Datum(), 1}, "null"},
      {"ts_eomonth", {"9999-12-01", 1}, "517 Adding a value to a 'date' column caused an overflow."},
      {"ts_date_from_parts", {2020, 2, 29}, "'2020-02-29'"},
      {"ts_date_from_parts", {2020, Datum(), 29}, "null"},
      {"ts_date_from_parts",
       {2021, 2, 29},
       "289 Cannot construct data type date, some of the arguments have values which are not valid."},
      {"ts_date_from_parts",
       {0, 1, 1},
       "289 Cannot construct data type date, some of the arguments have values which are not valid."},
      {"ts_datetime_from_parts", {2020, 2, 29, 23, 59, 58, 998}, "'2020-02-29 23:59:58.997'"},
      {"ts_datetime_from_parts", {2020, 12, 31, 23, 59, 59, 999}, "'2021-01-01 00:00:00.000'"},
      {"ts_datetime_from_parts",
       {1752, 12, 31, 0, 0, 0, 0},
       "289 Cannot construct data type datetime, some of the arguments have values which are not valid."},
      {"ts_datetime_from_parts",
       {2020, 1, 1, 24, 0, 0, 0},
       "289 Cannot construct data type datetime, some of the arguments have values which are not valid."},
      {"ts_smalldatetime_from_parts", {2020, 2, 29, 23, 59}, "'2020-02-29 23:59:00.000'"},
      {"ts_smalldatetime_from_parts",
       {2080, 1, 1, 0, 0},
       "289 Cannot construct data type smalldatetime, some of the arguments have values which are not valid."},
      {"ts_year", {moment}, "2012"},
      {"ts_year", {Datum()}, "null"},
      {"ts_month", {moment}, "3"},
      {"ts_day", {moment}, "15"},
      {"ts_isdate", {"2012-03-15"}, "1"},
      {"ts_isdate", {"2012-02-30"}, "0"},
      {"ts_isdate", {""}, "0"},
      {"ts_isdate", {20120315}, "1"},
      {"ts_isdate", {Datum()}, "0"},
  };
  return rows;
}

namespace {

TEST(DateFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : dateRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
