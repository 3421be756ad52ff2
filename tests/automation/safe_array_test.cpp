#include "automation/safe_array.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/document_memory.h"
#include "platform/error.h"

namespace tolvane::automation {
namespace {

Bytes document(std::size_t size) {
  return Bytes::filled(size, [](std::span<std::uint8_t> to) { std::memset(to.data(), 7, to.size()); });
}

TEST(SafeArrayTest, ADocumentThatNobodyElseHoldsIsGivenAwayAsItLies) {
  Value value = document(1000);
  const auto* memory = value.get<Bytes>()->data();
  SAFEARRAY* given = giveArray(std::move(value));
  EXPECT_EQ(given->pvData, memory);
  EXPECT_EQ(SafeArrayDestroy(given), S_OK);
}

TEST(SafeArrayTest, ADocumentThatSomebodyElseHoldsIsCopied) {
  const Value kept = document(1000);
  SAFEARRAY* given = giveArray(Value(kept));
  EXPECT_NE(given->pvData, kept.get<Bytes>()->data());
  EXPECT_EQ(std::memcmp(given->pvData, kept.get<Bytes>()->data(), 1000), 0);
  SafeArrayDestroy(given);
}

TEST(SafeArrayTest, ABorrowedArrayIsLockedAsLongAsItIsLookedAt) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 3, 2);
  {
    const Value borrowed = borrowArray(array, VT_UI1);
    EXPECT_EQ(borrowed.get<Bytes>()->data(), array->pvData);
    EXPECT_EQ(borrowed.get<Bytes>()->lower(), 3);
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  }
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArrayTest, AnArrayWithoutDimensionsIsNull) {
  EXPECT_EQ(borrowArray(nullptr, VT_I4), Value(Array{ValueType::int32, {}, {}}));
  EXPECT_EQ(giveArray(Array{ValueType::int32, {}, {}}), nullptr);
}

TEST(SafeArrayTest, ElementsTakeTheTypeThatIsAskedFor) {
  SAFEARRAY* given = giveArray(Array::of(ValueType::variant, {"12", 3.0, std::int16_t{4}}), VT_I4);
  const LONG expected[] = {12, 3, 4};
  EXPECT_EQ(std::memcmp(given->pvData, expected, sizeof expected), 0);
  SafeArrayDestroy(given);
}

TEST(SafeArrayTest, AnElementThatDoesNotConvertIsAnErrorAndLeavesNothing) {
  EXPECT_THROW(static_cast<void>(giveArray(Array::of(ValueType::variant, {"word"}), VT_I4)), AutomationError);
}

TEST(SafeArrayTest, WhatIsNoArrayIsATypeMismatch) {
  EXPECT_THROW(static_cast<void>(giveArray(std::int32_t{1})), AutomationError);
  EXPECT_THROW(static_cast<void>(elementTypeOf("text")), AutomationError);
}

TEST(SafeArrayTest, AnEmptyDocumentIsAnEmptyArray) {
  SAFEARRAY* given = giveArray(document(0));
  EXPECT_EQ(given->rgsabound[0].cElements, 0U);
  SafeArrayDestroy(given);
}

}  // namespace
}  // namespace tolvane::automation
