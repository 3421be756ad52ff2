// The account set's tables as the T-SQL compiler needs them, read back from SQLite's own schema.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/database.h"
#include "tsql/catalogue.h"
#include "tsql/functions.h"

namespace tolvane::embedded {

/// Tables are read when they are first asked for and kept until the schema changes. Names compare without regard to
/// letter case.
class SchemaCatalogue final : public tsql::Catalogue {
 public:
  explicit SchemaCatalogue(Database& database);

  const tsql::Table* find(std::string_view name) const override;
  const tsql::Table* findByIndex(std::string_view indexName) const override;
  std::vector<const tsql::Table*> tables() const override;
  std::uint64_t version() const override { return version_; }

  /// Reads everything anew from now on, because this connection changed the tables.
  void invalidate();
  /// The same if some connection changed them since they were read.
  void refresh();

  /// The table, view or constraint of that name. Its number stays the same, that of a constraint until its table is
  /// altered.
  [[nodiscard]] std::optional<tsql::DatabaseObject> object(std::string_view name) const;
  [[nodiscard]] std::optional<tsql::DatabaseObject> object(std::int64_t id) const;
  /// Numbers of the constraints of all tables that are not temporary.
  [[nodiscard]] std::vector<std::int64_t> constraints() const;

  /// The text that made the table in SQLite; empty without one.
  [[nodiscard]] std::string definition(std::string_view name) const;

  /// The compiler adds an index whose name ends so to a unique key that may hold nulls, one of which is allowed.
  static constexpr std::string_view nullIndexEnd = "/null";

  /// What SQL Server says of a constraint of SQLite that did not hold. `verb` is INSERT, UPDATE or DELETE, `table` the
  /// table that was written.
  [[nodiscard]] tsql::SqlError explain(const ConstraintFailure& failure, std::string_view verb,
                                       std::string_view table) const;

 private:
  struct Entry {
    std::string name;
    std::string schema;  // main or temp
    std::string kind;    // table or view
    std::string sql;
    std::int64_t number = 0;
    std::unique_ptr<tsql::Table> table;  // once it was asked for
  };

  void readNames() const;
  [[nodiscard]] Entry* entry(std::string_view name) const;
  void readTable(Entry& entry) const;
  const std::map<std::int64_t, tsql::DatabaseObject>& constraintsRead() const;
  void readColumns(Entry& entry, std::vector<int>& key) const;
  void readIndexes(Entry& entry, const std::vector<int>& key) const;
  [[nodiscard]] std::int64_t schemaVersion() const;

  Database& database_;
  mutable bool namesRead_ = false;
  mutable std::int64_t readVersion_ = -1;
  mutable std::unordered_map<std::string, Entry> entries_;       // by the name in lower case
  mutable std::unordered_map<std::string, std::string> owners_;  // index name -> table name, both in lower case
  mutable std::optional<std::map<std::int64_t, tsql::DatabaseObject>> constraints_;  // once they were asked for
  mutable std::vector<std::unique_ptr<tsql::Table>> retired_;
  std::uint64_t version_ = 1;
  mutable std::shared_ptr<StatementPool> versionPragma_;
};

}  // namespace tolvane::embedded
