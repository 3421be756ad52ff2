// What the engine asks the file system about an account set's file.
#pragma once

#include <cstdint>
#include <filesystem>

namespace tolvane::embedded {

/// The file itself, whatever its name; all zeros when there is none.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t file = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

[[nodiscard]] FileIdentity identityOf(const std::filesystem::path& file);

/// Whether the system neither removes nor renames a file that is open: then its name stands for it as long as it is.
[[nodiscard]] bool openFilesKeepTheirNames();

/// Whether somebody may write it. An administrator may write everywhere, but a file that nobody may write was protected
/// on purpose.
[[nodiscard]] bool isWritable(const std::filesystem::path& path);

/// The number of this process; another one after a fork.
[[nodiscard]] std::int64_t currentProcess();

}  // namespace tolvane::embedded
