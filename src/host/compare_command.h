// tolvane compare: whether two account sets hold the same rows.
#pragma once

#include <string>

#include "host/environment.h"

namespace tolvane::host {

struct CompareOptions {
  std::string a;
  std::string b;
};

/// Compares every shipped table, with all columns that either has, and prints a line for each that differs: how many
/// rows only one of them holds, and the first of those. The order of rows does not count. Status 0 when all are the
/// same, 1 when not or after an error.
int runCompareCommand(const Environment& environment, const CompareOptions& options);

}  // namespace tolvane::host
