// Calls by name: arguments by position or name, optional ones, in/out ones written back.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "frame/method_table.h"
#include "platform/error.h"

namespace tolvane {

/// What a caller passes. An argument whose value is Missing counts as not given.
struct CallArguments {
  std::vector<Value> positional;
  std::vector<std::pair<std::string, Value>> named;
};

/// An error of the call itself that one argument is to blame for.
class ArgumentError : public AutomationError {
 public:
  ArgumentError(RuntimeError error, std::size_t position)
      : AutomationError(error, std::string(applicationName)), position_(position) {}
  /// The parameter's place in the method, from 0.
  [[nodiscard]] std::size_t position() const noexcept { return position_; }

 private:
  std::size_t position_;
};

/// The method of that name; error 438 when the class has none.
[[nodiscard]] const MethodDescription& findMethod(const ClassDescription& description, std::string_view method);

/// The arguments in the method's order, converted to its parameters' types, defaults filled in. Errors: 450 for too
/// many or one given twice, 448 for a name that the method does not have, 449 for one that is neither given nor
/// optional, 13 and 6 for one that does not convert.
[[nodiscard]] std::vector<Value> bindArguments(const MethodDescription& method, const CallArguments& arguments);

/// Runs a method on bound arguments; in/out ones hold what the method left in them. Empty when the method has no
/// result. Whatever fails reaches the caller as an AutomationError.
Value invoke(Service& service, const MethodDescription& method, std::vector<Value>& bound);

}  // namespace tolvane
