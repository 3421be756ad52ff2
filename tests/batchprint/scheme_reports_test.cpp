#include "batchprint/scheme_reports.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>

#include "platform/error.h"
#include "standalone/objects.h"

namespace tolvane::test {
namespace {

Value report(const Value& id, const Value& name) {
  auto bag = std::make_shared<standalone::Dictionary>();
  bag->set("lRptID", id);
  bag->set("sRptName", name);
  return bag;
}

std::string batchOf(const Value& element) {
  standalone::List reports;
  reports.add(element);
  return schemeReportsBatch(12, reports);
}

std::uint32_t errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

TEST(SchemeReports, NoReportsAreNoText) {
  EXPECT_EQ(schemeReportsBatch(12, standalone::List()), "");
}

TEST(SchemeReports, IdentifiersAreConvertedAndNamesStandAsTheyAre) {
  EXPECT_EQ(batchOf(report("7", "O'Brien")),
            " INSERT INTO t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( 12,7,'O'Brien')\r\n");
}

TEST(SchemeReports, MissingEntriesAreZeroAndTheEmptyText) {
  EXPECT_EQ(batchOf(Value(std::make_shared<standalone::Dictionary>())),
            " INSERT INTO t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( 12,0,'')\r\n");
}

struct BadElement {
  Value element;
  RuntimeError error;
};
TEST(SchemeReports, ElementsThatAreNoReportsAreRefused) {
  const BadElement table[] = {
      {Value(std::int32_t{7}), RuntimeError::objectRequired},
      {Value(ObjectRef()), RuntimeError::objectNotSet},
      {Value(std::make_shared<standalone::List>()), RuntimeError::memberNotFound},
      {report("seven", "Cash"), RuntimeError::typeMismatch},
      {report(4e9, "Cash"), RuntimeError::overflow},
      {report(Null{}, "Cash"), RuntimeError::invalidUseOfNull},
      {report(std::int32_t{7}, Null{}), RuntimeError::invalidUseOfNull},
  };
  for (const auto& [element, error] : table) {
    EXPECT_EQ(errorOf([&] { batchOf(element); }), errorNumber(error));
  }
}

TEST(SchemeReports, AHundredThousandReportsAreOneBatch) {
  standalone::List reports;
  for (std::int32_t i = 1; i <= 100000; ++i) reports.add(report(i, "r"));
  const std::string batch = schemeReportsBatch(12, reports);
  EXPECT_TRUE(batch.ends_with("VALUES( 12,100000,'r')\r\n"));
}

TEST(SchemeReports, TheCounterDoesNotWrapAround) {
  EXPECT_EQ(nextIndex(1), 2);
  EXPECT_EQ(errorOf([] { (void)nextIndex(std::numeric_limits<std::int32_t>::max()); }),
            errorNumber(RuntimeError::overflow));
}

}  // namespace
}  // namespace tolvane::test
