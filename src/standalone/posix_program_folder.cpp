#include <cstdlib>
#include <system_error>

#include "standalone/program_folder.h"

namespace tolvane::standalone {

std::filesystem::path programFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::current_path(error) : program.parent_path();
}

std::optional<std::filesystem::path> folderVariable(const char* name) {
  const char* folder = std::getenv(name);
  if (!folder) return std::nullopt;
  return std::filesystem::path(folder);
}

}  // namespace tolvane::standalone
