// File names: the system has its own form of them, texts are UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tolvane::system {

/// The path that a UTF-8 text names. (The library's own conversion of a text of chars goes by the process's locale; the
/// way back, path::string(), gives UTF-8 on all systems.)
[[nodiscard]] inline std::filesystem::path pathOf(std::string_view text) {
  return {std::u8string(text.begin(), text.end())};
}

}  // namespace tolvane::system
