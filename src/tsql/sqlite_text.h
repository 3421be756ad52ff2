#pragma once

#include <string>
#include <string_view>

namespace tolvane::tsql {

// A name between double quotes, for SQLite text.
[[nodiscard]] std::string quoted(std::string_view name);
// A text between apostrophes, for SQLite text. Raises 40517 for one with the character 0.
[[nodiscard]] std::string quotedText(std::string_view text);

}  // namespace tolvane::tsql
