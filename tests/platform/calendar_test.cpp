#include "platform/calendar.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane {
namespace {

TEST(CalendarTest, CountsDaysFromTheAutomationEpoch) {
  EXPECT_EQ(dateOf(1899, 12, 30).days, 0);
  EXPECT_EQ(dateOf(1900, 1, 1).days, 2);
  EXPECT_EQ(dateOf(2012, 3, 15).days, 40983);
  EXPECT_EQ(dateOf(2000, 2, 29).days, 36585);
  EXPECT_EQ(dateOf(100, 1, 1).days, -657434);
  EXPECT_EQ(dateOf(9999, 12, 31).days, 2958465);
}

TEST(CalendarTest, TimesBeforeTheEpochCountForward) {
  const CalendarTime time{1899, 12, 29, 6, 0, 0, 0};
  EXPECT_EQ(toDate(time), Date{-1.25});
  EXPECT_EQ(toCalendar(Date{-1.25}), time);
}

TEST(CalendarTest, RoundsToMilliseconds) {
  EXPECT_EQ(toCalendar(Date{40983.9999999999}), (CalendarTime{2012, 3, 16, 0, 0, 0, 0}));
  EXPECT_EQ(toCalendar(*toDate(CalendarTime{2012, 3, 15, 23, 59, 59, 999})),
            (CalendarTime{2012, 3, 15, 23, 59, 59, 999}));
}

TEST(CalendarTest, RoundingUpFromBeforeTheEpochGoesToTheNextDay) {
  EXPECT_EQ(toCalendar(Date{-2.9999999999}), (CalendarTime{1899, 12, 29, 0, 0, 0, 0}));
}

TEST(CalendarTest, RefusesDatesOutsideTheCalendar) {
  EXPECT_THROW((void)toCalendar(Date{2958466}), AutomationError);
  EXPECT_THROW((void)toCalendar(Date{-657435}), AutomationError);
  EXPECT_THROW((void)toCalendar(Date{2958465.9999999999}), AutomationError);
}

TEST(CalendarTest, KnowsWhichDaysThereAre) {
  EXPECT_FALSE(toDate(CalendarTime{2011, 2, 29, 0, 0, 0, 0}));
  EXPECT_FALSE(toDate(CalendarTime{2012, 13, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(toDate(CalendarTime{2012, 1, 1, 24, 0, 0, 0}));
  EXPECT_FALSE(toDate(CalendarTime{99, 1, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(toDate(CalendarTime{2012, 2, 29, 23, 59, 59, 999}));
}

TEST(CalendarTest, WritesTheFormThatServersReadUnderEveryLanguage) {
  EXPECT_EQ(compactText(Date{40983}), "20120315");
  EXPECT_EQ(compactText(Date{40983.5}), "20120315 12:00:00.000");
}

TEST(CalendarTest, WritesTheIsoForm) {
  EXPECT_EQ(isoText(Date{40983}), "2012-03-15T00:00:00");
  EXPECT_EQ(isoText(*toDate(CalendarTime{2012, 3, 15, 1, 2, 3, 4})), "2012-03-15T01:02:03.004");
}

TEST(CalendarTest, ReadsDateTexts) {
  const std::pair<const char*, CalendarTime> cases[] = {
      {"2012-03-15T01:02:03", {2012, 3, 15, 1, 2, 3, 0}},
      {"2012-03-15T01:02:03.004", {2012, 3, 15, 1, 2, 3, 4}},
      {"2012-03-15", {2012, 3, 15, 0, 0, 0, 0}},
      {"2012-3-5 1:02", {2012, 3, 5, 1, 2, 0, 0}},
      {"2012/3/5 01:02:03.5", {2012, 3, 5, 1, 2, 3, 500}},
      {"20120315", {2012, 3, 15, 0, 0, 0, 0}},
      {"20120315 01:02:03.9999", {2012, 3, 15, 1, 2, 3, 999}},
      {" 2012-03-15 ", {2012, 3, 15, 0, 0, 0, 0}},
      {"13:45", {1899, 12, 30, 13, 45, 0, 0}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseDate(text), toDate(expected)) << text;
}

TEST(CalendarTest, RefusesOtherTexts) {
  for (const char* text : {"", " ", "2012", "2012-3", "12-3-15", "2012-3/15", "2012-02-30", "2012-03-15T", "20120315T1",
                           "2012-03-15 25:00", "2012-03-15x", "15.3.2012", "201203155", "1:2:3:4", "1"}) {
    EXPECT_FALSE(parseDate(text)) << text;
  }
}

}  // namespace
}  // namespace tolvane
