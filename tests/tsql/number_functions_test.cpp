#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& numberRows() {
  static const Datum integer = packed(TypeKind::Int);
  static const Datum real = packed(TypeKind::Float);
  static const Datum money = packed(TypeKind::Money);
  static const std::vector<CallRow> rows{
      {"ts_abs", {-5, integer}, "5"},
      {"ts_abs", {-2147483648LL, integer}, "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_abs", {-1.5, real}, "1.5"},
      {"ts_abs", {"-1.50", decimal(5, 2)}, "'1.50'"},
      {"ts_abs", {Datum(), integer}, "null"},
      {"ts_round", {"123.4567", 2, decimal(8, 4)}, "'123.4600'"},
      {"ts_round", {"123.4567", 2, 0, decimal(8, 4)}, "'123.4600'"},
      {"ts_round", {"123.4567", 2, 1, decimal(8, 4)}, "'123.4500'"},
      {"ts_round", {"-150.75", -2, decimal(6, 2)}, "'-200.00'"},
      {"ts_round", {"149.99", -2, decimal(6, 2)}, "'100.00'"},
      {"ts_round", {"149.99", -5, decimal(6, 2)}, "'0.00'"},
      {"ts_round", {1250, -2, integer}, "1300"},
      {"ts_round", {1250, -2, 1, integer}, "1200"},
      {"ts_round", {1250, 2, integer}, "1250"},
      {"ts_round", {2.5, 0, real}, "3.0"},
      {"ts_round", {-1234.567, -2, real}, "-1200.0"},
      {"ts_round", {1.29, 1, 1, real}, "1.2"},
      {"ts_round", {"1.23456", 2, money}, "'1.2300'"},
      {"ts_floor", {"-1.50", decimal(5, 0)}, "'-2'"},
      {"ts_floor", {"1.99", decimal(5, 0)}, "'1'"},
      {"ts_floor", {"-1.5000", money}, "'-2.0000'"},
      {"ts_floor", {-1.5, real}, "-2.0"},
      {"ts_floor", {7, integer}, "7"},
      {"ts_ceiling", {"1.01", decimal(5, 0)}, "'2'"},
      {"ts_ceiling", {"-1.99", decimal(5, 0)}, "'-1'"},
      {"ts_ceiling", {1.01, real}, "2.0"},
      {"ts_ceiling", {Datum(), real}, "null"},
      {"ts_sign", {-7, integer}, "-1"},
      {"ts_sign", {"0.00", decimal(5, 2)}, "'0.00'"},
      {"ts_sign", {"7.5", decimal(5, 2)}, "'1.00'"},
      {"ts_sign", {-0.5, real}, "-1.0"},
      {"ts_power", {2, 10.0, integer}, "1024"},
      {"ts_power", {2, 0.5, integer}, "1"},
      {"ts_power", {2, 31.0, integer}, "8115 Arithmetic overflow error converting expression to data type int."},
      {"ts_power", {3, 39.0, packed(TypeKind::BigInt)}, "4052555153018976267"},
      {"ts_power", {2.0, -1.0, real}, "0.5"},
      {"ts_power", {-8.0, 0.5, real}, "3623 An invalid floating point operation occurred."},
      {"ts_power", {0, -1.0, integer}, "3623 An invalid floating point operation occurred."},
      {"ts_power", {"1.50", 2.0, decimal(5, 2)}, "'2.25'"},
      {"ts_sqrt", {9.0}, "3.0"},
      {"ts_sqrt", {-1.0}, "3623 An invalid floating point operation occurred."},
      {"ts_square", {-3.0}, "9.0"},
      {"ts_exp", {0.0}, "1.0"},
      {"ts_exp", {1000.0}, "8115 Arithmetic overflow error converting expression to data type float."},
      {"ts_sin", {0.0}, "0.0"},
      {"ts_cos", {0.0}, "1.0"},
      {"ts_tan", {0.0}, "0.0"},
      {"ts_cot", {1.0}, "0.642092615934331"},
      {"ts_cot", {0.0}, "3623 An invalid floating point operation occurred."},
      {"ts_asin", {1.0}, "1.5707963267949"},
      {"ts_asin", {1.1}, "3623 An invalid floating point operation occurred."},
      {"ts_acos", {1.0}, "0.0"},
      {"ts_acos", {-1.1}, "3623 An invalid floating point operation occurred."},
      {"ts_atan", {1.0}, "0.785398163397448"},
      {"ts_atn2", {1.0, -1.0}, "2.35619449019234"},
      {"ts_atn2", {0.0, 0.0}, "3623 An invalid floating point operation occurred."},
      {"ts_atn2", {0.0, Datum()}, "null"},
      {"ts_degrees", {2, packed(TypeKind::Int)}, "114"},
      {"ts_degrees", {"1.5", packed(Type::decimal(38, 18))}, "'85.943669269623484000'"},
      {"ts_radians", {90, packed(TypeKind::Int)}, "1"},
      {"ts_radians", {180.0, packed(TypeKind::Float)}, "3.14159265358979"},
      {"ts_log", {8.0, 2.0}, "3.0"},
      {"ts_log", {8.0, 1.0}, "3623 An invalid floating point operation occurred."},
      {"ts_log", {8.0, -1.0}, "3623 An invalid floating point operation occurred."},
      {"ts_log", {1.0}, "0.0"},
      {"ts_log", {0.0}, "3623 An invalid floating point operation occurred."},
      {"ts_log10", {1000.0}, "3.0"},
      {"ts_log10", {-1.0}, "3623 An invalid floating point operation occurred."},
      {"ts_pi", {}, "3.14159265358979"},
      {"ts_rand", {1}, "0.713591993212924"},
      {"ts_rand", {100}, "0.715436657367485"},
      {"ts_rand", {Datum()}, "null"},
      {"ts_isnumeric", {"12.5", varchar()}, "1"},
      {"ts_isnumeric", {"abc", varchar()}, "0"},
      {"ts_isnumeric", {5, integer}, "1"},
      {"ts_isnumeric", {"2012-03-15 00:00:00.000", packed(TypeKind::DateTime)}, "0"},
      {"ts_isnumeric", {Datum(), varchar()}, "0"},
      {"ts_str", {123.45, 6, 1}, "' 123.5'"},
      {"ts_str", {123.45, 2, 2}, "'**'"},
      {"ts_str", {1234.567, 6, 3}, "'1234.6'"},
      {"ts_str", {1234.567, 5, 3}, "' 1235'"},
      {"ts_str", {123.0}, "'       123'"},
      {"ts_str", {-1.5, 5, 2}, "'-1.50'"},
      {"ts_str", {1.0, -1, 0}, "null"},
      {"ts_str", {Datum()}, "null"},
  };
  return rows;
}

namespace {

TEST(NumberFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : numberRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

TEST(NumberFunctions, RandGoesOnFromItsSeed) {
  const PlainCollation collation;
  FixedSession session;
  const std::vector<Datum> seed{Datum(1)};
  Call seeded{seed, collation, session};
  Call next{{}, collation, session};
  const Function& rand = *findFunction("ts_rand");
  const Result first = rand.run(seeded);
  const Result second = rand.run(next);
  EXPECT_NE(shown(second), shown(first));
  EXPECT_EQ(shown(rand.run(seeded)), shown(first));
  EXPECT_EQ(shown(rand.run(next)), shown(second));
}

}  // namespace
}  // namespace tolvane::tsql::testing
