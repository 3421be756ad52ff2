#include "tsql/datetime.h"

#include <gtest/gtest.h>

namespace tolvane::tsql {
namespace {

TEST(DateTime, CountsDaysFromTheFirstOfJanuary1900) {
  EXPECT_EQ(daysOf({1900, 1, 1}), 0);
  EXPECT_EQ(daysOf({1753, 1, 1}), dateTimeBounds.first);
  EXPECT_EQ(daysOf({9999, 12, 31}), dateTimeBounds.last);
  EXPECT_EQ(daysOf({1, 1, 1}), dateBounds.first);
  EXPECT_EQ(daysOf({2079, 6, 6}), smallDateTimeBounds.last);
  EXPECT_EQ(daysOf({2012, 3, 15}), 40981);
}

TEST(DateTime, EveryDayOfTheCalendarComesBack) {
  CalendarDate expected{1, 1, 1};
  for (std::int32_t days = dateBounds.first; days <= dateBounds.last; ++days) {
    ASSERT_EQ(calendarDate(days), expected) << days;
    ASSERT_EQ(daysOf(expected), days);
    if (++expected.day > daysInMonth(expected.year, expected.month)) {
      expected.day = 1;
      if (++expected.month > 12) expected = {expected.year + 1, 1, 1};
    }
  }
}

TEST(DateTime, LeapYearsFollowTheGregorianRule) {
  EXPECT_TRUE(isLeapYear(2000));
  EXPECT_FALSE(isLeapYear(1900));
  EXPECT_TRUE(isLeapYear(2012));
  EXPECT_EQ(daysInMonth(2011, 2), 28);
}

TEST(DateTime, MillisecondsAreRoundedToThreeHundredths) {
  const auto shown = [](int millisecond) { return timeOfDay(ticksOf({0, 0, 0, millisecond})).millisecond; };
  EXPECT_EQ(shown(1), 0);
  EXPECT_EQ(shown(2), 3);
  EXPECT_EQ(shown(4), 3);
  EXPECT_EQ(shown(5), 7);
  EXPECT_EQ(shown(8), 7);
  EXPECT_EQ(shown(9), 10);
  EXPECT_EQ(ticksOf({23, 59, 59, 999}), DateTime::ticksPerDay);
}

TEST(DateTime, StoredFormsComeBack) {
  for (const char* text : {"2012-03-15 13:02:03.997", "1753-01-01 00:00:00.000", "9999-12-31 23:59:59.997"}) {
    EXPECT_EQ(storedDateTime(parseStored(text).value()), text);
  }
  EXPECT_EQ(storedDate(parseStored("0001-01-01").value().days), "0001-01-01");
}

TEST(DateTime, OnlyStoredFormsAreReadAsStored) {
  for (const char* text : {"", "2012-3-15", "2012-03-15T13:02:03.997", "2012-02-30", "2012-03-15 24:00:00.000",
                           "2012-03-15 13:02:03", "2012/03/15", "2012-03-1x"}) {
    EXPECT_FALSE(parseStored(text)) << text;
  }
}

TEST(DateTime, SmallDatesAreRoundedToTheMinute) {
  EXPECT_EQ(storedDateTime(roundedToMinute(*parseStored("2012-03-15 13:02:29.997"))), "2012-03-15 13:02:00.000");
  EXPECT_EQ(storedDateTime(roundedToMinute(*parseStored("2012-03-15 23:59:30.000"))), "2012-03-16 00:00:00.000");
}

TEST(DateTime, NumbersAreDaysWithTheirFraction) {
  EXPECT_EQ(toNumber(*parseStored("1900-01-02 12:00:00.000")), 1.5);
  EXPECT_EQ(storedDateTime(fromNumber(-0.25).value()), "1899-12-31 18:00:00.000");
  EXPECT_FALSE(fromNumber(2958464));
  EXPECT_FALSE(fromNumber(-53691));
}

TEST(DateTime, TicksAreCarriedIntoDaysBothWays) {
  EXPECT_EQ(carried(0, -1), (DateTime{-1, DateTime::ticksPerDay - 1}));
  EXPECT_EQ(carried(0, DateTime::ticksPerDay), (DateTime{1, 0}));
  EXPECT_FALSE(carried(INT64_C(1) << 40, 0));
}

}  // namespace
}  // namespace tolvane::tsql
