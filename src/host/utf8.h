// Texts as they come from outside and go to a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvane::host {

/// Whether a text is UTF-8: no stray bytes, no overlong forms, no surrogates.
[[nodiscard]] bool isUtf8(std::string_view text);

/// The columns that a text takes on a terminal: two for the wide characters of East Asia, none for combining marks.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text with control characters written as "\n", "\t", "\u001b", so that it stays on its line.
[[nodiscard]] std::string oneLine(std::string_view text);

}  // namespace tolvane::host
