// What holds for every class and every method, whatever they do.
#include "catalogue/catalogue.h"

#include <gmock/gmock.h>

#include <cctype>
#include <set>

#include "frame/dispatcher.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

/// Runs `check(class, method)` for every method but the property TransMode.
template <typename Check>
void forEveryMethod(Check check) {
  for (const ClassDescription& description : classes()) {
    for (const MethodDescription& method : description.methods) {
      SCOPED_TRACE(description.name + "." + method.name);
      if (!method.isProperty) check(description, method);
    }
  }
}

std::vector<Value> emptyArguments(const MethodDescription& method) {
  std::vector<Value> arguments;
  for (const ParameterDescription& parameter : method.parameters) arguments.push_back(emptyValue(parameter.type));
  arguments.front() = Value("x");
  return arguments;
}

TEST(Catalogue, ReadClassesJoinTransactionsAndWriteClassesRequireThem) {
  for (const ClassDescription& description : classes()) {
    const bool writes = description.name.ends_with("Update");
    EXPECT_EQ(description.transMode, writes ? TransactionMode::required : TransactionMode::supported)
        << description.name;
  }
}

TEST(Catalogue, TransModeIsTheFirstMemberAndAnswersBeforeAnyOtherCall) {
  for (const ClassDescription& description : classes()) {
    RecordingPlatform platform;
    const auto service = description.create(platform);
    platform.log.clear();
    std::vector<Value> none;
    const MethodDescription& first = description.methods.front();
    EXPECT_EQ(first.name, "TransMode");
    EXPECT_EQ(invoke(*service, first, none), Value(description.name.ends_with("Update") ? 2 : 3)) << description.name;
    EXPECT_TRUE(platform.log.empty()) << description.name;
  }
}

TEST(Catalogue, NoClassIsListedTwice) {
  std::set<std::string> names;
  for (const ClassDescription& description : classes()) EXPECT_TRUE(names.insert(description.name).second);
}

TEST(Catalogue, NamesAndDispatchNumbersAreUniqueInTheirClass) {
  for (const ClassDescription& description : classes()) {
    std::set<std::string> names;
    std::set<std::int32_t> ids;
    for (const MethodDescription& method : description.methods) {
      std::string name = method.name;
      for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      EXPECT_TRUE(names.insert(name).second) << description.name << "." << method.name;
      EXPECT_TRUE(ids.insert(method.id).second) << description.name << "." << method.name;
    }
  }
}

TEST(Catalogue, TheFirstParameterIsTheDataSource) {
  forEveryMethod([](const ClassDescription&, const MethodDescription& method) {
    ASSERT_FALSE(method.parameters.empty());
    const ParameterDescription& first = method.parameters.front();
    EXPECT_FALSE(first.optional);
    EXPECT_TRUE(first.type == ParameterType::string || first.type == ParameterType::variant);
  });
}

TEST(Catalogue, OptionalParametersStandLast) {
  forEveryMethod([](const ClassDescription&, const MethodDescription& method) {
    bool optionalSeen = false;
    for (const ParameterDescription& parameter : method.parameters) {
      EXPECT_TRUE(parameter.optional || !optionalSeen) << parameter.name;
      optionalSeen = optionalSeen || parameter.optional;
    }
  });
}

TEST(Catalogue, EveryMethodOpensTheDataSourceItIsGiven) {
  forEveryMethod([](const ClassDescription& description, const MethodDescription& method) {
    RecordingPlatform platform;
    const auto service = description.create(platform);
    auto arguments = emptyArguments(method);
    try {
      invoke(*service, method, arguments);
    } catch (const AutomationError&) {
      // Rows that must exist are not there on this platform; what counts is the frame before that.
    }
    EXPECT_THAT(platform.log, testing::Contains("OpenDataSource x"));
  });
}

TEST(Catalogue, EveryMethodSurvivesADataSourceThatDoesNotOpen) {
  const AutomationError refusal(0x80004005, "engine", "no such account set");
  forEveryMethod([&](const ClassDescription& description, const MethodDescription& method) {
    RecordingPlatform platform;
    const auto service = description.create(platform);
    platform.fail("OpenDataSource", refusal);
    auto arguments = emptyArguments(method);
    try {
      invoke(*service, method, arguments);
    } catch (const AutomationError& error) {
      EXPECT_THAT(error.number(), testing::AnyOf(refusal.number(), errorNumber(RuntimeError::invalidArgument)));
    }
    EXPECT_THAT(platform.statements(), testing::IsEmpty());
  });
}

}  // namespace
}  // namespace tolvane::test
