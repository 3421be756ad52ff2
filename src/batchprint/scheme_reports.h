// The reports of a print scheme, as a caller lists them.
#pragma once

#include <cstdint>
#include <string>

#include "platform/objects.h"

namespace tolvane {

/// The batch that files `reports` under a scheme, one insert for each in the list's order; without reports an empty
/// text. Each element answers GetValue for "lRptID" and "sRptName"; names stand as they are. Errors: 424 for an element
/// that is no object, 91 for nothing, 438 for an object without GetValue, 13, 6 and 94 for values that do not convert.
[[nodiscard]] std::string schemeReportsBatch(std::int32_t schemeID, const ItemList& reports);

/// The index behind `index`; error 6 when 32 bits do not hold it.
[[nodiscard]] std::int32_t nextIndex(std::int32_t index);

}  // namespace tolvane
