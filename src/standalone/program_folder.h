// Where the program lies, and what the environment says about folders.
#pragma once

#include <filesystem>
#include <optional>

namespace tolvane::standalone {

/// The folder of the program; in a library that other programs load (Windows), the folder of the library.
[[nodiscard]] std::filesystem::path programFolder();

/// The folder that an environment variable names; nothing when it is not set.
[[nodiscard]] std::optional<std::filesystem::path> folderVariable(const char* name);

}  // namespace tolvane::standalone
