// Makes the run-time functions, aggregates and collations of the T-SQL engine known to SQLite.
#pragma once

#include <memory>
#include <vector>

#include "embedded/database.h"
#include "tsql/functions.h"

namespace tolvane::embedded {

/// What the functions of one connection call back into. Must outlive the connection's statements.
class FunctionBridge {
 public:
  /// Registers everything that tsql::registry() has, and the collations TSQL, TSQL_DECIMAL and TSQL_GUID.
  FunctionBridge(Database& database, tsql::Session& session);
  FunctionBridge(const FunctionBridge&) = delete;
  FunctionBridge& operator=(const FunctionBridge&) = delete;

  /// What one registered name needs when SQLite calls it.
  struct Entry {
    FunctionBridge* bridge = nullptr;
    const tsql::Function* function = nullptr;
    const tsql::Aggregate* aggregate = nullptr;
  };

  [[nodiscard]] Database& database() { return database_; }
  [[nodiscard]] tsql::Session& session() { return session_; }

 private:
  Database& database_;
  tsql::Session& session_;
  std::vector<Entry> entries_;
};

}  // namespace tolvane::embedded
