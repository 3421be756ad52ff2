// Automation values in the JSON form that all hosts share.
#pragma once

#include <ostream>
#include <string>

#include "frame/parameter_types.h"
#include "platform/value.h"
#include "tracing/json_values.h"

namespace tolvane::host {

using tracing::Json;

/// Reads a JSON text; a UsageError says where it is not JSON, or not UTF-8.
[[nodiscard]] Json parseJson(const std::string& text);

/// The value that a JSON form stands for, as a parameter of `type` is given it: the type decides what a bare JSON array
/// holds. A UsageError names what is not one of the forms.
[[nodiscard]] Value decodeValue(const Json& json, ParameterType type);

/// Writes a value as JSON, without a line end. Documents are written as they are encoded. The content of record sets is
/// read from their first row on. Passwords (columns FMPassWord) are hidden unless `showSecrets`.
void writeValue(std::ostream& out, const Value& value, bool showSecrets);

/// A text as a JSON string; bytes that are not UTF-8 are replaced.
[[nodiscard]] std::string quoted(const std::string& text);

}  // namespace tolvane::host
