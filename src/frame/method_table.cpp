#include "frame/method_table.h"

#include <algorithm>

namespace tolvane {

const MethodDescription* ClassDescription::find(std::string_view method) const {
  const auto found = std::find_if(methods.begin(), methods.end(),
                                  [&](const MethodDescription& candidate) { return sameName(candidate.name, method); });
  return found == methods.end() ? nullptr : &*found;
}

namespace detail {

MethodDescription describeTransMode(TransactionMode mode) {
  return {1,
          "TransMode",
          "How the class takes part in transactions: 2 it requires one, 3 it joins one that is there.",
          {},
          ParameterType::int32,
          true,
          [mode](Service&, std::span<Value>) -> Value { return static_cast<std::int32_t>(mode); }};
}

ParameterDescription describeParameter(const ParameterName& name, ParameterType type, Direction direction) {
  ParameterDescription parameter{name.name, type, direction, name.isOptional, {}};
  if (name.isOptional) {
    const Value empty = type == ParameterType::variant ? Value(missingArgument) : emptyValue(type);
    parameter.defaultValue = name.fallback.value_or(empty);
  }
  return parameter;
}

}  // namespace detail
}  // namespace tolvane
