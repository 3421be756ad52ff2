// The collation of account sets: Chinese order by pinyin, made of the system's rules of texts.
#pragma once

#include <cstdint>
#include <memory>

#include "rowset/filter.h"
#include "tsql/collation.h"

namespace tolvane::embedded {

/// The one collation of the process. Letter case, character width and trailing blanks do not count, accents do.
[[nodiscard]] const tsql::Collation& accountSetCollation();
/// How many sort keys it has had made of the system's rules. All of them go into its tables, which are made once:
/// comparing and sorting makes no more.
[[nodiscard]] std::uint64_t sortKeysMade();
/// The same, for filters.
[[nodiscard]] const rowset::TextOrder& accountSetTextOrder();

}  // namespace tolvane::embedded
