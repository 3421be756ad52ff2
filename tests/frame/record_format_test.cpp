// Variant records byte for byte, in code page 936, both ways; and bytes that are no record.
#include "frame/record_format.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "platform/error.h"
#include "standalone/code_page.h"
#include "standalone/objects.h"

namespace tolvane::test {
namespace {

using Octets = std::vector<std::uint8_t>;

Octets octets(const std::string& hex) {
  std::istringstream in(hex);
  Octets bytes;
  unsigned byte = 0;
  while (in >> std::hex >> byte) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

class SpanSource : public RecordSource {
 public:
  explicit SpanSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  void read(std::span<std::uint8_t> bytes) override {
    if (bytes.size() > bytes_.size()) raise(RuntimeError::typeNotSupported);
    std::copy_n(bytes_.begin(), bytes.size(), bytes.begin());
    bytes_ = bytes_.subspan(bytes.size());
  }
  std::uint64_t remaining() const override { return bytes_.size(); }

 private:
  std::span<const std::uint8_t> bytes_;
};

struct RecordFormat : testing::Test {
  standalone::CodePage ansi{936};

  Octets written(const Value& value) {
    Octets bytes;
    writeRecord(value, ansi,
                [&](std::span<const std::uint8_t> block) { bytes.insert(bytes.end(), block.begin(), block.end()); });
    return bytes;
  }
  Value read(std::span<const std::uint8_t> bytes) {
    SpanSource source(bytes);
    return readRecord(source, ansi);
  }
  std::uint32_t readError(const Octets& bytes) {
    try {
      (void)read(bytes);
    } catch (const AutomationError& error) {
      return error.number();
    }
    return 0;
  }
  std::uint32_t writeError(const Value& value) {
    try {
      (void)written(value);
    } catch (const AutomationError& error) {
      return error.number();
    }
    return 0;
  }
};

constexpr std::uint32_t notSupported = errorNumber(RuntimeError::typeNotSupported);

Value numbers(ValueType type, std::vector<Value> elements, std::int32_t lower) {
  return Array::of(type, std::move(elements), lower);
}
Value i16(int value) {
  return static_cast<std::int16_t>(value);
}

struct Example {
  const char* name;
  Value value;
  const char* bytes;
};

std::vector<Example> examples() {
  return {
      {"Empty", Empty{}, "00 00"},
      {"Null", Null{}, "01 00"},
      {"Integer7", i16(7), "02 00 07 00"},
      {"IntegerMinus1", i16(-1), "02 00 FF FF"},
      {"Long7", std::int32_t{7}, "03 00 07 00 00 00"},
      {"LongMinus2", std::int32_t{-2}, "03 00 FE FF FF FF"},
      {"Single", 1.5F, "04 00 00 00 C0 3F"},
      {"Double", 1.5, "05 00 00 00 00 00 00 00 F8 3F"},
      {"Currency", Currency{12500}, "06 00 D4 30 00 00 00 00 00 00"},
      {"Date", Date{44197.5}, "07 00 00 00 00 00 B0 94 E5 40"},
      {"TextAB", "AB", "08 00 02 00 41 42"},
      {"EmptyText", "", "08 00 00 00"},
      {"ChineseText", "中", "08 00 02 00 D6 D0"},
      {"MixedText", "中A", "08 00 03 00 D6 D0 41"},
      {"TextWithNul", std::string("A\0 ", 3), "08 00 03 00 41 00 20"},
      {"ErrorValue", ErrorCode{0x800A07FA}, "0A 00 FA 07 0A 80"},
      {"Missing", missingArgument, "0A 00 04 00 02 80"},
      {"True", true, "0B 00 FF FF"},
      {"False", false, "0B 00 00 00"},
      {"Decimal", Decimal{0, 123, 2, false}, "0E 00 0E 00 02 00 00 00 00 00 7B 00 00 00 00 00 00 00"},
      {"NegativeDecimal", Decimal{0, 123, 2, true}, "0E 00 0E 00 02 80 00 00 00 00 7B 00 00 00 00 00 00 00"},
      {"WideDecimal", Decimal{0x01020304, 0x1112131421222324, 28, false},
       "0E 00 0E 00 1C 00 04 03 02 01 24 23 22 21 14 13 12 11"},
      {"Byte200", std::uint8_t{200}, "11 00 C8"},
      {"LongLong", std::int64_t{-3}, "14 00 FD FF FF FF FF FF FF FF"},
      {"TwoTexts", numbers(ValueType::string, {"A", "BC"}, 0),
       "08 20 01 00 02 00 00 00 00 00 00 00 01 00 41 02 00 42 43"},
      {"Variants", numbers(ValueType::variant, {i16(1), "中"}, 0),
       "0C 20 01 00 02 00 00 00 00 00 00 00 02 00 01 00 08 00 02 00 D6 D0"},
      {"TwoDimensions", Array{ValueType::int16, {{0, 2}, {1, 3}}, {i16(1), i16(11), i16(2), i16(12), i16(3), i16(13)}},
       "02 20 02 00 03 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 01 00 0B 00 02 00 0C 00 03 00 0D 00"},
      {"ByteArray", Bytes(Octets{10, 20, 30}, 1), "11 20 01 00 03 00 00 00 01 00 00 00 0A 14 1E"},
      {"EmptyByteArray", Bytes(Octets{}), "11 20 01 00 00 00 00 00 00 00 00 00"},
      {"ByteTable", Array{ValueType::byte, {{0, 1}, {0, 2}}, {std::uint8_t{1}, std::uint8_t{2}}},
       "11 20 02 00 02 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 01 02"},
      {"NoElements", numbers(ValueType::variant, {}, 0), "0C 20 01 00 00 00 00 00 00 00 00 00"},
      {"NeverDimensioned", Array{ValueType::string, {}, {}}, "08 20 00 00"},
      {"NegativeLowerBound", numbers(ValueType::boolean, {true, false}, -1),
       "0B 20 01 00 02 00 00 00 FF FF FF FF FF FF 00 00"},
      {"Nested", numbers(ValueType::variant, {std::int32_t{5}, numbers(ValueType::variant, {"x"}, 0)}, 0),
       "0C 20 01 00 02 00 00 00 00 00 00 00 03 00 05 00 00 00 0C 20 01 00 01 00 00 00 00 00 00 00 08 00 01 00 78"},
  };
}

TEST_F(RecordFormat, WritesEveryWorkedExampleByteForByte) {
  for (const Example& example : examples()) {
    EXPECT_EQ(written(example.value), octets(example.bytes)) << example.name;
  }
}

TEST_F(RecordFormat, ReadsEveryWorkedExampleBack) {
  for (const Example& example : examples()) {
    EXPECT_EQ(read(octets(example.bytes)), example.value) << example.name;
  }
}

TEST_F(RecordFormat, ARecordThatIsCutAnywhereIsRefused) {
  for (const Example& example : examples()) {
    const Octets whole = octets(example.bytes);
    for (std::size_t length = 0; length < whole.size(); ++length) {
      EXPECT_EQ(readError(Octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))), notSupported)
          << example.name << " cut to " << length;
    }
  }
}

TEST_F(RecordFormat, BytesBehindTheRecordDoNotCount) {
  EXPECT_EQ(read(octets("02 00 07 00 FF FF FF")), i16(7));
}

TEST_F(RecordFormat, TheDecimalsReservedWordIsIgnored) {
  EXPECT_EQ(read(octets("0E 00 CD AB 02 00 00 00 00 00 7B 00 00 00 00 00 00 00")), Value(Decimal{0, 123, 2, false}));
}

TEST_F(RecordFormat, AnyNonZeroBooleanIsTrue) {
  EXPECT_EQ(read(octets("0B 00 01 00")), Value(true));
}

TEST_F(RecordFormat, TextsOutsideTheCodePageAreQuestionMarks) {
  EXPECT_EQ(written("A\xF0\x9F\x98\x80"), octets("08 00 02 00 41 3F"));
}

TEST_F(RecordFormat, HalfACharacterAtTheEndOfATextDoesNotFail) {
  const Value value = read(octets("08 00 02 00 41 D6"));
  EXPECT_THAT(*value.get<std::string>(), testing::StartsWith("A"));
}

TEST_F(RecordFormat, ATextOf65535BytesFitsAndOneMoreIsAnOverflow) {
  EXPECT_EQ(read(written(std::string(65535, 'x'))), Value(std::string(65535, 'x')));
  EXPECT_EQ(writeError(std::string(65536, 'x')), errorNumber(RuntimeError::overflow));
}

TEST_F(RecordFormat, ABigDocumentComesBackWhole) {
  Octets document(200000);
  for (std::size_t i = 0; i < document.size(); ++i) document[i] = static_cast<std::uint8_t>(i * 7);
  const Value value = Bytes(document, -5);
  EXPECT_EQ(read(written(value)), value);
}

TEST_F(RecordFormat, TypesThatNoRecordHasAreRefused) {
  for (const char* tag :
       {"09 00", "0C 00", "0D 00", "0F 00", "10 00", "12 00", "13 00", "15 00", "24 00", "FF 7F", "02 40", "FF FF"}) {
    Octets bytes = octets(tag);
    bytes.resize(64);
    EXPECT_EQ(readError(bytes), notSupported) << tag;
  }
}

TEST_F(RecordFormat, ArraysOfTypesThatNoArrayHasAreRefused) {
  for (const char* tag : {"00 20", "01 20", "09 20", "0D 20", "24 20", "FF 3F"}) {
    Octets bytes = octets(tag);
    const Octets rest = octets("01 00 01 00 00 00 00 00 00 00 00 00 00 00");
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    EXPECT_EQ(readError(bytes), notSupported) << tag;
  }
}

TEST_F(RecordFormat, CountsBeyondTheBytesAreRefusedBeforeAnythingIsAllocated) {
  for (const char* hex : {"11 20 01 00 FF FF FF 7F 00 00 00 00 01", "0C 20 01 00 FF FF FF 7F 00 00 00 00 02 00",
                          "08 20 01 00 03 00 00 00 00 00 00 00 00 00 00 00",
                          "02 20 02 00 FF FF FF 7F 00 00 00 00 FF FF FF 7F 00 00 00 00 01 00",
                          "11 20 04 00 00 00 01 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 "
                          "01 00 00 00 00 00"}) {
    EXPECT_EQ(readError(octets(hex)), notSupported) << hex;
  }
}

TEST_F(RecordFormat, NegativeCountsAreRefused) {
  EXPECT_EQ(readError(octets("11 20 01 00 FF FF FF FF 00 00 00 00 01")), notSupported);
  EXPECT_EQ(readError(octets("11 20 01 00 00 00 00 80 00 00 00 00 01")), notSupported);
}

TEST_F(RecordFormat, BoundsBeyondThirtyTwoBitsAreRefused) {
  EXPECT_EQ(readError(octets("11 20 01 00 02 00 00 00 FF FF FF 7F 01 02")), notSupported);
  EXPECT_EQ(read(octets("11 20 01 00 01 00 00 00 FF FF FF 7F 01")),
            Value(Bytes(Octets{1}, std::numeric_limits<std::int32_t>::max())));
}

TEST_F(RecordFormat, ADimensionWithoutElementsMakesAnArrayWithoutElements) {
  const Value value = read(octets("03 20 02 00 00 00 00 00 00 00 00 00 FF FF FF 7F 00 00 00 00"));
  ASSERT_NE(value.array(), nullptr);
  EXPECT_TRUE(value.array()->elements.empty());
  EXPECT_EQ(value.array()->bounds[0].count, 0x7FFFFFFFU);
}

Value flatArray(std::size_t dimensions) {
  return Array{ValueType::int16, std::vector<Bound>(dimensions, Bound{0, 1}), {i16(1)}};
}

TEST_F(RecordFormat, SixtyDimensionsAreTheMost) {
  EXPECT_EQ(read(written(flatArray(60))), flatArray(60));
  EXPECT_EQ(writeError(flatArray(61)), notSupported);
  Octets bytes = octets("02 20 3D 00");
  for (int i = 0; i < 61; ++i) {
    const Octets bound = octets("01 00 00 00 00 00 00 00");
    bytes.insert(bytes.end(), bound.begin(), bound.end());
  }
  bytes.resize(bytes.size() + 2);
  EXPECT_EQ(readError(bytes), notSupported);
}

Value nested(int depth) {
  Value value = i16(7);
  for (int i = 0; i < depth; ++i) value = numbers(ValueType::variant, {value}, 0);
  return value;
}

TEST_F(RecordFormat, AHundredArraysMayStandInOneAnother) {
  EXPECT_EQ(read(written(nested(100))), nested(100));
}

TEST_F(RecordFormat, DeeperArraysAreRefusedBothWays) {
  EXPECT_EQ(writeError(nested(101)), notSupported);
  Octets bytes;
  for (int i = 0; i < 100000; ++i) {
    const Octets level = octets("0C 20 01 00 01 00 00 00 00 00 00 00");
    bytes.insert(bytes.end(), level.begin(), level.end());
  }
  EXPECT_EQ(readError(bytes), notSupported);
}

TEST_F(RecordFormat, WhatIsWrittenAtTheDeepestLevelCanBeRead) {
  for (const Value& innermost : {Value(Bytes(Octets{1})), numbers(ValueType::variant, {}, 0)}) {
    Value value = innermost;
    for (int i = 0; i < 99; ++i) value = numbers(ValueType::variant, {value}, 0);
    EXPECT_EQ(read(written(value)), value);
    EXPECT_EQ(writeError(numbers(ValueType::variant, {value}, 0)), notSupported);
  }
}

TEST_F(RecordFormat, ObjectsCannotBeWritten) {
  const Value object = std::make_shared<standalone::List>();
  EXPECT_EQ(writeError(object), notSupported);
  EXPECT_EQ(writeError(Value(ObjectRef())), notSupported);
  EXPECT_EQ(writeError(numbers(ValueType::variant, {i16(1), object}, 0)), notSupported);
  EXPECT_EQ(writeError(numbers(ValueType::object, {object}, 0)), notSupported);
}

TEST_F(RecordFormat, ArraysThatContradictThemselvesCannotBeWritten) {
  EXPECT_EQ(writeError(numbers(ValueType::int16, {"text"}, 0)), errorNumber(RuntimeError::typeMismatch));
  EXPECT_EQ(writeError(numbers(ValueType::string, {Value()}, 0)), errorNumber(RuntimeError::typeMismatch));
  EXPECT_EQ(writeError(Array{ValueType::int16, {{0, 3}}, {i16(1)}}), errorNumber(RuntimeError::typeMismatch));
}

TEST_F(RecordFormat, RandomBytesAreReadOrRefused) {
  std::uint32_t state = 12345;
  const auto next = [&] { return static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24); };
  int refused = 0;
  for (int round = 0; round < 100000; ++round) {
    Octets bytes(next() % 48);
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(next() < 160 ? next() % 4 : next());
    if (bytes.size() >= 2) bytes[1] = static_cast<std::uint8_t>(next() % 2 == 0 ? 0x20 : 0x00);
    const std::uint32_t error = readError(bytes);
    refused += error != 0;
    ASSERT_TRUE(error == 0 || error == notSupported) << round;
  }
  EXPECT_GT(refused, 0);
  EXPECT_LT(refused, 100000);
}

}  // namespace
}  // namespace tolvane::test
