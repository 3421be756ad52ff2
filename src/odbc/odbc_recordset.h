// ADO's record set on ODBC: a static client cursor.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "odbc/batch_run.h"
#include "odbc/row_writer.h"
#include "platform/data_access.h"
#include "rowset/client_recordset.h"

namespace tolvane::odbc {

/// The rows of a set that is opened for changes on a whole table are fetched when somebody asks for one: most such sets
/// are only added to. Every other set has its rows from the start.
class OdbcRecordset final : public rowset::ClientRecordset {
 public:
  explicit OdbcRecordset(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  /// What a batch gave, read-only: open on its first rows, closed when it gave none.
  [[nodiscard]] static std::shared_ptr<Recordset> of(std::shared_ptr<Session> session, BatchResult result);

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override;
  [[nodiscard]] std::shared_ptr<Recordset> nextRecordset() override;

 private:
  [[nodiscard]] bool hasRows() const override { return rows_ != nullptr; }
  [[nodiscard]] const std::vector<FieldInfo>& columns() const override { return rows_->shape.fields; }
  [[nodiscard]] bool reaches(std::size_t row) override;
  [[nodiscard]] std::size_t readAll() override;
  /// Own new rows do not stand at the set's beginning, where the current one of them seems to be before the fetch.
  void readBeforeOwn() override;
  [[nodiscard]] Value storedValue(std::size_t row, std::size_t column) override;
  [[nodiscard]] const rowset::TextOrder& textOrder() const override;

  [[nodiscard]] bool canPost() const override { return !rows_->shape.table.empty(); }
  [[nodiscard]] bool canSet(std::size_t index) const override;
  [[nodiscard]] bool isLong(std::size_t index) const override { return column(index).isLong(); }
  [[nodiscard]] bool isEdited(std::size_t index) const override { return edits_.contains(index); }
  [[nodiscard]] Value editedValue(std::size_t index) const override;
  void edit(std::size_t index, const Value& value) override;
  void append(std::size_t index, const Value& chunk) override;
  void forgetEdits() override { edits_.clear(); }
  [[nodiscard]] std::size_t postNew() override;
  void postChanges(std::size_t row) override;

  void release() override { take({}); }
  void releaseConnection() override;

  void take(BatchResult result);
  /// Fetches the rows that are not here yet; own new rows stand behind them.
  void fetch();
  void placeOwnRow(RowBuffer& own, std::size_t row, const std::vector<std::size_t>& key);
  [[nodiscard]] const Column& column(std::size_t index) const { return rows_->shape.columns[index]; }

  std::shared_ptr<Session> session_;  // none after a detach
  std::shared_ptr<RowSet> rows_;      // none while closed
  std::vector<std::shared_ptr<RowSet>> later_;
  Source source_;
  bool fetched_ = true;
  RowEdits edits_;
};

}  // namespace tolvane::odbc
