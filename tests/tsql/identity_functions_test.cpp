#include <gtest/gtest.h>

#include "tsql/runtime_support.h"
#include "tsql/type.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& identityRows() {
  static const std::int64_t whole = Type::of(TypeKind::Int).pack();
  static const std::int64_t tiny = Type::of(TypeKind::TinyInt).pack();
  static const std::int64_t exact = Type::decimal(2, 0).pack();
  static constexpr std::string_view table =
      "CREATE TABLE t(\"a\" int DEFAULT 5,\"b\" nvarchar(9) DEFAULT 'x',\"c\" datetime DEFAULT (ts_now()) "
      "/*(getdate())*/,\"d\" datetime DEFAULT '2020-01-01 00:00:00.000',\"e\" int)";
  static const std::vector<CallRow> rows{
      {"ts_identity", {"new", whole, -7, 3}, "-7"},
      {"ts_identity", {"old", whole, 1, 3}, "102"},
      {"ts_identity", {"old", exact, 1, -1}, "'98'"},
      {"ts_identity", {"old", exact, 1, 1}, "8115 Arithmetic overflow error converting IDENTITY to data type numeric."},
      {"ts_identity",
       {"old", tiny, 1, 200},
       "8115 Arithmetic overflow error converting IDENTITY to data type tinyint."},
      {"ts_identity_given", {5, "old", whole, 1, 1}, "5"},
      {"ts_identity_given", {"12", "old", exact, 1, 1}, "'12'"},
      {"ts_identity_given", {Datum(), "old", whole, 1, 1}, "null"},
      {"ts_default_text", {table, "A"}, "'((5))'"},
      {"ts_default_text", {table, "b"}, "'(N'x')'"},
      {"ts_default_text", {table, "c"}, "'(getdate())'"},
      {"ts_default_text", {table, "d"}, "40517 The definition of the default of column 'd' is not supported."},
      {"ts_default_text", {table, "e"}, "null"},
      {"ts_default_text", {table, "f"}, "null"},
  };
  return rows;
}

namespace {

TEST(IdentityFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : identityRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
