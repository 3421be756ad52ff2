// The table variables of the batch that runs: tables in SQLite's temp schema that no rollback reaches.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tsql/datum.h"
#include "tsql/program.h"

namespace tolvane::embedded {

class Session;

/// A table is kept empty from one batch to the next, because making one costs all prepared statements of the
/// connection.
class TableVariables {
 public:
  explicit TableVariables(Session& session) : session_(session) {}

  /// Makes the variables of a batch that begins: empty. True when tables were made, so that programs that were compiled
  /// before are no good any more.
  [[nodiscard]] bool begin(const std::vector<tsql::TableVariable>& variables);
  /// Empties them when the batch has ended.
  void end() noexcept;

  /// What the variables hold before a rollback, to be put back behind it.
  void keep();
  void putBack();

 private:
  struct Kept {
    std::vector<std::vector<tsql::Result>> rows;
    std::optional<std::int64_t> lastIdentity;
  };

  void make(const tsql::TableVariable& variable);
  void empty(const tsql::TableVariable& variable);
  void forgetLastIdentity(const std::string& table);
  void setLastIdentity(const std::string& table, std::int64_t value);
  [[nodiscard]] bool exists(const std::string& name);

  Session& session_;
  std::vector<tsql::TableVariable> live_;
  std::map<std::string, std::vector<std::string>> made_;  // definitions by name
  std::vector<Kept> kept_;
};

}  // namespace tolvane::embedded
