#include "odbc/odbc_recordset.h"

#include <algorithm>
#include <utility>

#include "odbc/errors.h"
#include "odbc/text_order.h"
#include "odbc/values.h"
#include "platform/conversions.h"
#include "rowset/documents.h"

namespace tolvane::odbc {
namespace {

using rowset::raiseAdo;
using rowset::recordsetSource;

ParameterValue editOf(const Value& value, const Column& column) {
  ParameterValue edit{column, assigned(value, column), {}, false};
  if (const auto* bytes = edit.value.get<Bytes>()) {
    edit.isDocument = true;
    edit.chunks.push_back(*bytes);
    edit.value = Null{};
  }
  return edit;
}

Value pendingValue(const ParameterValue& edit) {
  RowBuffer rows(1);
  if (!edit.isDocument) {
    store(rows, rows.addRow(), 0, edit.value);
    return toValue(rows, 0, 0, edit.column);
  }
  return rowset::joined(edit.chunks);
}

}  // namespace

std::shared_ptr<Recordset> OdbcRecordset::of(std::shared_ptr<Session> session, BatchResult result) {
  auto recordset = std::make_shared<OdbcRecordset>(std::move(session));
  recordset->take(std::move(result));
  return recordset;
}

void OdbcRecordset::take(BatchResult result) {
  restart();
  fetched_ = true;
  rows_.reset();
  later_ = std::move(result.rowSets);
  if (later_.empty()) return;
  rows_ = std::move(later_.front());
  later_.erase(later_.begin());
}

void OdbcRecordset::open(const std::string& text, CursorType cursorType, LockType lockType, std::int32_t options) {
  requireClosed();
  source_ = readSource(text, options == static_cast<std::int32_t>(CommandType::table));
  const bool readOnly = lockType == LockType::readOnly || lockType == LockType::unspecified;
  BatchOptions batch;
  if (!readOnly) batch.source = &source_;
  const bool later = !readOnly && source_.isWholeTable();
  take(runBatch(*session_, later ? source_.head + " WHERE 1 = 0" : source_.statement, batch));
  fetched_ = !later;
  if (rows_) rows_->sql = source_.statement;
  opened(cursorType, lockType);
}

std::shared_ptr<Recordset> OdbcRecordset::nextRecordset() {
  requireConnection();
  if (later_.empty()) return nullptr;
  BatchResult rest;
  rest.rowSets = std::exchange(later_, {});
  return of(session_, std::move(rest));
}

void OdbcRecordset::fetch() {
  if (fetched_) return;
  if (!session_) raiseAdo(AdoError::invalidConnection, recordsetSource);
  BatchOptions batch;
  batch.source = &source_;
  auto result = runBatch(*session_, source_.statement, batch);
  if (result.rowSets.empty() || result.rowSets.front()->shape.columns.size() != rows_->shape.columns.size()) {
    // Somebody changed the table between the opening and now.
    raiseAdo(AdoError::illegalOperation, recordsetSource);
  }
  auto own = std::exchange(rows_->rows, std::move(result.rowSets.front()->rows));
  fetched_ = true;
  if (own.rows() == 0) return;
  const auto key = keyColumns(*session_, rows_->shape);
  if (key.empty()) {
    // The own rows are among the fetched ones and cannot be told from them; servers add at the end.
    const auto all = rows_->rows.rows();
    return moveTo(all == 0 ? 0 : all - std::min(all, own.rows() - position()));
  }
  for (std::size_t row = 0; row < own.rows(); ++row) placeOwnRow(own, row, key);
  shift(rows_->rows.rows() - own.rows());
}

void OdbcRecordset::placeOwnRow(RowBuffer& own, std::size_t row, const std::vector<std::size_t>& key) {
  auto& rows = rows_->rows;
  const auto isSame = [&](std::size_t candidate) {
    return std::all_of(key.begin(), key.end(), [&](std::size_t index) {
      return toValue(rows, candidate, index, column(index)) == toValue(own, row, index, column(index));
    });
  };
  for (std::size_t candidate = rows.rows(); candidate > 0; --candidate) {
    if (!isSame(candidate - 1)) continue;
    rows.moveToEnd(candidate - 1);
    return;
  }
  (void)rows.addCopy(own, row);
}

void OdbcRecordset::readBeforeOwn() {
  if (rows_->rows.rows() > 0) fetch();
}

bool OdbcRecordset::reaches(std::size_t row) {
  if (row < rows_->rows.rows()) return true;
  fetch();
  return row < rows_->rows.rows();
}

std::size_t OdbcRecordset::readAll() {
  fetch();
  return rows_->rows.rows();
}

Value OdbcRecordset::storedValue(std::size_t row, std::size_t index) {
  return toValue(rows_->rows, row, index, column(index));
}

const rowset::TextOrder& OdbcRecordset::textOrder() const {
  return clientTextOrder();
}

bool OdbcRecordset::canSet(std::size_t index) const {
  return !column(index).base.empty() && !column(index).identity;
}

Value OdbcRecordset::editedValue(std::size_t index) const {
  return pendingValue(edits_.at(index));
}

void OdbcRecordset::edit(std::size_t index, const Value& value) {
  edits_.insert_or_assign(index, editOf(value, column(index)));
}

void OdbcRecordset::append(std::size_t index, const Value& chunk) {
  const auto before = edits_.find(index);
  if (column(index).isBinary()) {
    auto bytes = rowset::bytesOf(chunk);
    if (!bytes) raiseAdo(AdoError::invalidArgument, rowset::fieldSource);
    if (before == edits_.end() || !before->second.isDocument) return edit(index, Value(std::move(*bytes)));
    before->second.chunks.push_back(std::move(*bytes));
    return;
  }
  auto text = toText(chunk);
  if (before != edits_.end() && before->second.value.get<std::string>()) {
    text.insert(0, *before->second.value.get<std::string>());
  }
  edit(index, Value(std::move(text)));
}

std::size_t OdbcRecordset::postNew() {
  return insertRow(*session_, *rows_, edits_);
}

void OdbcRecordset::postChanges(std::size_t row) {
  updateRow(*session_, *rows_, source_, row, edits_);
}

void OdbcRecordset::releaseConnection() {
  if (rows_) fetch();
  later_.clear();
  session_.reset();
}

}  // namespace tolvane::odbc
