#include "frame/method_table.h"

#include <gmock/gmock.h>

#include "frame/sample_service.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

const ClassDescription sample = SampleService::description();

TEST(MethodTable, TransModeComesFirstAndIsAPropertyWithoutParameters) {
  const MethodDescription& first = sample.methods.front();
  EXPECT_EQ(first.name, "TransMode");
  EXPECT_EQ(first.id, 1);
  EXPECT_TRUE(first.isProperty);
  EXPECT_TRUE(first.parameters.empty());
  EXPECT_EQ(first.result, ParameterType::int32);
}

TEST(MethodTable, TransModeIsTheClassesConstantAndAsksForNothing) {
  for (const auto mode : {TransactionMode::required, TransactionMode::supported}) {
    const ClassDescription description = describe<SampleService>("X", mode, "");
    RecordingPlatform platform;
    const auto service = description.create(platform);
    platform.log.clear();
    EXPECT_EQ(description.methods.front().run(*service, {}), Value(static_cast<std::int32_t>(mode)));
    EXPECT_THAT(platform.log, testing::IsEmpty());
  }
}

TEST(MethodTable, MethodsAreFoundWithoutRegardToLetterCase) {
  EXPECT_EQ(sample.find("jOIN"), sample.find("Join"));
  EXPECT_NE(sample.find("Join"), nullptr);
  EXPECT_EQ(sample.find("Joi"), nullptr);
  EXPECT_EQ(sample.find(""), nullptr);
}

TEST(MethodTable, TypesAndDirectionsAreReadOffTheSignature) {
  const auto& parameters = sample.find("Change")->parameters;
  const ParameterType types[] = {ParameterType::int32, ParameterType::string, ParameterType::variant,
                                 ParameterType::int32Array};
  ASSERT_EQ(parameters.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(parameters[i].type, types[i]);
    EXPECT_EQ(parameters[i].direction, Direction::inOut);
  }
  EXPECT_EQ(sample.find("Join")->parameters[0].direction, Direction::in);
}

TEST(MethodTable, ObjectParametersAreOfTheirKind) {
  const auto& parameters = sample.find("Types")->parameters;
  const ParameterType types[] = {ParameterType::boolean,      ParameterType::date,     ParameterType::object,
                                 ParameterType::propertyBag,  ParameterType::itemList, ParameterType::recordset,
                                 ParameterType::variantArray, ParameterType::int32};
  ASSERT_EQ(parameters.size(), 8U);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(parameters[i].type, types[i]);
  EXPECT_EQ(parameters[4].direction, Direction::inOut);
}

TEST(MethodTable, ResultsAreReadOffTheSignature) {
  EXPECT_EQ(sample.find("Join")->result, ParameterType::string);
  EXPECT_EQ(sample.find("Nothing")->result, ParameterType::none);
  EXPECT_EQ(sample.find("Types")->result, ParameterType::propertyBag);
}

TEST(MethodTable, OptionalParametersHaveTheirDefaultOrTheirTypesEmptyValue) {
  const auto& join = sample.find("Join")->parameters;
  EXPECT_FALSE(join[1].optional);
  EXPECT_EQ(join[2].defaultValue, Value("dflt"));
  EXPECT_TRUE(join[3].defaultValue.isMissing());
  EXPECT_EQ(sample.find("Types")->parameters[7].defaultValue, Value(std::int32_t{0}));
}

TEST(MethodTable, NamesAreTheSameWithoutRegardToAsciiLetterCaseAlone) {
  EXPECT_TRUE(sameName("sDsn", "SDSN"));
  EXPECT_FALSE(sameName("sDsn", "sDs"));
  EXPECT_FALSE(sameName("[", "{"));
  EXPECT_FALSE(sameName("É", "é"));
}

}  // namespace
}  // namespace tolvane::test
