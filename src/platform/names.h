// Names of methods, columns, properties and words of our own: they compare without regard to the case of ASCII letters,
// and nothing else is folded.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tolvane {

[[nodiscard]] constexpr char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] inline std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lowered(c);
  return result;
}

[[nodiscard]] constexpr bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lowered(x) == lowered(y); });
}

}  // namespace tolvane
