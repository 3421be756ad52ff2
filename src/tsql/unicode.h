#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts are UTF-8, but SQL Server counts and cuts in UTF-16 units. A unit that a cut leaves without its other half is
// kept as the three bytes that UTF-8 would give it, so that the halves meet again when the texts are joined.
namespace tolvane::tsql {

[[nodiscard]] bool isAscii(std::string_view text);

// Ill-formed bytes become U+FFFD each.
[[nodiscard]] std::u16string toUtf16(std::string_view text);
[[nodiscard]] std::string fromUtf16(std::u16string_view units);

// How many units toUtf16 would give.
[[nodiscard]] std::size_t utf16Length(std::string_view text);
// The first `count` units; all when there are fewer.
[[nodiscard]] std::string utf16Prefix(std::string_view text, std::size_t count);

// The character at `position`, which moves behind it; position must be inside the text.
[[nodiscard]] char32_t nextCharacter(std::string_view text, std::size_t& position);
void appendCharacter(std::string& text, char32_t character);

// The text without its trailing blanks.
[[nodiscard]] std::string_view withoutTrailingBlanks(std::string_view text);

}  // namespace tolvane::tsql
