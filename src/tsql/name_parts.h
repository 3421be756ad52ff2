#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tsql {

// The parts of a name between points, in brackets or quotes or without them; nothing for what is no name.
[[nodiscard]] std::optional<std::vector<std::string>> nameParts(std::string_view name);

}  // namespace tolvane::tsql
