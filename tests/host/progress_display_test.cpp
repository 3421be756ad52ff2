// How far a long piece of work has come.
#include "host/progress_display.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tolvane::host {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

struct ProgressDisplayTest : testing::Test {
  std::chrono::steady_clock::time_point now{};
  std::ostringstream stream;

  ProgressDisplay display(std::int64_t total, bool isTerminal) {
    return {stream, total, "rows", {isTerminal, [this] { return now; }}};
  }
};

TEST(DurationText, HasMinutesAndSecondsAndHoursWhenThereAreAny) {
  EXPECT_EQ(durationText(0s), "0:00");
  EXPECT_EQ(durationText(67s), "1:07");
  EXPECT_EQ(durationText(3600s + 2min + 3s), "1:02:03");
}

TEST(Grouped, PutsACommaBeforeEveryThreeDigits) {
  EXPECT_EQ(grouped(0), "0");
  EXPECT_EQ(grouped(999), "999");
  EXPECT_EQ(grouped(1000), "1,000");
  EXPECT_EQ(grouped(-1234567), "-1,234,567");
}

TEST_F(ProgressDisplayTest, ShowsCountsRateAndTimeLeft) {
  const auto shown = display(3000, false);
  now += 10s;
  EXPECT_EQ(shown.text(1000, "P01"), "33%  1,000/3,000 rows  100/s  0:20 left  P01");
}

TEST_F(ProgressDisplayTest, ShowsNoRateBeforeAnythingIsDone) {
  const auto shown = display(3000, false);
  EXPECT_EQ(shown.text(0, "P01"), "0%  0/3,000 rows  P01");
}

TEST_F(ProgressDisplayTest, WorkWithoutRowsIsDone) {
  const auto shown = display(0, false);
  EXPECT_EQ(shown.text(0, "P01"), "100%  0/0 rows  P01");
}

TEST_F(ProgressDisplayTest, APlainLineAppearsEveryFiveSecondsAndHoldsNoControlCharacters) {
  auto shown = display(100, false);
  shown.show(1, "P01");
  now += 5s;
  shown.show(50, "P01");
  now += 4s;
  shown.show(60, "P01");
  EXPECT_EQ(stream.str(), "50%  50/100 rows  10/s  0:05 left  P01\n");
}

TEST_F(ProgressDisplayTest, ATerminalHasABarThatIsWrittenOver) {
  auto shown = display(100, true);
  now += 1s;
  shown.show(50, "P01");
  EXPECT_EQ(stream.str(), "\r\x1b[K[############------------] 50%  50/100 rows  50/s  0:01 left  P01");
}

TEST_F(ProgressDisplayTest, ATerminalIsWrittenAtMostTenTimesASecond) {
  auto shown = display(100, true);
  shown.show(1, "P01");
  const auto once = stream.str();
  now += 99ms;
  shown.show(2, "P01");
  EXPECT_EQ(stream.str(), once);
  now += 1ms;
  shown.show(3, "P01");
  EXPECT_THAT(stream.str(), HasSubstr("3/100"));
}

TEST_F(ProgressDisplayTest, TheBarIsTakenAwayAtTheEnd) {
  {
    auto shown = display(100, true);
    shown.show(1, "P01");
  }
  EXPECT_TRUE(stream.str().ends_with("P01\r\x1b[K"));
}

TEST_F(ProgressDisplayTest, NothingIsTakenAwayWhenNothingWasShown) {
  { auto shown = display(100, true); }
  EXPECT_EQ(stream.str(), "");
}

}  // namespace
}  // namespace tolvane::host
