#include "automation/variant.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "automation/safe_array.h"
#include "automation/text.h"
#include "platform/error.h"

namespace tolvane::automation {
namespace {

VARIANT scalar(VARTYPE type) {
  VARIANT result;
  VariantInit(&result);
  result.vt = type;
  return result;
}

TEST(VariantTest, EveryKindOfValueComesBackAsItWas) {
  const std::vector<Value> values{
      Value(),
      Null{},
      true,
      false,
      std::uint8_t{200},
      std::int16_t{-3},
      std::int32_t{-70000},
      std::int64_t{1} << 40,
      1.5F,
      -2.25,
      Currency{-12345},
      Date{41000.25},
      Decimal{1, 2, 3, true},
      "月报 A",
      "",
      missingArgument,
      ObjectRef(),
      Bytes(std::vector<std::uint8_t>{1, 2, 3}, 5),
      Array::of(ValueType::int32, {std::int32_t{1}, std::int32_t{2}}, 1),
      Array::of(ValueType::variant, {"x", Null{}, 2.5}),
      Array{ValueType::int16, {{1, 2}, {0, 2}}, {std::int16_t{1}, std::int16_t{2}, std::int16_t{3}, std::int16_t{4}}}};
  for (const Value& value : values) EXPECT_EQ(Variant::of(Value(value)).take(), value) << value.typeNumber();
}

TEST(VariantTest, UnsignedNumbersTakeTheTypeThatHoldsThem) {
  VARIANT wide = scalar(VT_UI4);
  wide.ulVal = 4000000000U;
  EXPECT_EQ(borrowVariant(wide), Value(std::int64_t{4000000000}));
  VARIANT narrow = scalar(VT_UI2);
  narrow.uiVal = 65535;
  EXPECT_EQ(borrowVariant(narrow), Value(std::int32_t{65535}));
  VARIANT tooWide = scalar(VT_UI8);
  tooWide.ullVal = ~0ULL;
  EXPECT_THROW(static_cast<void>(borrowVariant(tooWide)), AutomationError);
}

TEST(VariantTest, ReferencesAreFollowedHoweverDeep) {
  LONG number = 7;
  VARIANT inner = scalar(VT_BYREF | VT_I4);
  inner.plVal = &number;
  VARIANT outer = scalar(VT_BYREF | VT_VARIANT);
  outer.pvarVal = &inner;
  EXPECT_EQ(borrowVariant(outer), Value(std::int32_t{7}));
}

TEST(VariantTest, ANullReferenceIsAnError) {
  VARIANT reference = scalar(VT_BYREF | VT_VARIANT);
  reference.pvarVal = nullptr;
  EXPECT_THROW(static_cast<void>(borrowVariant(reference)), AutomationError);
}

TEST(VariantTest, ATypeThatNoLanguageHasIsAnError) {
  EXPECT_THROW(static_cast<void>(borrowVariant(scalar(VT_RECORD))), AutomationError);
}

TEST(VariantTest, AHalfOfASurrogatePairBecomesTheReplacementCharacter) {
  VARIANT text = scalar(VT_BSTR);
  const wchar_t units[] = {L'a', static_cast<wchar_t>(0xD800), L'b'};
  text.bstrVal = SysAllocStringLen(units, 3);
  EXPECT_EQ(borrowVariant(text), Value("a\xEF\xBF\xBD"
                                       "b"));
  SysFreeString(text.bstrVal);
}

TEST(VariantTest, BytesThatLieInAnArrayAreLentWithoutACopy) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, 4);
  {
    const Value borrowed = borrowArray(array, VT_UI1);
    const Variant lent = Variant::lent(borrowed);
    EXPECT_EQ(lent.get().parray, array);
    const Variant moved = Variant::lent(borrowed);
    Variant other(Variant::lent(borrowed));
    other = Variant(1);
  }
  EXPECT_EQ(SafeArrayDestroy(array), S_OK) << "the array was neither freed nor left locked";
}

TEST(VariantTest, OtherBytesAreCopiedForTheCall) {
  const Value bytes = Bytes(std::vector<std::uint8_t>{9, 8});
  const Variant lent = Variant::lent(bytes);
  ASSERT_EQ(lent.get().vt, VT_ARRAY | VT_UI1);
  EXPECT_EQ(std::memcmp(lent.get().parray->pvData, "\x09\x08", 2), 0);
}

TEST(WriteBackTest, PutsNothingAnywhereBeforeItIsCommitted) {
  LONG number = 1;
  VARIANT target = scalar(VT_BYREF | VT_I4);
  target.plVal = &number;
  WriteBack written(target, std::int32_t{2});
  EXPECT_EQ(number, 1);
  written.commit();
  EXPECT_EQ(number, 2);
}

TEST(WriteBackTest, RefusesAValueThatTheTargetCannotHold) {
  SHORT number = 1;
  VARIANT target = scalar(VT_BYREF | VT_I2);
  target.piVal = &number;
  EXPECT_THROW(WriteBack(target, std::int32_t{70000}), AutomationError);
  EXPECT_THROW(WriteBack(target, Value("word")), AutomationError);
  EXPECT_EQ(number, 1);
}

TEST(WriteBackTest, ReplacesATextAndFreesTheOldOne) {
  Bstr text(std::string_view("old"));
  VARIANT target = scalar(VT_BYREF | VT_BSTR);
  target.pbstrVal = text.reference();
  WriteBack(target, Value("新")).commit();
  EXPECT_EQ(text.toUtf8(), "新");
}

TEST(WriteBackTest, LeavesArgumentsByValueAlone) {
  VARIANT target = scalar(VT_I4);
  target.lVal = 5;
  WriteBack(target, std::int32_t{6}).commit();
  EXPECT_EQ(target.lVal, 5);
}

}  // namespace
}  // namespace tolvane::automation
