#include "standalone_com/suite_thread.h"

#include <gtest/gtest.h>

#include <thread>

#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using testing::Client;
using testing::errorOf;
using testing::TryOut;

class SuiteThreadTest : public ::testing::Test {
 protected:
  void SetUp() override { tryOut_.run("create table t_Try (FName nvarchar(10) not null)"); }

  /// As a service does it: by a context of its own.
  void write(const std::string& name) {
    const Client context = app().object(L"GetContext");
    (void)context.get(L"OpenDataSource", tryOut_.dsn());
    (void)context.object(L"GetConnection").get(L"Execute", "insert into t_Try values (N'" + name + "')");
  }
  void begin() { (void)app().get(L"BeginCall", 2); }
  Value end() { return app().get(L"EndCall"); }
  void abort() { (void)app().get(L"AbortCall"); }
  Value count() { return tryOut_.asked("Select Count(*) From t_Try"); }
  const Client& app() { return tryOut_.application(); }

  TryOut tryOut_;
};

TEST_F(SuiteThreadTest, TheWorkOfACallIsKeptAtItsEnd) {
  begin();
  write("a");
  EXPECT_EQ(end(), Value(true));
  EXPECT_EQ(count(), Value(1));
}

TEST_F(SuiteThreadTest, AnAbortedCallLeavesNothing) {
  begin();
  write("a");
  abort();
  EXPECT_EQ(count(), Value(0));
}

TEST_F(SuiteThreadTest, AFailedOperationDoomsTheCall) {
  begin();
  write("a");
  EXPECT_NE(errorOf([&] { tryOut_.run("insert into t_Nothing values (1)"); }), "none");
  EXPECT_EQ(end(), Value(false));
  EXPECT_EQ(count(), Value(0));
}

TEST_F(SuiteThreadTest, ACallWithinACallJoinsIt) {
  begin();
  begin();
  write("a");
  EXPECT_EQ(end(), Value(true));
  abort();
  EXPECT_EQ(count(), Value(0));
}

TEST_F(SuiteThreadTest, AnAbortedInnerCallDoomsTheOuterOne) {
  begin();
  write("a");
  begin();
  abort();
  EXPECT_EQ(end(), Value(false));
  EXPECT_EQ(count(), Value(0));
  begin();
  write("b");
  EXPECT_EQ(end(), Value(true));
}

TEST_F(SuiteThreadTest, ACallWithoutItsBeginningIsAnError) {
  const std::string expected = "800A0005 Tolvane: No call is under way: BeginCall begins one.";
  EXPECT_EQ(errorOf([&] { (void)end(); }), expected);
  EXPECT_EQ(errorOf([&] { abort(); }), expected);
}

TEST_F(SuiteThreadTest, ObjectsOfAnotherThreadAreRefused) {
  std::string error;
  std::thread([&] { error = errorOf([&] { (void)app().get(L"Version"); }); }).join();
  EXPECT_TRUE(error.starts_with("8001010E ")) << error;
}

TEST_F(SuiteThreadTest, ThreadsHaveCallsOfTheirOwn) {
  begin();
  std::string error;
  std::thread([&] { error = errorOf([] { (void)Client::create("Application").get(L"EndCall"); }); }).join();
  EXPECT_EQ(error, "800A0005 Tolvane: No call is under way: BeginCall begins one.");
  EXPECT_EQ(end(), Value(true));
}

}  // namespace
}  // namespace tolvane::standalone_com
