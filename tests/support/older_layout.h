// Account sets that hold statements of the older layout.
#pragma once

#include <string>

#include "support/account_set.h"

namespace tolvane::test {

/// Adds the tables of schema/older_cs.sql, empty.
void addOlderTables(AccountSet& set);

/// Adds the tables with groups 1 to `groups` ("P1", "Old 1", cycle 3, base style 7), each with so many statements of
/// 2011 and so many item values of its own item.
void addOlderLayout(AccountSet& set, std::int32_t groups, std::int32_t statements, std::int32_t values);

}  // namespace tolvane::test
