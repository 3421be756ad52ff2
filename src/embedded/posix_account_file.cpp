#include <sys/stat.h>
#include <unistd.h>

#include "embedded/account_file.h"

namespace tolvane::embedded {

FileIdentity identityOf(const std::filesystem::path& file) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0) return {};
  return {info.st_dev, info.st_ino};
}

bool openFilesKeepTheirNames() {
  return false;
}

bool isWritable(const std::filesystem::path& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return false;
  return (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
}

std::int64_t currentProcess() {
  return ::getpid();
}

}  // namespace tolvane::embedded
