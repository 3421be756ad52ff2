#include "host/call_runner.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>

#include "standalone/fake_engine.h"
#include "standalone/standalone_platform.h"

namespace tolvane::host {
namespace {

/// A service whose methods fail in both ways.
class Clumsy : public Service {
 public:
  explicit Clumsy(Platform& platform) : Service(platform) {}

  /// Answers a failure with False.
  bool Hide(std::string sDsn, std::int32_t& lCount) {
    auto call = beginCall(sDsn);
    lCount = 7;
    try {
      call.execute("bad");
    } catch (const AutomationError&) {
      return false;
    }
    return true;
  }
  void Fail(std::string sDsn) { beginCall(sDsn).execute("bad"); }
  void Work(std::string sDsn) { beginCall(sDsn).execute("good"); }
};

class RunCallTest : public ::testing::Test {
 protected:
  RunCallTest() {
    engine_->script->answers["Select FUserID"] = testing::one(1);
    engine_->script->answers["bad"] = testing::failing(oledb::errorsInCommand);
  }
  CallResult run(const char* method) {
    CallRequest request{&class_, class_.find(method), {}};
    request.arguments.named.emplace_back("sDsn", "Database=x");
    if (request.method->parameters.size() > 1) request.arguments.named.emplace_back("lCount", std::int32_t{0});
    return runCall(platform_, platform_.session(), request);
  }
  const std::string& last() const { return engine_->script->log.back(); }

  ClassDescription class_ = describe<Clumsy>("Clumsy", TransactionMode::required, "Fails.")
                                .method(2, "Hide", &Clumsy::Hide, "Hides.", {"sDsn", "lCount"})
                                .method(3, "Fail", &Clumsy::Fail, "Fails.", {"sDsn"})
                                .method(4, "Work", &Clumsy::Work, "Works.", {"sDsn"});
  std::shared_ptr<testing::FakeEngine> engine_ = std::make_shared<testing::FakeEngine>();
  standalone::StandalonePlatform platform_{{{{"sqlite", engine_}}, {}, 936}};
};

TEST_F(RunCallTest, KeepsTheWorkOfACallThatReturns) {
  const auto result = run("Work");
  EXPECT_TRUE(result.kept);
  EXPECT_EQ(result.result, Value());
  EXPECT_EQ(last(), "commit");
}

TEST_F(RunCallTest, TakesTheWorkBackWhenTheMethodHidesAFailureAndStillGivesItsAnswer) {
  const auto result = run("Hide");
  EXPECT_FALSE(result.kept);
  EXPECT_EQ(result.result, Value(false));
  ASSERT_EQ(result.out.size(), 1U);
  EXPECT_EQ(result.out[0].second, Value(std::int32_t{7}));
  EXPECT_EQ(last(), "rollback");
}

TEST_F(RunCallTest, TakesTheWorkBackWhenTheMethodRaises) {
  EXPECT_THROW((void)run("Fail"), AutomationError);
  EXPECT_EQ(last(), "rollback");
}

std::string shown(const AutomationError& error) {
  std::ostringstream out;
  writeError(out, error);
  return out.str();
}

TEST(CallRunnerTest, ErrorsShowNumberSourceAndDescription) {
  EXPECT_EQ(shown(AutomationError(0x80044047, "Tolvane.SrvRptRetrive.SavePlxToSrv", "报表名称不得为空字符串")),
            R"({"error":{"number":"0x80044047","source":"Tolvane.SrvRptRetrive.SavePlxToSrv",)"
            R"("description":"报表名称不得为空字符串"}})");
}

TEST(CallRunnerTest, SmallNumbersAreShownAsClientsReceiveThem) {
  EXPECT_NE(shown(AutomationError(5U, "Tolvane", "x")).find("\"0x800A0005\""), std::string::npos);
  EXPECT_NE(shown(AutomationError(RuntimeError::typeMismatch, "Tolvane")).find("\"0x800A000D\""), std::string::npos);
}

TEST(CallRunnerTest, ResultsShowInOutParametersByName) {
  std::ostringstream out;
  writeResult(out, {true, {{"vPlx", Bytes({1})}, {"vPrinterBuf", Null{}}}}, false);
  EXPECT_EQ(out.str(), R"({"result":true,"out":{"vPlx":{"$bytes":"AQ=="},"vPrinterBuf":null}})");
}

TEST(CallRunnerTest, AMethodWithoutResultShowsEmpty) {
  std::ostringstream out;
  writeResult(out, {}, false);
  EXPECT_EQ(out.str(), R"({"result":{"$empty":true},"out":{}})");
}

TEST(CallRunnerTest, ForeignExceptionsBecomeAutomationErrors) {
  EXPECT_EQ(toAutomationError(std::make_exception_ptr(std::bad_alloc())).number(), 0x800A0007U);
  EXPECT_EQ(toAutomationError(std::make_exception_ptr(std::runtime_error("why"))).description(), "why");
  EXPECT_EQ(toAutomationError(std::make_exception_ptr(5)).number(), 0x80004005U);
  EXPECT_EQ(toAutomationError(std::make_exception_ptr(AutomationError(7U, "s", "d"))).source(), "s");
}

}  // namespace
}  // namespace tolvane::host
