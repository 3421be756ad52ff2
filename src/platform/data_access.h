// Data access in ADO's shape: the operations of ADO that the services use, with its enumerations, results and errors.
//
// Every implementation behaves as one: the data-access contract tests run against each of them. Errors are
// AutomationErrors: ADO's own (AdoError), or the database's with its OLE DB number and its own words.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/value.h"

namespace tolvane {

enum class CursorType : std::int32_t { unspecified = -1, forwardOnly = 0, keyset = 1, dynamic = 2, fixed = 3 };
enum class LockType : std::int32_t {
  unspecified = -1,
  readOnly = 1,
  pessimistic = 2,
  optimistic = 3,
  batchOptimistic = 4
};
enum class CursorLocation : std::int32_t { none = 1, server = 2, client = 3 };
enum class CommandType : std::int32_t { unspecified = -1, text = 1, table = 2, storedProcedure = 4, unknown = 8 };
enum class ObjectState : std::int32_t { closed = 0, open = 1 };
enum class EditMode : std::int32_t { none = 0, inProgress = 1, add = 2, deleted = 4 };
enum class ParameterDirection : std::int32_t { input = 1 };

/// ADO's data types, as far as SQL Server's columns have them.
enum class DataType : std::int32_t {
  empty = 0,
  smallInt = 2,
  integer = 3,
  single = 4,
  real = 5,
  currency = 6,
  boolean = 11,
  variant = 12,
  unsignedTinyInt = 17,
  bigInt = 20,
  guid = 72,
  binary = 128,
  character = 129,
  wideChar = 130,
  numeric = 131,
  date = 133,
  timestamp = 135,
  varChar = 200,
  longVarChar = 201,
  varWChar = 202,
  longVarWChar = 203,
  varBinary = 204,
  longVarBinary = 205,
};

/// The "options" argument of Execute and Open when nothing is asked for.
inline constexpr std::int32_t unspecifiedOptions = -1;

/// A column of a record set.
struct FieldInfo {
  std::string name;  ///< as the query names it; may be empty
  DataType type = DataType::variant;
  std::int32_t definedSize = 0;  ///< characters or bytes; -1 for long data
  bool nullable = true;
};

/// A set of rows with one current row. Made by a Connection; closed until `open`, unless Connection::execute made it.
///
/// Reading is lazy: opening reads no row, a document is read when it is asked for, the count is counted when asked for.
/// An object is used from the thread that made it.
class Recordset : public Object {
 public:
  /// Opens `source`, a statement or the name of a table, on the connection that made this object. A closed set can be
  /// opened again. Raises 3705 when open, 3709 after a detach, the database's own error otherwise.
  virtual void open(const std::string& source, CursorType cursorType, LockType lockType,
                    std::int32_t options = unspecifiedOptions) = 0;
  /// Raises 3704 when closed already, 3219 while an edit is pending.
  virtual void close() = 0;
  [[nodiscard]] virtual ObjectState state() const = 0;

  /// Where later opens keep their rows; starts as the connection's.
  virtual void setCursorLocation(CursorLocation location) = 0;

  // Position. Each raises 3704 on a closed set; moves raise 3021 where there is no row to leave or to go to.
  [[nodiscard]] virtual bool bof() = 0;
  [[nodiscard]] virtual bool eof() = 0;
  /// Rows in all, those hidden by the filter left out.
  [[nodiscard]] virtual std::int32_t recordCount() = 0;
  virtual void moveFirst() = 0;
  virtual void moveNext() = 0;
  virtual void moveLast() = 0;

  /// Columns, in the order of the statement.
  [[nodiscard]] virtual const std::vector<FieldInfo>& fields() = 0;
  /// The current row's value; by position from 0, or by name without regard to letter case (the first of that name).
  /// 3265 for an unknown column, 3021 without a current row.
  [[nodiscard]] virtual Value value(std::size_t index) = 0;
  [[nodiscard]] virtual Value value(std::string_view name) = 0;

  /// Begins a new row; a pending edit is posted first. 3251 when the set cannot be updated.
  virtual void addNew() = 0;
  /// Sets a field of the current or new row, converted to the column's type: 3421 when it cannot be, 80040E21h when it
  /// does not fit, 3251 when the set cannot be updated.
  virtual void setValue(std::string_view name, const Value& value) = 0;
  /// Appends to a long field: the first chunk of an edit replaces what was there.
  virtual void appendChunk(std::string_view name, const Value& chunk) = 0;
  /// Posts the pending edit; without one it does nothing. The row stays current; a new row's identity can be read.
  virtual void update() = 0;
  virtual void cancelUpdate() = 0;
  [[nodiscard]] virtual EditMode editMode() const = 0;

  /// Shows only the rows that satisfy `criteria` and goes to the first of them; empty text shows all again.
  virtual void setFilter(const std::string& criteria) = 0;

  /// Sets ActiveConnection to nothing: all rows stay readable, nothing can be posted. Only for client-side sets.
  virtual void detach() = 0;

  /// The next result of the batch, or null.
  [[nodiscard]] virtual std::shared_ptr<Recordset> nextRecordset() = 0;
};

/// A parameter of a Command, bound to the "?" marks in order.
struct Parameter {
  DataType type = DataType::varWChar;
  ParameterDirection direction = ParameterDirection::input;
  std::int32_t size = 0;  ///< characters or bytes at most
  Value value;
};

/// A statement with parameters. Made by a Connection and run on it.
class Command : public Object {
 public:
  virtual void setCommandText(const std::string& text) = 0;
  virtual void setCommandType(CommandType type) = 0;
  /// Seconds; 0 waits for ever. 30 when not set.
  virtual void setCommandTimeout(std::int32_t seconds) = 0;
  virtual void appendParameter(const Parameter& parameter) = 0;
  /// Runs the text. 80040E0Ch without text, 80040E10h when a "?" has no parameter.
  [[nodiscard]] virtual std::shared_ptr<Recordset> execute() = 0;
};

/// An open data source. The context owns it; services never open or close it.
class Connection : public Object {
 public:
  /// Runs a batch. The result is the first that the batch gives: an open record set when it has columns, a closed one
  /// when it is a statement without rows. An error of any statement of the batch is raised. 80040E0Ch for an empty
  /// text.
  virtual std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options = unspecifiedOptions) = 0;

  /// A closed record set, and an empty command, of this connection's own kind.
  [[nodiscard]] virtual std::shared_ptr<Recordset> newRecordset() = 0;
  [[nodiscard]] virtual std::shared_ptr<Command> newCommand() = 0;
};

}  // namespace tolvane
