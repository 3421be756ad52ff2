#pragma once

#include <string_view>

namespace tolvane::tsql {

// The order of two identifiers in stored form (capital letters, hyphens): SQL Server looks at the last group first and
// at the bytes of the first three groups from their ends. The collation TSQL_GUID.
[[nodiscard]] int compareUniqueIdentifiers(std::string_view left, std::string_view right);

}  // namespace tolvane::tsql
