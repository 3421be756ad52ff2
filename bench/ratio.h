// Cases that are measured in pairs: what the system does, and what a plain program does to the same end.
#pragma once

#include <functional>
#include <string>

namespace tolvane::bench {

/// Adds a pair to the run. Each function does the work once; `aim` is the ratio that we want to stay below.
void compare(const std::string& name, double aim, std::function<void()> system, std::function<void()> plain);

/// The pairs of one program, registered before the run starts.
void registerCases();

}  // namespace tolvane::bench
