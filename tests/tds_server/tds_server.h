// A server that speaks TDS, for tests: on a port of its own on the loopback, over databases of the embedded engine in a
// folder of its own. Gone with the object.
#pragma once

#include <filesystem>
#include <list>
#include <mutex>
#include <string>
#include <thread>

#include "tds_server/conversation.h"
#include "tds_server/server_state.h"

namespace tolvane::tds {

class TdsServer {
 public:
  /// The log-in holds what a connection text has a grammar for.
  static constexpr const char* user = "tester";
  static constexpr const char* password = "se;cr}e=t {x";

  TdsServer();
  TdsServer(const TdsServer&) = delete;
  TdsServer& operator=(const TdsServer&) = delete;
  ~TdsServer();

  [[nodiscard]] int port() const { return port_; }
  /// A data source that leads to the database, with further keys behind.
  [[nodiscard]] std::string dsn(const std::string& database = "master", const std::string& more = {}) const;

  /// Databases, faults and what it was asked.
  [[nodiscard]] ServerState& state() { return state_; }

  /// Ends every connection and listens no more, as a server that is shut down.
  void stop();

 private:
  void listen();
  void accept();

  std::filesystem::path folder_;
  ServerState state_;
  int socket_ = -1;
  int port_ = 0;
  std::thread acceptor_;
  std::list<std::thread> conversations_;
};

}  // namespace tolvane::tds
