// tolvane classes, tolvane describe: what can be called.
#pragma once

#include <string>

#include "host/environment.h"

namespace tolvane::host {

/// The classes with their TransMode.
int runClassesCommand(const Environment& environment, bool asJson);

/// The methods of a class, or one method of it, with parameters, types, directions, defaults and result. A UsageError
/// for a name that there is not.
int runDescribeCommand(const Environment& environment, const std::string& classOrMethod, bool asJson);

}  // namespace tolvane::host
