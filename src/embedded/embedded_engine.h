// Account sets in files: the platform's data access on SQLite, in SQL Server's language.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include "platform/engine.h"

namespace tolvane::embedded {

/// How long to wait for other connections' locks before an operation fails.
struct EngineOptions {
  std::chrono::milliseconds busyTimeout{10'000};
};

/// Opens account sets by data-source names of the form `Database=path`. A thread has one connection to an account set:
/// opening it again on the same thread gives the same connection while somebody holds it. May be used by many threads;
/// what it opens belongs to the thread that opened it.
class EmbeddedEngine final : public Engine {
 public:
  explicit EmbeddedEngine(EngineOptions options = {}) : options_(options) {}

  /// 80004005h with a sentence that names the file and says what to do, when the file is missing, is no account set, is
  /// read-only, lies in a read-only folder or stays locked.
  [[nodiscard]] std::shared_ptr<EngineConnection> open(const DataSourceName& name) override;

  /// Closes the files that the calling thread keeps open although nobody holds a connection to them: it keeps a few,
  /// because opening takes time. Windows neither removes nor renames a file that is open.
  static void closeUnused();

  /// Writes a new account set without tables; whoever makes it runs its schema. Raises 80004005h when there is a file
  /// of that name already.
  static void createAccountSet(const std::filesystem::path& file);

  /// The same for the file that a data-source name names, opened. The file is closed with this connection and what was
  /// made by it, so that whoever fails to fill it can remove it.
  [[nodiscard]] std::shared_ptr<EngineConnection> openNew(const DataSourceName& name) const;

 private:
  EngineOptions options_;
};

}  // namespace tolvane::embedded
