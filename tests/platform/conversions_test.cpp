#include "platform/conversions.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/error.h"

namespace tolvane {
namespace {

struct Thing : Object {};

/// The small number of the run-time error that `work` raises; 0 when it raises none.
std::uint32_t errorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error.number() - 0x800A0000U;
  }
  return 0;
}

TEST(ConversionsTest, IntegersRoundHalvesToEven) {
  const std::pair<Value, std::int32_t> cases[] = {
      {0.5, 0},
      {1.5, 2},
      {2.5, 2},
      {-36.5, -36},
      {-0.5, 0},
      {2.5F, 2},
      {Currency{25000}, 2},
      {Currency{35000}, 4},
      {Currency{-365000}, -36},
      {Currency{25001}, 3},
      {Decimal{0, 25, 1, false}, 2},
      {Decimal{0, 251, 2, false}, 3},
      {Date{2.5}, 2},
      {"2.5", 2},
      {"3.5", 4},
      {"-36.5", -36},
      {"2.50000000000000000000000001", 3},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(toInt32(value), expected) << value.typeNumber();
}

TEST(ConversionsTest, TextsAreNumbersOfThePlatformsForm) {
  const std::pair<const char*, double> cases[] = {
      {"44", 44},     {"-5", -5},      {"+2.1", 2.1}, {" 12 ", 12},   {"1.1-", -1.1},  {"1,000", 1000},
      {"1,1", 11},    {"12,25", 1225}, {"1e3", 1000}, {"2d7", 2e7},   {"1E-2", 0.01},  {"&H1F", 31},
      {"&HFF", 255},  {"&O17", 15},    {"&6", 6},     {"&h1f", 31},   {"(34)", -34},   {"\u00A512.44", 12.44},
      {"\uFFE55", 5}, {".5", 0.5},     {"5.", 5},     {"459..", 459}, {"459.-", -459}, {"-\u00A55", -5},
      {"( 5 )", -5},  {"- 5", -5},
  };
  for (const auto& [text, expected] : cases) {
    ASSERT_TRUE(parseNumber(text)) << text;
    EXPECT_EQ(*parseNumber(text), expected) << text;
    EXPECT_TRUE(isNumeric(text)) << text;
  }
}

TEST(ConversionsTest, OtherTextsAreNoNumbers) {
  for (const char* text : {"",   " ",        ".",    "-",   "45 Help", "rwrf",         "1 000", "1e",  "0x1F", "12%",
                           "$5", "2005-1-1", "--5",  "-5-", "(5",      "5)",           "(-5)",  "&HG", "&",    "&H",
                           "&8", "1e+",      "5..5", ",5",  "True",    "\uFF11\uFF12", "nan",   "inf", "1e999"}) {
    EXPECT_FALSE(isNumeric(text)) << text;
    EXPECT_FALSE(parseNumber(text)) << text;
  }
}

TEST(ConversionsTest, IsNumericKnowsEveryKindOfValue) {
  const Value numbers[] = {
      std::int16_t{1}, std::int32_t{1},        std::int64_t{1}, std::uint8_t{1}, 1.0F, 1.0, Currency{1}, true,
      Value(),         Decimal{0, 1, 0, false}};
  for (const auto& value : numbers) EXPECT_TRUE(isNumeric(value)) << value.typeNumber();
  const Value others[] = {Date{1}, Null{}, ObjectRef(), Bytes({1}), Array::of(ValueType::int32, {}), missingArgument};
  for (const auto& value : others) EXPECT_FALSE(isNumeric(value)) << value.typeNumber();
}

TEST(ConversionsTest, NullIsAnInvalidUseOfNullEverywhere) {
  const Value null = Null{};
  EXPECT_EQ(errorOf([&] { (void)toInt32(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toByte(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toDouble(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toSingle(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toCurrency(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toDecimal(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toBoolean(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toDate(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)toText(null); }), 94U);
  EXPECT_EQ(errorOf([&] { (void)changeType(null, ValueType::int16); }), 94U);
}

TEST(ConversionsTest, EmptyIsZeroAndTheEmptyText) {
  EXPECT_EQ(toInt32(Value()), 0);
  EXPECT_EQ(toDouble(Value()), 0.0);
  EXPECT_EQ(toCurrency(Value()), Currency{0});
  EXPECT_EQ(toDecimal(Value()), Decimal{});
  EXPECT_FALSE(toBoolean(Value()));
  EXPECT_EQ(toDate(Value()), Date{0});
  EXPECT_EQ(toText(Value()), "");
}

TEST(ConversionsTest, TrueIsMinusOneAndTheHighestByte) {
  EXPECT_EQ(toInt32(true), -1);
  EXPECT_EQ(toInt16(true), -1);
  EXPECT_EQ(toInt64(true), -1);
  EXPECT_EQ(toByte(true), 255);
  EXPECT_EQ(toDouble(true), -1.0);
  EXPECT_EQ(toCurrency(true), Currency{-10000});
  EXPECT_EQ(exactText(toDecimal(true)), "-1");
  EXPECT_EQ(toInt32(false), 0);
}

TEST(ConversionsTest, WhatDoesNotFitOverflows) {
  EXPECT_EQ(errorOf([] { (void)toInt32(2147483648.0); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toInt32("2147483647.5"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toInt16(std::int32_t{32768}); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toByte(std::int32_t{-1}); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toByte("256"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toInt64(9.3e18); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toInt64("9223372036854775808"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toSingle(1e39); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toDouble("1e999"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toCurrency("922337203685477.5808"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toDecimal("79228162514264337593543950336"); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toDate(2958466.0); }), 6U);
  EXPECT_EQ(errorOf([] { (void)toInt32("&H100000000"); }), 6U);
}

TEST(ConversionsTest, LimitsFit) {
  EXPECT_EQ(toInt32(-2147483648.5), -2147483647 - 1);
  EXPECT_EQ(toInt64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(toInt16("32767"), 32767);
  EXPECT_EQ(exactText(toCurrency("922337203685477.5807")), "922337203685477.5807");
  EXPECT_EQ(exactText(toDecimal("79228162514264337593543950335")), "79228162514264337593543950335");
}

TEST(ConversionsTest, AHexadecimalTextIsABitPatternOfItsTarget) {
  EXPECT_EQ(toInt16("&HFFFF"), -1);
  EXPECT_EQ(toInt32("&HFFFF"), 65535);
  EXPECT_EQ(toInt32("&HFFFFFFFF"), -1);
}

TEST(ConversionsTest, WhatIsNoNumberMismatches) {
  for (const Value& value : {Value("x"), Value(""), Value(Bytes({1})), Value(missingArgument), Value(ObjectRef()),
                             Value(std::make_shared<Thing>()), Value(Array::of(ValueType::int32, {}))}) {
    EXPECT_EQ(errorOf([&] { (void)toInt32(value); }), 13U) << value.typeNumber();
    EXPECT_EQ(errorOf([&] { (void)toDouble(value); }), 13U) << value.typeNumber();
    EXPECT_EQ(errorOf([&] { (void)toBoolean(value); }), 13U) << value.typeNumber();
    EXPECT_EQ(errorOf([&] { (void)toCurrency(value); }), 13U) << value.typeNumber();
    EXPECT_EQ(errorOf([&] { (void)toDate(value); }), 13U) << value.typeNumber();
  }
  EXPECT_EQ(errorOf([] { (void)toText(Bytes({1})); }), 13U);
}

TEST(ConversionsTest, DoublesBecomeTextsOfFifteenDigits) {
  const std::pair<double, const char*> cases[] = {
      {0.5, "0.5"},
      {-0.0, "0"},
      {100, "100"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {999999999999999.0, "999999999999999"},
      {1e15, "1E+15"},
      {1.234e16, "1.234E+16"},
      {5.6789e-12, "5.6789E-12"},
      {-123456.789, "-123456.789"},
      {1e100, "1E+100"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(toText(value), text);
}

TEST(ConversionsTest, SinglesBecomeTextsOfSevenDigits) {
  EXPECT_EQ(toText(0.1F), "0.1");
  EXPECT_EQ(toText(1234567.0F), "1234567");
  EXPECT_EQ(toText(12345678.0F), "1.234568E+07");
}

TEST(ConversionsTest, FixedPointNumbersBecomePlainTexts) {
  EXPECT_EQ(toText(Currency{123400}), "12.34");
  EXPECT_EQ(toText(Currency{-5}), "-0.0005");
  EXPECT_EQ(toText(Currency{10000000}), "1000");
  EXPECT_EQ(toText(Decimal{0, 10, 2, false}), "0.1");
  EXPECT_EQ(toText(Decimal{0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 0, true}), "-79228162514264337593543950335");
  EXPECT_EQ(toText(Decimal{0, 0, 2, true}), "0");
}

TEST(ConversionsTest, BooleansAndTextsMeet) {
  EXPECT_EQ(toText(true), "True");
  EXPECT_EQ(toText(false), "False");
  for (const char* text : {"True", "TRUE", "true", "#TRUE#", "1", "-0.5", "&H1"}) EXPECT_TRUE(toBoolean(text)) << text;
  for (const char* text : {"False", "fAlse", "#FALSE#", "0", "0.0", "&H0"}) EXPECT_FALSE(toBoolean(text)) << text;
  EXPECT_EQ(errorOf([] { (void)toBoolean("yes"); }), 13U);
}

TEST(ConversionsTest, AnyNumberButZeroIsTrue) {
  EXPECT_TRUE(toBoolean(0.1));
  EXPECT_TRUE(toBoolean(Currency{1}));
  EXPECT_TRUE(toBoolean(Decimal{0, 1, 28, false}));
  EXPECT_FALSE(toBoolean(std::int32_t{0}));
}

TEST(ConversionsTest, DatesBecomeTextsWithTheirTimeUnlessMidnight) {
  EXPECT_EQ(toText(Date{40983}), "2012-3-15");
  EXPECT_EQ(toText(Date{40983.5}), "2012-3-15 12:00:00");
  EXPECT_EQ(toText(Date{0.25}), "6:00:00");
  EXPECT_EQ(toText(Date{-1.25}), "1899-12-29 6:00:00");
  EXPECT_EQ(toText(Date{40983 + 59.9 / 86400}), "2012-3-15 0:01:00");
}

TEST(ConversionsTest, TextsAndNumbersBecomeDates) {
  EXPECT_EQ(toDate("2012-3-15"), Date{40983});
  EXPECT_EQ(toDate("2012/3/15 12:00:00"), Date{40983.5});
  EXPECT_EQ(toDate("20120315"), Date{40983});
  EXPECT_EQ(toDate("12:00"), Date{0.5});
  EXPECT_EQ(toDate(std::int32_t{40983}), Date{40983});
  EXPECT_EQ(errorOf([] { (void)toDate("2012-2-30"); }), 13U);
}

TEST(ConversionsTest, MoneyNeverPassesThroughBinaryFloatingPoint) {
  EXPECT_EQ(toCurrency("123456789012345.6789"), Currency{1234567890123456789});
  EXPECT_EQ(exactText(toDecimal(Currency{1234567890123456789})), "123456789012345.6789");
  EXPECT_EQ(toCurrency(Decimal{0, 100005, 5, false}), Currency{10000});  // 1.00005: half to even
  EXPECT_EQ(toCurrency(Decimal{0, 100015, 5, false}), Currency{10002});
  EXPECT_EQ(exactText(toDecimal("0.1234567890123456789012345678")), "0.1234567890123456789012345678");
  EXPECT_EQ(exactText(toDecimal("0.12345678901234567890123456785")), "0.1234567890123456789012345678");
}

TEST(ConversionsTest, DoublesBecomeDecimalsOfTheirFifteenDigits) {
  EXPECT_EQ(exactText(toDecimal(0.1)), "0.1");
  EXPECT_EQ(exactText(toDecimal(0.1F)), "0.1");
  EXPECT_EQ(exactText(toDecimal(1e20)), "100000000000000000000");
  EXPECT_EQ(exactText(toDecimal(1e-40)), "0.0000000000000000000000000000");
}

TEST(ConversionsTest, ExactTextKeepsAllDigits) {
  EXPECT_EQ(exactText(Currency{123400}), "12.3400");
  EXPECT_EQ(exactText(Currency{0}), "0.0000");
  EXPECT_EQ(exactText(Decimal{0, 1, 1, false}), "0.1");
  EXPECT_EQ(exactText(Decimal{0, 10, 2, true}), "-0.10");
}

TEST(ConversionsTest, PlainDecimalTextsAreReadExactlyOrNotAtAll) {
  EXPECT_EQ(parseDecimal("-0.10"), (Decimal{0, 10, 2, true}));
  EXPECT_EQ(parseCurrency("12.3400"), Currency{123400});
  EXPECT_EQ(parseCurrency("12.340000"), Currency{123400});
  EXPECT_EQ(parseCurrency("-5"), Currency{-50000});
  for (const char* text : {"", "1e3", " 1", "1.", ".5", "1,0", "x", "-", "0.12345678901234567890123456789",
                           "79228162514264337593543950336"}) {
    EXPECT_FALSE(parseDecimal(text)) << text;
  }
  for (const char* text : {"1.00001", "922337203685477.5808", "&H1"}) EXPECT_FALSE(parseCurrency(text)) << text;
}

TEST(ConversionsTest, ChangeTypeAnswersTheAskedType) {
  const ValueType types[] = {ValueType::int16,    ValueType::int32, ValueType::single, ValueType::real,
                             ValueType::currency, ValueType::date,  ValueType::string, ValueType::boolean,
                             ValueType::decimal,  ValueType::byte,  ValueType::int64};
  for (const auto type : types) EXPECT_EQ(changeType(std::int32_t{5}, type).type(), type);
}

TEST(ConversionsTest, ChangeTypeLeavesObjectsAndVariantsAlone) {
  const Value thing = std::make_shared<Thing>();
  EXPECT_EQ(changeType(thing, ValueType::object), thing);
  EXPECT_EQ(changeType(Null{}, ValueType::variant), Value(Null{}));
  EXPECT_EQ(errorOf([] { (void)changeType(std::int32_t{1}, ValueType::object); }), 13U);
  EXPECT_EQ(errorOf([&] { (void)changeType(thing, ValueType::string); }), 13U);
}

TEST(ConversionsTest, TrimTakesBlanksOnly) {
  EXPECT_EQ(trim("  a b  "), "a b");
  EXPECT_EQ(trim("\ta\n"), "\ta\n");
  EXPECT_EQ(trim("\u3000a"), "\u3000a");
  EXPECT_EQ(trim("   "), "");
}

}  // namespace
}  // namespace tolvane
