#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tsql/catalogue.h"
#include "tsql/table_text.h"

// The constraints of a table by their names: what the catalogue tells, what a new name must not repeat.
namespace tolvane::tsql {

struct TableConstraint {
  std::string_view type;  // as in sys.objects: PK, UQ, F, C, D
  std::string name;
};

// Keys first, then the rest in the order of the table's text. Without what the engine itself adds to a table.
[[nodiscard]] std::vector<TableConstraint> constraintsOf(const Table& table);

// A default of a table that was made before defaults had names gets the one that it would have now.
[[nodiscard]] std::string nameOfDefault(const Table& table, const ColumnText& column, const TableClause& clause);
// A default that makes the values of an identity column is none for SQL Server.
[[nodiscard]] bool isIdentityClause(const TableClause& clause);
// A name as SQL Server makes one up: kind, beginnings of table and column, hexadecimal digits.
[[nodiscard]] std::string madeUpName(std::string_view kind, std::string_view table, std::string_view column,
                                     std::size_t number);

// The check of the engine's own on identity columns that SQLite numbers.
inline constexpr std::string_view identityCheck = "identity/int";

}  // namespace tolvane::tsql
