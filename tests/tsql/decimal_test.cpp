#include "tsql/decimal.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane::tsql {
namespace {

Decimal number(std::string_view text) {
  return Decimal::parse(text).value();
}

std::string textOf(const std::optional<Decimal>& result) {
  return result ? result->toText() : "overflow";
}

const std::string nines38(38, '9');

TEST(Decimal, ReadsSignBlanksAndPoint) {
  EXPECT_EQ(textOf(Decimal::parse("  - 12.340 ")), "-12.340");
  EXPECT_EQ(textOf(Decimal::parse("+.5")), "0.5");
  EXPECT_EQ(textOf(Decimal::parse("7.")), "7");
  EXPECT_EQ(textOf(Decimal::parse("-0.00")), "0.00");
  EXPECT_EQ(textOf(Decimal::parse("000123")), "123");
}

TEST(Decimal, RefusesWhatIsNotANumber) {
  for (const char* text : {"", " ", "-", ".", "1e5", "1.2.3", "1,000", "12a", "--1", "0x10"}) {
    EXPECT_FALSE(Decimal::parse(text)) << text;
  }
}

TEST(Decimal, HoldsThirtyEightDigitsAndNotOneMore) {
  EXPECT_EQ(textOf(Decimal::parse(nines38)), nines38);
  EXPECT_FALSE(Decimal::parse(nines38 + "0"));
  EXPECT_TRUE(number(nines38).fits(38));
  EXPECT_FALSE(number(nines38).fits(37));
  EXPECT_EQ(number(nines38).digits(), 38);
  EXPECT_EQ(number("0").digits(), 0);
}

TEST(Decimal, RoundsHalfAwayFromZeroOrCuts) {
  EXPECT_EQ(textOf(number("1.245").rescaled(2)), "1.25");
  EXPECT_EQ(textOf(number("-1.245").rescaled(2)), "-1.25");
  EXPECT_EQ(textOf(number("1.2449").rescaled(2)), "1.24");
  EXPECT_EQ(textOf(number("-1.249").rescaled(2, Rounding::Cut)), "-1.24");
  EXPECT_EQ(textOf(number("-0.004").rescaled(2)), "0.00");
  EXPECT_EQ(textOf(number("5").rescaled(3)), "5.000");
}

TEST(Decimal, AddsAtTheWiderScale) {
  EXPECT_EQ(textOf(Decimal::sum(number("1.5"), number("-2.25"), 2)), "-0.75");
  EXPECT_EQ(textOf(Decimal::sum(number("-1.5"), number("1.50"), 2)), "0.00");
  EXPECT_EQ(textOf(Decimal::sum(number(nines38), number("1"), 0)), "overflow");
}

TEST(Decimal, MultipliesExactlyAndRoundsToTheScale) {
  EXPECT_EQ(textOf(Decimal::product(number("-1.25"), number("3.5"), 3)), "-4.375");
  EXPECT_EQ(textOf(Decimal::product(number("0.125"), number("0.5"), 3)), "0.063");
  EXPECT_EQ(textOf(Decimal::product(number("9999999999999999999"), number("9999999999999999999"), 0)),
            "99999999999999999980000000000000000001");
  EXPECT_EQ(textOf(Decimal::product(number(nines38), number("2"), 0)), "overflow");
}

TEST(Decimal, CutsQuotients) {
  EXPECT_EQ(textOf(Decimal::quotient(number("2"), number("3"), 6)), "0.666666");
  EXPECT_EQ(textOf(Decimal::quotient(number("-1"), number("7"), 20)), "-0.14285714285714285714");
  EXPECT_EQ(
      textOf(Decimal::quotient(number("99999999999999999980000000000000000001"), number("9999999999999999999"), 0)),
      "9999999999999999999");
  EXPECT_EQ(textOf(Decimal::quotient(number("1.000"), number("8"), 0)), "0");
  EXPECT_EQ(textOf(Decimal::quotient(number(nines38), number("0.1"), 0)), "overflow");
}

TEST(Decimal, DividesByMultiLimbNumbersWhereTheEstimateIsOneTooMany) {
  const Decimal dividend = number("39614081257132168796771975171");  // 2^95 + 3
  const Decimal divisor = number("9903520314283042199192993793");    // 2^93 + 1
  EXPECT_EQ(textOf(Decimal::quotient(dividend, divisor, 0)), "3");
  EXPECT_EQ(textOf(Decimal::remainder(dividend, divisor, 0)), "9903520314283042199192993792");
  EXPECT_EQ(textOf(Decimal::quotient(number("39614081275578912861891592192"), number("9223372041149743103"), 0)),
            "4294967295");
}

TEST(Decimal, RemainderTakesTheSignOfTheDividend) {
  EXPECT_EQ(textOf(Decimal::remainder(number("-7.5"), number("2"), 1)), "-1.5");
  EXPECT_EQ(textOf(Decimal::remainder(number("7.5"), number("-2"), 1)), "1.5");
}

TEST(Decimal, ComparesAcrossScales) {
  EXPECT_EQ(number("1.50").compare(number("1.5")), std::strong_ordering::equal);
  EXPECT_EQ(number("-2").compare(number("1")), std::strong_ordering::less);
  EXPECT_EQ(number("-2").compare(number("-1.999")), std::strong_ordering::less);
  EXPECT_EQ(number(nines38).compare(number("0.00000000000000000000000000000000000001")), std::strong_ordering::greater);
}

TEST(Decimal, ComesFromDoublesBySeventeenDigits) {
  EXPECT_EQ(textOf(Decimal::fromDouble(0.5, 0)), "1");
  EXPECT_EQ(textOf(Decimal::fromDouble(-2.5, 0)), "-3");
  EXPECT_EQ(textOf(Decimal::fromDouble(1.005, 2)), "1.00");
  EXPECT_EQ(textOf(Decimal::fromDouble(1e25, 0)), "10000000000000001000000000");
  EXPECT_EQ(textOf(Decimal::fromDouble(-0.001, 2)), "0.00");
  EXPECT_EQ(textOf(Decimal::fromDouble(1e38, 0)), "overflow");
}

TEST(Decimal, TurnsIntoIntegersWithinTheirBounds) {
  EXPECT_EQ(number("-9223372036854775808").toInteger(Rounding::Cut), INT64_MIN);
  EXPECT_EQ(number("9223372036854775807.4").toInteger(Rounding::HalfAway), INT64_MAX);
  EXPECT_FALSE(number("9223372036854775807.5").toInteger(Rounding::HalfAway));
  EXPECT_EQ(number("-1.9").toInteger(Rounding::Cut), -1);
}

TEST(Decimal, TurnsIntoTheNearestDouble) {
  EXPECT_EQ(number("0.1").toDouble(), 0.1);
  EXPECT_EQ(number("-123456789012345678.5").toDouble(), -123456789012345678.5);
}

}  // namespace
}  // namespace tolvane::tsql
