// What the commands of a host work with.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>

#include "platform/engine.h"
#include "standalone/data_sources.h"

namespace tolvane::host {

/// Makes the empty database that a data-source name asks for, and opens it. Raises an error when there is one already.
using DatabaseMaker = std::function<std::shared_ptr<EngineConnection>(const DataSourceName&)>;

struct Environment {
  standalone::Engines engines;
  /// By engine. An engine without a maker takes databases that somebody else made.
  std::map<std::string, DatabaseMaker> makers;
  std::ostream& out;
  std::ostream& err;
};

/// Exit statuses of the command line.
inline constexpr int exitDone = 0;
inline constexpr int exitRaised = 1;
inline constexpr int exitUsage = 2;

/// The engines that this program was built with.
[[nodiscard]] standalone::Engines builtInEngines();
[[nodiscard]] std::map<std::string, DatabaseMaker> builtInMakers();

}  // namespace tolvane::host
