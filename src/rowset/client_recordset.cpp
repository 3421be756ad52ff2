#include "rowset/client_recordset.h"

#include <algorithm>
#include <utility>

#include "platform/names.h"
#include "rowset/server_errors.h"

namespace tolvane::rowset {

void raiseAdo(AdoError error, std::string_view source) {
  throw AutomationError(error, std::string(source));
}

void ClientRecordset::requireClosed() const {
  if (hasRows()) raiseAdo(AdoError::objectOpen, recordsetSource);
  requireConnection();
}

void ClientRecordset::requireConnection() const {
  if (detached_) raiseAdo(AdoError::invalidConnection, recordsetSource);
}

void ClientRecordset::opened(CursorType cursorType, LockType lockType) {
  readOnly_ = lockType == LockType::readOnly || lockType == LockType::unspecified;
  const bool forward = cursorType == CursorType::forwardOnly || cursorType == CursorType::dynamic ||
                       cursorType == CursorType::unspecified;
  countless_ = location_ == CursorLocation::server && forward;
}

void ClientRecordset::restart() {
  position_ = 0;
  filter_.reset();
  visible_.clear();
  editMode_ = EditMode::none;
  forgetEdits();
}

void ClientRecordset::close() {
  requireOpen();
  if (editMode_ != EditMode::none) raiseAdo(AdoError::illegalOperation, recordsetSource);
  restart();
  release();
}

void ClientRecordset::setCursorLocation(CursorLocation location) {
  if (location != CursorLocation::server && location != CursorLocation::client) {
    raiseAdo(AdoError::invalidArgument, recordsetSource);
  }
  location_ = location;
}

void ClientRecordset::requireOpen() const {
  if (!hasRows()) raiseAdo(AdoError::objectClosed, recordsetSource);
}

void ClientRecordset::requireUpdatable() const {
  requireOpen();
  requireConnection();
  if (readOnly_ || !canPost()) raiseAdo(AdoError::featureNotAvailable, recordsetSource);
}

void ClientRecordset::requireRow(std::size_t position) {
  if (!hasVisible(position)) raiseAdo(AdoError::noCurrentRecord, recordsetSource);
}

bool ClientRecordset::hasVisible(std::size_t position) {
  return filter_ ? position < visible_.size() : reaches(position);
}

std::size_t ClientRecordset::visibleCount() {
  return filter_ ? visible_.size() : readAll();
}

bool ClientRecordset::bof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasVisible(0);
}

bool ClientRecordset::eof() {
  requireOpen();
  return editMode_ != EditMode::add && !hasVisible(position_);
}

std::int32_t ClientRecordset::recordCount() {
  requireOpen();
  if (countless_) return -1;
  readBeforeOwn();
  return static_cast<std::int32_t>(visibleCount());
}

void ClientRecordset::postPending() {
  if (editMode_ != EditMode::none) update();
}

void ClientRecordset::moveFirst() {
  requireOpen();
  postPending();
  readBeforeOwn();
  requireRow(0);
  position_ = 0;
}

void ClientRecordset::moveNext() {
  requireOpen();
  postPending();
  readBeforeOwn();
  requireRow(position_);
  ++position_;
}

void ClientRecordset::moveLast() {
  requireOpen();
  postPending();
  readBeforeOwn();
  requireRow(0);
  position_ = visibleCount() - 1;
}

const std::vector<FieldInfo>& ClientRecordset::fields() {
  requireOpen();
  return columns();
}

std::size_t ClientRecordset::fieldIndex(std::string_view name) const {
  const auto& all = columns();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const FieldInfo& field) { return sameName(field.name, name); });
  if (found == all.end()) raiseAdo(AdoError::itemNotFound, recordsetSource);
  return static_cast<std::size_t>(found - all.begin());
}

std::size_t ClientRecordset::currentRow(std::string_view source) {
  if (!hasVisible(position_)) raiseAdo(AdoError::noCurrentRecord, source);
  const auto row = filter_ ? visible_[position_] : position_;
  setCurrent(row);
  return row;
}

Value ClientRecordset::value(std::size_t index) {
  requireOpen();
  if (index >= columns().size()) raiseAdo(AdoError::itemNotFound, recordsetSource);
  if (editMode_ != EditMode::none && isEdited(index)) return editedValue(index);
  if (editMode_ == EditMode::add) return Null{};
  return storedValue(currentRow(fieldSource), index);
}

Value ClientRecordset::value(std::string_view name) {
  requireOpen();
  return value(fieldIndex(name));
}

void ClientRecordset::addNew() {
  requireUpdatable();
  postPending();
  editMode_ = EditMode::add;
}

std::size_t ClientRecordset::settableField(std::string_view name) {
  requireUpdatable();
  const auto index = fieldIndex(name);
  if (editMode_ == EditMode::none) (void)currentRow(fieldSource);
  if (!canSet(index)) throw doesNotFit();
  return index;
}

void ClientRecordset::setValue(std::string_view name, const Value& value) {
  edit(settableField(name), value);
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void ClientRecordset::appendChunk(std::string_view name, const Value& chunk) {
  const auto index = settableField(name);
  if (!isLong(index)) raiseAdo(AdoError::illegalOperation, fieldSource);
  append(index, chunk);
  if (editMode_ == EditMode::none) editMode_ = EditMode::inProgress;
}

void ClientRecordset::update() {
  requireOpen();
  if (editMode_ == EditMode::none) return;
  if (editMode_ == EditMode::add) {
    const auto row = postNew();
    if (filter_) visible_.push_back(row);
    position_ = filter_ ? visible_.size() - 1 : row;
  } else {
    postChanges(currentRow(recordsetSource));
  }
  editMode_ = EditMode::none;
  forgetEdits();
}

void ClientRecordset::cancelUpdate() {
  requireOpen();
  editMode_ = EditMode::none;
  forgetEdits();
}

void ClientRecordset::setFilter(const std::string& criteria) {
  requireOpen();
  postPending();
  readBeforeOwn();
  const bool none = criteria.find_first_not_of(' ') == std::string::npos;
  if (none) {
    if (!criteria.empty()) raiseAdo(AdoError::invalidArgument, recordsetSource);
    filter_.reset();
    visible_.clear();
    position_ = 0;
    return;
  }
  Filter filter(criteria, columns(), textOrder());
  std::vector<std::size_t> visible;
  const auto rows = readAll();
  for (std::size_t row = 0; row < rows; ++row) {
    if (filter.accepts([&](std::size_t column) { return storedValue(row, column); })) visible.push_back(row);
  }
  filter_ = std::move(filter);
  visible_ = std::move(visible);
  position_ = 0;
}

void ClientRecordset::detach() {
  const bool elsewhere = hasRows() && location_ != CursorLocation::client;
  if (editMode_ != EditMode::none || elsewhere) raiseAdo(AdoError::illegalOperation, recordsetSource);
  releaseConnection();
  detached_ = true;
}

}  // namespace tolvane::rowset
