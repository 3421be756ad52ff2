// What a caller's bag says.
#include "classification/property_text.h"

#include <gtest/gtest.h>

#include "standalone/objects.h"

namespace tolvane::test {
namespace {

std::string textOf(const Value& value) {
  auto bag = std::make_shared<standalone::Dictionary>();
  bag->set("fname", value);
  return propertyText(bag, "FName");
}

std::uint32_t errorOf(const Value& value) {
  try {
    (void)textOf(value);
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

TEST(PropertyText, IsFoundWithoutRegardToLetterCaseAndConverted) {
  EXPECT_EQ(textOf("部门"), "部门");
  EXPECT_EQ(textOf(std::int32_t{7}), "7");
  EXPECT_EQ(textOf(Empty{}), "");
}

TEST(PropertyText, IsEmptyWithoutTheEntry) {
  EXPECT_EQ(propertyText(std::make_shared<standalone::Dictionary>(), "FName"), "");
}

TEST(PropertyText, FailsForNullForArraysAndWithoutABag) {
  EXPECT_EQ(errorOf(Null{}), 0x800A005E);
  EXPECT_EQ(errorOf(Array::of(ValueType::string, {"a"})), 0x800A000D);
  EXPECT_THROW((void)propertyText(nullptr, "FName"), AutomationError);
}

}  // namespace
}  // namespace tolvane::test
