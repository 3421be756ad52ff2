// A PostgreSQL server for the tests of one process: on a port of its own, in a folder of its own, gone with the
// process.
#pragma once

#include <string>

namespace tolvane::odbc {

class PostgreSqlServer {
 public:
  /// The server of this process, started when first asked for. When it cannot be started, `why()` says it.
  static PostgreSqlServer& instance();

  PostgreSqlServer(const PostgreSqlServer&) = delete;
  PostgreSqlServer& operator=(const PostgreSqlServer&) = delete;
  ~PostgreSqlServer();

  [[nodiscard]] static bool isInstalled();
  /// Empty when the server runs.
  [[nodiscard]] const std::string& why() const { return why_; }
  /// A data source that leads to the database `name`, with further keys behind.
  [[nodiscard]] std::string dsn(const std::string& name = "postgres", const std::string& more = {}) const;
  [[nodiscard]] int port() const { return port_; }

  /// Holds what a connection text has a grammar for.
  static constexpr const char* password = "se;cr}e=t {x";

 private:
  PostgreSqlServer();
  void start();
  int run(const std::string& command) const;

  std::string folder_;
  std::string programs_;
  std::string why_;
  int port_ = 0;
  bool running_ = false;
};

}  // namespace tolvane::odbc

/// Skips the test, with a word, where no server can be had.
#define TOLVANE_NEEDS_POSTGRESQL() \
  if (!PostgreSqlServer::instance().why().empty()) GTEST_SKIP() << PostgreSqlServer::instance().why()
