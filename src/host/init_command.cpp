#include "host/init_command.h"

#include <filesystem>

#include "host/account_set_builder.h"
#include "host/call_runner.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "standalone/share_folder.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& description) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName), description);
}

/// A database file that goes away again unless it is kept.
class NewFile {
 public:
  explicit NewFile(fs::path path) : path_(std::move(path)) {}
  ~NewFile() {
    if (kept_) return;
    std::error_code ignored;
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(path_.string() + suffix, ignored);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  void keep() { kept_ = true; }

 private:
  fs::path path_;
  bool kept_ = false;
};

using Filling = std::function<void(EngineConnection&)>;

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
  if (fs::exists(path, ignored)) {
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

void buildInDatabase(const Environment& environment, const DataSourceName& name, const Filling& fill) {
  const auto connection = standalone::connect(environment.engines, name);
  if (holdsAccountSet(*connection)) {
    refuse("The database " + name.publicText() + " holds an account set already; nothing was changed.");
  }
  build(*connection, fill);
}

std::string engineOf(const DataSourceName& name) {
  std::string engine = name.get("Engine", standalone::defaultEngine);
  for (char& c : engine) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return engine;
}

}  // namespace

void makeAccountSet(const Environment& environment, const DataSourceName& name, const Filling& fill) {
  const auto maker = environment.makers.find(engineOf(name));
  if (maker != environment.makers.end()) {
    buildInNewFile(maker->second, name, fill);
  } else {
    buildInDatabase(environment, name, fill);
  }
}

int runInitCommand(const Environment& environment, const InitOptions& options) {
  if (!options.dsn) throw UsageError("No data source is named: give --dsn TEXT or set TOLVANE_DSN.");
  if (!isUtf8(*options.dsn)) throw UsageError("The data-source name is not UTF-8.");
  try {
    const auto name = DataSourceName::parse(*options.dsn);
    makeAccountSet(environment, name, [&](EngineConnection& connection) {
      AccountSetBuilder(standalone::findShared("schema"), standalone::findShared("samples"))
          .build(connection, options.sample);
    });
    environment.out << "The account set " << name.publicText() << " is ready"
                    << (options.sample ? ", with the sample " + *options.sample : std::string()) << ".\n";
    return exitDone;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
