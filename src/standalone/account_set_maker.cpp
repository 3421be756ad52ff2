#include "standalone/account_set_maker.h"

#include <filesystem>
#include <system_error>

#include "platform/error.h"
#include "platform/names.h"
#include "system/path_text.h"

namespace tolvane::standalone {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& description) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName), description);
}

/// A database file that goes away again unless it is kept.
class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)) {}
  ~NewFile() {
    if (kept_) return;
    std::error_code ignored;
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(system::pathOf(path_ + suffix), ignored);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  void keep() { kept_ = true; }

 private:
  std::string path_;
  bool kept_ = false;
};

void build(EngineConnection& connection, const Filling& fill) {
  connection.begin();
  try {
    fill(connection);
    connection.commit();
  } catch (const std::exception&) {
    connection.rollback();
    throw;
  }
}

/// An engine that makes its own database files.
void buildInNewFile(const DatabaseMaker& maker, const DataSourceName& name, const Filling& fill) {
  const std::string path = name.get("Database");
  if (path.empty()) refuse("The data source " + name.publicText() + " names no Database.");
  std::error_code ignored;
  if (fs::exists(system::pathOf(path), ignored)) {
    refuse("There is " + path + " already. An account set is made in a new file only; nothing was changed.");
  }
  NewFile file(path);
  {
    const auto connection = maker(name);
    build(*connection, fill);
  }
  file.keep();
}

bool holdsAccountSet(Connection& connection) {
  try {
    (void)connection.execute("Select FUserID From t_User Where FUserID = 0");
    return true;
  } catch (const AutomationError& error) {
    if (error.number() == oledb::noTable) return false;
    throw;
  }
}

void buildInDatabase(const Engines& engines, const DataSourceName& name, const Filling& fill) {
  const auto connection = connect(engines, name);
  if (holdsAccountSet(*connection)) {
    refuse("The database " + name.publicText() + " holds an account set already; nothing was changed.");
  }
  build(*connection, fill);
}

std::string engineOf(const DataSourceName& name) {
  return lowered(name.get("Engine", defaultEngine));
}

}  // namespace

void makeAccountSet(const Engines& engines, const DatabaseMakers& makers, const DataSourceName& name,
                    const Filling& fill) {
  const auto maker = makers.find(engineOf(name));
  if (maker != makers.end()) {
    buildInNewFile(maker->second, name, fill);
  } else {
    buildInDatabase(engines, name, fill);
  }
}

}  // namespace tolvane::standalone
