#pragma once

#include <string>
#include <string_view>

namespace tolvane::tsql {

// Equality of names: ASCII letter case does not matter, nothing else is folded.
[[nodiscard]] bool sameName(std::string_view a, std::string_view b);
// The form in which equal names are equal texts.
[[nodiscard]] std::string lowered(std::string_view name);

}  // namespace tolvane::tsql
