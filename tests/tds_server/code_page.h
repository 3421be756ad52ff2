// The code page of narrow texts, 936, which the collation of text columns names.
#pragma once

#include <string>
#include <string_view>

namespace tolvane::tds {

/// UTF-8 from and to the code page of narrow texts; what it has not becomes "?".
[[nodiscard]] std::string toCodePage(std::string_view text);
[[nodiscard]] std::string fromCodePage(std::string_view text);

}  // namespace tolvane::tds
