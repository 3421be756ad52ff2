#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& systemRows() {
  static const std::vector<CallRow> rows{
      {"ts_newid", {}, "'33221100-5544-4766-8899-AABBCCDDEEFF'"},
      {"ts_object_id", {"T_Rpt"}, "5"},
      {"ts_object_id", {"T_Rpt", "U"}, "5"},
      {"ts_object_id", {"T_Rpt", "P"}, "null"},
      {"ts_object_id", {Datum()}, "null"},
      {"ts_object_name", {5}, "'T_Rpt'"},
      {"ts_object_name", {6}, "null"},
      {"ts_db_name", {}, "'Accounts'"},
      {"ts_user_name", {}, "'dbo'"},
      {"ts_version", {}, "'Version'"},
  };
  return rows;
}

namespace {

TEST(SystemFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : systemRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
