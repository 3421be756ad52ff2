// Suggestions for misspelled names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::host {

/// The candidate that is the fewest changes away from `name`, without regard to letter case; empty when none is near.
[[nodiscard]] std::string nearestName(std::string_view name, const std::vector<std::string>& candidates);

/// " Did you mean X?" or nothing, to be put behind a sentence.
[[nodiscard]] std::string suggestion(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace tolvane::host
