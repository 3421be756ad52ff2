#include "frame/dispatcher.h"

#include <gmock/gmock.h>

#include <functional>

#include "frame/sample_service.h"
#include "standalone/objects.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

struct Dispatch : testing::Test {
  RecordingPlatform platform;
  SampleService service{platform};
  ClassDescription sample = SampleService::description();

  std::vector<Value> bind(std::string_view method, const CallArguments& arguments) {
    return bindArguments(findMethod(sample, method), arguments);
  }
  Value run(std::string_view method, const CallArguments& arguments) {
    std::vector<Value> bound = bind(method, arguments);
    return invoke(service, findMethod(sample, method), bound);
  }
  static std::uint32_t errorOf(const std::function<void()>& action) {
    try {
      action();
    } catch (const AutomationError& error) {
      return error.number();
    }
    return 0;
  }
  std::uint32_t bindError(std::string_view method, const CallArguments& arguments) {
    return errorOf([&] { (void)bind(method, arguments); });
  }
};

TEST_F(Dispatch, ArgumentsByPositionAndDefaultsBehindThem) {
  EXPECT_EQ(run("Join", {{"x", std::int32_t{7}}, {}}), Value("x|7|dflt|missing"));
}

TEST_F(Dispatch, ArgumentsByNameInAnyOrderAndLetterCase) {
  EXPECT_EQ(run("join", {{}, {{"VANY", "v"}, {"lnumber", "7"}, {"sDsn", "x"}}}), Value("x|7|dflt|given"));
}

TEST_F(Dispatch, ArgumentsByPositionThenByName) {
  EXPECT_EQ(run("Join", {{"x"}, {{"sText", "t"}, {"lNumber", std::int32_t{1}}}}), Value("x|1|t|missing"));
}

TEST_F(Dispatch, AMissingArgumentCountsAsNotGiven) {
  EXPECT_EQ(run("Join", {{"x", std::int32_t{7}, missingArgument, "v"}, {}}), Value("x|7|dflt|given"));
  EXPECT_EQ(run("Join", {{"x", missingArgument}, {{"lNumber", std::int32_t{3}}}}), Value("x|3|dflt|missing"));
}

TEST_F(Dispatch, ArgumentsAreConvertedToTheParametersTypes) {
  EXPECT_EQ(run("Join", {{std::int32_t{12}, " 3 ", true}, {}}), Value("12|3|True|missing"));
}

TEST_F(Dispatch, TooManyArgumentsAreAWrongCount) {
  EXPECT_EQ(bindError("Nothing", {{Value()}, {}}), 0x800A01C2U);
  EXPECT_EQ(bindError("Join", {{"x", std::int32_t{1}, "", "", ""}, {}}), 0x800A01C2U);
}

TEST_F(Dispatch, AnArgumentGivenTwiceIsAWrongCount) {
  EXPECT_EQ(bindError("Join", {{"x"}, {{"sDsn", "y"}}}), 0x800A01C2U);
  EXPECT_EQ(bindError("Join", {{"x"}, {{"lNumber", "1"}, {"LNUMBER", "1"}}}), 0x800A01C2U);
}

TEST_F(Dispatch, ANameThatTheMethodDoesNotHaveIsNotFound) {
  EXPECT_EQ(bindError("Join", {{"x"}, {{"lOther", "1"}}}), 0x800A01C0U);
}

TEST_F(Dispatch, AnArgumentThatIsNotOptionalMustBeGiven) {
  EXPECT_EQ(bindError("Join", {{"x"}, {}}), 0x800A01C1U);
  EXPECT_EQ(bindError("Join", {{"x", missingArgument}, {}}), 0x800A01C1U);
}

TEST_F(Dispatch, WhatDoesNotConvertNamesItsPosition) {
  const std::pair<Value, std::uint32_t> table[] = {
      {Value("seven"), 0x800A000D}, {Value(Null{}), 0x800A000D}, {Value(1e10), 0x800A0006}};
  for (const auto& [given, number] : table) {
    try {
      (void)bind("Join", {{"x", given}, {}});
      FAIL() << "no error";
    } catch (const ArgumentError& error) {
      EXPECT_EQ(error.number(), number);
      EXPECT_EQ(error.position(), 1U);
    }
  }
}

TEST_F(Dispatch, AMethodThatTheClassDoesNotHaveIsNoMember) {
  EXPECT_EQ(errorOf([&] { (void)findMethod(sample, "Other"); }), 0x800A01B6U);
}

TEST_F(Dispatch, InOutArgumentsHoldWhatTheMethodLeft) {
  std::vector<Value> bound = bind("Change", {{std::int16_t{1}, "t", "v", Array{ValueType::int32, {}, {}}}, {}});
  EXPECT_EQ(invoke(service, findMethod(sample, "Change"), bound), Value(true));
  EXPECT_THAT(bound, testing::ElementsAre(Value(std::int32_t{2}), Value("t!"), Value(Null{}),
                                          Value(Array::of(ValueType::int32, {std::int32_t{0}, std::int32_t{0}}, 1))));
}

TEST_F(Dispatch, AMethodWithoutResultAnswersEmpty) {
  EXPECT_TRUE(run("Nothing", {}).isEmpty());
}

TEST_F(Dispatch, ObjectsPassByReference) {
  const auto bag = std::make_shared<standalone::Dictionary>();
  const Value list = std::make_shared<standalone::List>();
  std::vector<Value> bound = bind("Types", {{true, 1.0, ObjectRef(), Value(bag), list, ObjectRef()}, {}});
  EXPECT_EQ(invoke(service, findMethod(sample, "Types"), bound), Value(bag));
  EXPECT_TRUE(bound[4].isNothing());
}

TEST_F(Dispatch, AMethodsOwnErrorPassesAndLeavesTheArgumentsAsTheyCame) {
  std::vector<Value> bound = bind("Fail", {{std::int32_t{1}}, {}});
  EXPECT_EQ(errorOf([&] { (void)invoke(service, findMethod(sample, "Fail"), bound); }), 0x80044047U);
  EXPECT_EQ(bound[0], Value(std::int32_t{1}));
}

TEST_F(Dispatch, RunningOutOfMemoryIsAnAutomationError) {
  EXPECT_EQ(errorOf([&] { (void)run("Exhaust", {}); }), 0x800A0007U);
}

TEST_F(Dispatch, TransModeAnswersBeforeAnyOtherCall) {
  EXPECT_EQ(run("TransMode", {}), Value(std::int32_t{3}));
}

}  // namespace
}  // namespace tolvane::test
