#include "suite/remote_recordset.h"

#include "platform/error.h"

namespace tolvane::suite {

using automation::LateBound;
using automation::Variant;

namespace {

// FieldAttributeEnum
constexpr std::int32_t isNullable = 0x20;
constexpr std::int32_t mayBeNull = 0x40;
constexpr std::int32_t isLong = 0x80;
// FilterGroupEnum
constexpr std::int32_t filterNone = 0;

FieldInfo describe(const LateBound& field, FieldMembers& members) {
  const std::int32_t attributes = readInt32(field, members.attributes);
  return {readText(field, members.name), static_cast<DataType>(readInt32(field, members.type)),
          (attributes & isLong) != 0 ? -1 : readInt32(field, members.definedSize),
          (attributes & (isNullable | mayBeNull)) != 0};
}

}  // namespace

void RemoteRecordset::open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) {
  // Without a connection the argument stays away, and ADO says itself that it needs one.
  Variant connection = connection_ ? Variant(connection_.get()) : Variant::missing();
  set_.call(ado_->recordset.open, source, std::move(connection), static_cast<std::int32_t>(cursorType),
            static_cast<std::int32_t>(lockType), options);
  forgetFields();
}

void RemoteRecordset::close() {
  set_.call(ado_->recordset.close);
  forgetFields();
}

ObjectState RemoteRecordset::state() const {
  const std::int32_t bits = readInt32(set_, ado_->recordset.state);
  return (bits & static_cast<std::int32_t>(ObjectState::open)) != 0 ? ObjectState::open : ObjectState::closed;
}

void RemoteRecordset::setCursorLocation(CursorLocation location) {
  set_.put(ado_->recordset.cursorLocation, static_cast<std::int32_t>(location));
}

bool RemoteRecordset::bof() {
  return readBoolean(set_, ado_->recordset.bof);
}

bool RemoteRecordset::eof() {
  return readBoolean(set_, ado_->recordset.eof);
}

std::int32_t RemoteRecordset::recordCount() {
  return readInt32(set_, ado_->recordset.recordCount);
}

void RemoteRecordset::moveFirst() {
  set_.call(ado_->recordset.moveFirst);
}

void RemoteRecordset::moveNext() {
  set_.call(ado_->recordset.moveNext);
}

void RemoteRecordset::moveLast() {
  set_.call(ado_->recordset.moveLast);
}

const std::vector<FieldInfo>& RemoteRecordset::fields() {
  if (!infos_.empty()) return infos_;
  if (!fields_) fields_ = readObject(set_, ado_->recordset.fields);
  const auto count = static_cast<std::size_t>(readInt32(fields_, ado_->fields.count));
  std::vector<FieldInfo> infos;
  infos.reserve(count);
  for (std::size_t i = 0; i < count; ++i) infos.push_back(describe(field(i), ado_->field));
  return infos_ = std::move(infos);
}

Value RemoteRecordset::value(std::size_t index) {
  return field(index).read(ado_->field.value).take();
}

Value RemoteRecordset::value(std::string_view name) {
  return field(name).read(ado_->field.value).take();
}

void RemoteRecordset::addNew() {
  set_.call(ado_->recordset.addNew);
}

void RemoteRecordset::setValue(std::string_view name, const Value& value) {
  field(name).put(ado_->field.value, Variant::lent(value));
}

void RemoteRecordset::appendChunk(std::string_view name, const Value& chunk) {
  field(name).call(ado_->field.appendChunk, Variant::lent(chunk));
}

void RemoteRecordset::update() {
  set_.call(ado_->recordset.update);
}

void RemoteRecordset::cancelUpdate() {
  set_.call(ado_->recordset.cancelUpdate);
}

EditMode RemoteRecordset::editMode() const {
  return static_cast<EditMode>(readInt32(set_, ado_->recordset.editMode));
}

void RemoteRecordset::setFilter(const std::string& criteria) {
  set_.put(ado_->recordset.filter, criteria.empty() ? Variant(filterNone) : Variant(criteria));
}

void RemoteRecordset::detach() {
  putReference(set_, ado_->recordset.activeConnection, nullptr);
  connection_ = {};
}

std::shared_ptr<Recordset> RemoteRecordset::nextRecordset() {
  LateBound next(set_.call(ado_->recordset.nextRecordset).object());
  forgetFields();  // ADO clears this set when it goes on to the next
  if (!next) return nullptr;
  return std::make_shared<RemoteRecordset>(ado_, std::move(next), connection_);
}

const LateBound& RemoteRecordset::field(std::size_t index) {
  if (index < byIndex_.size() && byIndex_[index]) return byIndex_[index];
  LateBound found = findField(static_cast<std::int32_t>(index));
  if (index >= byIndex_.size()) byIndex_.resize(index + 1);
  return byIndex_[index] = std::move(found);
}

const LateBound& RemoteRecordset::field(std::string_view name) {
  const auto known = byName_.find(name);
  if (known != byName_.end()) return known->second;
  return byName_.emplace(name, findField(name)).first->second;
}

template <typename Key>
LateBound RemoteRecordset::findField(Key key) {
  if (!fields_) fields_ = readObject(set_, ado_->recordset.fields);
  LateBound found(fields_.read(ado_->fields.item, key).object());
  if (!found) raise(RuntimeError::objectNotSet);
  return found;
}

void RemoteRecordset::forgetFields() {
  fields_ = {};
  byIndex_.clear();
  byName_.clear();
  infos_.clear();
}

}  // namespace tolvane::suite
