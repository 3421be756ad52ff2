#include "tsql/functions.h"

#include <vector>

#include "tsql/function_groups.h"

namespace tolvane::tsql {
namespace {

std::vector<Function> allFunctions() {
  std::vector<Function> functions;
  for (const auto group : {conversionFunctions(), operatorFunctions(), textFunctions(), dateFunctions(),
                           numberFunctions(), systemFunctions(), messageFunctions(), identityFunctions()}) {
    functions.insert(functions.end(), group.begin(), group.end());
  }
  return functions;
}

}  // namespace

const Registry& registry() {
  static const std::vector<Function> functions = allFunctions();
  static const Registry all{functions, aggregateFunctions()};
  return all;
}

const Function* findFunction(std::string_view name) {
  const auto functions = registry().functions;
  const auto found =
      std::find_if(functions.begin(), functions.end(), [name](const Function& row) { return row.name == name; });
  return found == functions.end() ? nullptr : &*found;
}

const Aggregate* findAggregate(std::string_view name) {
  const auto aggregates = registry().aggregates;
  const auto found =
      std::find_if(aggregates.begin(), aggregates.end(), [name](const Aggregate& row) { return row.name == name; });
  return found == aggregates.end() ? nullptr : &*found;
}

}  // namespace tolvane::tsql
