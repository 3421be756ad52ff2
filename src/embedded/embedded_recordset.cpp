#include "embedded/embedded_recordset.h"

#include <utility>

#include "embedded/account_set_collation.h"
#include "embedded/errors.h"
#include "embedded/source_text.h"
#include "embedded/values.h"
#include "platform/conversions.h"
#include "rowset/documents.h"
#include "rowset/utf8.h"

namespace tolvane::embedded {
namespace {

FieldEdit editOf(const Value& value, const tsql::Type& type) {
  FieldEdit edit;
  if (!type.isBinary()) {
    edit.value = toStored(value, type);
    const bool isText = edit.value.kind() == tsql::Kind::Text;
    if (isText && rowset::invalidUtf8(edit.value.text()) != std::string::npos)
      rowset::raiseAdo(AdoError::dataConversion, recordsetSource);
    return edit;
  }
  if (value.isNull() || value.isEmpty()) return edit;
  auto bytes = rowset::bytesOf(value);
  if (!bytes) rowset::raiseAdo(AdoError::dataConversion, recordsetSource);
  if (!type.isLong() && bytes->size() > static_cast<std::size_t>(type.length)) throw doesNotFit();
  edit.isDocument = true;
  edit.chunks.push_back(std::move(*bytes));
  return edit;
}

Cell cellOf(const tsql::Result& value) {
  switch (value.kind()) {
    case tsql::Kind::Integer:
      return Cell::ofInteger(value.integer());
    case tsql::Kind::Real:
      return Cell::ofReal(value.real());
    case tsql::Kind::Text:
      return Cell::ofText(value.text());
    case tsql::Kind::Null:
    case tsql::Kind::Blob:
      break;
  }
  return {};
}

}  // namespace

std::shared_ptr<Recordset> EmbeddedRecordset::of(std::shared_ptr<Session> session, BatchResult result) {
  auto recordset = std::make_shared<EmbeddedRecordset>(std::move(session));
  recordset->take(std::move(result));
  return recordset;
}

void EmbeddedRecordset::take(BatchResult result) {
  restart();
  later_ = std::move(result.rowSets);
  if (later_.empty()) return;
  rows_ = std::move(later_.front());
  later_.erase(later_.begin());
}

void EmbeddedRecordset::open(const std::string& source, CursorType cursorType, LockType lockType,
                             std::int32_t options) {
  requireClosed();
  take(runBatch(session_, statementOf(source, options, session_->catalogue()), {}, FirstRead::whenAsked));
  opened(cursorType, lockType);
}

std::shared_ptr<Recordset> EmbeddedRecordset::nextRecordset() {
  requireConnection();
  if (later_.empty()) return nullptr;
  return of(session_, {std::exchange(later_, {})});
}

const rowset::TextOrder& EmbeddedRecordset::textOrder() const {
  return accountSetTextOrder();
}

bool EmbeddedRecordset::canSet(std::size_t column) const {
  const auto& described = rows_->shape().columns[column];
  return !described.column.empty() && !described.identity;
}

Value EmbeddedRecordset::editedValue(std::size_t column) const {
  const auto& edit = edits_.at(column);
  if (edit.isDocument) return rowset::joined(edit.chunks);
  return toValue(cellOf(edit.value), typeOf(column));
}

void EmbeddedRecordset::edit(std::size_t column, const Value& value) {
  edits_.insert_or_assign(column, editOf(value, typeOf(column)));
}

void EmbeddedRecordset::append(std::size_t column, const Value& chunk) {
  const auto before = edits_.find(column);
  if (typeOf(column).isBinary()) {
    auto bytes = rowset::bytesOf(chunk);
    if (!bytes) rowset::raiseAdo(AdoError::invalidArgument, fieldSource);
    if (before == edits_.end() || !before->second.isDocument) return edit(column, Value(std::move(*bytes)));
    before->second.chunks.push_back(std::move(*bytes));
    return;
  }
  auto text = toText(chunk);
  if (before != edits_.end() && before->second.value.kind() == tsql::Kind::Text) {
    text.insert(0, before->second.value.text());
  }
  edit(column, Value(std::move(text)));
}

std::size_t EmbeddedRecordset::postNew() {
  const auto number = insertRow(*session_, rows_->shape(), edits_, rows_->sql(), *rows_);
  const auto row = rows_->addOwn(number);
  (void)rows_->reread(row);
  return row;
}

void EmbeddedRecordset::postChanges(std::size_t row) {
  updateRow(*session_, rows_->shape(), rows_->rowNumber(row), edits_, rows_->sql(), *rows_);
  (void)rows_->reread(row);
}

void EmbeddedRecordset::release() {
  later_.clear();
  rows_.reset();
}

void EmbeddedRecordset::releaseConnection() {
  if (rows_) {
    readBeforeOwn();
    rows_->detach();
  }
  later_.clear();
  session_.reset();
}

}  // namespace tolvane::embedded
