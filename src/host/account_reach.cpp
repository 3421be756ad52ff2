#include "host/account_reach.h"

#include <filesystem>
#include <utility>

#include "host/call_runner.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::host {
namespace {

constexpr std::int32_t embeddedDriver = 0;

using Pairs = std::vector<std::pair<std::string, std::string>>;

std::string textOf(const PropertyBag& configuration, std::string_view column) {
  const Value value = configuration.item(column);
  return value.isNull() ? std::string() : toText(value);
}

/// What the columns say, in the keys of data-source names.
Pairs pairsOf(const PropertyBag& configuration) {
  const std::string server = textOf(configuration, "FServerName");
  const std::string database = textOf(configuration, "FAisName");
  if (toInt32(configuration.item("FDriverType")) == embeddedDriver) {
    return {{"Engine", "sqlite"}, {"Database", (std::filesystem::path(server) / database).string()}};
  }
  return {{"Engine", "odbc"},
          {"Server", server},
          {"Database", database},
          {"UID", textOf(configuration, "FMUserName")},
          {"PWD", textOf(configuration, "FMPassWord")}};
}

/// Braces keep any text whole in a data-source name.
std::string braced(std::string_view text) {
  std::string result = "{";
  for (const char c : text) {
    if (c == '}') result += c;
    result += c;
  }
  return result + "}";
}

/// The steps that were tried, and the one that failed.
class Path {
 public:
  /// Runs `action`, which answers what it found; whether it went well.
  template <typename Action>
  bool step(std::string name, Action action) {
    try {
      std::string found = action();
      steps_.push_back({std::move(name), true, std::move(found)});
      return true;
    } catch (...) {
      steps_.push_back({std::move(name), false, toAutomationError(std::current_exception()).description()});
      return false;
    }
  }
  [[nodiscard]] std::vector<ReachStep> take() { return std::move(steps_); }

 private:
  std::vector<ReachStep> steps_;
};

std::string usersIn(Connection& connection) {
  const auto rows = connection.execute("Select Count(*) As FCount From t_User");
  return toText(rows->value("FCount")) + " users";
}

}  // namespace

DataSourceName dataSourceOf(const PropertyBag& configuration) {
  std::string text;
  for (const auto& [key, value] : pairsOf(configuration)) text += key + "=" + braced(value) + ";";
  const DataSourceName columns = DataSourceName::parse(text);
  const std::string given = textOf(configuration, "FPropsString");
  const DataSourceName properties = trim(given).empty() ? DataSourceName() : DataSourceName::parse(given);
  for (const auto& [key, value] : properties.pairs()) {
    if (!columns.has(key)) text += key + "=" + braced(value) + ";";
  }
  return DataSourceName::parse(text);
}

std::vector<ReachStep> reachAccountSet(const standalone::Engines& engines, const PropertyBag& configuration) {
  Path path;
  DataSourceName name;
  standalone::Identity identity;
  std::shared_ptr<EngineConnection> connection;
  const bool reached = path.step("data source", [&] {
    name = dataSourceOf(configuration);
    identity = standalone::identityIn(name);
    return name.publicText();
  }) && path.step("engine", [&] {
    const std::string wanted = name.get("Engine");
    if (engines.contains(wanted)) return wanted;
    throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
                          wanted + " is not part of this program.");
  }) && path.step("connection", [&] {
    connection = standalone::connect(engines, name);
    return std::string("open");
  }) && path.step("account set", [&] { return usersIn(*connection); });
  if (reached) {
    path.step("user", [&] {
      standalone::requireUser(*connection, name, identity.userID);
      return "user " + std::to_string(identity.userID) + " is known";
    });
  }
  return path.take();
}

}  // namespace tolvane::host
