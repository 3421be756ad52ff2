// A database file of the SQLite driver, gone with the object.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace tolvane::odbc {

class SqliteFile {
 public:
  explicit SqliteFile(const std::string& name = "test.db") : name_(name) {
    std::string pattern = "/tmp/tolvane-odbc-XXXXXX";
    folder_ = ::mkdtemp(pattern.data());
  }
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;
  ~SqliteFile() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  [[nodiscard]] std::string path() const { return (folder_ / name_).string(); }
  [[nodiscard]] std::string dsn() const { return "Engine=odbc;Driver=SQLite3;Database=" + path(); }

 private:
  std::string name_;
  std::filesystem::path folder_;
};

}  // namespace tolvane::odbc
