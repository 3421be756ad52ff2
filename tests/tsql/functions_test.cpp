#include "tsql/functions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "tsql/function_table.h"
#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {
namespace {

TEST(Registry, EveryFunctionHasATestRow) {
  for (const Function& function : registry().functions) {
    bool tested = false;
    for (const auto* rows : {&conversionRows(), &operatorRows(), &textRows(), &dateRows(), &numberRows(), &systemRows(),
                             &messageRows(), &identityRows()}) {
      tested = tested ||
               std::any_of(rows->begin(), rows->end(), [&](const CallRow& row) { return row.name == function.name; });
    }
    EXPECT_TRUE(tested) << function.name;
  }
}

TEST(Registry, EveryAggregateHasATestRow) {
  for (const Aggregate& aggregate : registry().aggregates) {
    EXPECT_TRUE(std::any_of(aggregateCases().begin(), aggregateCases().end(), [&](const AggregateCase& row) {
      return row.name == aggregate.name;
    })) << aggregate.name;
  }
}

TEST(Registry, NamesAreUniqueAndBeginAlike) {
  std::set<std::string_view> names;
  for (const Function& function : registry().functions) {
    EXPECT_EQ(function.name.substr(0, 3), "ts_");
    EXPECT_TRUE(names.insert(function.name).second) << function.name;
    EXPECT_TRUE(function.maxArgs == -1 || function.minArgs <= function.maxArgs) << function.name;
  }
  for (const Aggregate& aggregate : registry().aggregates) EXPECT_TRUE(names.insert(aggregate.name).second);
}

TEST(Registry, HasEverythingThatTheCompilerCalls) {
  const auto isThere = [](std::string_view name) {
    return findFunction(name) != nullptr || findAggregate(name) != nullptr;
  };
  for (const FunctionRow& row : functionRows()) EXPECT_TRUE(row.runtime.empty() || isThere(row.runtime)) << row.runtime;
  for (const OperatorRow& row : tsql::operatorRows()) EXPECT_TRUE(isThere(row.runtime)) << row.runtime;
  for (const std::string_view name : emittedFunctions()) EXPECT_TRUE(isThere(name)) << name;
  for (const AggregateRow& row : aggregateRows()) {
    EXPECT_TRUE(row.runtime.substr(0, 3) != "ts_" || isThere(row.runtime)) << row.runtime;
  }
}

TEST(Registry, TakesAsManyArgumentsAsTheCompilerWrites) {
  for (const FunctionRow& row : functionRows()) {
    const Function* function = findFunction(row.runtime);
    if (function == nullptr) continue;
    const int extra = row.extra == Extra::Nothing ? 0 : 1;
    EXPECT_EQ(function->minArgs, row.minArguments + extra) << row.name;
    EXPECT_EQ(function->maxArgs, row.maxArguments + extra) << row.name;
  }
}

TEST(Registry, UnknownNamesAreNotFound) {
  EXPECT_EQ(findFunction("ts_nothing"), nullptr);
  EXPECT_EQ(findAggregate("ts_nothing"), nullptr);
}

}  // namespace
}  // namespace tolvane::tsql::testing
