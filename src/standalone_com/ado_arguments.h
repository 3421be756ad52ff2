// Arguments and errors as ADO has them.
#pragma once

#include <string_view>

#include "automation/dispatch_object.h"
#include "automation/object_border.h"
#include "platform/conversions.h"
#include "platform/data_access.h"
#include "platform/error.h"

namespace tolvane::standalone_com {

[[noreturn]] void raiseAdo(AdoError error, std::string_view source);

/// A value of one of ADO's enumerations that lies between two; error 3001 for others.
template <typename Enumeration>
[[nodiscard]] Enumeration enumerationOf(const Value& value, Enumeration least, Enumeration most,
                                        std::string_view source) {
  const std::int32_t number = toInt32(value);
  if (number < static_cast<std::int32_t>(least) || number > static_cast<std::int32_t>(most)) {
    raiseAdo(AdoError::invalidArgument, source);
  }
  return static_cast<Enumeration>(number);
}

[[nodiscard]] inline CursorLocation cursorLocationOf(const Value& value, std::string_view source) {
  return enumerationOf(value, CursorLocation::server, CursorLocation::client, source);
}

/// The object of this module behind a value, as `T`; error 3001 when there is something else, or nothing.
template <typename T>
[[nodiscard]] automation::ComPtr<T> objectOfClass(const Value& value, std::string_view source) {
  if (const auto* object = value.get<ObjectRef>(); object && *object) {
    const auto own = automation::DispatchObject::ofThisModule(automation::dispatchOf(*object).get());
    if (auto* found = dynamic_cast<T*>(own.get())) return automation::ComPtr<T>(found);
  }
  raiseAdo(AdoError::invalidArgument, source);
}

}  // namespace tolvane::standalone_com
