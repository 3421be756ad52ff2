#include <gtest/gtest.h>

#include <cstdint>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<AggregateCase>& aggregateCases() {
  static const Datum integer = packed(TypeKind::Int);
  static const Datum bigint = packed(TypeKind::BigInt);
  static const Datum real = packed(TypeKind::Float);
  static const Datum money = packed(TypeKind::Money);
  static const Datum number = decimal(10, 2);
  static const Datum wide = packed(Type::text(TypeKind::VarChar, 8000));
  static const std::string long3000(3000, 'x');
  static const Datum longText{std::string_view(long3000)};
  static const std::vector<AggregateCase> rows{
      {"ts_single", {}, "null"},
      {"ts_single", {{"a"}}, "'a'"},
      {"ts_single",
       {{1}, {Datum()}},
       "512 Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= "
       "or "
       "when the subquery is used as an expression."},
      {"ts_string_agg", {}, "null"},
      {"ts_string_agg", {{"b", ", ", wide}, {Datum(), ", ", wide}, {"a", ", ", wide}}, "'b, a'"},
      {"ts_string_agg", {{"b", "", wide, 2, integer, 0}, {"a", "", wide, 1, integer, 0}}, "'ab'"},
      {"ts_string_agg",
       {{"a", "", wide, "1.00", number, 1}, {"b", "", wide, "10.00", number, 1}, {"c", "", wide, Datum(), number, 1}},
       "'bac'"},
      {"ts_string_agg",
       {{longText, longText, wide}, {longText, longText, wide}},
       "9829 STRING_AGG aggregation result exceeded the limit of 8000 bytes. Use LOB types to avoid result "
       "truncation."},
      {"ts_sum", {}, "null"},
      {"ts_sum", {{Datum(), integer}}, "null"},
      {"ts_sum", {{1, integer}, {Datum(), integer}, {2, integer}}, "3"},
      {"ts_sum",
       {{2147483647, integer}, {1, integer}},
       "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_sum", {{2147483647, bigint}, {1, bigint}}, "2147483648"},
      {"ts_sum",
       {{INT64_MAX, bigint}, {1, bigint}},
       "8115 Arithmetic overflow error converting expression to data type bigint."},
      {"ts_sum", {{1.5, real}, {2.25, real}}, "3.75"},
      {"ts_sum", {{"0.10", number}, {"0.20", number}}, "'0.30'"},
      {"ts_sum", {{"0.1000", money}, {"0.2000", money}}, "'0.3000'"},
      {"ts_sum", {{2147483647}, {1}}, "2147483648"},
      {"ts_sum", {{"1.50"}, {"2.25"}}, "'3.75'"},
      {"ts_avg", {}, "null"},
      {"ts_avg", {{1, integer}, {2, integer}, {Datum(), integer}}, "1"},
      {"ts_avg", {{-1, integer}, {-2, integer}}, "-1"},
      {"ts_avg", {{1.0, real}, {2.0, real}}, "1.5"},
      {"ts_avg", {{"1.00", number}, {"1.00", number}, {"0.00", number}}, "'0.666666'"},
      {"ts_avg", {{"1.0000", money}, {"1.0000", money}, {"0.0000", money}}, "'0.6666'"},
      {"ts_avg", {{1}, {2}}, "1"},
      {"ts_avg", {{"1.5"}, {"2.5"}}, "'2.000000'"},
      {"ts_stdev", {{2.0}, {4.0}}, "1.4142135623731"},
      {"ts_stdev", {{2.0}}, "null"},
      {"ts_stdevp", {{2.0}, {4.0}, {Datum()}}, "1.0"},
      {"ts_stdevp", {{2}}, "0.0"},
      {"ts_var", {{1}, {2}, {3}, {4}}, "1.66666666666667"},
      {"ts_varp", {{1}, {2}, {3}, {4}}, "1.25"},
      {"ts_varp", {}, "null"},
      {"ts_varp", {{"1.00"}, {"3.00"}}, "1.0"},
  };
  return rows;
}

namespace {

std::string aggregated(const AggregateCase& row) {
  const Aggregate* aggregate = findAggregate(row.name);
  if (aggregate == nullptr) return "no aggregate";
  const PlainCollation collation;
  FixedSession session;
  return shownOrError([&] {
    const auto state = aggregate->create();
    for (const auto& args : row.rows) {
      Call call{args, collation, session};
      state->step(call);
    }
    return shown(state->finish());
  });
}

TEST(AggregateFunctions, AnswerAsTheirRowsSay) {
  for (const AggregateCase& row : aggregateCases()) {
    EXPECT_EQ(aggregated(row), row.expected) << row.name << " of " << row.rows.size() << " rows";
  }
}

// Rows that leave a window are taken back, floats without a trace.
TEST(AggregateFunctions, TakeRowsBack) {
  struct Case {
    std::string_view name;
    std::vector<std::vector<Datum>> rows;
    std::string_view expected;  // of all rows but the first
  };
  const std::vector<Case> cases{
      {"ts_sum", {{1, packed(TypeKind::Int), 1}, {2, packed(TypeKind::Int), 1}, {3, packed(TypeKind::Int), 1}}, "5"},
      {"ts_sum", {{1e17, packed(TypeKind::Float), 1}, {0.25, packed(TypeKind::Float), 1}}, "0.25"},
      {"ts_avg", {{"1.00", decimal(10, 2), 1}, {"2.00", decimal(10, 2), 1}}, "'2.000000'"},
      {"ts_sum", {{Datum(), packed(TypeKind::Int), 1}, {2, packed(TypeKind::Int), 1}}, "2"},
      {"ts_var", {{1e9, 1}, {2.0, 1}, {4.0, 1}}, "2.0"},
  };
  const PlainCollation collation;
  FixedSession session;
  for (const Case& row : cases) {
    const auto state = findAggregate(row.name)->create();
    for (const auto& args : row.rows) {
      Call call{args, collation, session};
      state->step(call);
    }
    Call first{row.rows[0], collation, session};
    state->leave(first);
    EXPECT_EQ(shown(state->finish()), row.expected) << row.name;
  }
  Call call{cases[0].rows[0], collation, session};
  EXPECT_THROW(findAggregate("ts_single")->create()->leave(call), SqlError);
}

// The true value is 30; SQL Server works with the sums of values and of squares, too.
TEST(AggregateFunctions, SpreadLosesItsDigitsFarFromZero) {
  EXPECT_EQ(aggregated({"ts_var", {{1e9 + 4}, {1e9 + 7}, {1e9 + 13}, {1e9 + 16}}, ""}), "0.0");
}

}  // namespace
}  // namespace tolvane::tsql::testing
