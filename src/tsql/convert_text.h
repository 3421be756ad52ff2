#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tsql/collation.h"
#include "tsql/datum.h"
#include "tsql/type.h"

// The half of convert.h whose target is text.
namespace tolvane::tsql {

// The value, which is not null, as text of the type: cut and padded to its length.
[[nodiscard]] Result toText(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
                            const Collation& collation);

// In the unit of the text type's length: UTF-16 units, or bytes of the code page.
[[nodiscard]] std::int64_t lengthIn(const Type& type, std::string_view text, const Collation& collation);

}  // namespace tolvane::tsql
