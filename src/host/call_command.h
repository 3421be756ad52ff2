// tolvane call: one method of one class.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/environment.h"

namespace tolvane::host {

struct CallOptions {
  std::string classAndMethod;
  std::vector<std::string> assignments;
  std::optional<std::string> dsn;
  /// A file, "-" for standard error, or empty.
  std::string trace;
  bool asTable = false;
  bool showSecrets = false;
};

/// Answers the exit status. A UsageError is the caller's.
int runCallCommand(const Environment& environment, const CallOptions& options);

}  // namespace tolvane::host
