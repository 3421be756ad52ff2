// The cursors of a connection: rows that are read when a cursor is opened.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tsql/datum.h"
#include "tsql/names.h"
#include "tsql/program.h"

namespace tolvane::embedded {

struct Cursor {
  tsql::Query query;
  std::vector<std::string> reads;
  std::vector<tsql::Result> values;  // of the query's parameters, as they were when the cursor was declared
  std::uint64_t catalogueVersion = 0;
  bool keeps = false;    // its rows stay as they were, whatever happens to the tables
  bool forward = false;  // it goes to the next row only
  bool open = false;
  bool stale = false;  // rows may have changed that SQL Server would see
  std::vector<std::vector<tsql::Result>> rows;
  std::int64_t at = 0;  // the row that was fetched last, from 1; 0 is before the first
};

/// Names compare without regard to letter case.
class Cursors {
 public:
  /// Raises 16915 for a name that is there, 16916 for one that is not.
  Cursor& declare(const std::string& name);
  [[nodiscard]] Cursor& find(const std::string& name);
  void deallocate(const std::string& name);
  void deallocateIfAny(const std::string& name) noexcept { cursors_.erase(tsql::lowered(name)); }

  void tableChanges(std::string_view table);
  /// Closes what a rollback closes.
  void rolledBack();

  /// Moves and gives the row, null beyond both ends. @@FETCH_STATUS tells which.
  const std::vector<tsql::Result>* fetch(Cursor& cursor, tsql::CursorStep::Verb verb, std::int64_t count);
  [[nodiscard]] int fetchStatus() const { return fetchStatus_; }

 private:
  std::map<std::string, Cursor> cursors_;
  int fetchStatus_ = -1;
};

}  // namespace tolvane::embedded
