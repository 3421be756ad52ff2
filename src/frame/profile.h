// The suite's settings, table t_SystemProfile.
#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"

namespace tolvane {

/// The value of a setting; `fallback` when there is no such key, Empty when there is no fallback either.
[[nodiscard]] Value readProfile(Connection& connection, const std::string& category, const std::string& key,
                                const std::optional<Value>& fallback = std::nullopt);

}  // namespace tolvane
