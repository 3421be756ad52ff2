#include <windows.h>

#include <memory>

#include "embedded/account_file.h"

namespace tolvane::embedded {
namespace {

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

}  // namespace

FileIdentity identityOf(const std::filesystem::path& file) {
  const HANDLE opened =
      CreateFileW(file.c_str(), 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return {};
  const FileHandle handle(opened);
  BY_HANDLE_FILE_INFORMATION info{};
  if (GetFileInformationByHandle(opened, &info) == FALSE) return {};
  return {info.dwVolumeSerialNumber, (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow};
}

bool openFilesKeepTheirNames() {
  return true;
}

bool isWritable(const std::filesystem::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  // On folders the mark means something else: that Windows shall look for the folder's own settings.
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

std::int64_t currentProcess() {
  return GetCurrentProcessId();
}

}  // namespace tolvane::embedded
