#include "standalone_com/recordset_object.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/names.h"
#include "rowset/server_errors.h"
#include "standalone_com/ado_arguments.h"
#include "standalone_com/command_objects.h"
#include "standalone_com/field_objects.h"

namespace tolvane::standalone_com {
namespace {

using automation::ComPtr;
using automation::makeObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;
using rowset::recordsetSource;

enum : DISPID {
  fieldsMember = DISPID_VALUE,
  activeConnectionMember = 1001,
  bof = 1002,
  cursorTypeMember = 1005,
  eof = 1006,
  lockTypeMember = 1008,
  recordCount = 1010,
  sourceMember = 1011,
  addNew = 1012,
  cancelUpdate = 1013,
  closeMember = 1014,
  getRows = 1016,
  moveNext = 1018,
  moveFirst = 1020,
  moveLast = 1021,
  openMember = 1022,
  updateMember = 1025,
  editMode = 1026,
  filterMember = 1030,
  cursorLocationMember = 1051,
  nextRecordsetMember = 1052,
  state = 1054,
};
constexpr std::array recordsetMembers{
    Member{L"Fields", fieldsMember},
    Member{L"EOF", eof},
    Member{L"MoveNext", moveNext},
    Member{L"BOF", bof},
    Member{L"RecordCount", recordCount},
    Member{L"Open", openMember},
    Member{L"Close", closeMember},
    Member{L"State", state},
    Member{L"MoveFirst", moveFirst},
    Member{L"MoveLast", moveLast},
    Member{L"AddNew", addNew},
    Member{L"Update", updateMember},
    Member{L"CancelUpdate", cancelUpdate},
    Member{L"EditMode", editMode},
    Member{L"Filter", filterMember},
    Member{L"ActiveConnection", activeConnectionMember},
    Member{L"CursorLocation", cursorLocationMember},
    Member{L"CursorType", cursorTypeMember},
    Member{L"LockType", lockTypeMember},
    Member{L"Source", sourceMember},
    Member{L"NextRecordset", nextRecordsetMember},
    Member{L"GetRows", getRows},
};

/// The items of an argument that is one value or an array of them.
std::vector<Value> listOf(const Value& value) {
  const Array* array = value.array();
  return array ? array->elements : std::vector<Value>{value};
}

/// Members that the set may come to another row by, or to other content of the same.
bool mayLeaveRow(DISPID member) {
  switch (member) {
    case moveFirst:
    case moveNext:
    case moveLast:
    case addNew:
    case updateMember:
    case cancelUpdate:
    case filterMember:
      return true;
    default:
      return false;
  }
}

}  // namespace

Recordset& RecordsetObject::rows() const {
  if (!rows_) raiseAdo(AdoError::objectClosed, recordsetSource);
  return *rows_;
}

void RecordsetObject::requireClosed() const {
  if (isOpen()) raiseAdo(AdoError::objectOpen, recordsetSource);
}

std::size_t RecordsetObject::fieldIndex(const Value& nameOrPosition) const {
  const auto& all = rows().fields();
  if (const auto* name = nameOrPosition.get<std::string>()) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const FieldInfo& field) { return sameName(field.name, *name); });
    if (found == all.end()) raiseAdo(AdoError::itemNotFound, recordsetSource);
    return static_cast<std::size_t>(found - all.begin());
  }
  const std::int32_t position = toInt32(nameOrPosition);
  if (position < 0 || static_cast<std::size_t>(position) >= all.size()) {
    raiseAdo(AdoError::itemNotFound, recordsetSource);
  }
  return static_cast<std::size_t>(position);
}

void RecordsetObject::setField(std::size_t index, const Value& value) const {
  Recordset& set = rows();
  set.setValue(set.fields().at(index).name, value);
}

CursorLocation RecordsetObject::cursorLocation() const {
  if (cursorLocation_) return *cursorLocation_;
  return connection_ ? connection_->cursorLocation() : CursorLocation::server;
}

CursorType RecordsetObject::cursorType() const {
  // On the client there are static cursors only.
  return isOpen() && cursorLocation() == CursorLocation::client ? CursorType::fixed : cursorType_;
}

void RecordsetObject::open(const MemberCall& call) {
  requireClosed();
  if (call.given(1)) connection_ = ConnectionObject::of(suite_, call.value(1), recordsetSource);
  const Value type = call.value(2, static_cast<std::int32_t>(cursorType_));
  const Value lock = call.value(3, static_cast<std::int32_t>(lockType_));
  cursorType_ = enumerationOf(type, CursorType::unspecified, CursorType::fixed, recordsetSource);
  lockType_ = enumerationOf(lock, LockType::unspecified, LockType::batchOptimistic, recordsetSource);
  openSource(call.value(0, source_), toInt32(call.value(4, unspecifiedOptions)));
}

void RecordsetObject::openSource(const Value& source, std::int32_t options) {
  std::shared_ptr<Recordset> fresh;
  if (source.isObject()) {
    const auto command = objectOfClass<CommandObject>(source, recordsetSource);
    fresh = command->run(connection_);
    connection_ = command->connection();
    source_ = command->text();
  } else {
    if (!connection_) raiseAdo(AdoError::invalidConnection, recordsetSource);
    source_ = toText(source);
    fresh = connection_->opened(recordsetSource).newRecordset();
    fresh->setCursorLocation(cursorLocation());
    fresh->open(source_, cursorType_, lockType_, options);
  }
  rows_ = std::move(fresh);
  filter_.clear();
}

void RecordsetObject::close() {
  rows().close();
  rows_.reset();
  filter_.clear();
  ++opening_;
}

Variant RecordsetObject::fields(const MemberCall& call) {
  const std::size_t indexes = call.isPut() ? call.count() - 1 : call.count();
  if (indexes == 0 && !call.isPut()) return makeObject<FieldsObject>(ComPtr<RecordsetObject>(this));
  if (indexes != 1) raise(RuntimeError::wrongArgumentCount);
  const std::size_t index = fieldIndex(call.value(0));
  if (!call.isPut()) return makeObject<FieldObject>(ComPtr<RecordsetObject>(this), index);
  setField(index, call.keptValue(1));
  return {};
}

Variant RecordsetObject::activeConnection(const MemberCall& call) {
  if (!call.isPut()) return connection_;
  setActiveConnection(ConnectionObject::of(suite_, call.value(0), recordsetSource));
  return {};
}

void RecordsetObject::setActiveConnection(ComPtr<ConnectionObject> connection) {
  if (connection.get() == connection_.get()) return;
  if (connection) {
    requireClosed();
  } else if (rows_) {
    rows_->detach();
    cursorLocation_ = cursorLocation();
  }
  connection_ = std::move(connection);
}

Variant RecordsetObject::filter(const MemberCall& call) {
  if (!call.isPut()) return filter_.empty() ? Variant(std::int32_t{0}) : Variant(filter_);
  const Value criteria = call.value(0);
  std::string text;
  if (const auto* given = criteria.get<std::string>()) {
    text = *given;
  } else if (toInt32(criteria) != 0) {
    // Other numbers and arrays of bookmarks are kinds of filter that these sets do not have.
    raiseAdo(AdoError::invalidArgument, recordsetSource);
  }
  rows().setFilter(text);
  filter_ = std::move(text);
  return {};
}

Variant RecordsetObject::source(const MemberCall& call) {
  if (!call.isPut()) return source_;
  requireClosed();
  const Value fresh = call.value(0);
  source_ = fresh.isObject() ? objectOfClass<CommandObject>(fresh, recordsetSource)->text() : toText(fresh);
  return {};
}

void RecordsetObject::setFields(const MemberCall& call) const {
  if (!call.given(0)) return;
  const auto names = listOf(call.value(0));
  const auto values = listOf(call.keptValue(1));
  if (names.size() != values.size()) raiseAdo(AdoError::invalidArgument, recordsetSource);
  for (std::size_t i = 0; i < names.size(); ++i) setField(fieldIndex(names[i]), values[i]);
}

Variant RecordsetObject::nextRecordset() const {
  auto next = rows().nextRecordset();
  if (!next) return Variant(static_cast<IDispatch*>(nullptr));
  return makeObject<RecordsetObject>(suite_, connection_, std::move(next));
}

Variant RecordsetObject::takeRows(const MemberCall& call) const {
  Recordset& set = rows();
  const std::int32_t most = toInt32(call.value(0, std::int32_t{-1}));
  if (set.eof()) raiseAdo(AdoError::noCurrentRecord, recordsetSource);
  Array result{ValueType::variant, {}, {}};
  const std::size_t columns = set.fields().size();
  std::uint32_t count = 0;
  for (; (most < 0 || count < static_cast<std::uint32_t>(most)) && !set.eof(); set.moveNext(), ++count) {
    for (std::size_t column = 0; column < columns; ++column) result.elements.push_back(set.value(column));
  }
  result.bounds = {{0, static_cast<std::uint32_t>(columns)}, {0, count}};
  return Variant::of(Value(std::move(result)));
}

Members RecordsetObject::members() const {
  return recordsetMembers;
}

Variant RecordsetObject::call(DISPID member, const MemberCall& call) {
  if (mayLeaveRow(member)) ++stop_;
  switch (member) {
    case fieldsMember:
      return fields(call);
    case eof:
      return rows().eof();
    case bof:
      return rows().bof();
    case moveNext:
      rows().moveNext();
      return {};
    case moveFirst:
      rows().moveFirst();
      return {};
    case moveLast:
      rows().moveLast();
      return {};
    case recordCount:
      return rows().recordCount();
    case openMember:
      open(call);
      return {};
    case closeMember:
      close();
      return {};
    case state:
      return static_cast<std::int32_t>(isOpen() ? ObjectState::open : ObjectState::closed);
    case addNew:
      rows().addNew();
      setFields(call);
      if (call.given(0)) rows().update();
      return {};
    case updateMember:
      setFields(call);
      rows().update();
      return {};
    case cancelUpdate:
      rows().cancelUpdate();
      return {};
    case editMode:
      return static_cast<std::int32_t>(rows().editMode());
    case filterMember:
      return filter(call);
    case activeConnectionMember:
      return activeConnection(call);
    case cursorLocationMember:
      if (!call.isPut()) return static_cast<std::int32_t>(cursorLocation());
      cursorLocation_ = cursorLocationOf(call.value(0), recordsetSource);
      return {};
    case cursorTypeMember:
      if (!call.isPut()) return static_cast<std::int32_t>(cursorType());
      requireClosed();
      cursorType_ = enumerationOf(call.value(0), CursorType::unspecified, CursorType::fixed, recordsetSource);
      return {};
    case lockTypeMember:
      if (!call.isPut()) return static_cast<std::int32_t>(lockType_);
      requireClosed();
      lockType_ = enumerationOf(call.value(0), LockType::unspecified, LockType::batchOptimistic, recordsetSource);
      return {};
    case sourceMember:
      return source(call);
    case nextRecordsetMember:
      return nextRecordset();
    case getRows:
      return takeRows(call);
    default:
      automation::raiseNoSuchMember();
  }
}

}  // namespace tolvane::standalone_com
