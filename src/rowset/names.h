// Names of columns and tables, as SQL compares them.
#pragma once

#include <algorithm>
#include <string_view>

namespace tolvane::rowset {

/// The same name without regard to the case of ASCII letters.
[[nodiscard]] inline bool sameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace tolvane::rowset
