#include "frame/parameter_types.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/error.h"
#include "standalone/objects.h"

namespace tolvane::test {
namespace {

std::uint32_t errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

const Value bagValue = std::make_shared<standalone::Dictionary>();
const Value listValue = std::make_shared<standalone::List>();

struct Conversion {
  ParameterType type;
  Value given;
  Value taken;
};
TEST(ParameterTypes, ArgumentsConvertByAutomationsRules) {
  const Conversion table[] = {
      {ParameterType::boolean, "True", true},
      {ParameterType::boolean, std::int32_t{2}, true},
      {ParameterType::boolean, Empty{}, false},
      {ParameterType::int32, " 12 ", std::int32_t{12}},
      {ParameterType::int32, 2.5, std::int32_t{2}},
      {ParameterType::int32, 3.5, std::int32_t{4}},
      {ParameterType::int32, true, std::int32_t{-1}},
      {ParameterType::int32, Empty{}, std::int32_t{0}},
      {ParameterType::int32, std::int16_t{-3}, std::int32_t{-3}},
      {ParameterType::string, std::int32_t{-7}, "-7"},
      {ParameterType::string, Empty{}, ""},
      {ParameterType::date, 2.0, Date{2}},
      {ParameterType::date, "2012-03-15", Date{40983}},
      {ParameterType::variant, Null{}, Null{}},
      {ParameterType::variant, "as it is", "as it is"},
      {ParameterType::object, bagValue, bagValue},
      {ParameterType::propertyBag, bagValue, bagValue},
      {ParameterType::itemList, listValue, listValue},
      {ParameterType::recordset, ObjectRef(), ObjectRef()},
      {ParameterType::int32Array, Array::of(ValueType::variant, {"1", 2.0}, 3),
       Array::of(ValueType::int32, {std::int32_t{1}, std::int32_t{2}}, 3)},
      {ParameterType::variantArray, Array::of(ValueType::string, {"a"}), Array::of(ValueType::variant, {"a"})},
      {ParameterType::int32Array, Array{ValueType::int32, {}, {}}, Array{ValueType::int32, {}, {}}},
  };
  for (const auto& [type, given, taken] : table) EXPECT_EQ(convertArgument(given, type), taken) << typeName(type);
}

struct Refusal {
  ParameterType type;
  Value given;
  RuntimeError error;
};
TEST(ParameterTypes, WhatDoesNotConvertIsAMismatchAndWhatDoesNotFitAnOverflow) {
  const Value table2D = Array{ValueType::int32, {{0, 1}, {0, 1}}, {std::int32_t{1}}};
  const Refusal table[] = {
      {ParameterType::int32, "twelve", RuntimeError::typeMismatch},
      {ParameterType::int32, 2147483648.0, RuntimeError::overflow},
      {ParameterType::int32, Null{}, RuntimeError::typeMismatch},
      {ParameterType::string, Null{}, RuntimeError::typeMismatch},
      {ParameterType::boolean, Null{}, RuntimeError::typeMismatch},
      {ParameterType::date, "tomorrow", RuntimeError::typeMismatch},
      {ParameterType::string, bagValue, RuntimeError::typeMismatch},
      {ParameterType::string, Array::of(ValueType::variant, {}), RuntimeError::typeMismatch},
      {ParameterType::propertyBag, listValue, RuntimeError::typeMismatch},
      {ParameterType::itemList, bagValue, RuntimeError::typeMismatch},
      {ParameterType::recordset, bagValue, RuntimeError::typeMismatch},
      {ParameterType::object, std::int32_t{7}, RuntimeError::typeMismatch},
      {ParameterType::object, Empty{}, RuntimeError::typeMismatch},
      {ParameterType::int32Array, std::int32_t{7}, RuntimeError::typeMismatch},
      {ParameterType::int32Array, Bytes(), RuntimeError::typeMismatch},
      {ParameterType::int32Array, table2D, RuntimeError::typeMismatch},
      {ParameterType::int32Array, Array::of(ValueType::variant, {"x"}), RuntimeError::typeMismatch},
      {ParameterType::int32Array, Array::of(ValueType::real, {3e9}), RuntimeError::overflow},
  };
  for (const auto& [type, given, error] : table) {
    EXPECT_EQ(errorOf([&] { (void)convertArgument(given, type); }), errorNumber(error)) << typeName(type);
  }
}

TEST(ParameterTypes, EveryTypeHasANameAndAnEmptyValueOfItsOwnKind) {
  for (std::size_t i = 0; i < parameterTypeCount; ++i) {
    const auto type = static_cast<ParameterType>(i);
    EXPECT_FALSE(typeName(type).empty());
    EXPECT_EQ(convertArgument(emptyValue(type), type), emptyValue(type)) << typeName(type);
  }
}

TEST(ParameterTypes, EmptyValues) {
  EXPECT_EQ(emptyValue(ParameterType::boolean), Value(false));
  EXPECT_EQ(emptyValue(ParameterType::int32), Value(std::int32_t{0}));
  EXPECT_EQ(emptyValue(ParameterType::string), Value(""));
  EXPECT_EQ(emptyValue(ParameterType::date), Value(Date{0}));
  EXPECT_TRUE(emptyValue(ParameterType::variant).isEmpty());
  EXPECT_TRUE(emptyValue(ParameterType::propertyBag).isNothing());
  EXPECT_EQ(emptyValue(ParameterType::int32Array), Value(Array{ValueType::int32, {}, {}}));
}

TEST(ParameterTypes, AnArrayKnowsItsBounds) {
  Int32Array array;
  EXPECT_FALSE(array.dimensioned);
  array.redimension(5, 2);
  array.at(6) = 9;
  EXPECT_EQ(array.upper(), 6);
  EXPECT_EQ(array.elements, (std::vector<std::int32_t>{0, 9}));
}

TEST(ParameterTypes, AnArrayTellsItsUpperBoundAtBothEndsOfTheRange) {
  constexpr std::int32_t lowest = -2147483647 - 1;
  constexpr std::int32_t highest = 2147483647;
  EXPECT_EQ((Int32Array{highest, {10}, true}).upper(), highest);
  EXPECT_EQ((Int32Array{lowest, {}, true}).upper(), std::int64_t{lowest} - 1);
  EXPECT_EQ(Int32Array().upper(), -1);
}

TEST(ParameterTypes, SubscriptsOutsideAnArrayAreRefused) {
  Int32Array array;
  const auto outOfRange = errorNumber(RuntimeError::subscriptOutOfRange);
  EXPECT_EQ(errorOf([&] { (void)array.at(0); }), outOfRange);
  array.redimension(1, 2);
  for (const std::int32_t index : {0, 3, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(errorOf([&] { (void)array.at(index); }), outOfRange) << index;
  }
}

TEST(ParameterTypes, RedimensioningDiscardsWhatWasThere) {
  VariantArray array;
  array.redimension(0, 1);
  array.at(0) = "x";
  array.redimension(1, 1);
  EXPECT_TRUE(array.at(1).isEmpty());
}

TEST(ParameterTypes, ArraysCrossTheBorderWithTheirBounds) {
  const Value given = Array::of(ValueType::int32, {std::int32_t{4}, std::int32_t{5}}, -1);
  const Int32Array array = toInt32Array(given);
  EXPECT_EQ(array.lower, -1);
  EXPECT_EQ(array.elements, (std::vector<std::int32_t>{4, 5}));
  EXPECT_EQ(fromArray(array), given);
}

TEST(ParameterTypes, AnArrayNeverDimensionedStaysSo) {
  const Value none = Array{ValueType::variant, {}, {}};
  EXPECT_FALSE(toVariantArray(none).dimensioned);
  EXPECT_EQ(fromArray(toVariantArray(none)), none);
}

}  // namespace
}  // namespace tolvane::test
