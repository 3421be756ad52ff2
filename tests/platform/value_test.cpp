#include "platform/value.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct Thing : Object {};

struct TypeCase {
  Value value;
  std::uint16_t number;
};

TEST(ValueTest, ReportsAutomationTypeNumbers) {
  const TypeCase cases[] = {
      {Value(), 0},
      {Null{}, 1},
      {std::int16_t{1}, 2},
      {std::int32_t{1}, 3},
      {1.0F, 4},
      {1.0, 5},
      {Currency{1}, 6},
      {Date{1}, 7},
      {"x", 8},
      {std::make_shared<Thing>(), 9},
      {missingArgument, 10},
      {true, 11},
      {Decimal{0, 1, 0, false}, 14},
      {std::uint8_t{1}, 17},
      {std::int64_t{1}, 20},
      {Bytes(std::vector<std::uint8_t>{1}), 0x2011},
      {Array::of(ValueType::string, {"a"}), 0x2008},
      {Array::of(ValueType::variant, {}), 0x200C},
  };
  for (const auto& c : cases) EXPECT_EQ(c.value.typeNumber(), c.number);
}

TEST(ValueTest, MissingIsTheErrorCodeOfAnAbsentArgument) {
  EXPECT_TRUE(Value(missingArgument).isMissing());
  EXPECT_FALSE(Value(ErrorCode{1}).isMissing());
  EXPECT_FALSE(Value().isMissing());
}

TEST(ValueTest, NothingIsAnObjectReferenceWithoutAnObject) {
  EXPECT_TRUE(Value(ObjectRef()).isNothing());
  EXPECT_TRUE(Value(ObjectRef()).isObject());
  EXPECT_FALSE(Value(std::make_shared<Thing>()).isNothing());
}

TEST(ValueTest, ObjectsAreEqualByIdentity) {
  const auto thing = std::make_shared<Thing>();
  EXPECT_EQ(Value(thing), Value(thing));
  EXPECT_FALSE(Value(thing) == Value(std::make_shared<Thing>()));
}

TEST(ValueTest, ArraysAreEqualByContentAndBounds) {
  EXPECT_EQ(Value(Array::of(ValueType::int32, {std::int32_t{1}})),
            Value(Array::of(ValueType::int32, {std::int32_t{1}})));
  EXPECT_FALSE(Value(Array::of(ValueType::int32, {std::int32_t{1}}, 1)) ==
               Value(Array::of(ValueType::int32, {std::int32_t{1}}, 0)));
}

TEST(ValueTest, KindsWithTheSameNumberDiffer) {
  EXPECT_FALSE(Value(std::int32_t{1}) == Value(std::int16_t{1}));
  EXPECT_FALSE(Value() == Value(Null{}));
}

TEST(ValueTest, CopiesOfADocumentShareItsMemory) {
  const Value document(Bytes(std::vector<std::uint8_t>{1, 2, 3}));
  const Value copy = document;
  EXPECT_EQ(copy.get<Bytes>()->data(), document.get<Bytes>()->data());
}

TEST(ValueTest, ADocumentsLowerBoundIsPartOfIt) {
  EXPECT_FALSE(Value(Bytes({1}, 1)) == Value(Bytes({1}, 0)));
  EXPECT_EQ(Bytes({1}, 1).lower(), 1);
}

TEST(ValueTest, AFilledDocumentHoldsWhatWasWritten) {
  const auto bytes = Bytes::filled(2, [](std::span<std::uint8_t> out) {
    out[0] = 7;
    out[1] = 8;
  });
  EXPECT_EQ(bytes, Bytes({7, 8}));
}

}  // namespace
}  // namespace tolvane
