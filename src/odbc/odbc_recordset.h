// ADO's record set on ODBC: a static client cursor.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/batch_run.h"
#include "odbc/row_writer.h"
#include "platform/data_access.h"
#include "rowset/filter.h"

namespace tolvane::odbc {

/// The rows of a set that is opened for changes on a whole table are fetched when somebody asks for one: most such sets
/// are only added to. Every other set has its rows from the start.
class OdbcRecordset final : public Recordset {
 public:
  explicit OdbcRecordset(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  /// What a batch gave, read-only: open on its first rows, closed when it gave none.
  [[nodiscard]] static std::shared_ptr<Recordset> of(std::shared_ptr<Session> session, BatchResult result);

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override;
  void close() override;
  [[nodiscard]] ObjectState state() const override { return rows_ ? ObjectState::open : ObjectState::closed; }
  void setCursorLocation(CursorLocation location) override;

  [[nodiscard]] bool bof() override;
  [[nodiscard]] bool eof() override;
  [[nodiscard]] std::int32_t recordCount() override;
  void moveFirst() override;
  void moveNext() override;
  void moveLast() override;

  [[nodiscard]] const std::vector<FieldInfo>& fields() override;
  [[nodiscard]] Value value(std::size_t index) override;
  [[nodiscard]] Value value(std::string_view name) override;

  void addNew() override;
  void setValue(std::string_view name, const Value& value) override;
  void appendChunk(std::string_view name, const Value& chunk) override;
  void update() override;
  void cancelUpdate() override;
  [[nodiscard]] EditMode editMode() const override { return editMode_; }

  void setFilter(const std::string& criteria) override;
  void detach() override;
  [[nodiscard]] std::shared_ptr<Recordset> nextRecordset() override;

 private:
  void take(BatchResult result);
  void requireOpen() const;
  void requireUpdatable() const;
  /// Fetches the rows that are not here yet; own new rows stand behind them.
  void fetch();
  void placeOwnRow(RowBuffer& own, std::size_t row, const std::vector<std::size_t>& key);
  /// Own new rows do not stand at the set's beginning, where the current one of them seems to be before the fetch.
  void fetchBeforeOwn();
  [[nodiscard]] bool hasRow(std::size_t position);
  [[nodiscard]] std::size_t count();
  /// The current row's number among all rows; 3021 when there is none.
  [[nodiscard]] std::size_t currentRow(std::string_view source);
  [[nodiscard]] std::size_t rowAt(std::size_t position) const { return filter_ ? visible_[position] : position; }
  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const;
  [[nodiscard]] std::size_t editedField(std::string_view name);
  [[nodiscard]] const Column& column(std::size_t index) const { return rows_->shape.columns[index]; }
  void postPending();
  void postNew();

  std::shared_ptr<Session> session_;  // none after a detach
  std::shared_ptr<RowSet> rows_;      // none while closed
  std::vector<std::shared_ptr<RowSet>> later_;
  Source source_;
  bool fetched_ = true;
  CursorLocation location_ = CursorLocation::client;
  bool countless_ = false;  // a server-side cursor that does not know how many rows there are
  bool readOnly_ = true;
  bool detached_ = false;
  std::size_t position_ = 0;  // among the visible rows
  std::optional<rowset::Filter> filter_;
  std::vector<std::size_t> visible_;
  EditMode editMode_ = EditMode::none;
  RowEdits edits_;
};

}  // namespace tolvane::odbc
