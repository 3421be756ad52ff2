#include "standalone/data_sources.h"

#include <algorithm>
#include <charconv>

#include "platform/error.h"
#include "platform/names.h"

namespace tolvane::standalone {
namespace {

[[noreturn]] void refuse(std::uint32_t number, const std::string& description) {
  throw AutomationError(number, std::string(applicationName), description);
}

}  // namespace

Identity identityIn(const DataSourceName& name) {
  Identity identity;
  const std::string user = name.get("UserID", "1");
  const auto [end, error] = std::from_chars(user.data(), user.data() + user.size(), identity.userID);
  if (error != std::errc() || end != user.data() + user.size()) {
    refuse(errorNumber(RuntimeError::invalidArgument), "UserID=" + user + " of the data source is not a user number.");
  }
  identity.language = lowered(name.get("Language", "chs"));
  if (identity.language != "chs" && identity.language != "cht" && identity.language != "en") {
    refuse(errorNumber(RuntimeError::invalidArgument),
           "Language=" + identity.language + " of the data source is none of chs, cht and en.");
  }
  return identity;
}

std::shared_ptr<EngineConnection> connect(const Engines& engines, const DataSourceName& name) {
  const std::string wanted = lowered(name.get("Engine", defaultEngine));
  const auto engine = engines.find(wanted);
  if (engine != engines.end()) return engine->second->open(name);
  std::string known;
  for (const auto& [key, value] : engines) known += (known.empty() ? "" : ", ") + key;
  refuse(errorNumber(RuntimeError::invalidArgument),
         "Engine=" + wanted + " of the data source is not known here; there is " + known + ".");
}

void requireUser(Connection& connection, const DataSourceName& name, std::int32_t userID) {
  const std::string user = std::to_string(userID);
  std::shared_ptr<Recordset> rows;
  try {
    rows = connection.execute("Select FUserID From t_User Where FUserID = " + user);
  } catch (const AutomationError& error) {
    if (error.number() != oledb::noTable) throw;
    refuse(oledb::noTable, "The data source " + name.publicText() + " is not an account set: it has no table t_User.");
  }
  if (rows->eof()) {
    refuse(oledb::authenticationFailed,
           "User " + user + " is not a user of the account set " + name.publicText() + ": t_User has no such row.");
  }
}

std::string connectionKey(const DataSourceName& name) {
  std::string key;
  for (const auto& [word, value] : name.pairs()) {
    const std::string lower = lowered(word);
    if (lower != "userid" && lower != "language") key += lower + "=" + value + "\n";
  }
  return key;
}

}  // namespace tolvane::standalone
