#include "tsql/convert.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {
namespace {

using enum TypeKind;

std::string converted(const Datum& value, const Type& from, const Type& to, std::optional<int> style = std::nullopt) {
  const PlainCollation collation;
  return shownOrError([&] { return shown(convert(value, from, to, style, collation)); });
}

Type text(int length) {
  return Type::text(VarChar, length);
}
Type unicode(int length) {
  return Type::text(NVarChar, length);
}

struct ConvertRow {
  Datum value;
  Type from;
  Type to;
  std::string_view expected;
  std::optional<int> style = std::nullopt;
};

void expectAll(const std::vector<ConvertRow>& rows) {
  for (const ConvertRow& row : rows) {
    EXPECT_EQ(converted(row.value, row.from, row.to, row.style), row.expected)
        << shown(Result(row.value)) << " " << row.from.name() << " to " << row.to.name();
  }
}

TEST(Convert, TextToIntegers) {
  const std::string toBig = "8115 Arithmetic overflow error converting expression to data type bigint.";
  expectAll({
      {" -12 ", text(9), Type::of(Int), "-12"},
      {"", text(9), Type::of(Int), "0"},
      {"  ", text(9), Type::of(TinyInt), "0"},
      {"12.5", text(9), Type::of(Int),
       "245 Conversion failed when converting the varchar value '12.5' to data type int."},
      {"abc", unicode(9), Type::of(SmallInt),
       "245 Conversion failed when converting the nvarchar value 'abc' to data type smallint."},
      {"99999999999", text(20), Type::of(Int),
       "248 The conversion of the varchar value '99999999999' overflowed an int column."},
      {"300", text(9), Type::of(TinyInt),
       "244 The conversion of the varchar value '300' overflowed an INT1 column. Use a larger integer column."},
      {"-1", text(9), Type::of(TinyInt),
       "244 The conversion of the varchar value '-1' overflowed an INT1 column. Use a larger integer column."},
      {"40000", text(9), Type::of(SmallInt),
       "244 The conversion of the varchar value '40000' overflowed an INT2 column. Use a larger integer column."},
      {"x", text(9), Type::of(BigInt), "8114 Error converting data type varchar to bigint."},
      {"9223372036854775808", text(20), Type::of(BigInt), toBig},
      {"TRUE ", text(9), Type::of(Bit), "1"},
      {"false", text(9), Type::of(Bit), "0"},
      {"2", text(9), Type::of(Bit), "1"},
      {"yes", text(9), Type::of(Bit),
       "245 Conversion failed when converting the varchar value 'yes' to data type bit."},
  });
}

TEST(Convert, TextToOtherNumbers) {
  expectAll({
      {"", text(9), Type::of(Float), "0.0"},
      {" 1.5e3 ", text(9), Type::of(Float), "1500.0"},
      {"x", text(9), Type::of(Float), "8114 Error converting data type varchar to float."},
      {"1e999", text(9), Type::of(Float), "8115 Arithmetic overflow error converting expression to data type float."},
      {"1e39", text(9), Type::of(Real),
       "232 Arithmetic overflow error for type real, value = 999999999999999940000000000000000000000.000000."},
      {"", text(9), Type::of(Money), "'0.0000'"},
      {"$1,234.56789", text(20), Type::of(Money), "'1234.5679'"},
      {"x", text(9), Type::of(Money), "235 Cannot convert a char value to money. The char value has incorrect syntax."},
      {"x", text(9), Type::of(SmallMoney),
       "293 Cannot convert a char value to smallmoney. The char value has incorrect syntax."},
      {"1e15", text(9), Type::of(Money),
       "235 Cannot convert a char value to money. The char value has incorrect syntax."},
      {"1000000", text(9), Type::of(SmallMoney),
       "8115 Arithmetic overflow error converting expression to data type smallmoney."},
      {"", text(9), Type::decimal(5, 2), "8114 Error converting data type varchar to numeric."},
      {"1.245", unicode(9), Type::decimal(5, 2), "'1.25'"},
      {"-0.001", text(9), Type::decimal(5, 2), "'0.00'"},
      {"1e2", text(9), Type::decimal(5, 2), "8114 Error converting data type varchar to numeric."},
      {"1000", text(9), Type::decimal(5, 2), "8115 Arithmetic overflow error converting varchar to data type numeric."},
  });
}

TEST(Convert, MoneyRoundsToIntegersWhereDecimalsAndFloatsAreCut) {
  expectAll({
      {"1.5000", Type::of(Money), Type::of(Int), "2"},
      {"-1.5000", Type::of(SmallMoney), Type::of(SmallInt), "-2"},
      {"1.9", Type::decimal(5, 1), Type::of(Int), "1"},
      {"-1.9", Type::decimal(5, 1), Type::of(Int), "-1"},
      {1.9, Type::of(Float), Type::of(Int), "1"},
      {-1.9, Type::of(Real), Type::of(BigInt), "-1"},
      {"0.4", Type::decimal(5, 1), Type::of(Bit), "1"},
  });
}

TEST(Convert, NumbersThatDoNotFitAreErrors) {
  expectAll({
      {300, Type::of(Int), Type::of(TinyInt), "220 Arithmetic overflow error for data type tinyint, value = 300."},
      {40000, Type::of(Int), Type::of(SmallInt),
       "220 Arithmetic overflow error for data type smallint, value = 40000."},
      {INT64_C(3000000000), Type::of(BigInt), Type::of(Int),
       "8115 Arithmetic overflow error converting expression to data type int."},
      {3e9, Type::of(Float), Type::of(Int), "232 Arithmetic overflow error for type int, value = 3000000000.000000."},
      {1e19, Type::of(Float), Type::of(BigInt),
       "8115 Arithmetic overflow error converting expression to data type bigint."},
      {"3000000000", Type::decimal(10, 0), Type::of(Int),
       "8115 Arithmetic overflow error converting expression to data type int."},
      {1000, Type::of(Int), Type::decimal(5, 2), "8115 Arithmetic overflow error converting int to data type numeric."},
      {"1000.0", Type::decimal(5, 1), Type::decimal(5, 2),
       "8115 Arithmetic overflow error converting numeric to data type numeric."},
      {1e10, Type::of(Float), Type::decimal(5, 2),
       "8115 Arithmetic overflow error converting float to data type numeric."},
      {1e15, Type::of(Float), Type::of(Money),
       "8115 Arithmetic overflow error converting expression to data type money."},
  });
}

TEST(Convert, DecimalsKeepTheirDigitsWithoutBinaryFloatingPoint) {
  expectAll({
      {"12345678901234567890.123456789012345678", Type::decimal(38, 18), Type::decimal(38, 17),
       "'12345678901234567890.12345678901234568'"},
      {"0.1", Type::decimal(2, 1), Type::decimal(38, 37), "'0.1000000000000000000000000000000000000'"},
      {INT64_MAX, Type::of(BigInt), Type::decimal(38, 10), "'9223372036854775807.0000000000'"},
      {"922337203685477.5807", Type::of(Money), Type::decimal(19, 4), "'922337203685477.5807'"},
  });
}

TEST(Convert, NumbersToText) {
  expectAll({
      {-12, Type::of(Int), text(9), "'-12'"},
      {12345, Type::of(Int), text(3), "'*'"},
      {12345, Type::of(Int), unicode(3), "8115 Arithmetic overflow error converting expression to data type nvarchar."},
      {12345, Type::of(BigInt), text(3), "8115 Arithmetic overflow error converting expression to data type varchar."},
      {1, Type::of(Bit), text(1), "'1'"},
      {1234567.0, Type::of(Float), text(30), "'1.23457e+006'"},
      {1e15, Type::of(Float), text(30), "'1e+015'"},
      {0.1, Type::of(Float), text(30), "'1.000000000000000e-001'", 2},
      {1.5, Type::of(Float), text(30), "'1.5'", 9},
      {1234.5, Type::of(Float), text(3), "232 Arithmetic overflow error for type varchar, value = 1234.500000."},
      {"1234.5678", Type::of(Money), text(30), "'1234.57'"},
      {"1234.5678", Type::of(Money), text(30), "'1,234.57'", 1},
      {"1234.5678", Type::of(Money), text(30), "'1234.5678'", 2},
      {"1234.5678", Type::of(Money), text(3),
       "234 There is insufficient result space to convert a money value to varchar."},
      {"0.50", Type::decimal(5, 2), text(30), "'0.50'"},
      {"100.50", Type::decimal(5, 2), text(3),
       "8115 Arithmetic overflow error converting numeric to data type varchar."},
      {7, Type::of(Int), Type::text(Char, 3), "'7  '"},
  });
}

TEST(Convert, TextToTextIsCutAndPadded) {
  expectAll({
      {"abcdef", text(9), text(3), "'abc'"},
      {"ab", text(9), Type::text(Char, 4), "'ab  '"},
      {"报表", unicode(9), Type::text(NChar, 4), "'报表  '"},
      {"报表", unicode(9), Type::text(Char, 6), "'报表  '"},
      {"a报表", unicode(9), text(4), "'a报'"},
      {"报表", unicode(9), unicode(1), "'报'"},
      {"报表", text(9), text(maxLength), "'报表'"},
      {"报表", text(9), Type::of(NText), "'报表'"},
      {"a😀é", unicode(9), text(9), "'a\?\?\?'"},
      {"a😀é", unicode(9), unicode(9), "'a😀é'"},
  });
}

TEST(Convert, DatesToTextHaveTheirStyle) {
  const char* const moment = "2012-03-05 13:02:03.123";
  expectAll({
      {moment, Type::of(DateTime), text(30), "'Mar  5 2012  1:02PM'"},
      {moment, Type::of(DateTime), text(30), "'2012-03-05 13:02:03'", 120},
      {moment, Type::of(DateTime), text(10), "'2012-03-05'", 120},
      {moment, Type::of(DateTime), text(30),
       "281 15 is not a valid style number when converting from datetime to a character string.", 15},
      {"2012-03-05", Type::of(Date), text(30), "'2012-03-05'"},
      {"2012-03-05", Type::of(Date), text(30), "'05/03/2012'", 103},
      {"2012-03-05", Type::of(Date), text(30), "8114 Error converting data type date to varchar.", 108},
  });
}

TEST(Convert, TextToDates) {
  expectAll({
      {"", text(9), Type::of(DateTime), "'1900-01-01 00:00:00.000'"},
      {"20120315", text(9), Type::of(DateTime), "'2012-03-15 00:00:00.000'"},
      {"15/03/2012", text(20), Type::of(DateTime), "'2012-03-15 00:00:00.000'", 103},
      {"2012-03-15 13:02:30", text(20), Type::of(SmallDateTime), "'2012-03-15 13:03:00.000'"},
      {"2012-03-15 13:02:30", text(20), Type::of(Date), "'2012-03-15'"},
      {"abc", text(9), Type::of(DateTime),
       "241 Conversion failed when converting date and/or time from character string."},
      {"abc", text(9), Type::of(SmallDateTime),
       "295 Conversion failed when converting character string to smalldatetime data type."},
      {"2012-02-30", text(20), Type::of(DateTime),
       "242 The conversion of a varchar data type to a datetime data type resulted in an out-of-range value."},
      {"1752-01-01", unicode(20), Type::of(DateTime),
       "242 The conversion of a nvarchar data type to a datetime data type resulted in an out-of-range value."},
      {"2012-02-30", text(20), Type::of(Date),
       "241 Conversion failed when converting date and/or time from character string."},
  });
}

TEST(Convert, NumbersAndDatesAreDaysSince1900) {
  const char* const noon = "1900-01-03 12:00:00.000";
  expectAll({
      {2, Type::of(Int), Type::of(DateTime), "'1900-01-03 00:00:00.000'"},
      {2.5, Type::of(Float), Type::of(DateTime), "'1900-01-03 12:00:00.000'"},
      {"2.5", Type::decimal(5, 1), Type::of(DateTime), "'1900-01-03 12:00:00.000'"},
      {3000000, Type::of(Int), Type::of(DateTime),
       "8115 Arithmetic overflow error converting expression to data type datetime."},
      {noon, Type::of(DateTime), Type::of(Int), "3"},
      {noon, Type::of(DateTime), Type::of(Float), "2.5"},
      {noon, Type::of(DateTime), Type::decimal(10, 4), "'2.5000'"},
      {noon, Type::of(DateTime), Type::of(TinyInt), "3"},
      {2, Type::of(Int), Type::of(Date), "206 Operand type clash: int is incompatible with date"},
  });
}

TEST(Convert, DatesBetweenTheirTypes) {
  expectAll({
      {"1752-01-01", Type::of(Date), Type::of(DateTime),
       "242 The conversion of a date data type to a datetime data type resulted in an out-of-range value."},
      {"2012-03-15", Type::of(Date), Type::of(DateTime), "'2012-03-15 00:00:00.000'"},
      {"2012-03-15 13:02:30.000", Type::of(DateTime), Type::of(SmallDateTime), "'2012-03-15 13:03:00.000'"},
      {"2079-06-06 23:59:30.000", Type::of(DateTime), Type::of(SmallDateTime),
       "242 The conversion of a datetime data type to a smalldatetime data type resulted in an out-of-range value."},
      {"2012-03-15 13:02:30.000", Type::of(DateTime), Type::of(Date), "'2012-03-15'"},
  });
}

TEST(Convert, BytesAreBigEndianNumbers) {
  static const Bytes bytes{std::byte{0x20}, std::byte{0x00}};
  static const Bytes negative(4, std::byte{0xFF});
  const Type binary = Type::text(VarBinary, 10);
  expectAll({
      {bytes, binary, Type::of(Int), "8192"},
      {bytes, binary, Type::of(TinyInt), "0"},
      {bytes, binary, Type::of(Bit), "1"},
      {negative, binary, Type::of(Int), "-1"},
      {negative, binary, Type::of(BigInt), "4294967295"},
      {bytes, binary, Type::decimal(10, 2), "8114 Error converting data type varbinary to numeric."},
      {bytes, binary, Type::of(Money), "'0.8192'"},
      {bytes, binary, Type::of(Float), "8114 Error converting data type varbinary to float."},
      {258, Type::of(Int), Type::text(VarBinary, 10), "0x00000102"},
      {258, Type::of(Int), Type::text(Binary, 2), "0x0102"},
      {258, Type::of(SmallInt), Type::text(Binary, 4), "0x00000102"},
      {"0.0001", Type::of(Money), Type::text(VarBinary, 10), "0x0000000000000001"},
      {1.0, Type::of(Float), Type::text(VarBinary, 10), "0x3FF0000000000000"},
      {"1900-01-02 00:00:01.000", Type::of(DateTime), Type::text(VarBinary, 10), "0x000000010000012C"},
  });
}

TEST(Convert, BytesAndTextHaveThreeStyles) {
  static const Bytes bytes{std::byte{0x41}, std::byte{0x42}};
  const Type binary = Type::text(VarBinary, 10);
  expectAll({
      {bytes, binary, text(10), "'AB'"},
      {bytes, binary, text(10), "'0x4142'", 1},
      {bytes, binary, text(10), "'4142'", 2},
      {bytes, binary, text(10),
       "281 3 is not a valid style number when converting from varbinary to a character string.", 3},
      {bytes, binary, unicode(10), "'䉁'"},
      {"AB", text(9), binary, "0x4142"},
      {"AB", unicode(9), binary, "0x41004200"},
      {"报", text(9), binary, "0x95A5"},
      {"0x41fF", text(9), binary, "0x41FF", 1},
      {"41fF", text(9), binary, "0x41FF", 2},
      {"41", text(9), binary, "8114 Error converting data type varchar to varbinary.", 1},
      {"4", text(9), binary, "8114 Error converting data type varchar to varbinary.", 2},
      {"4x", text(9), binary, "8114 Error converting data type varchar to varbinary.", 2},
      {"ABC", text(9), Type::text(Binary, 2), "0x4142"},
      {"A", text(9), Type::text(Binary, 2), "0x4100"},
  });
}

TEST(Convert, UniqueIdentifiersAreUpperCaseText) {
  static const Bytes bytes{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}, std::byte{5}, std::byte{6}};
  const Type guid = Type::of(UniqueIdentifier);
  const char* const syntax = "8169 Conversion failed when converting from a character string to uniqueidentifier.";
  expectAll({
      {"33221100-5544-4766-8899-aabbccddeeff", text(40), guid, "'33221100-5544-4766-8899-AABBCCDDEEFF'"},
      {"{33221100-5544-4766-8899-aabbccddeeff}", text(40), guid, "'33221100-5544-4766-8899-AABBCCDDEEFF'"},
      {"33221100-5544-4766-8899-aabbccddeeff and more", text(60), guid, "'33221100-5544-4766-8899-AABBCCDDEEFF'"},
      {"33221100", text(40), guid, syntax},
      {"{33221100-5544-4766-8899-aabbccddeeff", text(40), guid, syntax},
      {"3322110g-5544-4766-8899-aabbccddeeff", text(40), guid, syntax},
      {bytes, Type::text(VarBinary, 16), guid, "'04030201-0605-0000-0000-000000000000'"},
      {"33221100-5544-4766-8899-AABBCCDDEEFF", guid, Type::text(VarBinary, 16), "0x00112233445566478899AABBCCDDEEFF"},
      {"33221100-5544-4766-8899-AABBCCDDEEFF", guid, text(10),
       "8170 Insufficient result space to convert uniqueidentifier value to char."},
  });
}

std::string assigned(const Datum& value, const Type& from, const Type& to) {
  const PlainCollation collation;
  return shownOrError([&] { return shown(assign(value, from, to, "T_Rpt.FName", collation)); });
}

TEST(Assign, WhatDoesNotFitAColumnIsRefusedButForBlanks) {
  const std::string truncated = "8152 String or binary data would be truncated.";
  EXPECT_EQ(assigned("abcd", text(9), text(3)), truncated);
  EXPECT_EQ(assigned("abc  ", text(9), text(3)), "'abc'");
  EXPECT_EQ(assigned("报表", unicode(9), text(3)), truncated);
  EXPECT_EQ(assigned("报表", unicode(9), unicode(2)), "'报表'");
  EXPECT_EQ(assigned("😀", unicode(9), unicode(1)), truncated);
  EXPECT_EQ(assigned(std::string(9000, 'x'), text(9), Type::of(NText)).size(), 9002U);
  static const Bytes bytes{std::byte{1}, std::byte{2}, std::byte{0}};
  EXPECT_EQ(assigned(bytes, Type::text(VarBinary, 9), Type::text(VarBinary, 2)), "0x0102");
  EXPECT_EQ(assigned(bytes, Type::text(VarBinary, 9), Type::text(VarBinary, 1)), truncated);
}

TEST(Assign, NullNeedsAColumnThatTakesIt) {
  EXPECT_EQ(assigned(Datum(), text(9), text(3)), "null");
  EXPECT_EQ(assigned(Datum(), text(9), text(3).orNull(false)),
            "515 Cannot insert the value NULL into column 'FName', table 'T_Rpt'; column does not allow nulls. "
            "INSERT fails.");
}

// A sample of each kind of type, and of a value that all other types may or may not take.
struct Sample {
  Type type;
  Datum value;
};
std::vector<Sample> samples() {
  static const Bytes bytes{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{1},
                           std::byte{0}, std::byte{0}, std::byte{0}, std::byte{2}};
  std::vector<Sample> all;
  for (int i = 0; i < kindCount; ++i) {
    const auto kind = static_cast<TypeKind>(i);
    Type type = kind == TypeKind::Decimal ? Type::decimal(10, 2) : Type::of(kind);
    if (typeRow(kind).takesLength) type.length = 40;
    Datum value(1);
    if (type.isText()) value = Datum("1");
    if (type.isBinary()) value = Datum(bytes);
    if (type.isExactText()) value = Datum(type.isMoney() ? "1.0000" : "1.00");
    if (type.isFloat()) value = Datum(1.0);
    if (type.isDate()) value = Datum(kind == TypeKind::Date ? "1900-01-02" : "1900-01-02 00:00:00.000");
    if (kind == TypeKind::UniqueIdentifier) value = Datum("33221100-5544-4766-8899-AABBCCDDEEFF");
    if (kind != TypeKind::Null) all.push_back({type, value});
  }
  return all;
}

TEST(Convert, EveryPairOfTypesConvertsOrIsRefusedWithAnErrorOfItsOwn) {
  for (const Sample& from : samples()) {
    for (const Sample& to : samples()) {
      const std::string result = converted(from.value, from.type, to.type);
      EXPECT_FALSE(result.empty() || result == "null") << from.type.name() << " to " << to.type.name();
      if (from.type == to.type) {
        std::string same = shown(Result(from.value));
        if (same.back() == '\'') same.pop_back();
        if (to.type.kind == TypeKind::Binary) same += std::string(64, '0');
        EXPECT_EQ(result.substr(0, same.size()), same) << from.type.name();
      }
    }
  }
}

TEST(Convert, AValueInAnotherStorageThanItsTypesIsTakenByItsStorage) {
  static const Bytes bytes{std::byte{7}};
  for (const Sample& from : samples()) {
    for (const Sample& to : samples()) {
      for (const Datum& value : {Datum("1"), Datum(1), Datum(1.0), Datum(bytes)}) {
        const std::string result = converted(value, from.type, to.type);
        EXPECT_FALSE(result.empty()) << from.type.name() << " to " << to.type.name();
      }
    }
  }
}

}  // namespace
}  // namespace tolvane::tsql::testing
