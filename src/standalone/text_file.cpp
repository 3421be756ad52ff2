#include "standalone/text_file.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace tolvane::standalone {

std::optional<std::string> readTextFile(const std::filesystem::path& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) return std::nullopt;
  return text;
}

}  // namespace tolvane::standalone
