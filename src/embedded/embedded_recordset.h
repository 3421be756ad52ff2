// ADO's record set on the embedded engine.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "embedded/batch_run.h"
#include "embedded/row_set.h"
#include "embedded/row_writer.h"
#include "platform/data_access.h"
#include "rowset/client_recordset.h"

namespace tolvane::embedded {

/// Rows are read as they are asked for, documents one by one.
class EmbeddedRecordset final : public rowset::ClientRecordset {
 public:
  explicit EmbeddedRecordset(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  /// What a batch gave, read-only: open on its first rows, closed when it gave none.
  [[nodiscard]] static std::shared_ptr<Recordset> of(std::shared_ptr<Session> session, BatchResult result);

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override;
  [[nodiscard]] std::shared_ptr<Recordset> nextRecordset() override;

 private:
  [[nodiscard]] bool hasRows() const override { return rows_ != nullptr; }
  [[nodiscard]] const std::vector<FieldInfo>& columns() const override { return rows_->shape().fields; }
  [[nodiscard]] bool reaches(std::size_t row) override { return rows_->has(row); }
  [[nodiscard]] std::size_t readAll() override { return rows_->readAll(); }
  void readBeforeOwn() override { shift(rows_->readBeforeOwn()); }
  [[nodiscard]] Value storedValue(std::size_t row, std::size_t column) override { return rows_->value(row, column); }
  void setCurrent(std::size_t row) override { rows_->setCurrent(row); }
  [[nodiscard]] const rowset::TextOrder& textOrder() const override;

  [[nodiscard]] bool canPost() const override { return rows_->shape().hasRows(); }
  [[nodiscard]] bool canSet(std::size_t column) const override;
  [[nodiscard]] bool isLong(std::size_t column) const override { return typeOf(column).isLong(); }
  [[nodiscard]] bool isEdited(std::size_t column) const override { return edits_.contains(column); }
  [[nodiscard]] Value editedValue(std::size_t column) const override;
  void edit(std::size_t column, const Value& value) override;
  void append(std::size_t column, const Value& chunk) override;
  void forgetEdits() override { edits_.clear(); }
  [[nodiscard]] std::size_t postNew() override;
  void postChanges(std::size_t row) override;

  void release() override;
  void releaseConnection() override;

  void take(BatchResult result);
  [[nodiscard]] const tsql::Type& typeOf(std::size_t column) const { return rows_->shape().columns[column].type; }

  std::shared_ptr<Session> session_;  // none after a detach
  std::shared_ptr<RowSet> rows_;      // none while closed
  std::vector<std::shared_ptr<RowSet>> later_;
  RowEdits edits_;
};

}  // namespace tolvane::embedded
