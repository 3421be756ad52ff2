// A database engine as a host sees it: it opens data sources, and its connections can hold a transaction.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/data_access.h"

namespace tolvane {

/// A data-source name taken apart: `Key=Value` pairs joined by `;`, keys in any letter case. A value that holds a `;`
/// or begins with a brace stands in braces, a closing brace in it doubled.
class DataSourceName {
 public:
  /// Error 5 with a sentence for a text that is not of this form.
  [[nodiscard]] static DataSourceName parse(std::string_view text);

  /// The value of a key, or `fallback`.
  [[nodiscard]] std::string get(std::string_view key, std::string_view fallback = {}) const;
  [[nodiscard]] bool has(std::string_view key) const;
  [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& pairs() const { return pairs_; }
  /// The same text again, with the password shown as "***".
  [[nodiscard]] std::string publicText() const;

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

/// A connection whose transactions somebody outside the services decides. Nothing is in a transaction until begin().
class EngineConnection : public Connection {
 public:
  virtual void begin() = 0;
  virtual void commit() = 0;
  /// Never raises for want of a transaction: an error may have ended it already.
  virtual void rollback() = 0;
  [[nodiscard]] virtual bool inTransaction() const = 0;

  /// Counts the operations on this connection, its record sets and commands that ended with an error of the database.
  [[nodiscard]] virtual std::uint64_t failureCount() const = 0;
};

class Engine {
 public:
  virtual ~Engine() = default;
  /// Opens an existing data source and creates nothing. Raises an error that says which data source and why it cannot
  /// be opened. Calls from one thread for the same data source may share one connection.
  [[nodiscard]] virtual std::shared_ptr<EngineConnection> open(const DataSourceName& name) = 0;
};

}  // namespace tolvane
