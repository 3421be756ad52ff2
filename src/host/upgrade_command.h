// tolvane upgrade: converts statements of the older layout.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/environment.h"

namespace tolvane::host {

struct UpgradeOptions {
  std::optional<std::string> dsn = std::nullopt;
  /// Identifiers of the old groups to convert; all that are left when there is none.
  std::vector<std::int32_t> groups = {};
  /// The number of the currency that all converted statements are in.
  std::string currency = "RMB";
  /// Draw a bar on `err` in place of plain lines.
  bool isTerminal = false;
};

/// Converts each group in a transaction of its own, so that it can be stopped at any moment and started again. Prints
/// what became of each group, and a summary; progress goes to `err`. Answers the exit status: 1 also when a group was
/// refused. A UsageError is the caller's.
int runUpgradeCommand(const Environment& environment, const UpgradeOptions& options);

}  // namespace tolvane::host
