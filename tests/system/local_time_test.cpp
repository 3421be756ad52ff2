#include "system/local_time.h"

#include <gtest/gtest.h>

#include <ctime>

namespace tolvane::system {
namespace {

TEST(LocalTimeTest, AgreesWithTheLanguagesOwnClock) {
  const std::time_t before = std::time(nullptr);
  const LocalTime now = localTime();
  const std::time_t after = std::time(nullptr);
  std::tm shown{};
  shown.tm_year = now.year - 1900;
  shown.tm_mon = now.month - 1;
  shown.tm_mday = now.day;
  shown.tm_hour = now.hour;
  shown.tm_min = now.minute;
  shown.tm_sec = now.second;
  shown.tm_isdst = -1;
  const std::time_t told = std::mktime(&shown);
  EXPECT_LE(before, told);
  EXPECT_LE(told, after);
  EXPECT_GE(now.millisecond, 0);
  EXPECT_LT(now.millisecond, 1000);
}

}  // namespace
}  // namespace tolvane::system
