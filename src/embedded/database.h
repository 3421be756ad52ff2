// One open SQLite file: prepared statements that are used again, and failures of SQLite turned into errors.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/sqlite_handles.h"
#include "system/path_text.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {

/// Thrown when a statement was to run whose tables were changed by somebody else since it was compiled. Nothing has
/// happened yet; whoever compiled the statement compiles it again.
class SchemaChanged : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "the account set's tables have changed"; }
};

/// A constraint of SQLite that did not hold, in its own words ("UNIQUE constraint failed: t.a, t.b"); the catalogue
/// knows what SQL Server would say.
class ConstraintFailure : public std::exception {
 public:
  ConstraintFailure(int code, std::string message) : code_(code), message_(std::move(message)) {}
  [[nodiscard]] int code() const noexcept { return code_; }
  [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

 private:
  int code_;
  std::string message_;
};

/// The order of texts that the indexes of an account set are made in, kept as its user version. Grows when the
/// collation orders texts differently: indexes of an earlier order find nothing.
inline constexpr int textOrder = 1;

class Database;

/// The forms of one SQLite text that are prepared and not in use.
class StatementPool {
 public:
  explicit StatementPool(std::string text) : text_(std::move(text)) {}
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  friend class Lease;
  std::string text_;
  std::vector<StatementHandle> free_;
};

/// A prepared statement for as long as somebody runs it; goes back to its pool, reset and without values.
class Lease {
 public:
  Lease() = default;
  /// Prepares when the pool has none. Raises what SQLite says of the text.
  Lease(Database& database, std::shared_ptr<StatementPool> pool);
  Lease(Lease&& other) noexcept = default;
  Lease& operator=(Lease&& other) noexcept;
  ~Lease() { giveBack(); }

  [[nodiscard]] sqlite3_stmt* get() const { return statement_.get(); }
  explicit operator bool() const { return statement_ != nullptr; }
  void giveBack() noexcept;

 private:
  std::shared_ptr<StatementPool> pool_;
  StatementHandle statement_;
};

/// Limits one operation's time. Nothing waits longer than `limit`, and a statement that runs longer is stopped.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

class Database {
 public:
  /// Opens an existing account set; see openError() for what it raises.
  Database(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  /// Writes a new, empty account set. Raises when there is a file already.
  static void create(const std::filesystem::path& file);

  [[nodiscard]] sqlite3* get() const { return handle_.get(); }
  [[nodiscard]] const std::string& name() const { return name_; }
  /// What T-SQL calls the database: the file's name without its ending.
  [[nodiscard]] std::string databaseName() const { return system::pathOf(name_).stem().string(); }

  /// Runs one of the engine's own statements without rows or values.
  void run(const char* text);
  /// One step of a compiled statement: whether there is a row. Raises what went wrong, SchemaChanged among it; the
  /// statement is reset then.
  [[nodiscard]] bool step(sqlite3_stmt* statement);
  /// The same for one of the engine's own statements, which mean the same whatever happened to the tables.
  [[nodiscard]] bool stepOwn(sqlite3_stmt* statement);

  /// Gives a table another text in SQLite's schema. Rows and indexes stay as they are, so the text must fit them.
  void redefine(std::string_view table, bool temporary, const std::string& text);

  /// Keeps the error that a run-time function ended with, until step() raises it.
  void setFunctionError(tsql::SqlError error) { functionError_ = std::move(error); }

  void setDeadline(Deadline deadline);
  [[nodiscard]] const Deadline& deadline() const { return deadline_; }
  /// Raises when it is over: for loops whose statements are all short.
  void checkDeadline() const;
  [[nodiscard]] bool inTransaction() const { return sqlite3_get_autocommit(handle_.get()) == 0; }

  /// Raises a failed call of SQLite.
  [[noreturn]] void fail(int resultCode);

 private:
  friend class Lease;
  void configure();
  void checkIsAccountSet();
  [[nodiscard]] bool outcome(sqlite3_stmt* statement, int code);
  [[nodiscard]] StatementHandle prepare(const std::string& text);

  std::string name_;
  DatabaseHandle handle_;
  std::optional<tsql::SqlError> functionError_;
  Deadline deadline_;
  std::chrono::milliseconds busyTimeout_;
  std::chrono::steady_clock::time_point waitingSince_;
  bool stepping_ = false;
  bool schemaChanged_ = false;
  bool timedOut_ = false;
};

}  // namespace tolvane::embedded
