// SQL text by concatenation, as the services send it.
#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace tolvane {

namespace detail {
inline void append(std::string& text, std::string_view piece) {
  text += piece;
}
/// Integers stand as decimal text: a leading "-" when negative, no blanks, no leading zeros.
template <std::integral Number>
void append(std::string& text, Number number) {
  static_assert(!std::same_as<Number, bool> && !std::same_as<Number, char>, "no number");
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  text.append(digits, end);
}
}  // namespace detail

/// Joins fragments and values exactly as they stand, blanks included: sql("... Where FRptID=", lRptID). Texts are not
/// escaped here; the places that want it say doubled(...).
template <typename... Pieces>
[[nodiscard]] std::string sql(const Pieces&... pieces) {
  std::string text;
  text.reserve(256);
  (detail::append(text, pieces), ...);
  return text;
}

/// Every apostrophe of a text doubled, so that it can stand between apostrophes.
[[nodiscard]] inline std::string doubled(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 2);
  for (const char c : text) {
    if (c == '\'') result += c;
    result += c;
  }
  return result;
}

}  // namespace tolvane
