#include "frame/dispatcher.h"

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>

namespace tolvane {
namespace {

std::size_t positionOf(const MethodDescription& method, const std::string& name) {
  const auto& parameters = method.parameters;
  const auto found = std::find_if(parameters.begin(), parameters.end(), [&](const ParameterDescription& parameter) {
    return sameName(parameter.name, name);
  });
  if (found == parameters.end()) raise(RuntimeError::namedArgumentNotFound);
  return static_cast<std::size_t>(found - parameters.begin());
}

Value complete(const ParameterDescription& parameter, const std::optional<Value>& given, std::size_t position) {
  if (!given || given->isMissing()) {
    if (!parameter.optional) throw ArgumentError(RuntimeError::argumentNotOptional, position);
    return parameter.defaultValue;
  }
  try {
    return convertArgument(*given, parameter.type);
  } catch (const AutomationError& error) {
    const bool overflow = error.number() == errorNumber(RuntimeError::overflow);
    throw ArgumentError(overflow ? RuntimeError::overflow : RuntimeError::typeMismatch, position);
  }
}

}  // namespace

const MethodDescription& findMethod(const ClassDescription& description, std::string_view method) {
  const MethodDescription* found = description.find(method);
  if (!found) raise(RuntimeError::memberNotFound);
  return *found;
}

std::vector<Value> bindArguments(const MethodDescription& method, const CallArguments& arguments) {
  const std::size_t count = method.parameters.size();
  if (arguments.positional.size() > count) raise(RuntimeError::wrongArgumentCount);
  std::vector<std::optional<Value>> given(arguments.positional.begin(), arguments.positional.end());
  given.resize(count);
  for (const auto& [name, value] : arguments.named) {
    auto& place = given[positionOf(method, name)];
    if (place && !place->isMissing()) raise(RuntimeError::wrongArgumentCount);
    place = value;
  }
  std::vector<Value> bound;
  bound.reserve(count);
  for (std::size_t i = 0; i < count; ++i) bound.push_back(complete(method.parameters[i], given[i], i));
  return bound;
}

Value invoke(Service& service, const MethodDescription& method, std::vector<Value>& bound) {
  try {
    return method.run(service, bound);
  } catch (const std::bad_alloc&) {
    raise(RuntimeError::outOfMemory);
  } catch (const std::length_error&) {
    raise(RuntimeError::outOfMemory);  // a text or array that no memory could hold
  }
}

}  // namespace tolvane
