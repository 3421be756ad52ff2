// The rows of one query, read from SQLite as they are asked for.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/program_cache.h"
#include "embedded/row_buffer.h"
#include "embedded/session.h"
#include "tsql/datum.h"

namespace tolvane::embedded {

/// A query that is prepared and bound, and has not run.
struct BoundQuery {
  Lease statement;
  std::shared_ptr<const ResultShape> shape;
  /// What the statement's program was compiled into; keeps the shape's texts alive.
  std::shared_ptr<CompiledProgram> program;
};

/// Rows are read once, kept without their documents, and stay what they were when the reading began. A document is read
/// by the number of its row when it is asked for.
class RowSet final : public OpenReader {
 public:
  /// `recompile` makes the query anew when its tables have changed before the first row was read; may be empty.
  RowSet(std::shared_ptr<Session> session, BoundQuery query, std::string sql,
         std::function<BoundQuery()> recompile = {});
  RowSet(const RowSet&) = delete;
  RowSet& operator=(const RowSet&) = delete;
  ~RowSet() override;

  [[nodiscard]] const ResultShape& shape() const { return *shape_; }
  [[nodiscard]] const std::string& sql() const { return sql_; }

  /// Whether there is a row of this number, from 0; reads up to it.
  [[nodiscard]] bool has(std::size_t row);
  /// Reads all that is left and says how many rows there are.
  std::size_t readAll();
  /// The same, and the first row alone, for the batch that the query is a statement of: raise the engine's own errors.
  void readFirst();
  void readRest();
  /// Rows read so far.
  [[nodiscard]] std::size_t known() const { return buffer_.rows(); }
  [[nodiscard]] bool begun() const { return begun_; }

  [[nodiscard]] Value value(std::size_t row, std::size_t column);
  /// The stored form; of a long value the text or bytes are read first.
  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column);
  [[nodiscard]] std::int64_t rowNumber(std::size_t row) const { return buffer_.rowNumber(row); }

  /// Shows the row as the database has it now; false when it is gone.
  [[nodiscard]] bool reread(std::size_t row);
  /// Adds a row that the record set itself has inserted. Before the reading has begun, the rows of the query stay
  /// unread.
  std::size_t addOwn(std::int64_t rowNumber);
  /// Reads the rows that stand before the own ones, if that is still to be done; gives how many there are.
  std::size_t readBeforeOwn();

  /// The row whose documents must survive a change of its table. Those of the row that was current before are let go;
  /// they are read again when they are asked for.
  void setCurrent(std::size_t row);

  /// Reads everything, documents too, and lets go of the connection.
  void detach();

  void settle() override;
  [[nodiscard]] bool reads(std::string_view table) const override;
  [[nodiscard]] bool running() const override { return begun_ && static_cast<bool>(statement_); }

 private:
  template <typename Work>
  void translated(Work&& work);
  bool readOne();
  bool stepFirst();
  void finish() noexcept;
  void fillRow(std::size_t row, sqlite3_stmt* statement, bool again);
  void readLong(std::size_t row, std::size_t column);
  void raiseFailure() const;
  [[nodiscard]] std::string rowText() const;
  [[nodiscard]] Session& session() const;

  std::shared_ptr<Session> session_;
  std::shared_ptr<const ResultShape> shape_;
  std::shared_ptr<CompiledProgram> program_;
  Lease statement_;
  std::string sql_;
  std::function<BoundQuery()> recompile_;
  RowBuffer buffer_;
  std::vector<std::int64_t> own_;  // numbers of inserted rows while the query's rows are unread
  bool begun_ = false;
  std::optional<AutomationError> failed_;  // what settling met; raised when the rows behind are asked for
  std::size_t current_ = static_cast<std::size_t>(-1);
};

}  // namespace tolvane::embedded
