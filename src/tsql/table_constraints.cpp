#include "tsql/table_constraints.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace tolvane::tsql {
namespace {

std::string_view typeOf(const TableClause& clause) {
  if (clause.begins("CHECK")) return clause.name == identityCheck ? "" : "C";
  if (clause.begins("FOREIGN") || clause.begins("REFERENCES")) return "F";
  return clause.begins("DEFAULT") && !isIdentityClause(clause) ? "D" : "";
}

void take(std::vector<TableConstraint>& into, const TableClause& clause, std::string name) {
  const std::string_view type = typeOf(clause);
  if (!type.empty() && !name.empty()) into.push_back({type, std::move(name)});
}

}  // namespace

std::vector<TableConstraint> constraintsOf(const Table& table) {
  std::vector<TableConstraint> result;
  for (const Index& index : table.indexes) {
    if (index.constraint) result.push_back({index.primary ? "PK" : "UQ", index.name});
  }
  const auto text = TableText::of(table.text);
  if (!text) return result;
  for (const ColumnText& column : text->columns) {
    for (const TableClause& clause : column.clauses) {
      take(result, clause, clause.begins("DEFAULT") ? nameOfDefault(table, column, clause) : clause.name);
    }
  }
  for (const TableClause& clause : text->constraints) take(result, clause, clause.name);
  return result;
}

std::string nameOfDefault(const Table& table, const ColumnText& column, const TableClause& clause) {
  return clause.name.empty() ? madeUpName("DF", table.name, column.name, 0) : clause.name;
}

bool isIdentityClause(const TableClause& clause) {
  return clause.text.starts_with("DEFAULT (ts_identity(");
}

std::string madeUpName(std::string_view kind, std::string_view table, std::string_view column, std::size_t number) {
  std::uint64_t hash = 14695981039346656037U;
  const auto add = [&hash](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  };
  add(kind);
  add(lowered(table));
  add(lowered(column));
  add(std::to_string(number));
  const bool key = kind == "PK" || kind == "UQ";
  constexpr std::size_t longest = 30;
  constexpr std::size_t ofTable = 9;
  const std::size_t digits = key ? 16 : 8;
  std::array<char, 17> text{};
  std::snprintf(text.data(), text.size(), "%016llX", static_cast<unsigned long long>(hash));
  std::string name = std::string(kind) + "__" + std::string(table.substr(0, key ? ofTable - 1 : ofTable)) + "__";
  if (!key && !column.empty()) name += std::string(column.substr(0, longest - digits - 2 - name.size())) + "__";
  return name + std::string(text.data() + 16 - digits, digits);
}

}  // namespace tolvane::tsql
