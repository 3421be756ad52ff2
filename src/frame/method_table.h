// The method table: the one description of every class, its methods and their parameters.
//
// A class states its methods once, in its description(); the types are read off the C++ signatures. Automation
// dispatch, type library, command line, HTTP, reference pages and the tests over all methods come from here. A method
// that is not in the table does not exist; one that is exists at every door.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "frame/parameter_types.h"
#include "frame/service.h"
#include "platform/names.h"

namespace tolvane {

struct ParameterDescription {
  std::string name;
  ParameterType type = ParameterType::variant;
  Direction direction = Direction::in;
  bool optional = false;
  /// What an optional parameter holds when it is not given. Missing for variants that state no default.
  Value defaultValue;
};

struct MethodDescription {
  /// The dispatch number: fixed for good, unique in its class, never given to another method.
  std::int32_t id = 0;
  std::string name;
  std::string summary;
  std::vector<ParameterDescription> parameters;
  ParameterType result = ParameterType::none;
  /// A read-only property: no parameters, no data source, no side effect.
  bool isProperty = false;
  /// Runs the method. The arguments are complete, in order and of the parameters' types; in/out ones are replaced.
  std::function<Value(Service&, std::span<Value>)> run;
};

struct ClassDescription {
  std::string name;
  TransactionMode transMode = TransactionMode::supported;
  std::string summary;
  /// `TransMode` comes first.
  std::vector<MethodDescription> methods;
  std::function<std::unique_ptr<Service>(Platform&)> create;

  /// By name without regard to letter case; null when there is none.
  [[nodiscard]] const MethodDescription* find(std::string_view method) const;
};

/// How a class names one of its parameters.
struct ParameterName {
  std::string name;
  bool isOptional = false;
  std::optional<Value> fallback;

  ParameterName(const char* text) : name(text) {}  // NOLINT(google-explicit-constructor)
};
/// A parameter that a caller may leave out; it then holds `fallback`, or its type's empty value (variants: Missing).
[[nodiscard]] inline ParameterName optional(const char* name, std::optional<Value> fallback = std::nullopt) {
  ParameterName parameter(name);
  parameter.isOptional = true;
  parameter.fallback = std::move(fallback);
  return parameter;
}

namespace detail {

/// `T` as a method declares a parameter: by value or const reference it goes in, by reference in and out.
template <typename T>
inline constexpr Direction directionOf =
    std::is_lvalue_reference_v<T> && !std::is_const_v<std::remove_reference_t<T>> ? Direction::inOut : Direction::in;

[[nodiscard]] MethodDescription describeTransMode(TransactionMode mode);
[[nodiscard]] ParameterDescription describeParameter(const ParameterName& name, ParameterType type,
                                                     Direction direction);

template <typename Class, typename Result, typename... Parameters, std::size_t... index>
Value runMethod(Class& object, Result (Class::*method)(Parameters...), std::span<Value> arguments,
                std::index_sequence<index...>) {
  std::tuple<std::remove_cvref_t<Parameters>...> values{
      Crossing<std::remove_cvref_t<Parameters>>::take(arguments[index])...};
  Value result;
  if constexpr (std::is_void_v<Result>) {
    (object.*method)(std::get<index>(values)...);
  } else {
    result = Crossing<Result>::give((object.*method)(std::get<index>(values)...));
  }
  [[maybe_unused]] const auto giveBack = [&]<std::size_t i, typename Parameter>() {
    if constexpr (directionOf<Parameter> == Direction::inOut) {
      arguments[i] = Crossing<std::remove_cvref_t<Parameter>>::give(std::move(std::get<i>(values)));
    }
  };
  (giveBack.template operator()<index, Parameters>(), ...);
  return result;
}

template <typename Result>
constexpr ParameterType resultType() {
  if constexpr (std::is_void_v<Result>) {
    return ParameterType::none;
  } else {
    return Crossing<Result>::type;
  }
}

}  // namespace detail

/// Writes the description of one class:
///
///     describe<SrvRptRetrieve>("SrvRptRetrieve", TransactionMode::supported, "...")
///         .method(2, "GetRptPlx", &SrvRptRetrieve::GetRptPlx, "...", {"sDsn", "lRptID", "vPlx",
///         optional("vPrinterBuf")})
template <typename Class>
class ClassDescriber {
 public:
  ClassDescriber(const char* name, TransactionMode transMode, const char* summary) {
    class_.name = name;
    class_.transMode = transMode;
    class_.summary = summary;
    class_.create = [](Platform& platform) -> std::unique_ptr<Service> { return std::make_unique<Class>(platform); };
    class_.methods.push_back(detail::describeTransMode(transMode));
  }

  template <typename Result, typename... Parameters>
  ClassDescriber& method(std::int32_t id, const char* name, Result (Class::*function)(Parameters...),
                         const char* summary, const std::array<ParameterName, sizeof...(Parameters)>& names) {
    MethodDescription description{id, name, summary, {}, detail::resultType<Result>(), false, {}};
    std::size_t i = 0;
    (description.parameters.push_back(detail::describeParameter(
         names[i++], detail::Crossing<std::remove_cvref_t<Parameters>>::type, detail::directionOf<Parameters>)),
     ...);
    description.run = [function](Service& service, std::span<Value> arguments) {
      return detail::runMethod(static_cast<Class&>(service), function, arguments,
                               std::index_sequence_for<Parameters...>{});
    };
    class_.methods.push_back(std::move(description));
    return *this;
  }

  operator ClassDescription() const { return class_; }  // NOLINT(google-explicit-constructor)

 private:
  ClassDescription class_;
};

template <typename Class>
[[nodiscard]] ClassDescriber<Class> describe(const char* name, TransactionMode transMode, const char* summary) {
  return {name, transMode, summary};
}

}  // namespace tolvane
