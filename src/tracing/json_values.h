// Values as JSON, as far as they are the same in calls and in traces.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/value.h"

namespace tolvane::tracing {

using Json = nlohmann::ordered_json;

/// A scalar in its JSON form: "x", 5, {"$currency":"12.3400"}, ...; an error code is {"$error":"0x80020004"}. 64-bit
/// integers, which automation has no form for, are decimals. Arrays, byte documents and objects other than nothing are
/// null here.
[[nodiscard]] Json scalarToJson(const Value& value);

/// A value as traces show it: byte documents by their length, bags and lists with their content, record sets by name.
[[nodiscard]] Json traceToJson(const Value& value);

/// "array"'s element type as it is named in JSON.
[[nodiscard]] std::string_view elementTypeName(ValueType type);

/// "0x80044047".
[[nodiscard]] std::string hexNumber(std::uint32_t number);

}  // namespace tolvane::tracing
