// What SQL Server says of a constraint that did not hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/database.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {

class SchemaCatalogue;

/// A foreign key of the account set.
struct ForeignKey {
  std::string name;
  std::string child;
  std::string parent;
  std::vector<std::string> columns;     ///< of the child
  std::vector<std::string> referenced;  ///< of the parent
  int number = 0;                       ///< that SQLite has for it in its table
};

/// Reads the schema anew for each question; failures are rare.
class ConstraintExplainer {
 public:
  ConstraintExplainer(Database& database, const SchemaCatalogue& catalogue)
      : database_(database), catalogue_(catalogue) {}

  /// `verb` is INSERT, UPDATE or DELETE, `table` the table that was written.
  [[nodiscard]] tsql::SqlError explain(const ConstraintFailure& failure, std::string_view verb,
                                       std::string_view table) const;
  /// The keys that a statement of that kind may break.
  [[nodiscard]] std::vector<ForeignKey> candidates(std::string_view verb, std::string_view table) const;
  [[nodiscard]] tsql::SqlError broken(const ForeignKey& key, std::string_view verb, std::string_view table) const;
  /// Whether a key of another table refers to this one.
  [[nodiscard]] bool isReferenced(std::string_view table) const;

 private:
  [[nodiscard]] std::vector<ForeignKey> keysOf(const std::string& child) const;
  [[nodiscard]] tsql::SqlError duplicate(std::string_view object, std::string_view table) const;
  [[nodiscard]] tsql::SqlError checkFailed(const std::string& name, std::string_view verb,
                                           std::string_view table) const;
  [[nodiscard]] std::string place(std::string_view table, const std::vector<std::string>& columns) const;

  Database& database_;
  const SchemaCatalogue& catalogue_;
};

}  // namespace tolvane::embedded
