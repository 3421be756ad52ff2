// The engines that the standalone suite was built with.
#pragma once

#include <optional>
#include <string>

#include "standalone/data_sources.h"

namespace tolvane::standalone_com {

[[nodiscard]] standalone::Engines engines();

/// Makes a new account set from the shipped schema, with a sample's data where one is named. Error 5 when there is one
/// already; after a failure nothing is left.
void createAccountSet(const std::string& dsn, const std::optional<std::string>& sample);

/// Closes the files that the calling thread keeps open for use later.
void closeUnusedFiles();

}  // namespace tolvane::standalone_com
