#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "tsql/type.h"

namespace tolvane::tsql {

struct SystemColumn {
  std::string_view name;
  Type type;
};

// A table that SQL Server makes up from its catalogue, written as a query on SQLite's.
struct SystemTable {
  std::string_view schema;  // empty: sys or dbo or none
  std::string_view name;
  std::string_view sql;
  std::vector<SystemColumn> columns;
  bool whole = false;  // it has all columns that SQL Server's has
};

std::span<const SystemTable> systemTables();
const SystemTable* findSystemTable(std::string_view schema, std::string_view name);
// Whether SQL Server has a table of that name in its catalogue; this engine need not have it.
bool isKnownSystemTable(std::string_view schema, std::string_view name);

}  // namespace tolvane::tsql
