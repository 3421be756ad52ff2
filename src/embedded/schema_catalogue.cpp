#include "embedded/schema_catalogue.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "embedded/catalogue_query.h"
#include "embedded/constraint_explainer.h"
#include "embedded/constraint_names.h"
#include "tsql/names.h"
#include "tsql/table_constraints.h"

namespace tolvane::embedded {
namespace {

// Object numbers of users' tables are large on SQL Server, and nobody should take them for row numbers.
constexpr std::int64_t firstObjectId = 1977058079;
// Constraints are numbered within their tables, below all tables.
constexpr std::int64_t firstConstraintId = 1600000000;
constexpr std::int64_t constraintsPerTable = 1000;

}  // namespace

SchemaCatalogue::SchemaCatalogue(Database& database)
    : database_(database), versionPragma_(std::make_shared<StatementPool>("PRAGMA schema_version")) {}

std::int64_t SchemaCatalogue::schemaVersion() const {
  const Lease lease(database_, versionPragma_);
  return database_.stepOwn(lease.get()) ? sqlite3_column_int64(lease.get(), 0) : 0;
}

void SchemaCatalogue::invalidate() {
  namesRead_ = false;
  owners_.clear();
  constraints_.reset();
  // Programs of the old version may still hold tables; they go when the next change comes.
  retired_.clear();
  for (auto& [name, entry] : entries_) {
    if (entry.table) retired_.push_back(std::move(entry.table));
  }
  entries_.clear();
  ++version_;
}

void SchemaCatalogue::refresh() {
  if (namesRead_ && schemaVersion() != readVersion_) invalidate();
}

void SchemaCatalogue::readNames() const {
  if (namesRead_) return;
  readVersion_ = schemaVersion();
  const auto take = [&](std::string schema) {
    return [this, schema = std::move(schema)](sqlite3_stmt* row) {
      const auto kind = columnText(row, 0);
      auto name = columnText(row, 1);
      if (kind == "index") {
        owners_.insert_or_assign(tsql::lowered(name), tsql::lowered(columnText(row, 2)));
      } else if (!name.starts_with("sqlite_")) {
        auto key = tsql::lowered(name);
        entries_.insert_or_assign(std::move(key), Entry{std::move(name), schema, kind, columnText(row, 3),
                                                        sqlite3_column_int64(row, 4), nullptr});
      }
    };
  };
  query(database_,
        "SELECT type, name, tbl_name, sql, rowid FROM main.sqlite_master WHERE type IN ('table','view','index')", {},
        take("main"));
  query(database_,
        "SELECT type, name, tbl_name, sql, -rowid FROM temp.sqlite_master WHERE type IN ('table','view','index')", {},
        take("temp"));
  namesRead_ = true;
}

SchemaCatalogue::Entry* SchemaCatalogue::entry(std::string_view name) const {
  readNames();
  const auto found = entries_.find(tsql::lowered(name));
  return found == entries_.end() ? nullptr : &found->second;
}

const tsql::Table* SchemaCatalogue::find(std::string_view name) const {
  auto* found = entry(name);
  if (!found) return nullptr;
  if (!found->table) readTable(*found);
  return found->table.get();
}

const tsql::Table* SchemaCatalogue::findByIndex(std::string_view indexName) const {
  readNames();
  const auto owner = owners_.find(tsql::lowered(indexName));
  return owner == owners_.end() ? nullptr : find(owner->second);
}

std::vector<const tsql::Table*> SchemaCatalogue::tables() const {
  readNames();
  std::vector<const tsql::Table*> result;
  for (auto& [key, entry] : entries_) {
    if (entry.kind != "table" || entry.name.starts_with("__")) continue;
    if (!entry.table) readTable(entry);
    result.push_back(entry.table.get());
  }
  return result;
}

const std::map<std::int64_t, tsql::DatabaseObject>& SchemaCatalogue::constraintsRead() const {
  readNames();
  if (constraints_) return *constraints_;
  constraints_.emplace();
  for (const tsql::Table* table : tables()) {
    if (table->temporary) continue;
    const std::int64_t number = entry(table->name)->number;
    std::int64_t id = firstConstraintId - (number * constraintsPerTable);
    for (auto& constraint : tsql::constraintsOf(*table)) {
      --id;
      constraints_->insert(
          {id, {id, firstObjectId - number, std::string(constraint.type), std::move(constraint.name)}});
    }
  }
  return *constraints_;
}

std::vector<std::int64_t> SchemaCatalogue::constraints() const {
  std::vector<std::int64_t> ids;
  for (const auto& [id, object] : constraintsRead()) ids.push_back(id);
  return ids;
}

std::optional<tsql::DatabaseObject> SchemaCatalogue::object(std::string_view name) const {
  if (const auto* found = entry(name)) {
    return tsql::DatabaseObject{firstObjectId - found->number, 0, found->kind == "view" ? "V" : "U", found->name};
  }
  for (const auto& [id, object] : constraintsRead()) {
    if (tsql::sameName(object.name, name)) return object;
  }
  return std::nullopt;
}

std::optional<tsql::DatabaseObject> SchemaCatalogue::object(std::int64_t id) const {
  readNames();
  if (id < firstConstraintId) {
    const auto found = constraintsRead().find(id);
    return found == constraintsRead().end() ? std::nullopt : std::optional(found->second);
  }
  for (const auto& [key, entry] : entries_) {
    if (firstObjectId - entry.number == id) return object(entry.name);
  }
  return std::nullopt;
}

void SchemaCatalogue::readTable(Entry& entry) const {
  entry.table = std::make_unique<tsql::Table>();
  entry.table->name = entry.name;
  entry.table->view = entry.kind == "view";
  entry.table->temporary = entry.schema == "temp";
  entry.table->text = entry.sql;
  std::vector<int> key;
  readColumns(entry, key);
  if (!entry.table->view) readIndexes(entry, key);
}

void SchemaCatalogue::readColumns(Entry& entry, std::vector<int>& key) const {
  std::vector<std::pair<int, int>> keyColumns;  // place in the key, ordinal
  const bool numbered = tsql::lowered(entry.sql).find("autoincrement") != std::string::npos;
  query(database_, "SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_info(?1, ?2)",
        {entry.name, entry.schema}, [&](sqlite3_stmt* row) {
          tsql::Column column;
          column.name = columnText(row, 0);
          const auto declared = columnText(row, 1);
          const auto type = tsql::Type::fromDeclared(declared);
          column.type = type.value_or(tsql::Type::text(tsql::TypeKind::NVarChar, tsql::maxLength));
          const int place = sqlite3_column_int(row, 4);
          column.defaultText = columnText(row, 3);
          tsql::readIdentity(column);
          column.identity = column.made || (numbered && place == 1 && tsql::lowered(declared) == "integer");
          column.type.nullable = sqlite3_column_int(row, 2) == 0 && !column.identity;
          if (place > 0) keyColumns.emplace_back(place, static_cast<int>(entry.table->columns.size()));
          entry.table->columns.push_back(std::move(column));
        });
  std::sort(keyColumns.begin(), keyColumns.end());
  for (const auto& [place, ordinal] : keyColumns) key.push_back(ordinal);
}

void SchemaCatalogue::readIndexes(Entry& entry, const std::vector<int>& key) const {
  auto& table = *entry.table;
  const auto names = constraintNames(entry.sql);
  std::size_t uniqueNumber = 0;
  bool keyListed = false;
  // The list comes in the reverse order of making.
  query(database_, "SELECT name, \"unique\", origin FROM pragma_index_list(?1, ?2) ORDER BY seq DESC",
        {entry.name, entry.schema}, [&](sqlite3_stmt* row) {
          tsql::Index index;
          const auto stored = columnText(row, 0);
          if (stored.ends_with(nullIndexEnd)) return;
          index.unique = sqlite3_column_int(row, 1) != 0;
          const auto origin = columnText(row, 2);
          query(database_, "SELECT cid FROM pragma_index_info(?1, ?2) ORDER BY seqno", {stored, entry.schema},
                [&](sqlite3_stmt* column) { index.columns.push_back(sqlite3_column_int(column, 0)); });
          if (origin == "c") {
            table.nameIndex(index, stored);
          } else if (origin == "pk") {
            index.primary = keyListed = true;
            index.name = names.primaryKey.empty() ? "PK__" + table.name : names.primaryKey;
          } else {
            const auto number = uniqueNumber++;
            const bool named = number < names.uniques.size() && !names.uniques[number].empty();
            index.name = named ? names.uniques[number] : "UQ__" + table.name + "__" + std::to_string(number + 1);
          }
          index.constraint = index.constraint || origin != "c";
          table.indexes.push_back(std::move(index));
        });
  if (!keyListed && !key.empty()) {
    // The row number itself is the key: SQLite keeps no index for it.
    table.indexes.push_back(
        {names.primaryKey.empty() ? "PK__" + table.name : names.primaryKey, key, true, true, true, {}});
  }
}

std::string SchemaCatalogue::definition(std::string_view name) const {
  const auto* found = entry(name);
  return found ? found->sql : std::string();
}

tsql::SqlError SchemaCatalogue::explain(const ConstraintFailure& failure, std::string_view verb,
                                        std::string_view table) const {
  return ConstraintExplainer(database_, *this).explain(failure, verb, table);
}

}  // namespace tolvane::embedded
