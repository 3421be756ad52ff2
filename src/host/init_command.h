// tolvane init: a new account set.
#pragma once

#include <optional>
#include <string>

#include "host/environment.h"

namespace tolvane::host {

struct InitOptions {
  std::optional<std::string> dsn;
  /// The sample whose data is added ("demo", "older"), if any.
  std::optional<std::string> sample;
};

/// Makes the database where the engine can, and the account set in it from the shipped schema, in one transaction:
/// after a failure nothing is left. A database that holds an account set already is refused. Answers the exit status; a
/// UsageError is the caller's.
int runInitCommand(const Environment& environment, const InitOptions& options);

}  // namespace tolvane::host
