// tolvane init: a new account set.
#pragma once

#include <functional>
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

/// The same for others: makes the database where the engine can and lets `fill` put the account set into it, in one
/// transaction. After a failure nothing is left. Error 5 when there is an account set already.
void makeAccountSet(const Environment& environment, const DataSourceName& name,
                    const std::function<void(EngineConnection&)>& fill);

}  // namespace tolvane::host
