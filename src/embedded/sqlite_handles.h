// Owners of SQLite's objects. Included by this folder's sources and tests only.
#pragma once

#include <sqlite3.h>

#include <memory>

namespace tolvane::embedded {

/// Gives an object of SQLite back in the way that its kind wants.
struct SqliteRelease {
  void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
  void operator()(sqlite3_blob* blob) const noexcept { sqlite3_blob_close(blob); }
};

using DatabaseHandle = std::unique_ptr<sqlite3, SqliteRelease>;
using StatementHandle = std::unique_ptr<sqlite3_stmt, SqliteRelease>;
using BlobHandle = std::unique_ptr<sqlite3_blob, SqliteRelease>;

}  // namespace tolvane::embedded
