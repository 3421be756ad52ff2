#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tsql {

// One clause of a column or of a table, as `CONSTRAINT name DEFAULT 0 /*((0))*/`.
struct TableClause {
  std::string name;  // behind CONSTRAINT; empty without one
  std::string text;  // from its keyword on
  std::string note;  // the comment behind it: the clause as it was written in T-SQL

  // Letter case of the keyword does not matter.
  [[nodiscard]] bool begins(std::string_view keyword) const;
};

struct ColumnText {
  std::string name;
  std::string type;  // as declared; may be empty
  std::vector<TableClause> clauses;

  [[nodiscard]] const TableClause* find(std::string_view keyword) const;
};

// What a clause FOREIGN KEY says.
struct ForeignKeyText {
  std::vector<std::string> columns;
  std::string table;
  std::vector<std::string> referenced;  // empty: the primary key
  std::string onDelete;                 // CASCADE, SET NULL, SET DEFAULT, NO ACTION or empty
  std::string onUpdate;
};

// The text in SQLite's schema that made a table, taken apart, so that a part of it can be exchanged: SQLite keeps names
// and conditions of constraints nowhere else.
struct TableText {
  std::string head;  // up to the bracket
  std::vector<ColumnText> columns;
  std::vector<TableClause> constraints;
  std::string tail;  // from the closing bracket on

  // Nothing for a text that is no CREATE TABLE with a list of columns.
  [[nodiscard]] static std::optional<TableText> of(std::string_view createTable);
  [[nodiscard]] std::string text() const;
  [[nodiscard]] ColumnText* find(std::string_view column);
};

[[nodiscard]] std::optional<ForeignKeyText> foreignKeyOf(const TableClause& clause);

// Names that stand in a text of SQLite, without their quotes; texts and comments are left out.
[[nodiscard]] std::vector<std::string> namesIn(std::string_view text);

}  // namespace tolvane::tsql
