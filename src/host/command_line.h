// The command line: options and commands.
#pragma once

#include "host/environment.h"

namespace tolvane::host {

/// Runs one command and answers the program's exit status: 0 done, 1 the command raised an error, 2 wrong usage.
int runCommandLine(int count, const char* const* arguments, const Environment& environment);

}  // namespace tolvane::host
