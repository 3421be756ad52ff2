#include "tsql/number_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace tolvane::tsql {
namespace {

TEST(NumberText, IntegersAreSignAndDigits) {
  EXPECT_EQ(parseInteger("  -12 ").value, -12);
  EXPECT_EQ(parseInteger("+7").value, 7);
  EXPECT_EQ(parseInteger("-9223372036854775808").value, std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(parseInteger("9223372036854775808").outcome, IntegerText::Outcome::Overflow);
  for (const char* text : {"12.5", "1e3", "abc", "1,000", "0x1", "1 2"}) {
    EXPECT_EQ(parseInteger(text).outcome, IntegerText::Outcome::Syntax) << text;
  }
}

TEST(NumberText, NoTextAndASignAloneAreZeroAsIntegers) {
  for (const char* text : {"", "  ", "-", "+"}) {
    EXPECT_EQ(parseInteger(text).outcome, IntegerText::Outcome::Read) << text;
    EXPECT_EQ(parseInteger(text).value, 0) << text;
  }
}

TEST(NumberText, FloatsHaveExponentsOfBothLetters) {
  EXPECT_EQ(parseFloat(" -1.5e3 "), -1500.0);
  EXPECT_EQ(parseFloat("2d2"), 200.0);
  EXPECT_EQ(parseFloat(".5"), 0.5);
  EXPECT_EQ(parseFloat(""), 0.0);
  EXPECT_EQ(parseFloat("1e-400"), 0.0);
  EXPECT_EQ(parseFloat("1e400"), std::numeric_limits<double>::infinity());
  for (const char* text : {"-", ".", "1e", "e5", "inf", "nan", "0x10", "1,5"}) EXPECT_FALSE(parseFloat(text)) << text;
}

TEST(NumberText, AmountsHaveCurrencySignsAndCommas) {
  EXPECT_EQ(parseMoney("-$1,234.56789")->toText(), "-1234.56789");
  EXPECT_EQ(parseMoney("¥ 5")->toText(), "5");
  EXPECT_EQ(parseMoney("$-2")->toText(), "-2");
  EXPECT_EQ(parseMoney("")->toText(), "0");
  EXPECT_EQ(parseMoney("-")->toText(), "0");
  for (const char* text : {"1e3", "abc", "1.2.3", "$$1", "1.0,0"}) EXPECT_FALSE(parseMoney(text)) << text;
}

TEST(NumberText, IsNumericTakesWhatAnyNumberTypeTakes) {
  for (const char* text : {"1", "-1.5", "1e5", "$1", "1,000", "-", "+", "."}) EXPECT_TRUE(isNumeric(text)) << text;
  for (const char* text : {"", "  ", "abc", "1a", "e", "--1"}) EXPECT_FALSE(isNumeric(text)) << text;
}

TEST(NumberText, FloatsAreWrittenInTheirStyle) {
  EXPECT_EQ(floatText(1234.5, 0), "1234.5");
  EXPECT_EQ(floatText(1234567, 0), "1.23457e+006");
  EXPECT_EQ(floatText(1e15, 0), "1e+015");
  EXPECT_EQ(floatText(-0.00001, 0), "-1e-005");
  EXPECT_EQ(floatText(0.0001, 0), "0.0001");
  EXPECT_EQ(floatText(-0.0, 0), "0");
  EXPECT_EQ(floatText(1.5, 1), "1.5000000e+000");
  EXPECT_EQ(floatText(0.1, 2), "1.000000000000000e-001");
  EXPECT_EQ(floatText(0.1, 3), "1.0000000000000001e-001");
  EXPECT_EQ(floatText(1e300, 0), "1e+300");
  EXPECT_EQ(floatText(1.5, 4), "1.5");
}

TEST(NumberText, AmountsAreWrittenInTheirStyle) {
  const Decimal amount = Decimal::parse("-1234567.8950").value();
  EXPECT_EQ(moneyText(amount, 0), "-1234567.90");
  EXPECT_EQ(moneyText(amount, 1), "-1,234,567.90");
  EXPECT_EQ(moneyText(amount, 2), "-1234567.8950");
  EXPECT_EQ(moneyText(amount, 126), "-1234567.8950");
  EXPECT_EQ(moneyText(Decimal::parse("-123.4000").value(), 1), "-123.40");
  EXPECT_EQ(moneyText(amount, 3), "-1234567.90");
}

}  // namespace
}  // namespace tolvane::tsql
