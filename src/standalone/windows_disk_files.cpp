#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/error.h"
#include "standalone/disk_files.h"
#include "system/windows_text.h"

namespace tolvane::standalone {
namespace {

constexpr std::size_t largestStep = std::size_t{1} << 30;

std::wstring nameOf(const std::string& name) {
  return system::wideOf(name);
}

[[noreturn]] void raiseFor(DWORD code) {
  switch (code) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      raise(RuntimeError::diskFull);
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_DIRECTORY:
      raise(RuntimeError::pathNotFound);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      raise(RuntimeError::permissionDenied);
    default:
      raise(RuntimeError::deviceInput);
  }
}

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

// Windows takes the place of a read or a write together with the call.
OVERLAPPED placeOf(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFU);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

class DiskFile : public BinaryFile {
 public:
  explicit DiskFile(FileHandle file) : file_(std::move(file)) {}

  void put(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
    for (auto offset = offsetOf(position); !bytes.empty();) {
      auto place = placeOf(offset);
      DWORD count = 0;
      if (WriteFile(file_.get(), bytes.data(), stepOf(bytes.size()), &count, &place) == FALSE) raiseFor(GetLastError());
      offset += count;
      bytes = bytes.subspan(count);
    }
  }

  std::size_t get(std::uint64_t position, std::span<std::uint8_t> bytes) override {
    const auto asked = bytes.size();
    for (auto offset = offsetOf(position); !bytes.empty();) {
      auto place = placeOf(offset);
      DWORD count = 0;
      if (ReadFile(file_.get(), bytes.data(), stepOf(bytes.size()), &count, &place) == FALSE) {
        if (GetLastError() != ERROR_HANDLE_EOF) raise(RuntimeError::deviceInput);
        count = 0;
      }
      if (count == 0) break;
      offset += count;
      bytes = bytes.subspan(count);
    }
    return asked - bytes.size();
  }

  std::uint64_t length() override {
    checkOpen();
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file_.get(), &size) == FALSE) raiseFor(GetLastError());
    return static_cast<std::uint64_t>(size.QuadPart);
  }

  void close() override {
    if (file_ && CloseHandle(file_.release()) == FALSE) raiseFor(GetLastError());
  }

 private:
  static DWORD stepOf(std::size_t size) { return static_cast<DWORD>(std::min(size, largestStep)); }

  void checkOpen() const {
    if (!file_) raise(RuntimeError::fileAccess);
  }

  [[nodiscard]] std::uint64_t offsetOf(std::uint64_t position) const {
    checkOpen();
    if (position == 0) raise(RuntimeError::invalidArgument);
    return position - 1;
  }

  FileHandle file_;
};

bool isFolder(const std::wstring& name) {
  std::error_code ignored;
  return std::filesystem::is_directory(name, ignored);
}

}  // namespace

bool DiskFiles::exists(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(nameOf(name), ignored);
}

std::unique_ptr<BinaryFile> DiskFiles::openBinary(const std::string& name) {
  const auto path = nameOf(name);
  // Windows would say "access denied" of a folder.
  if (isFolder(path)) raise(RuntimeError::fileAccess);
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) raiseFor(GetLastError());
  return std::make_unique<DiskFile>(FileHandle(file));
}

void DiskFiles::remove(const std::string& name) {
  if (DeleteFileW(nameOf(name).c_str()) != FALSE) return;
  const DWORD code = GetLastError();
  if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND) raise(RuntimeError::fileNotFound);
  raiseFor(code);
}

}  // namespace tolvane::standalone
