// tolvane sql: batches of T-SQL beside the services.
#pragma once

#include <optional>
#include <string>

#include "host/environment.h"

namespace tolvane::host {

struct SqlOptions {
  std::optional<std::string> dsn;
  std::optional<std::string> text;
  /// A script; "-" reads standard input.
  std::optional<std::string> file;
  bool asJson = false;
  bool showSecrets = false;
};

/// Runs the batches one after another, each statement in a transaction of its own, and prints each result set. The
/// first error ends it. Answers the exit status; a UsageError is the caller's.
int runSqlCommand(const Environment& environment, const SqlOptions& options);

}  // namespace tolvane::host
