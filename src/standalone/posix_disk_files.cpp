#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/error.h"
#include "standalone/disk_files.h"
#include "system/path_text.h"

namespace tolvane::standalone {
namespace {

namespace fs = std::filesystem;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void raiseFor(int code) {
  switch (code) {
    case ENOSPC:
      raise(RuntimeError::diskFull);
    case ENOENT:
    case ENOTDIR:
      raise(RuntimeError::pathNotFound);
    case EACCES:
    case EPERM:
    case EROFS:
      raise(RuntimeError::permissionDenied);
    case EISDIR:
      raise(RuntimeError::fileAccess);
    default:
      raise(RuntimeError::deviceInput);
  }
}

class DiskFile : public BinaryFile {
 public:
  explicit DiskFile(FileHandle file) : file_(std::move(file)) {}

  void put(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
    seek(position);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) raiseFor(errno);
    // Buffered writes would report a full disk too late.
    if (std::fflush(file_.get()) != 0) raiseFor(errno);
  }

  std::size_t get(std::uint64_t position, std::span<std::uint8_t> bytes) override {
    seek(position);
    const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), file_.get());
    if (std::ferror(file_.get()) != 0) {
      std::clearerr(file_.get());
      raise(RuntimeError::deviceInput);
    }
    return count;
  }

  std::uint64_t length() override {
    checkOpen();
    if (fseeko(file_.get(), 0, SEEK_END) != 0) raiseFor(errno);
    return static_cast<std::uint64_t>(ftello(file_.get()));
  }

  void close() override {
    if (!file_) return;
    if (std::fclose(file_.release()) != 0) raiseFor(errno);
  }

 private:
  void checkOpen() const {
    if (!file_) raise(RuntimeError::fileAccess);
  }

  void seek(std::uint64_t position) {
    checkOpen();
    if (position == 0) raise(RuntimeError::invalidArgument);
    if (fseeko(file_.get(), static_cast<off_t>(position - 1), SEEK_SET) != 0) raiseFor(errno);
  }

  FileHandle file_;
};

}  // namespace

bool DiskFiles::exists(const std::string& name) {
  std::error_code ignored;
  return fs::is_regular_file(system::pathOf(name), ignored);
}

std::unique_ptr<BinaryFile> DiskFiles::openBinary(const std::string& name) {
  const std::string path = system::pathOf(name).string();
  FileHandle file(std::fopen(path.c_str(), "r+b"));
  if (!file && errno == ENOENT) file.reset(std::fopen(path.c_str(), "w+bx"));
  if (!file) raiseFor(errno);
  return std::make_unique<DiskFile>(std::move(file));
}

void DiskFiles::remove(const std::string& name) {
  std::error_code error;
  const bool removed = fs::remove(system::pathOf(name), error);
  if (error) raiseFor(error.value());
  if (!removed) raise(RuntimeError::fileNotFound);
}

}  // namespace tolvane::standalone
