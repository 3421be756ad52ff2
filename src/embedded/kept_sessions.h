// The account sets that a thread keeps open, in use or not.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "embedded/account_file.h"
#include "embedded/embedded_connection.h"

namespace tolvane::embedded {

struct KeptSession {
  std::int64_t process = 0;           // SQLite's connections do not survive a fork
  std::filesystem::path lastingName;  // where an open file's name stands for it, else empty
  FileIdentity identity;
  std::chrono::milliseconds busyTimeout{};
  std::shared_ptr<Session> session;
  std::weak_ptr<EmbeddedConnection> connection;
};

/// Those of the calling thread, the one used last first. They end with the thread.
[[nodiscard]] std::vector<KeptSession>& keptByThisThread();

}  // namespace tolvane::embedded
