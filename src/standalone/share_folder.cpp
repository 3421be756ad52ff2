#include "standalone/share_folder.h"

#include <system_error>

#include "standalone/program_folder.h"

namespace tolvane::standalone {
namespace {

namespace fs = std::filesystem;

// A build folder lies at most this deep in the source tree ("build", "build/debug").
constexpr int levelsAbove = 4;

bool isFolder(const fs::path& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

}  // namespace

fs::path findShared(std::string_view name) {
  if (const auto share = folderVariable("TOLVANE_SHARE")) return *share / name;
  fs::path folder = programFolder();
  const fs::path installed = folder.parent_path() / "share" / "tolvane" / name;
  if (isFolder(installed)) return installed;
  for (int level = 0; level < levelsAbove && folder.has_relative_path(); ++level, folder = folder.parent_path()) {
    // Its neighbours tell the source tree from any other folder of that name.
    if (isFolder(folder / name) && isFolder(folder / "schema") && isFolder(folder / "resources")) return folder / name;
  }
  return {};
}

fs::path findResources() {
  if (const auto folder = folderVariable("TOLVANE_RESOURCES")) return *folder;
  return findShared("resources");
}

}  // namespace tolvane::standalone
