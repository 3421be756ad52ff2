// Texts as Windows takes them: UTF-16, and the bytes of a code page. Windows only.
#pragma once

#include <string>
#include <string_view>

namespace tolvane::system {

/// UTF-8 to UTF-16; ill-formed bytes become U+FFFD.
[[nodiscard]] std::wstring wideOf(std::string_view text);
/// UTF-16 to UTF-8; a lone half of a pair becomes U+FFFD.
[[nodiscard]] std::string utf8Of(std::wstring_view text);

/// How many '?' stand for a character beyond the sixteen-bit ones that a code page does not have.
enum class QuestionMarks { oneEachUnit, oneEachCharacter };

/// What the code page does not have becomes '?'; characters that only look alike are not taken in its place.
[[nodiscard]] std::string toCodePage(unsigned page, std::wstring_view text, QuestionMarks marks);
/// Bytes that are no character, half a character at the end among them, become U+FFFD.
[[nodiscard]] std::wstring fromCodePage(unsigned page, std::string_view bytes);

}  // namespace tolvane::system
