// Being told what services do with a connection.
#include "host/watched_platform.h"

#include <gmock/gmock.h>

#include <vector>

#include "frame/service.h"
#include "support/recording_platform.h"

namespace tolvane::host {
namespace {

using test::RecordingPlatform;
using testing::ElementsAre;

struct Notes : DatabaseWatcher {
  std::vector<std::string> lines;
  void rowPosted() override { lines.emplace_back("posted"); }
  void executed(const std::string& sql) override { lines.push_back("executed " + sql); }
  void failed(const AutomationError& error) override { lines.push_back("failed " + error.description()); }
};

struct Probe : Service {
  explicit Probe(Platform& platform) : Service(platform) {}
  using Service::beginCall;
};

struct WatchedPlatformTest : testing::Test {
  RecordingPlatform inner;
  Notes notes;
  WatchedPlatform platform{inner, notes};
  Probe service{platform};
};

TEST_F(WatchedPlatformTest, AnExecutedStatementIsToldAfterItRan) {
  service.beginCall("x").execute("Delete t");
  EXPECT_THAT(notes.lines, ElementsAre("executed Delete t"));
  EXPECT_EQ(inner.log.back(), "Execute Delete t");
}

TEST_F(WatchedPlatformTest, APostedRowIsTold) {
  const auto rows = service.beginCall("x").openKeyset("Select * From t");
  rows->addNew();
  rows->setValue("a", 1);
  EXPECT_THAT(notes.lines, ElementsAre());
  rows->update();
  EXPECT_THAT(notes.lines, ElementsAre("posted"));
}

TEST_F(WatchedPlatformTest, AFailureIsToldAndPassesOn) {
  inner.fail("Execute", AutomationError(oledb::noTable, "provider", "no such table"));
  EXPECT_THROW(service.beginCall("x").execute("Delete t"), AutomationError);
  EXPECT_THAT(notes.lines, ElementsAre("failed no such table"));
}

TEST_F(WatchedPlatformTest, AFailedReadOfARecordSetIsTold) {
  const auto rows = service.beginCall("x").openKeyset("Select * From t");
  EXPECT_THROW((void)rows->value("a"), AutomationError);
  EXPECT_EQ(notes.lines.size(), 1U);
}

TEST_F(WatchedPlatformTest, RowsAndCountsPassThrough) {
  inner.answer("Select", {{"a"}, {{std::int32_t{7}}, {std::int32_t{8}}}});
  const auto rows = service.beginCall("x").execute("Select a From t");
  EXPECT_EQ(rows->recordCount(), 2);
  rows->moveNext();
  EXPECT_EQ(rows->value("a"), Value(std::int32_t{8}));
}

}  // namespace
}  // namespace tolvane::host
