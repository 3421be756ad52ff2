// The plain program: prepared statements on the SQLite C interface and nothing between.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::bench {

class PlainStatement {
 public:
  PlainStatement(sqlite3* database, const char* sql);

  PlainStatement& bind(int index, std::int64_t value);
  /// The text must outlive the next run.
  PlainStatement& bind(int index, std::string_view text);
  PlainStatement& bind(int index, const std::vector<std::uint8_t>& bytes);
  /// True while there is a row.
  bool step();
  void reset() { sqlite3_reset(statement_.get()); }
  /// Steps to the end and resets.
  void run();

  [[nodiscard]] std::int64_t integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
  [[nodiscard]] std::string text(int column) const;
  [[nodiscard]] std::vector<std::uint8_t> bytes(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An open file, with the journal mode and the synchronisation that the engine uses. Knows the collations' names only
/// as binary ones: what they cost is the engine's to bear.
class PlainDatabase {
 public:
  explicit PlainDatabase(const std::string& path);
  [[nodiscard]] PlainStatement prepare(const char* sql) { return {database_.get(), sql}; }
  void execute(const char* sql);

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace tolvane::bench
