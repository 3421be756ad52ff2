#pragma once

#include <string_view>

namespace tolvane::rowset {

/// The order of two decimal numbers in canonical text ("-12.3400"): by value, whatever their numbers of decimals. The
/// collation TSQL_DECIMAL.
[[nodiscard]] int compareDecimalTexts(std::string_view left, std::string_view right);

}  // namespace tolvane::rowset
