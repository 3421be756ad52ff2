// A database of its own for a test, on the server that TOLVANE_TEST_DSN names; dropped with the object.
#pragma once

#include <string>

namespace tolvane::test {

class ServerDatabase {
 public:
  /// Whether a server is named.
  [[nodiscard]] static bool isNamed();

  /// Raises the server's error when it cannot be made.
  ServerDatabase();
  ServerDatabase(const ServerDatabase&) = delete;
  ServerDatabase& operator=(const ServerDatabase&) = delete;
  /// Nobody may hold a connection to it any more; those that a thread keeps are let go of. A failure is the test's.
  ~ServerDatabase();

  [[nodiscard]] const std::string& name() const { return name_; }
  /// The named server's data source, leading to this database, without the caller.
  [[nodiscard]] const std::string& dsn() const { return dsn_; }

 private:
  std::string name_;
  std::string dsn_;
};

}  // namespace tolvane::test
