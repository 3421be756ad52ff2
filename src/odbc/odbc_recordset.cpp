#include "odbc/odbc_recordset.h"

#include <algorithm>
#include <utility>

#include "odbc/errors.h"
#include "odbc/text_order.h"
#include "odbc/values.h"
#include "platform/conversions.h"
#include "rowset/names.h"

namespace tolvane::odbc {
namespace {

[[noreturn]] void raiseAdo(AdoError error, std::string_view source = rowset::recordsetSource) {
  throw AutomationError(error, std::string(source));
}

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
  return joined(edit.chunks);
}

}  // namespace

std::shared_ptr<Recordset> OdbcRecordset::of(std::shared_ptr<Session> session, BatchResult result) {
  auto recordset = std::make_shared<OdbcRecordset>(std::move(session));
  recordset->take(std::move(result));
  return recordset;
}

void OdbcRecordset::take(BatchResult result) {
  position_ = 0;
  fetched_ = true;
  filter_.reset();
  visible_.clear();
  editMode_ = EditMode::none;
  edits_.clear();
  rows_.reset();
  later_ = std::move(result.rowSets);
  if (later_.empty()) return;
  rows_ = std::move(later_.front());
  later_.erase(later_.begin());
}

void OdbcRecordset::open(const std::string& text, CursorType cursorType, LockType lockType, std::int32_t options) {
  if (rows_) raiseAdo(AdoError::objectOpen);
  if (detached_) raiseAdo(AdoError::invalidConnection);
  source_ = readSource(text, options == static_cast<std::int32_t>(CommandType::table));
  readOnly_ = lockType == LockType::readOnly || lockType == LockType::unspecified;
  BatchOptions batch;
  if (!readOnly_) batch.source = &source_;
  const bool later = !readOnly_ && source_.isWholeTable();
  take(runBatch(*session_, later ? source_.head + " WHERE 1 = 0" : source_.statement, batch));
  fetched_ = !later;
  if (rows_) rows_->sql = source_.statement;
  const bool forward = cursorType == CursorType::forwardOnly || cursorType == CursorType::dynamic ||
                       cursorType == CursorType::unspecified;
  countless_ = location_ == CursorLocation::server && forward;
}

void OdbcRecordset::fetch() {
  if (fetched_) return;
  if (!session_) raiseAdo(AdoError::invalidConnection);
  BatchOptions batch;
  batch.source = &source_;
  auto result = runBatch(*session_, source_.statement, batch);
  if (result.rowSets.empty() || result.rowSets.front()->shape.columns.size() != rows_->shape.columns.size()) {
    // Somebody changed the table between the opening and now.
    raiseAdo(AdoError::illegalOperation);
  }
  auto own = std::exchange(rows_->rows, std::move(result.rowSets.front()->rows));
  fetched_ = true;
  if (own.rows() == 0) return;
  const auto key = keyColumns(*session_, rows_->shape);
  if (key.empty()) {
    // The own rows are among the fetched ones and cannot be told from them; servers add at the end.
    position_ = rows_->rows.rows() == 0 ? 0 : rows_->rows.rows() - std::min(rows_->rows.rows(), own.rows() - position_);
    return;
  }
  for (std::size_t row = 0; row < own.rows(); ++row) placeOwnRow(own, row, key);
  position_ += rows_->rows.rows() - own.rows();
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

void OdbcRecordset::fetchBeforeOwn() {
  if (rows_ && rows_->rows.rows() > 0) fetch();
}

void OdbcRecordset::close() {
  requireOpen();
  if (editMode_ != EditMode::none) raiseAdo(AdoError::illegalOperation);
  take({});
}

void OdbcRecordset::setCursorLocation(CursorLocation location) {
  if (location != CursorLocation::server && location != CursorLocation::client) raiseAdo(AdoError::invalidArgument);
  location_ = location;
}

void OdbcRecordset::requireOpen() const {
  if (!rows_) raiseAdo(AdoError::objectClosed);
}

void OdbcRecordset::requireUpdatable() const {
  requireOpen();
  if (detached_) raiseAdo(AdoError::invalidConnection);
  if (readOnly_ || rows_->shape.table.empty()) raiseAdo(AdoError::featureNotAvailable);
}

bool OdbcRecordset::hasRow(std::size_t position) {
  if (filter_) return position < visible_.size();
  if (position < rows_->rows.rows()) return true;
  fetch();
  return position < rows_->rows.rows();
}

std::size_t OdbcRecordset::count() {
  if (filter_) return visible_.size();
  fetch();
  return rows_->rows.rows();
}

bool OdbcRecordset::bof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasRow(0);
}

bool OdbcRecordset::eof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasRow(position_);
}

std::int32_t OdbcRecordset::recordCount() {
  requireOpen();
  if (countless_) return -1;
  fetchBeforeOwn();
  return static_cast<std::int32_t>(count());
}

void OdbcRecordset::postPending() {
  if (editMode_ != EditMode::none) update();
}

void OdbcRecordset::moveFirst() {
  requireOpen();
  postPending();
  fetchBeforeOwn();
  if (!hasRow(0)) raiseAdo(AdoError::noCurrentRecord);
  position_ = 0;
}

void OdbcRecordset::moveNext() {
  requireOpen();
  postPending();
  fetchBeforeOwn();
  if (!hasRow(position_)) raiseAdo(AdoError::noCurrentRecord);
  ++position_;
}

void OdbcRecordset::moveLast() {
  requireOpen();
  postPending();
  fetchBeforeOwn();
  const auto rows = count();
  if (rows == 0) raiseAdo(AdoError::noCurrentRecord);
  position_ = rows - 1;
}

const std::vector<FieldInfo>& OdbcRecordset::fields() {
  requireOpen();
  return rows_->shape.fields;
}

std::size_t OdbcRecordset::fieldIndex(std::string_view name) const {
  const auto& all = rows_->shape.fields;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const FieldInfo& field) { return rowset::sameName(field.name, name); });
  if (found == all.end()) raiseAdo(AdoError::itemNotFound);
  return static_cast<std::size_t>(found - all.begin());
}

std::size_t OdbcRecordset::currentRow(std::string_view source) {
  if (!hasRow(position_)) raiseAdo(AdoError::noCurrentRecord, source);
  return rowAt(position_);
}

Value OdbcRecordset::value(std::size_t index) {
  requireOpen();
  if (index >= rows_->shape.fields.size()) raiseAdo(AdoError::itemNotFound);
  const auto edit = edits_.find(index);
  if (edit != edits_.end()) return pendingValue(edit->second);
  if (editMode_ == EditMode::add) return Null{};
  return toValue(rows_->rows, currentRow(rowset::fieldSource), index, column(index));
}

Value OdbcRecordset::value(std::string_view name) {
  requireOpen();
  return value(fieldIndex(name));
}

void OdbcRecordset::addNew() {
  requireUpdatable();
  postPending();
  editMode_ = EditMode::add;
}

std::size_t OdbcRecordset::editedField(std::string_view name) {
  requireUpdatable();
  const auto index = fieldIndex(name);
  if (editMode_ == EditMode::none) (void)currentRow(rowset::fieldSource);
  if (column(index).base.empty() || column(index).identity) throw rowset::doesNotFit();
  return index;
}

void OdbcRecordset::setValue(std::string_view name, const Value& value) {
  const auto index = editedField(name);
  edits_.insert_or_assign(index, editOf(value, column(index)));
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void OdbcRecordset::appendChunk(std::string_view name, const Value& chunk) {
  const auto index = editedField(name);
  const auto& target = column(index);
  if (!target.isLong()) raiseAdo(AdoError::illegalOperation, rowset::fieldSource);
  const auto before = edits_.find(index);
  if (target.isBinary()) {
    auto bytes = bytesOf(chunk);
    if (!bytes) raiseAdo(AdoError::invalidArgument, rowset::fieldSource);
    if (before != edits_.end() && before->second.isDocument) {
      before->second.chunks.push_back(std::move(*bytes));
    } else {
      edits_.insert_or_assign(index, editOf(std::move(*bytes), target));
    }
  } else {
    auto text = toText(chunk);
    if (before != edits_.end() && before->second.value.get<std::string>()) {
      text.insert(0, *before->second.value.get<std::string>());
    }
    edits_.insert_or_assign(index, editOf(Value(std::move(text)), target));
  }
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void OdbcRecordset::update() {
  requireOpen();
  if (editMode_ == EditMode::none) return;
  if (editMode_ == EditMode::add) {
    postNew();
  } else {
    updateRow(*session_, *rows_, source_, currentRow(rowset::recordsetSource), edits_);
  }
  editMode_ = EditMode::none;
  edits_.clear();
}

void OdbcRecordset::postNew() {
  const auto row = insertRow(*session_, *rows_, edits_);
  if (filter_) {
    visible_.push_back(row);
    position_ = visible_.size() - 1;
  } else {
    position_ = row;
  }
}

void OdbcRecordset::cancelUpdate() {
  requireOpen();
  editMode_ = EditMode::none;
  edits_.clear();
}

void OdbcRecordset::setFilter(const std::string& criteria) {
  requireOpen();
  postPending();
  fetch();
  const bool none = criteria.find_first_not_of(' ') == std::string::npos;
  if (none) {
    if (!criteria.empty()) raiseAdo(AdoError::invalidArgument);
    filter_.reset();
    visible_.clear();
    position_ = 0;
    return;
  }
  rowset::Filter filter(criteria, rows_->shape.fields, clientTextOrder());
  std::vector<std::size_t> visible;
  for (std::size_t row = 0; row < rows_->rows.rows(); ++row) {
    const auto valueAt = [&](std::size_t index) { return toValue(rows_->rows, row, index, column(index)); };
    if (filter.accepts(valueAt)) visible.push_back(row);
  }
  filter_ = std::move(filter);
  visible_ = std::move(visible);
  position_ = 0;
}

void OdbcRecordset::detach() {
  if (editMode_ != EditMode::none || (rows_ && location_ != CursorLocation::client))
    raiseAdo(AdoError::illegalOperation);
  if (rows_) fetch();
  later_.clear();
  detached_ = true;
  session_.reset();
}

std::shared_ptr<Recordset> OdbcRecordset::nextRecordset() {
  if (detached_) raiseAdo(AdoError::invalidConnection);
  if (later_.empty()) return nullptr;
  BatchResult rest;
  rest.rowSets = std::exchange(later_, {});
  return of(session_, std::move(rest));
}

}  // namespace tolvane::odbc
