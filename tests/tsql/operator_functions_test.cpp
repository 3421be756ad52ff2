#include <gtest/gtest.h>

#include <cstdint>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& operatorRows() {
  static const Datum integer = packed(TypeKind::Int);
  static const Datum bigint = packed(TypeKind::BigInt);
  static const Datum tiny = packed(TypeKind::TinyInt);
  static const Datum real = packed(TypeKind::Float);
  static const Datum money = packed(TypeKind::Money);
  static const Datum date = packed(TypeKind::DateTime);
  static const std::vector<CallRow> rows{
      {"ts_add", {1, 2, integer}, "3"},
      {"ts_add", {Datum(), 2, integer}, "null"},
      {"ts_add", {2147483647, 1, integer}, "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_add", {200, 56, tiny}, "8115 Arithmetic overflow error converting expression to data type tinyint."},
      {"ts_add", {INT64_MAX, 1, bigint}, "8115 Arithmetic overflow error converting expression to data type bigint."},
      {"ts_add", {1.5, 2, real}, "3.5"},
      {"ts_add", {"1.50", "-0.255", decimal(10, 3)}, "'1.245'"},
      {"ts_add",
       {"99.9", "0.1", decimal(3, 1)},
       "8115 Arithmetic overflow error converting expression to data type numeric."},
      {"ts_add",
       {"922337203685477.5807", "0.0001", money},
       "8115 Arithmetic overflow error converting expression to data type money."},
      {"ts_add", {"2012-02-28 13:00:00.000", 2, date}, "'2012-03-01 13:00:00.000'"},
      {"ts_add", {"2012-02-28 13:00:00.000", 0.5, date}, "'2012-02-29 01:00:00.000'"},
      {"ts_add", {"9999-12-31 00:00:00.000", 1, date}, "517 Adding a value to a 'datetime' column caused an overflow."},
      {"ts_sub", {1, 2, integer}, "-1"},
      {"ts_sub", {"1.00", "1.00", money}, "'0.0000'"},
      {"ts_sub", {"2012-03-15 06:00:00.000", "2012-03-14 00:00:00.000", date}, "'1900-01-02 06:00:00.000'"},
      {"ts_sub", {0, 1, tiny}, "8115 Arithmetic overflow error converting expression to data type tinyint."},
      {"ts_mul", {65536, 65536, integer}, "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_mul", {"1.50", "-2.5", decimal(10, 3)}, "'-3.750'"},
      {"ts_mul", {"0.0001", "0.5000", money}, "'0.0001'"},
      {"ts_mul", {1e200, 1e200, real}, "8115 Arithmetic overflow error converting expression to data type float."},
      {"ts_mul",
       {"2012-03-15 00:00:00.000", 2, date},
       "8117 Operand data type datetime is invalid for multiply operator."},
      {"ts_div", {-7, 2, integer}, "-3"},
      {"ts_div", {1, 0, integer}, "8134 Divide by zero error encountered."},
      {"ts_div", {1.0, 0, real}, "8134 Divide by zero error encountered."},
      {"ts_div", {"1", "0.00", decimal(10, 6)}, "8134 Divide by zero error encountered."},
      {"ts_div", {"2", "3", decimal(10, 6)}, "'0.666666'"},
      {"ts_div", {"2.0000", "3.0000", money}, "'0.6666'"},
      {"ts_div", {INT64_MIN, -1, bigint}, "8115 Arithmetic overflow error converting expression to data type bigint."},
      {"ts_mod", {-7, 3, integer}, "-1"},
      {"ts_mod", {7, -3, integer}, "1"},
      {"ts_mod", {INT64_MIN, -1, bigint}, "8115 Arithmetic overflow error converting expression to data type bigint."},
      {"ts_mod", {7, 0, integer}, "8134 Divide by zero error encountered."},
      {"ts_mod", {"-7.5", "2", decimal(5, 1)}, "'-1.5'"},
      {"ts_neg", {5, integer}, "-5"},
      {"ts_neg", {-2147483648LL, integer}, "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_neg", {"0.00", decimal(5, 2)}, "'0.00'"},
      {"ts_neg", {"1.25", decimal(5, 2)}, "'-1.25'"},
      {"ts_neg", {-1.5, real}, "1.5"},
      {"ts_and", {12, 10, integer}, "8"},
      {"ts_and", {Datum(), 10, integer}, "null"},
      {"ts_or", {12, 10, integer}, "14"},
      {"ts_xor", {12, 10, integer}, "6"},
      {"ts_not", {5, integer}, "-6"},
      {"ts_not", {5, tiny}, "250"},
      {"ts_not", {1, packed(TypeKind::Bit)}, "0"},
  };
  return rows;
}

namespace {

TEST(OperatorFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : operatorRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
