#include "tsql/float_digits.h"

#include <gtest/gtest.h>

namespace tolvane::tsql {
namespace {

TEST(FloatDigits, AreSeventeen) {
  EXPECT_EQ(FloatDigits::of(0.1).digits, "10000000000000001");
  EXPECT_EQ(FloatDigits::of(-1234.5).digits, "12345000000000000");
  EXPECT_EQ(FloatDigits::of(-1234.5).exponent, 3);
  EXPECT_TRUE(FloatDigits::of(-1234.5).negative);
}

TEST(FloatDigits, RoundHalvesAwayFromZero) {
  EXPECT_EQ(FloatDigits::of(123456.5).rounded(6).digits, "123457");
  EXPECT_EQ(FloatDigits::of(1.234575).rounded(6).digits, "123458");
}

TEST(FloatDigits, CarryIntoANewFirstDigit) {
  const FloatDigits rounded = FloatDigits::of(9.9999996).rounded(6);
  EXPECT_EQ(rounded.digits, "100000");
  EXPECT_EQ(rounded.exponent, 1);
}

TEST(FloatDigits, StandPlainWithoutAnExponent) {
  EXPECT_EQ(FloatDigits::of(1e20).plain(), "100000000000000000000");
  EXPECT_EQ(FloatDigits::of(0.00012).rounded(2).plain(), "0.00012");
  EXPECT_EQ(FloatDigits::of(-12.5).rounded(3).plain(), "-12.5");
}

}  // namespace
}  // namespace tolvane::tsql
