// The tables of an account set, read from the scripts that make them: there they stand once.
#pragma once

#include <string>
#include <vector>

#include "platform/data_access.h"

namespace tolvane::host {

struct ShippedTable {
  std::string name;
  std::vector<std::string> columns;
  std::string identity;  ///< the column that the server numbers; empty without one
  bool older = false;    ///< of the layout before the last conversion: an account set may be without it
};

/// The tables of the shipped schema, in the order of the scripts, those of the older layout last.
[[nodiscard]] std::vector<ShippedTable> shippedTables();

/// The tables that a script makes.
[[nodiscard]] std::vector<ShippedTable> tablesIn(const std::string& script);

/// The columns that a database has for a table; empty without the table.
[[nodiscard]] std::vector<FieldInfo> columnsOf(Connection& connection, const std::string& table);

}  // namespace tolvane::host
