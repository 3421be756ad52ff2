#pragma once

#include <cstddef>
#include <string_view>

namespace tolvane::rowset {

/// Where the text stops being UTF-8; npos when all of it is. Halves of surrogate pairs, overlong forms and numbers
/// beyond Unicode are not UTF-8.
[[nodiscard]] std::size_t invalidUtf8(std::string_view text);

}  // namespace tolvane::rowset
