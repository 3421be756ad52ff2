// tolvane copy: an account set from one database to another, whichever engines they are on.
#pragma once

#include <string>

#include "host/environment.h"

namespace tolvane::host {

struct CopyOptions {
  std::string from;
  std::string to;
  bool isTerminal = false;
};

/// Makes the account set at the target as init does and fills it with the source's rows: every shipped table, with the
/// columns that the source has beside the shipped ones, and the numbers of identity columns kept. One transaction at
/// the target: after a failure nothing is left. Answers the exit status; a UsageError is the caller's.
int runCopyCommand(const Environment& environment, const CopyOptions& options);

}  // namespace tolvane::host
