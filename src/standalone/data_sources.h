// From a data-source name to an open account set and the user who opened it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/engine.h"

namespace tolvane::standalone {

/// Engines by the name under which a data-source name asks for them ("sqlite", "odbc"); in lower case.
using Engines = std::map<std::string, std::shared_ptr<Engine>>;

/// Engine of data-source names that name none.
inline constexpr const char* defaultEngine = "sqlite";

/// Who opened a data source, as its name says.
struct Identity {
  std::int32_t userID = 1;
  std::string language = "chs";
};

/// The caller's identity in a data-source name; error 5 for a user that is no number or a language there is not.
[[nodiscard]] Identity identityIn(const DataSourceName& name);

/// Opens the engine's connection. Error 5 names an engine that there is not; other errors are the engine's.
[[nodiscard]] std::shared_ptr<EngineConnection> connect(const Engines& engines, const DataSourceName& name);

/// Raises an error that says so when the connection is not to an account set (80040E37h) or the user has no row in
/// t_user (80040E4Dh).
void requireUser(Connection& connection, const DataSourceName& name, std::int32_t userID);

/// Two names with the same text lead to the same connection, whoever opens them.
[[nodiscard]] std::string connectionKey(const DataSourceName& name);

}  // namespace tolvane::standalone
