#pragma once

#include <algorithm>
#include <span>

#include "tsql/functions.h"

// The tables that the registry is put together from, one a file of functions.
namespace tolvane::tsql {

[[nodiscard]] std::span<const Function> conversionFunctions();
[[nodiscard]] std::span<const Function> operatorFunctions();
[[nodiscard]] std::span<const Function> textFunctions();
[[nodiscard]] std::span<const Function> dateFunctions();
[[nodiscard]] std::span<const Function> numberFunctions();
[[nodiscard]] std::span<const Function> systemFunctions();
[[nodiscard]] std::span<const Function> messageFunctions();
[[nodiscard]] std::span<const Function> identityFunctions();
[[nodiscard]] std::span<const Aggregate> aggregateFunctions();

[[nodiscard]] inline bool anyNull(const Call& call) {
  return std::any_of(call.args.begin(), call.args.end(), [](const Datum& argument) { return argument.isNull(); });
}

}  // namespace tolvane::tsql
