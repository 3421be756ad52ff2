// The collation of account sets: Chinese order by pinyin, made of the system's rules of texts.
#pragma once

#include <memory>

#include "rowset/filter.h"
#include "tsql/collation.h"

namespace tolvane::embedded {

/// The one collation of the process. Letter case, character width and trailing blanks do not count, accents do.
[[nodiscard]] const tsql::Collation& accountSetCollation();
/// The same, for filters.
[[nodiscard]] const rowset::TextOrder& accountSetTextOrder();

}  // namespace tolvane::embedded
