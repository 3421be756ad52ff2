#include "host/call_runner.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>

namespace tolvane::host {
namespace {

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
