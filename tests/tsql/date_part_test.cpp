#include "tsql/date_part.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tolvane::tsql {
namespace {

DateTime at(std::string_view text) {
  return parseStored(text).value();
}

struct PartRow {
  DatePart part;
  int value;                // DATEPART of 2012-03-15 13:02:03.997
  const char* name;         // DATENAME of it
  const char* added;        // DATEADD of 5; empty where the part cannot be added
  std::int64_t difference;  // DATEDIFF from it to 2013-01-01 00:00:00.000; -1 where it cannot be counted
};
const PartRow partRows[] = {
    {DatePart::Year, 2012, "2012", "2017-03-15 13:02:03.997", 1},
    {DatePart::Quarter, 1, "1", "2013-06-15 13:02:03.997", 4},
    {DatePart::Month, 3, "March", "2012-08-15 13:02:03.997", 10},
    {DatePart::DayOfYear, 75, "75", "2012-03-20 13:02:03.997", 292},
    {DatePart::Day, 15, "15", "2012-03-20 13:02:03.997", 292},
    {DatePart::Week, 11, "11", "2012-04-19 13:02:03.997", 42},
    {DatePart::WeekDay, 5, "Thursday", "2012-03-20 13:02:03.997", 292},
    {DatePart::Hour, 13, "13", "2012-03-15 18:02:03.997", 6995},
    {DatePart::Minute, 2, "2", "2012-03-15 13:07:03.997", 419698},
    {DatePart::Second, 3, "3", "2012-03-15 13:02:08.997", 25181877},
    {DatePart::Millisecond, 997, "997", "2012-03-15 13:02:04.003", 25181876003},
    {DatePart::Microsecond, 997000, "997000", "", 25181876003000},
    {DatePart::Nanosecond, 997000000, "997000000", "", 25181876003000000},
    {DatePart::IsoWeek, 11, "11", "", -1},
};

TEST(DatePart, EveryPartIsReadNamedAddedAndCounted) {
  const DateTime value = at("2012-03-15 13:02:03.997");
  for (const PartRow& row : partRows) {
    SCOPED_TRACE(nameOf(row.part));
    EXPECT_EQ(datePart(row.part, value, 7), row.value);
    EXPECT_EQ(dateName(row.part, value, 7), row.name);
    const auto sum = dateAdd(row.part, 5, value, dateTimeBounds);
    EXPECT_EQ(sum ? storedDateTime(*sum) : "", row.added);
    EXPECT_EQ(dateDiff(row.part, value, at("2013-01-01")).value_or(-1), row.difference);
  }
}

struct NameRow {
  const char* name;
  DatePart part;
};
const NameRow nameRows[] = {
    {"year", DatePart::Year},       {"yy", DatePart::Year},
    {"yyyy", DatePart::Year},       {"quarter", DatePart::Quarter},
    {"qq", DatePart::Quarter},      {"q", DatePart::Quarter},
    {"month", DatePart::Month},     {"mm", DatePart::Month},
    {"m", DatePart::Month},         {"dayofyear", DatePart::DayOfYear},
    {"dy", DatePart::DayOfYear},    {"y", DatePart::DayOfYear},
    {"day", DatePart::Day},         {"dd", DatePart::Day},
    {"d", DatePart::Day},           {"week", DatePart::Week},
    {"wk", DatePart::Week},         {"ww", DatePart::Week},
    {"weekday", DatePart::WeekDay}, {"dw", DatePart::WeekDay},
    {"w", DatePart::WeekDay},       {"hour", DatePart::Hour},
    {"hh", DatePart::Hour},         {"minute", DatePart::Minute},
    {"mi", DatePart::Minute},       {"n", DatePart::Minute},
    {"second", DatePart::Second},   {"ss", DatePart::Second},
    {"s", DatePart::Second},        {"millisecond", DatePart::Millisecond},
    {"ms", DatePart::Millisecond},  {"microsecond", DatePart::Microsecond},
    {"mcs", DatePart::Microsecond}, {"nanosecond", DatePart::Nanosecond},
    {"ns", DatePart::Nanosecond},   {"iso_week", DatePart::IsoWeek},
    {"isowk", DatePart::IsoWeek},   {"isoww", DatePart::IsoWeek},
};

TEST(DatePart, EveryNameAndAbbreviationNamesItsPart) {
  for (const NameRow& row : nameRows) EXPECT_EQ(findDatePart(row.name), row.part) << row.name;
  EXPECT_EQ(findDatePart("YEAR"), DatePart::Year);
  EXPECT_FALSE(findDatePart("years"));
  EXPECT_FALSE(findDatePart(""));
}

TEST(DatePart, EveryRowOfTheTableOfNamesIsTested) {
  for (const DatePartName& row : datePartNames()) {
    EXPECT_TRUE(std::any_of(std::begin(nameRows), std::end(nameRows), [&](const NameRow& tested) {
      return tested.name == row.name && tested.part == row.part;
    })) << row.name;
    EXPECT_TRUE(std::any_of(std::begin(partRows), std::end(partRows), [&](const PartRow& tested) {
      return tested.part == row.part;
    })) << row.name;
  }
}

TEST(DatePart, MonthsEndOnTheirLastDay) {
  EXPECT_EQ(storedDate(dateAdd(DatePart::Month, 1, at("2012-01-31"), dateTimeBounds)->days), "2012-02-29");
  EXPECT_EQ(storedDate(dateAdd(DatePart::Month, -1, at("2011-03-31"), dateTimeBounds)->days), "2011-02-28");
  EXPECT_EQ(storedDate(dateAdd(DatePart::Year, 1, at("2012-02-29"), dateTimeBounds)->days), "2013-02-28");
  EXPECT_EQ(storedDate(dateAdd(DatePart::Quarter, -1, at("2012-05-31"), dateTimeBounds)->days), "2012-02-29");
}

TEST(DatePart, SumsOutsideTheTypeAreNothing) {
  EXPECT_FALSE(dateAdd(DatePart::Day, -1, at("1753-01-01"), dateTimeBounds));
  EXPECT_TRUE(dateAdd(DatePart::Day, -1, at("1753-01-01"), dateBounds));
  EXPECT_FALSE(dateAdd(DatePart::Year, 8000, at("2012-01-01"), dateTimeBounds));
  EXPECT_FALSE(dateAdd(DatePart::Day, INT64_MAX, at("2012-01-01"), dateTimeBounds));
  EXPECT_FALSE(dateAdd(DatePart::Millisecond, INT64_MIN, at("2012-01-01"), dateTimeBounds));
  EXPECT_FALSE(dateAdd(DatePart::Year, INT64_MIN, at("2012-01-01"), dateTimeBounds));
}

TEST(DatePart, DifferencesCountBoundariesNotDurations) {
  EXPECT_EQ(dateDiff(DatePart::Year, at("2011-12-31 23:59:59.997"), at("2012-01-01")), 1);
  EXPECT_EQ(dateDiff(DatePart::Month, at("2012-03-31"), at("2012-04-01")), 1);
  EXPECT_EQ(dateDiff(DatePart::Month, at("2012-03-01"), at("2012-03-31")), 0);
  EXPECT_EQ(dateDiff(DatePart::Hour, at("2012-03-01 00:59:59.000"), at("2012-03-01 01:00:00.000")), 1);
  EXPECT_EQ(dateDiff(DatePart::Day, at("1899-12-31 23:00:00.000"), at("1900-01-01 01:00:00.000")), 1);
  EXPECT_EQ(dateDiff(DatePart::Year, at("2012-01-01"), at("2010-12-31")), -2);
}

TEST(DatePart, DifferencesInWeeksBeginOnSunday) {
  EXPECT_EQ(dateDiff(DatePart::Week, at("2012-03-17"), at("2012-03-18")), 1);  // Saturday to Sunday
  EXPECT_EQ(dateDiff(DatePart::Week, at("2012-03-18"), at("2012-03-19")), 0);  // Sunday to Monday
  EXPECT_EQ(dateDiff(DatePart::Week, at("1899-12-30"), at("1899-12-31")), 1);
}

TEST(DatePart, WeekAndWeekDayFollowTheFirstDay) {
  EXPECT_EQ(datePart(DatePart::WeekDay, at("2012-03-18"), 7), 1);
  EXPECT_EQ(datePart(DatePart::WeekDay, at("2012-03-18"), 1), 7);
  EXPECT_EQ(datePart(DatePart::Week, at("2012-01-01"), 7), 1);
  EXPECT_EQ(datePart(DatePart::Week, at("2012-01-02"), 1), 2);
  EXPECT_EQ(datePart(DatePart::Week, at("2012-01-02"), 7), 1);
  EXPECT_EQ(datePart(DatePart::IsoWeek, at("2012-01-01"), 7), 52);
  EXPECT_EQ(datePart(DatePart::IsoWeek, at("2008-12-29"), 7), 1);
}

}  // namespace
}  // namespace tolvane::tsql
