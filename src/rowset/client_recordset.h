// ADO's client-side record set, whatever engine its rows come from: position, filter, edit mode, and the errors of each
// call in the wrong state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/data_access.h"
#include "platform/error.h"
#include "rowset/filter.h"

namespace tolvane::rowset {

/// Raises an error of ADO's own.
[[noreturn]] void raiseAdo(AdoError error, std::string_view source);

/// An engine derives its record set and brings the rows. Rows have numbers from 0; what is not read yet is read when it
/// is asked for. Rows that the set itself has added before others were read stand behind those.
class ClientRecordset : public Recordset {
 public:
  void close() final;
  [[nodiscard]] ObjectState state() const final { return hasRows() ? ObjectState::open : ObjectState::closed; }
  void setCursorLocation(CursorLocation location) final;

  [[nodiscard]] bool bof() final;
  [[nodiscard]] bool eof() final;
  [[nodiscard]] std::int32_t recordCount() final;
  void moveFirst() final;
  void moveNext() final;
  void moveLast() final;

  [[nodiscard]] const std::vector<FieldInfo>& fields() final;
  [[nodiscard]] Value value(std::size_t index) final;
  [[nodiscard]] Value value(std::string_view name) final;

  void addNew() final;
  void setValue(std::string_view name, const Value& value) final;
  void appendChunk(std::string_view name, const Value& chunk) final;
  void update() final;
  void cancelUpdate() final;
  [[nodiscard]] EditMode editMode() const final { return editMode_; }

  void setFilter(const std::string& criteria) final;
  void detach() final;

 protected:
  /// Before opening: 3705 when open, 3709 after a detach.
  void requireClosed() const;
  /// 3709 after a detach.
  void requireConnection() const;
  /// A set that is opened: read-only unless the lock says otherwise, without a count where ADO's cursor has none.
  void opened(CursorType cursorType, LockType lockType);
  /// Begins at the first row of new rows, without filter and edits.
  void restart();
  /// The rows at the beginning have become so many more.
  void shift(std::size_t rows) { position_ += rows; }
  [[nodiscard]] std::size_t position() const { return position_; }
  void moveTo(std::size_t position) { position_ = position; }

 private:
  /// Whether there are rows at all: the set is open.
  [[nodiscard]] virtual bool hasRows() const = 0;
  [[nodiscard]] virtual const std::vector<FieldInfo>& columns() const = 0;
  /// Whether there is a row of this number; reads up to it.
  [[nodiscard]] virtual bool reaches(std::size_t row) = 0;
  /// Reads all that is left and says how many rows there are.
  [[nodiscard]] virtual std::size_t readAll() = 0;
  /// Reads the rows that stand before own ones, and shifts the position by them.
  virtual void readBeforeOwn() = 0;
  [[nodiscard]] virtual Value storedValue(std::size_t row, std::size_t column) = 0;
  /// The row that is read or changed next.
  virtual void setCurrent(std::size_t) {}
  [[nodiscard]] virtual const TextOrder& textOrder() const = 0;

  /// Whether the rows are those of one table, and whether the column is one of the table's that callers may set.
  [[nodiscard]] virtual bool canPost() const = 0;
  [[nodiscard]] virtual bool canSet(std::size_t column) const = 0;
  [[nodiscard]] virtual bool isLong(std::size_t column) const = 0;
  [[nodiscard]] virtual bool isEdited(std::size_t column) const = 0;
  [[nodiscard]] virtual Value editedValue(std::size_t column) const = 0;
  virtual void edit(std::size_t column, const Value& value) = 0;
  virtual void append(std::size_t column, const Value& chunk) = 0;
  virtual void forgetEdits() = 0;
  /// Posts the edits as a new row and gives its number.
  [[nodiscard]] virtual std::size_t postNew() = 0;
  virtual void postChanges(std::size_t row) = 0;

  /// Lets go of the rows, and of the connection.
  virtual void release() = 0;
  virtual void releaseConnection() = 0;

  void requireOpen() const;
  void requireUpdatable() const;
  void requireRow(std::size_t position);
  [[nodiscard]] bool hasVisible(std::size_t position);
  [[nodiscard]] std::size_t visibleCount();
  [[nodiscard]] std::size_t currentRow(std::string_view source);
  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const;
  [[nodiscard]] std::size_t settableField(std::string_view name);
  void postPending();

  CursorLocation location_ = CursorLocation::client;
  bool countless_ = false;  // a server-side cursor that does not know how many rows there are
  bool readOnly_ = true;
  bool detached_ = false;
  std::size_t position_ = 0;  // among the visible rows
  std::optional<Filter> filter_;
  std::vector<std::size_t> visible_;
  EditMode editMode_ = EditMode::none;
};

}  // namespace tolvane::rowset
