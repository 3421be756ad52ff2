#include "embedded/embedded_recordset.h"

#include <algorithm>
#include <utility>

#include "embedded/account_set_collation.h"
#include "embedded/errors.h"
#include "embedded/source_text.h"
#include "embedded/values.h"
#include "platform/conversions.h"
#include "rowset/utf8.h"
#include "tsql/catalogue.h"

namespace tolvane::embedded {
namespace {

[[noreturn]] void raiseAdo(AdoError error, std::string_view source = recordsetSource) {
  throw AutomationError(error, std::string(source));
}

// The bytes of a document given as bytes, as an array of byte values or as an empty text, which has none; nothing when
// it is none of these.
std::optional<Bytes> bytesOf(const Value& value) {
  if (const auto* bytes = value.get<Bytes>()) return *bytes;
  if (const auto* text = value.get<std::string>(); text && text->empty()) return Bytes();
  const auto* array = value.array();
  if (!array || array->bounds.size() != 1 || array->elementType != ValueType::byte) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(array->elements.size());
  for (const auto& element : array->elements) bytes.push_back(toByte(element));
  return Bytes(std::move(bytes));
}

FieldEdit editOf(const Value& value, const tsql::Type& type) {
  FieldEdit edit;
  if (!type.isBinary()) {
    edit.value = toStored(value, type);
    const bool isText = edit.value.kind() == tsql::Kind::Text;
    if (isText && rowset::invalidUtf8(edit.value.text()) != std::string::npos) raiseAdo(AdoError::dataConversion);
    return edit;
  }
  if (value.isNull() || value.isEmpty()) return edit;
  auto bytes = bytesOf(value);
  if (!bytes) raiseAdo(AdoError::dataConversion);
  if (!type.isLong() && bytes->size() > static_cast<std::size_t>(type.length)) throw doesNotFit();
  edit.isDocument = true;
  edit.chunks.push_back(std::move(*bytes));
  return edit;
}

Bytes joined(const FieldEdit& edit) {
  if (edit.chunks.size() == 1) return edit.chunks.front();
  return Bytes::filled(edit.documentSize(), [&](std::span<std::uint8_t> to) {
    auto at = to.begin();
    for (const auto& chunk : edit.chunks) at = std::copy(chunk.view().begin(), chunk.view().end(), at);
  });
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
  position_ = 0;
  filter_.reset();
  visible_.clear();
  editMode_ = EditMode::none;
  edits_.clear();
  later_ = std::move(result.rowSets);
  if (later_.empty()) return;
  rows_ = std::move(later_.front());
  later_.erase(later_.begin());
}

void EmbeddedRecordset::open(const std::string& source, CursorType cursorType, LockType lockType,
                             std::int32_t options) {
  if (rows_) raiseAdo(AdoError::objectOpen);
  if (detached_) raiseAdo(AdoError::invalidConnection);
  take(runBatch(session_, statementOf(source, options, session_->catalogue()), {}, FirstRead::whenAsked));
  readOnly_ = lockType == LockType::readOnly || lockType == LockType::unspecified;
  const bool forward = cursorType == CursorType::forwardOnly || cursorType == CursorType::dynamic ||
                       cursorType == CursorType::unspecified;
  countless_ = location_ == CursorLocation::server && forward;
}

void EmbeddedRecordset::close() {
  requireOpen();
  if (editMode_ != EditMode::none) raiseAdo(AdoError::illegalOperation);
  take({});
  rows_.reset();
}

void EmbeddedRecordset::setCursorLocation(CursorLocation location) {
  if (location != CursorLocation::server && location != CursorLocation::client) raiseAdo(AdoError::invalidArgument);
  location_ = location;
}

void EmbeddedRecordset::requireOpen() const {
  if (!rows_) raiseAdo(AdoError::objectClosed);
}

void EmbeddedRecordset::requireUpdatable() const {
  requireOpen();
  if (detached_) raiseAdo(AdoError::invalidConnection);
  if (readOnly_ || !rows_->shape().hasRows()) raiseAdo(AdoError::featureNotAvailable);
}

bool EmbeddedRecordset::hasRow(std::size_t position) {
  return filter_ ? position < visible_.size() : rows_->has(position);
}

std::size_t EmbeddedRecordset::count() {
  return filter_ ? visible_.size() : rows_->readAll();
}

bool EmbeddedRecordset::bof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasRow(0);
}

bool EmbeddedRecordset::eof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasRow(position_);
}

std::int32_t EmbeddedRecordset::recordCount() {
  requireOpen();
  if (countless_) return -1;
  putOwnRowsLast();
  return static_cast<std::int32_t>(count());
}

// Rows that were added before any row was read stand behind all others, once the others are asked for.
void EmbeddedRecordset::putOwnRowsLast() {
  if (rows_) position_ += rows_->readBeforeOwn();
}

void EmbeddedRecordset::postPending() {
  if (editMode_ != EditMode::none) update();
}

void EmbeddedRecordset::moveFirst() {
  requireOpen();
  postPending();
  putOwnRowsLast();
  if (!hasRow(0)) raiseAdo(AdoError::noCurrentRecord);
  position_ = 0;
}

void EmbeddedRecordset::moveNext() {
  requireOpen();
  postPending();
  putOwnRowsLast();
  if (!hasRow(position_)) raiseAdo(AdoError::noCurrentRecord);
  ++position_;
}

void EmbeddedRecordset::moveLast() {
  requireOpen();
  postPending();
  putOwnRowsLast();
  const auto rows = count();
  if (rows == 0) raiseAdo(AdoError::noCurrentRecord);
  position_ = rows - 1;
}

const std::vector<FieldInfo>& EmbeddedRecordset::fields() {
  requireOpen();
  return rows_->shape().fields;
}

std::size_t EmbeddedRecordset::fieldIndex(std::string_view name) const {
  const auto& all = rows_->shape().fields;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const FieldInfo& field) { return tsql::sameName(field.name, name); });
  if (found == all.end()) raiseAdo(AdoError::itemNotFound);
  return static_cast<std::size_t>(found - all.begin());
}

std::size_t EmbeddedRecordset::currentRow(std::string_view source) {
  if (!hasRow(position_)) raiseAdo(AdoError::noCurrentRecord, source);
  const auto row = rowAt(position_);
  rows_->setCurrent(row);
  return row;
}

Value EmbeddedRecordset::pendingValue(std::size_t index) const {
  const auto& edit = edits_.at(index);
  if (edit.isDocument) return joined(edit);
  return toValue(cellOf(edit.value), rows_->shape().columns[index].type);
}

Value EmbeddedRecordset::value(std::size_t index) {
  requireOpen();
  if (index >= rows_->shape().fields.size()) raiseAdo(AdoError::itemNotFound);
  if (edits_.contains(index)) return pendingValue(index);
  if (editMode_ == EditMode::add) return Null{};
  return rows_->value(currentRow(fieldSource), index);
}

Value EmbeddedRecordset::value(std::string_view name) {
  requireOpen();
  return value(fieldIndex(name));
}

void EmbeddedRecordset::addNew() {
  requireUpdatable();
  postPending();
  editMode_ = EditMode::add;
}

std::size_t EmbeddedRecordset::editedField(std::string_view name) {
  requireUpdatable();
  const auto index = fieldIndex(name);
  if (editMode_ == EditMode::none) (void)currentRow(fieldSource);
  const auto& column = rows_->shape().columns[index];
  if (column.column.empty() || column.identity) throw doesNotFit();
  return index;
}

void EmbeddedRecordset::setValue(std::string_view name, const Value& value) {
  const auto index = editedField(name);
  auto edit = editOf(value, rows_->shape().columns[index].type);
  edits_.insert_or_assign(index, std::move(edit));
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void EmbeddedRecordset::appendChunk(std::string_view name, const Value& chunk) {
  const auto index = editedField(name);
  const auto& type = rows_->shape().columns[index].type;
  if (!type.isLong()) raiseAdo(AdoError::illegalOperation, fieldSource);
  const auto before = edits_.find(index);
  if (type.isBinary()) {
    auto bytes = bytesOf(chunk);
    if (!bytes) raiseAdo(AdoError::invalidArgument, fieldSource);
    if (before == edits_.end() || !before->second.isDocument) {
      edits_.insert_or_assign(index, editOf(*bytes, type));
    } else {
      before->second.chunks.push_back(std::move(*bytes));
    }
  } else {
    auto text = toText(chunk);
    if (before != edits_.end() && before->second.value.kind() == tsql::Kind::Text)
      text.insert(0, before->second.value.text());
    edits_.insert_or_assign(index, editOf(Value(std::move(text)), type));
  }
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void EmbeddedRecordset::update() {
  requireOpen();
  if (editMode_ == EditMode::none) return;
  if (editMode_ == EditMode::add) {
    postNew();
  } else {
    postChanges();
  }
  editMode_ = EditMode::none;
  edits_.clear();
}

void EmbeddedRecordset::postNew() {
  const auto number = insertRow(*session_, rows_->shape(), edits_, rows_->sql(), *rows_);
  const auto row = rows_->addOwn(number);
  (void)rows_->reread(row);
  if (filter_) {
    visible_.push_back(row);
    position_ = visible_.size() - 1;
  } else {
    position_ = row;
  }
}

void EmbeddedRecordset::postChanges() {
  const auto row = currentRow(recordsetSource);
  updateRow(*session_, rows_->shape(), rows_->rowNumber(row), edits_, rows_->sql(), *rows_);
  (void)rows_->reread(row);
}

void EmbeddedRecordset::cancelUpdate() {
  requireOpen();
  editMode_ = EditMode::none;
  edits_.clear();
}

void EmbeddedRecordset::setFilter(const std::string& criteria) {
  requireOpen();
  postPending();
  putOwnRowsLast();
  const bool none = criteria.find_first_not_of(' ') == std::string::npos;
  if (none) {
    if (!criteria.empty()) raiseAdo(AdoError::invalidArgument);
    filter_.reset();
    visible_.clear();
    position_ = 0;
    return;
  }
  rowset::Filter filter(criteria, rows_->shape().fields, accountSetTextOrder());
  std::vector<std::size_t> visible;
  const auto rows = rows_->readAll();
  for (std::size_t row = 0; row < rows; ++row) {
    if (filter.accepts([&](std::size_t column) { return rows_->value(row, column); })) visible.push_back(row);
  }
  filter_ = std::move(filter);
  visible_ = std::move(visible);
  position_ = 0;
}

void EmbeddedRecordset::detach() {
  if (editMode_ != EditMode::none || (rows_ && location_ != CursorLocation::client))
    raiseAdo(AdoError::illegalOperation);
  if (rows_) {
    putOwnRowsLast();
    rows_->detach();
  }
  later_.clear();
  detached_ = true;
  session_.reset();
}

std::shared_ptr<Recordset> EmbeddedRecordset::nextRecordset() {
  if (detached_) raiseAdo(AdoError::invalidConnection);
  if (later_.empty()) return nullptr;
  return of(session_, {std::exchange(later_, {})});
}

}  // namespace tolvane::embedded
