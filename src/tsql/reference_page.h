#pragma once

#include <string>

namespace tolvane::tsql {

// The page docs/tsql.md, made of the engine's tables: constructs, types, conversions, operators, functions, date parts.
std::string referencePage();

}  // namespace tolvane::tsql
