#include "tsql/date_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tsql/sql_error.h"

namespace tolvane::tsql {
namespace {

std::string read(std::string_view text, DateOrder order = DateOrder::MonthDayYear,
                 const DateBounds& bounds = dateTimeBounds) {
  const DateText result = parseDateText(text, order, bounds);
  switch (result.outcome) {
    case DateTextOutcome::Read:
      return storedDateTime(result.value);
    case DateTextOutcome::Syntax:
      return "syntax";
    case DateTextOutcome::Range:
      return "range";
  }
  return "";
}

struct TextRow {
  const char* text;
  const char* expected;
};

TEST(DateText, ReadsEveryForm) {
  const TextRow rows[] = {
      {"", "1900-01-01 00:00:00.000"},
      {"   ", "1900-01-01 00:00:00.000"},
      {"20120315", "2012-03-15 00:00:00.000"},
      {"120315", "2012-03-15 00:00:00.000"},
      {"2012", "2012-01-01 00:00:00.000"},
      {"20120315 13:02", "2012-03-15 13:02:00.000"},
      {"2012-03-15T13:02:03", "2012-03-15 13:02:03.000"},
      {"2012-03-15T13:02:03.123", "2012-03-15 13:02:03.123"},
      {"2012-03-15T13:02:03Z", "2012-03-15 13:02:03.000"},
      {"2012-03-15", "2012-03-15 00:00:00.000"},
      {"2012-3-5 1:02:03.5", "2012-03-05 01:02:03.500"},
      {"2012/03/15", "2012-03-15 00:00:00.000"},
      {"3/15/2012", "2012-03-15 00:00:00.000"},
      {"3-15-12", "2012-03-15 00:00:00.000"},
      {"3.15.50", "1950-03-15 00:00:00.000"},
      {"3/2012/15", "2012-03-15 00:00:00.000"},
      {"Mar 15 2012  1:02PM", "2012-03-15 13:02:00.000"},
      {"March 15, 2012", "2012-03-15 00:00:00.000"},
      {"15 mar 2012", "2012-03-15 00:00:00.000"},
      {"15-MAR-12", "2012-03-15 00:00:00.000"},
      {"2012 March 15", "2012-03-15 00:00:00.000"},
      {"Mar 2012", "2012-03-01 00:00:00.000"},
      {"Mar 2012 15", "2012-03-15 00:00:00.000"},
      {"15 2012 Mar", "2012-03-15 00:00:00.000"},
      {"13:02", "1900-01-01 13:02:00.000"},
      {"12:30 AM", "1900-01-01 00:30:00.000"},
      {"12:30pm", "1900-01-01 12:30:00.000"},
      {"4PM", "1900-01-01 16:00:00.000"},
      {"13:02:03:5", "1900-01-01 13:02:03.007"},
      {"13:02:03.05", "1900-01-01 13:02:03.050"},
      {"13:02 2012-03-15", "2012-03-15 13:02:00.000"},
      {"2012-03-15 23:59:59.999", "2012-03-16 00:00:00.000"},
      {"1753-01-01", "1753-01-01 00:00:00.000"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(read(row.text), row.expected) << row.text;
}

TEST(DateText, TellsFormsFromRanges) {
  const TextRow rows[] = {
      {"abc", "syntax"},
      {"2012-03", "syntax"},
      {"2012-03-15x", "syntax"},
      {"1", "syntax"},
      {"123456789", "syntax"},
      {"12345678901", "syntax"},
      {"13:", "syntax"},
      {"2012-03-15 13:02 14:02", "syntax"},
      {"13:02:03.1234", "syntax"},
      {"Foo 15 2012", "syntax"},
      {"Mar", "syntax"},
      {"Mar 12", "syntax"},
      {"2012-03-15T13:02", "syntax"},
      {"2012-03/15", "syntax"},
      {"123-01-01", "syntax"},
      {"{}", "syntax"},
      {"-1", "syntax"},
      {"1,5", "syntax"},
      {"2012-13-01", "range"},
      {"2012-02-30", "range"},
      {"20121301", "range"},
      {"15/3/2012", "range"},
      {"25:00", "range"},
      {"13:60", "range"},
      {"1752-12-31", "range"},
      {"13:00 AM", "range"},
      {"9999-12-31 23:59:59.999", "range"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(read(row.text), row.expected) << row.text;
}

TEST(DateText, OrderIsTheStyles) {
  EXPECT_EQ(read("15/3/2012", DateOrder::DayMonthYear), "2012-03-15 00:00:00.000");
  EXPECT_EQ(read("2012-15-3", DateOrder::DayMonthYear), "2012-03-15 00:00:00.000");
  EXPECT_EQ(read("12.3.15", DateOrder::YearOnlyFirst), "2012-03-15 00:00:00.000");
  EXPECT_EQ(read("3/15/2012", DateOrder::YearOnlyFirst), "syntax");
}

TEST(DateText, DatesReachBackToYearOneAndHaveFinerFractions) {
  EXPECT_EQ(read("0001-01-01", DateOrder::MonthDayYear, dateBounds), "0001-01-01 00:00:00.000");
  EXPECT_EQ(read("2012-03-15 13:02:03.1234567", DateOrder::MonthDayYear, dateBounds), "2012-03-15 13:02:03.123");
  EXPECT_EQ(read("2012-03-15T13:02", DateOrder::MonthDayYear, dateBounds), "2012-03-15 13:02:00.000");
}

struct StyleRow {
  int style;
  const char* dateTime;  // of 2012-03-05 13:02:03.123
  const char* date;      // of 2012-03-05 as a date
};
const StyleRow styleRows[] = {
    {0, "Mar  5 2012  1:02PM", "Mar  5 2012"},
    {1, "03/05/12", "03/05/12"},
    {2, "12.03.05", "12.03.05"},
    {3, "05/03/12", "05/03/12"},
    {4, "05.03.12", "05.03.12"},
    {5, "05-03-12", "05-03-12"},
    {6, "05 Mar 12", "05 Mar 12"},
    {7, "Mar 05, 12", "Mar 05, 12"},
    {8, "13:02:03", ""},
    {9, "Mar  5 2012  1:02:03:123PM", "Mar  5 2012"},
    {10, "03-05-12", "03-05-12"},
    {11, "12/03/05", "12/03/05"},
    {12, "120305", "120305"},
    {13, "05 Mar 2012 13:02:03:123", "05 Mar 2012"},
    {14, "13:02:03:123", ""},
    {20, "2012-03-05 13:02:03", "2012-03-05"},
    {21, "2012-03-05 13:02:03.123", "2012-03-05"},
    {22, "03/05/12  1:02:03 PM", "03/05/12"},
    {23, "2012-03-05", "2012-03-05"},
    {24, "13:02:03", ""},
    {25, "2012-03-05 13:02:03.123", "2012-03-05"},
    {100, "Mar  5 2012  1:02PM", "Mar  5 2012"},
    {101, "03/05/2012", "03/05/2012"},
    {102, "2012.03.05", "2012.03.05"},
    {103, "05/03/2012", "05/03/2012"},
    {104, "05.03.2012", "05.03.2012"},
    {105, "05-03-2012", "05-03-2012"},
    {106, "05 Mar 2012", "05 Mar 2012"},
    {107, "Mar 05, 2012", "Mar 05, 2012"},
    {108, "13:02:03", ""},
    {109, "Mar  5 2012  1:02:03:123PM", "Mar  5 2012"},
    {110, "03-05-2012", "03-05-2012"},
    {111, "2012/03/05", "2012/03/05"},
    {112, "20120305", "20120305"},
    {113, "05 Mar 2012 13:02:03:123", "05 Mar 2012"},
    {114, "13:02:03:123", ""},
    {120, "2012-03-05 13:02:03", "2012-03-05"},
    {121, "2012-03-05 13:02:03.123", "2012-03-05"},
    {126, "2012-03-05T13:02:03.123", "2012-03-05"},
    {127, "2012-03-05T13:02:03.123", "2012-03-05"},
};

TEST(DateText, EveryStyleWritesItsForm) {
  const DateTime value = parseStored("2012-03-05 13:02:03.123").value();
  for (const StyleRow& row : styleRows) {
    const DateStyle* style = findDateStyle(row.style);
    ASSERT_NE(style, nullptr) << row.style;
    EXPECT_EQ(formatted(value, *style), row.dateTime) << row.style;
    EXPECT_EQ(formatted(value, *style, true), row.date) << row.style;
  }
}

TEST(DateText, EveryRowOfTheTableOfStylesIsTested) {
  for (const DateStyle& style : dateStyles()) {
    EXPECT_TRUE(std::any_of(std::begin(styleRows), std::end(styleRows), [&](const StyleRow& row) {
      return row.style == style.style;
    })) << style.style;
  }
  EXPECT_EQ(findDateStyle(15), nullptr);
  EXPECT_THROW((void)findDateStyle(130), SqlError);
}

TEST(DateText, EveryStyleWithADateReadsItsOwnForm) {
  const DateTime value = parseStored("2012-03-05 13:02:00.000").value();
  for (const DateStyle& style : dateStyles()) {
    if (style.date.empty()) continue;
    const DateText back = parseDateText(formatted(value, style), style.order, dateTimeBounds);
    EXPECT_EQ(back.outcome, DateTextOutcome::Read) << style.style;
    EXPECT_EQ(storedDate(back.value.days), "2012-03-05") << style.style;
  }
}

TEST(DateText, MidnightAndNoonAreTwelve) {
  EXPECT_EQ(formatted(parseStored("2012-03-15").value(), *findDateStyle(0)), "Mar 15 2012 12:00AM");
  EXPECT_EQ(formatted(parseStored("2012-03-15 12:00:00.000").value(), *findDateStyle(0)), "Mar 15 2012 12:00PM");
  EXPECT_EQ(formatted(parseStored("2012-03-15").value(), *findDateStyle(126)), "2012-03-15T00:00:00");
}

}  // namespace
}  // namespace tolvane::tsql
