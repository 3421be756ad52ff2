#include "automation/late_bound.h"

#include <gtest/gtest.h>

#include <string>

#include "automation/error_translation.h"
#include "automation/text.h"

namespace tolvane::automation {
namespace {

class LateBoundTest : public ::testing::Test {
 protected:
  LateBoundTest() { check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~LateBoundTest() override { CoUninitialize(); }
};

template <typename Work>
std::uint32_t numberOf(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

TEST_F(LateBoundTest, AnObjectOfTheSystemIsCreatedCalledReadAndSet) {
  RemoteMember add(L"Add");
  RemoteMember item(L"Item");
  RemoteMember count(L"Count");
  const LateBound bag = RemoteClass(L"Scripting.Dictionary").create();
  bag.call(add, "名称", "first");
  bag.put(item, "名称", "second");
  EXPECT_EQ(bag.read(item, "名称").take(), Value("second"));
  EXPECT_EQ(bag.read(count).take(), Value(std::int32_t{1}));
}

TEST_F(LateBoundTest, AClassIsCreatedByItsIdentifierInBracesToo) {
  CLSID identifier{};
  check(CLSIDFromProgID(L"Scripting.Dictionary", &identifier));
  wchar_t braces[40];
  ASSERT_GT(StringFromGUID2(identifier, braces, 40), 0);
  EXPECT_TRUE(RemoteClass(braces).create());
}

TEST_F(LateBoundTest, AClassThatIsNotThereIsError429EveryTime) {
  RemoteClass missing(L"Missing.Class");
  RemoteClass damaged(L"{not an identifier}");
  const auto expected = errorNumber(RuntimeError::cannotCreateObject);
  EXPECT_EQ(numberOf([&] { (void)missing.create(); }), expected);
  EXPECT_EQ(numberOf([&] { (void)missing.create(); }), expected);
  EXPECT_EQ(numberOf([&] { (void)damaged.create(); }), expected);
}

TEST_F(LateBoundTest, AMemberThatIsNotThereIsError438AndNoObjectIsError91) {
  RemoteMember none(L"NoSuchMember");
  const LateBound bag = RemoteClass(L"Scripting.Dictionary").create();
  EXPECT_EQ(numberOf([&] { bag.call(none); }), errorNumber(RuntimeError::memberNotFound));
  EXPECT_EQ(numberOf([&] { LateBound().call(none); }), errorNumber(RuntimeError::objectNotSet));
}

}  // namespace
}  // namespace tolvane::automation
