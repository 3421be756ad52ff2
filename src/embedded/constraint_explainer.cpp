#include "embedded/constraint_explainer.h"

#include <algorithm>
#include <functional>

#include "embedded/catalogue_query.h"
#include "embedded/constraint_names.h"
#include "embedded/schema_catalogue.h"
#include "tsql/table_constraints.h"

namespace tolvane::embedded {
namespace {

using tsql::Message;
using tsql::sameName;

// The words after "<kind> constraint failed: ".
std::string_view failedObject(std::string_view message) {
  const auto colon = message.find(": ");
  return colon == std::string_view::npos ? std::string_view() : message.substr(colon + 2);
}

// "t.a, t.b" -> t; "index 'x'" -> nothing.
std::string_view tableOf(std::string_view object) {
  return object.substr(0, object.find('.'));
}

std::vector<std::string> columnsOf(std::string_view object) {
  std::vector<std::string> columns;
  while (!object.empty()) {
    const auto comma = object.find(", ");
    const auto item = object.substr(0, comma);
    const auto point = item.rfind('.');
    columns.emplace_back(point == std::string_view::npos ? item : item.substr(point + 1));
    object = comma == std::string_view::npos ? std::string_view() : object.substr(comma + 2);
  }
  return columns;
}

std::optional<std::string> indexInQuotes(std::string_view object) {
  constexpr std::string_view start = "index '";
  if (!object.starts_with(start) || !object.ends_with('\'')) return std::nullopt;
  return std::string(object.substr(start.size(), object.size() - start.size() - 1));
}

const tsql::Index* indexOver(const tsql::Table& table, const std::vector<std::string>& columns) {
  for (const auto& index : table.indexes) {
    if (!index.unique || index.columns.size() != columns.size()) continue;
    const bool same = std::equal(columns.begin(), columns.end(), index.columns.begin(),
                                 [&](const std::string& name, int ordinal) { return table.find(name) == ordinal; });
    if (same) return &index;
  }
  return nullptr;
}

// Of a key that stands in its table's text, SQLite's names are "T/1", "T/2" for the first, the second without a name.
const tsql::Index* indexStored(const tsql::Table& table, std::string_view stored) {
  std::size_t number = 0;
  for (const auto& index : table.indexes) {
    if (index.stored == stored) return &index;
    if (!index.stored.empty() || !index.constraint ||
        (index.primary && index.columns.size() == 1 &&
         table.columns[static_cast<std::size_t>(index.columns[0])].identity)) {
      continue;
    }
    if (index.name == stored || table.name + "/" + std::to_string(++number) == stored) return &index;
  }
  return nullptr;
}

std::string withSchema(std::string_view table) {
  return "dbo." + std::string(table);
}

}  // namespace

tsql::SqlError ConstraintExplainer::explain(const ConstraintFailure& failure, std::string_view verb,
                                            std::string_view table) const {
  const auto object = failedObject(failure.what());
  switch (failure.code()) {
    case SQLITE_CONSTRAINT_NOTNULL: {
      const auto columns = columnsOf(object);
      const auto written = tableOf(object);
      const auto owner = written.starts_with('@') ? std::string(written)
                                                  : std::string(database_.databaseName()) + "." + withSchema(written);
      return {Message::NullColumn, {columns.empty() ? std::string() : columns.front(), owner, verb}};
    }
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return duplicate(object, table);
    case SQLITE_CONSTRAINT_FOREIGNKEY: {
      const auto keys = candidates(verb, table);
      if (!keys.empty()) return broken(keys.front(), verb, table);
      return {Message::ConstraintConflict, {verb, "FOREIGN KEY", "FK_" + std::string(table), place(table, {})}};
    }
    default:
      return checkFailed(std::string(object), verb, table);
  }
}

tsql::SqlError ConstraintExplainer::duplicate(std::string_view object, std::string_view table) const {
  const tsql::Table* written = nullptr;
  const tsql::Index* index = nullptr;
  if (auto name = indexInQuotes(object)) {
    if (name->ends_with(SchemaCatalogue::nullIndexEnd)) {
      name->resize(name->size() - SchemaCatalogue::nullIndexEnd.size());
    }
    written = catalogue_.find(table);
    if (written) index = indexStored(*written, *name);
    if (!index) return {Message::DuplicateKey, {"UNIQUE KEY", *name, withSchema(table)}};
  } else {
    written = catalogue_.find(tableOf(object));
    index = written ? indexOver(*written, columnsOf(object)) : nullptr;
    if (!index) return {Message::DuplicateKey, {"UNIQUE KEY", std::string(object), withSchema(tableOf(object))}};
  }
  if (!index->constraint) return {Message::DuplicateIndexRow, {withSchema(written->name), index->name}};
  return {Message::DuplicateKey,
          {index->primary ? "PRIMARY KEY" : "UNIQUE KEY", index->name, withSchema(written->name)}};
}

// A condition over one column names it.
tsql::SqlError ConstraintExplainer::checkFailed(const std::string& name, std::string_view verb,
                                                std::string_view table) const {
  if (name == tsql::identityCheck) return {Message::ArithmeticOverflow, {"IDENTITY", "int"}};
  std::vector<std::string> columns;
  const auto* written = catalogue_.find(table);
  for (const auto& check : constraintNames(catalogue_.definition(table)).checks) {
    if (!sameName(check.name, name) || !written) continue;
    for (const auto& word : check.words) {
      const int ordinal = written->find(word);
      if (ordinal < 0) continue;
      const auto& column = written->columns[static_cast<std::size_t>(ordinal)].name;
      if (std::find(columns.begin(), columns.end(), column) == columns.end()) columns.push_back(column);
    }
  }
  return {Message::ConstraintConflict, {verb, "CHECK", name, place(table, columns)}};
}

std::string ConstraintExplainer::place(std::string_view table, const std::vector<std::string>& columns) const {
  // Table variables have no schema, and live in a database of their own.
  const bool variable = table.starts_with('@');
  std::string text = "database \"" + (variable ? std::string("tempdb") : database_.databaseName()) + "\", table \"" +
                     (variable ? std::string(table) : withSchema(table)) + "\"";
  if (columns.size() == 1) text += ", column '" + columns.front() + "'";
  return text;
}

std::vector<ForeignKey> ConstraintExplainer::keysOf(const std::string& child) const {
  std::vector<ForeignKey> keys;
  query(database_, "SELECT id, \"table\", \"from\", \"to\" FROM pragma_foreign_key_list(?1) ORDER BY id DESC, seq",
        {child}, [&](sqlite3_stmt* row) {
          const int number = sqlite3_column_int(row, 0);
          if (keys.empty() || keys.back().number != number) {
            keys.push_back({"", child, columnText(row, 1), {}, {}, number});
          }
          keys.back().columns.push_back(columnText(row, 2));
          keys.back().referenced.push_back(columnText(row, 3));
        });
  // SQLite numbers them against the order of the text.
  const auto names = constraintNames(catalogue_.definition(child)).foreignKeys;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    keys[i].name = i < names.size() && !names[i].empty() ? names[i] : "FK_" + child;
    const auto* parent = catalogue_.find(keys[i].parent);
    if (!parent || !keys[i].referenced.front().empty()) continue;
    const auto primary = std::find_if(parent->indexes.begin(), parent->indexes.end(),
                                      [](const tsql::Index& index) { return index.primary; });
    if (primary == parent->indexes.end()) continue;
    for (std::size_t c = 0; c < keys[i].referenced.size() && c < primary->columns.size(); ++c) {
      keys[i].referenced[c] = parent->columns[static_cast<std::size_t>(primary->columns[c])].name;
    }
  }
  return keys;
}

std::vector<ForeignKey> ConstraintExplainer::candidates(std::string_view verb, std::string_view table) const {
  std::vector<ForeignKey> keys;
  if (verb != "DELETE") keys = keysOf(std::string(table));
  if (verb == "INSERT") return keys;
  query(database_,
        "SELECT DISTINCT s.name FROM sqlite_schema s, pragma_foreign_key_list(s.name) f WHERE s.type='table' AND "
        "lower(f.\"table\")=lower(?1)",
        {table}, [&](sqlite3_stmt* row) {
          for (auto& key : keysOf(columnText(row, 0))) {
            const bool known = std::any_of(keys.begin(), keys.end(), [&](const ForeignKey& other) {
              return other.child == key.child && other.number == key.number;
            });
            if (sameName(key.parent, table) && !known) keys.push_back(std::move(key));
          }
        });
  return keys;
}

bool ConstraintExplainer::isReferenced(std::string_view table) const {
  const auto keys = candidates("DELETE", table);
  return std::any_of(keys.begin(), keys.end(), [&](const ForeignKey& key) { return !sameName(key.child, table); });
}

tsql::SqlError ConstraintExplainer::broken(const ForeignKey& key, std::string_view verb, std::string_view table) const {
  const bool asChild = verb == "INSERT" || (verb == "UPDATE" && sameName(key.child, table));
  const bool same = sameName(key.child, key.parent);
  const std::string_view kind =
      asChild ? (same ? "FOREIGN KEY SAME TABLE" : "FOREIGN KEY") : (same ? "SAME TABLE REFERENCE" : "REFERENCE");
  return {Message::ConstraintConflict,
          {verb, kind, key.name, asChild ? place(key.parent, key.referenced) : place(key.child, key.columns)}};
}

}  // namespace tolvane::embedded
