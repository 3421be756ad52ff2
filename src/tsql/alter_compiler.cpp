#include <algorithm>

#include "tsql/batch_compiler.h"
#include "tsql/parser.h"
#include "tsql/table_constraints.h"

// ALTER TABLE. SQLite's schema gets the table's text with the change in it; the rows are brought along by an UPDATE
// where they have to look different.
namespace tolvane::tsql {

using tree::StatementNode;

namespace {

// The value of a clause DEFAULT, as SQLite's text of it: a constant, or an expression in brackets.
std::string defaultOf(const TableClause& clause) {
  constexpr std::string_view keyword = "DEFAULT ";
  return clause.text.substr(keyword.size());
}

bool namesColumn(const TableClause& clause, std::string_view column) {
  const auto names = namesIn(clause.text);
  return std::ranges::any_of(names, [&](const std::string& name) { return sameName(name, column); });
}

// Of a foreign key only the columns of its own side.
bool usesColumn(const TableClause& clause, std::string_view column) {
  const auto key = foreignKeyOf(clause);
  if (!key) return namesColumn(clause, column);
  return std::ranges::any_of(key->columns, [&](const std::string& name) { return sameName(name, column); });
}

bool refersTo(const ForeignKeyText& key, const Table& target, std::string_view column) {
  if (!sameName(key.table, target.name)) return false;
  return std::ranges::any_of(key.referenced, [&](const std::string& name) { return sameName(name, column); });
}

bool variesInLength(const Type& type) {
  return type.kind == TypeKind::VarChar || type.kind == TypeKind::NVarChar || type.kind == TypeKind::VarBinary;
}

// Whether each value of the one is a value of the other as it stands.
bool grows(const Type& from, const Type& to) {
  return from.kind == to.kind && variesInLength(from) && from.length != maxLength && to.length != maxLength &&
         to.length >= from.length;
}

}  // namespace

BatchCompiler::Definition BatchCompiler::altered(const Table& table) const {
  Definition whole;
  whole.table = table;
  whole.before = &table;
  whole.step.verb = "ALTER TABLE";
  whole.step.table = "dbo." + table.name;
  auto text = TableText::of(table.text);
  if (!text) throw SqlError(notSupportedNumber, 16, "Altering '" + table.name + "' is not supported.");
  whole.text = std::move(*text);
  return whole;
}

// --- ADD

void BatchCompiler::alterAdd(const StatementNode& node) {
  Definition whole = altered(changedTable(node.table));
  Table& table = whole.table;
  whole.unchecked = node.unchecked;
  for (const auto& definition : node.definitions) {
    if (table.find(definition.name) >= 0) {
      writer_.fail(definition.token, 2705,
                   "Column names in each table must be unique. Column name '" + definition.name + "' in table '" +
                       table.name + "' is specified more than once.");
    }
    Column column = columnOf(definition);
    column.made = column.identity;
    for (const auto& constraint : definition.constraints) {
      const bool primary = constraint.kind == tree::Constraint::Kind::PrimaryKey;
      if (primary && !definition.nullable.value_or(false)) column.type.nullable = false;
    }
    table.columns.push_back(std::move(column));
    defineColumn(whole, definition);
  }
  addConstraints(whole, node);
  for (const auto& definition : node.definitions) fillColumn(whole, node, definition);
  add(node, finish(std::move(whole)));
}

// What the rows that are there get in a new column.
void BatchCompiler::fillColumn(Definition& whole, const StatementNode& node, const tree::ColumnDefinition& definition) {
  Table& table = whole.table;
  const Column& column = table.columns[static_cast<std::size_t>(table.find(definition.name))];
  const TableClause* clause = whole.text.find(column.name)->find("DEFAULT");
  const auto withValues = [](const tree::Constraint& constraint) { return constraint.withValues; };
  const std::string name = schemaOf(table) + quoted(table.name);
  if (clause == nullptr) {
    if (column.type.nullable) return;
    whole.step.refusals.push_back(
        {{"SELECT 1 FROM " + name + " LIMIT 1", {}},
         4901,
         "ALTER TABLE only allows columns to be added that can contain nulls, or have a DEFAULT definition specified, "
         "or the column being added is an identity or timestamp column, or alternatively if none of the previous "
         "conditions are satisfied the table must be empty to allow addition of this column. Column '" +
             column.name + "' cannot be added to non-empty table '" + table.name +
             "' because it does not satisfy these conditions."});
    return;
  }
  const bool filled = !column.type.nullable || std::ranges::any_of(definition.constraints, withValues);
  const std::string text = defaultOf(*clause);
  // SQLite shows the rows that are there a constant, without a byte written; their documents may be long. Other values
  // are written into them, and null is, too. So are constants that a constraint has to be asked about.
  const bool onlyDefault = std::ranges::all_of(definition.constraints, [](const tree::Constraint& constraint) {
    return constraint.kind == tree::Constraint::Kind::Default;
  });
  if (filled && onlyDefault && node.constraints.empty() && !text.starts_with("(")) return;
  const std::string value = filled ? text : "NULL";
  whole.step.statements.push_back({"UPDATE " + name + " SET " + quoted(column.name) + "=" + value, {}});
}

// Rows that were stored before a column came show its default, until that changes.
void BatchCompiler::writeOut(Definition& whole, const std::string& column) {
  const std::string name = schemaOf(whole.table) + quoted(whole.table.name);
  whole.step.preparations.push_back({"UPDATE " + name + " SET " + quoted(column) + "=" + quoted(column), {}});
}

// --- DROP

void BatchCompiler::alterDrop(const StatementNode& node) {
  Definition whole = altered(changedTable(node.table));
  for (const auto& item : node.drops) {
    if (item.column) {
      dropColumn(whole, item);
    } else {
      dropConstraint(whole, item);
    }
  }
  add(node, finish(std::move(whole)));
}

void BatchCompiler::checkUnreferenced(const Definition& whole, const Index& key, int token) const {
  const Table& table = whole.table;
  for (const Table* other : catalogue_.tables()) {
    const auto text = sameName(other->name, table.name) ? whole.text : TableText::of(other->text).value_or(TableText());
    for (const TableClause& clause : text.constraints) {
      const auto foreign = foreignKeyOf(clause);
      if (!foreign || !sameName(foreign->table, table.name) || foreign->referenced.size() != key.columns.size()) {
        continue;
      }
      const auto isReferenced = [&](int ordinal) {
        return refersTo(*foreign, table, table.columns[static_cast<std::size_t>(ordinal)].name);
      };
      if (!std::ranges::all_of(key.columns, isReferenced)) continue;
      writer_.fail(token, 3725,
                   "The constraint '" + key.name + "' is being referenced by table '" + other->name +
                       "', foreign key constraint '" + clause.name + "'.");
    }
  }
}

void BatchCompiler::dropConstraint(Definition& whole, const tree::DropItem& item) {
  Table& table = whole.table;
  const auto isKey = [&](const Index& index) {
    return (index.constraint || index.stored.empty()) && sameName(index.name, item.name);
  };
  if (const auto key = std::ranges::find_if(table.indexes, isKey); key != table.indexes.end()) {
    checkUnreferenced(whole, *key, item.token);
    if (key->stored.empty()) throw notSupported(batch_, item.token, "dropping a key that is part of its table");
    whole.step.preparations.push_back({"DROP INDEX " + schemaOf(table) + quoted(key->stored), {}});
    whole.step.preparations.push_back({"DROP INDEX IF EXISTS " + schemaOf(table) + quoted(key->stored + "/null"), {}});
    table.indexes.erase(key);
    return;
  }
  auto& clauses = whole.text.constraints;
  const auto isClause = [&](const TableClause& clause) { return sameName(clause.name, item.name); };
  if (std::erase_if(clauses, isClause) > 0) return;
  for (ColumnText& column : whole.text.columns) {
    const auto isDefault = [&](const TableClause& clause) {
      return clause.begins("DEFAULT") && !isIdentityClause(clause) &&
             sameName(nameOfDefault(table, column, clause), item.name);
    };
    const auto found = std::ranges::find_if(column.clauses, isDefault);
    const auto check = std::ranges::find_if(column.clauses, [&](const TableClause& clause) {
      return clause.begins("CHECK") && clause.name != identityCheck && sameName(clause.name, item.name);
    });
    if (check != column.clauses.end()) {
      column.clauses.erase(check);
      return;
    }
    if (found == column.clauses.end()) continue;
    writeOut(whole, column.name);
    column.clauses.erase(found);
    return;
  }
  if (item.ifExists) return;
  writer_.fail(item.token, 3728, "'" + item.name + "' is not a constraint.");
}

// Raises 5074 for the first object that a column cannot go without.
void BatchCompiler::checkUnused(const Definition& whole, const Column& column, int token) const {
  const Table& table = whole.table;
  const auto depends = [&](std::string_view kind, const std::string& name) {
    writer_.fail(token, 5074,
                 "The " + std::string(kind) + " '" + name + "' is dependent on column '" + column.name + "'.");
  };
  const int ordinal = table.find(column.name);
  for (const Index& index : table.indexes) {
    if (std::ranges::find(index.columns, ordinal) == index.columns.end()) continue;
    depends(index.constraint || index.stored.empty() ? "object" : "index", index.name);
  }
  for (const ColumnText& text : whole.text.columns) {
    for (const TableClause& clause : text.clauses) {
      const bool own = sameName(text.name, column.name);
      if (clause.begins("CHECK") && clause.name != identityCheck && namesColumn(clause, column.name)) {
        depends("object", clause.name);
      }
      if (own && clause.begins("DEFAULT") && !isIdentityClause(clause)) {
        depends("object", nameOfDefault(table, text, clause));
      }
    }
  }
  for (const TableClause& clause : whole.text.constraints) {
    if (usesColumn(clause, column.name)) depends("object", clause.name);
  }
  for (const Table* other : catalogue_.tables()) {
    const auto text = TableText::of(other->text);
    if (!text || sameName(other->name, table.name)) continue;
    for (const TableClause& clause : text->constraints) {
      const auto key = foreignKeyOf(clause);
      if (key && refersTo(*key, table, column.name)) depends("object", clause.name);
    }
  }
}

void BatchCompiler::dropColumn(Definition& whole, const tree::DropItem& item) {
  Table& table = whole.table;
  const int ordinal = table.find(item.name);
  if (ordinal < 0) {
    if (item.ifExists) return;
    writer_.fail(item.token, 4924,
                 "ALTER TABLE DROP COLUMN failed because column '" + item.name + "' does not exist in table '" +
                     table.name + "'.");
  }
  const Column column = table.columns[static_cast<std::size_t>(ordinal)];
  checkUnused(whole, column, item.token);
  if (whole.text.columns.size() == 1) {
    writer_.fail(item.token, 4923,
                 "ALTER TABLE DROP COLUMN failed because '" + column.name + "' is the only data column in table '" +
                     table.name + "'. A table must have at least one data column.");
  }
  if (column.identity && !column.made) throw notSupported(batch_, item.token, "dropping that identity column");
  whole.step.statements.push_back(
      {"ALTER TABLE " + schemaOf(table) + quoted(table.name) + " DROP COLUMN " + quoted(column.name), {}});
}

// --- ALTER COLUMN

void BatchCompiler::alterColumn(const StatementNode& node) {
  Definition whole = altered(changedTable(node.table));
  Table& table = whole.table;
  const auto& definition = node.definitions.front();
  const int ordinal = table.find(definition.name);
  if (ordinal < 0) {
    writer_.fail(definition.token, 4924,
                 "ALTER TABLE ALTER COLUMN failed because column '" + definition.name + "' does not exist in table '" +
                     table.name + "'.");
  }
  Column& column = table.columns[static_cast<std::size_t>(ordinal)];
  if (column.identity) throw notSupported(batch_, definition.token, "altering an identity column");
  const Type before = column.type;
  const Type after = definition.type.orNull(definition.nullable.value_or(true));
  ColumnText* text = whole.text.find(column.name);
  if (text == nullptr) throw notSupported(batch_, definition.token, "altering that column");
  const bool sameKind = before.kind == after.kind;
  // Keys bear a column that only grows, defaults one that keeps its type.
  Definition used = whole;
  ColumnText* usedText = used.text.find(column.name);
  if (sameKind) std::erase_if(usedText->clauses, [](const TableClause& clause) { return clause.begins("DEFAULT"); });
  if (grows(before, after) && before.nullable == after.nullable) {
    std::erase_if(used.table.indexes, [](const Index& index) { return !index.primary; });
    std::erase_if(used.text.constraints, [](const TableClause& clause) { return clause.begins("CHECK"); });
  }
  checkUnused(used, column, definition.token);
  const std::string name = schemaOf(table) + quoted(table.name);
  if (before.nullable && !after.nullable) {
    whole.step.refusals.push_back({{"SELECT 1 FROM " + name + " WHERE " + quoted(column.name) + " IS NULL LIMIT 1", {}},
                                   515,
                                   "Cannot insert the value NULL into column '" + column.name + "', table '" +
                                       (table.temporary ? "tempdb" : writer_.database()) + ".dbo." + table.name +
                                       "'; column does not allow nulls. UPDATE fails."});
  }
  Typed value;
  value.sql = quoted(column.name);
  value.type = before;
  column.type = after;
  const std::string converted = writer_.assign(value, table, column, "UPDATE");
  text->type = after.declared();
  std::erase_if(text->clauses, [](const TableClause& clause) { return clause.begins("NOT"); });
  if (!after.nullable) text->clauses.insert(text->clauses.begin(), {{}, "NOT NULL", {}});
  if (before.orNull() != after.orNull()) {
    for (TableClause& clause : text->clauses) {
      if (!clause.begins("DEFAULT") || grows(before, after)) continue;
      // The default has to look as values of the new type do.
      writeOut(whole, column.name);
      value.sql = defaultOf(clause);
      clause.text = "DEFAULT (" + writer_.assign(value, table, column, "INSERT") + ")";
    }
    whole.step.statements.push_back({"UPDATE " + name + " SET " + quoted(column.name) + "=" + converted, {}});
  }
  add(node, finish(std::move(whole)));
}

}  // namespace tolvane::tsql
