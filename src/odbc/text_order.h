// How texts are compared on this side, for the filters of record sets.
#pragma once

#include "rowset/filter.h"

namespace tolvane::odbc {

/// Letter case and trailing blanks do not count, as in ADO's own filters. The order of different letters is that of
/// their numbers: the server's collation is not known here.
[[nodiscard]] const rowset::TextOrder& clientTextOrder();

}  // namespace tolvane::odbc
