// Text files as a whole.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tolvane::standalone {

/// The content of a file; nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> readTextFile(const std::filesystem::path& path);

}  // namespace tolvane::standalone
