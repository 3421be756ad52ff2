// What the commands of a host work with.
#pragma once

#include <ostream>

#include "standalone/account_set_maker.h"
#include "standalone/data_sources.h"

namespace tolvane::host {

struct Environment {
  standalone::Engines engines;
  standalone::DatabaseMakers makers;
  std::ostream& out;
  std::ostream& err;
};

/// Exit statuses of the command line.
inline constexpr int exitDone = 0;
inline constexpr int exitRaised = 1;
inline constexpr int exitUsage = 2;

/// The engines that this program was built with.
[[nodiscard]] standalone::Engines builtInEngines();
[[nodiscard]] standalone::DatabaseMakers builtInMakers();

}  // namespace tolvane::host
