#include "standalone_com/command_objects.h"

#include <algorithm>
#include <array>
#include <utility>

#include "automation/foundation_objects.h"
#include "platform/names.h"
#include "rowset/server_errors.h"
#include "standalone_com/ado_arguments.h"
#include "standalone_com/recordset_object.h"

namespace tolvane::standalone_com {
namespace {

using automation::ComPtr;
using automation::makeObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;
using rowset::commandSource;

enum : DISPID {
  parameterValue = DISPID_VALUE,
  parameterName = 1,
  parameterType,
  parameterDirection,
  parameterSize = 6
};
constexpr std::array parameterMembers{
    Member{L"Value", parameterValue},         Member{L"Name", parameterName}, Member{L"Type", parameterType},
    Member{L"Direction", parameterDirection}, Member{L"Size", parameterSize},
};

enum : DISPID { itemMember = DISPID_VALUE, count = 1, append = 3, deleteMember = 4 };
constexpr std::array parametersMembers{
    Member{L"Append", append},           Member{L"Count", count},
    Member{L"Item", itemMember},         Member{L"Delete", deleteMember},
    Member{L"_NewEnum", DISPID_NEWENUM},
};

enum : DISPID {
  parametersMember = DISPID_VALUE,
  activeConnection = 1,
  commandText = 2,
  commandTimeoutMember = 3,
  executeMember = 5,
  createParameter = 6,
  commandTypeMember = 7,
};
constexpr std::array commandMembers{
    Member{L"ActiveConnection", activeConnection},
    Member{L"CommandText", commandText},
    Member{L"CommandType", commandTypeMember},
    Member{L"CommandTimeout", commandTimeoutMember},
    Member{L"CreateParameter", createParameter},
    Member{L"Parameters", parametersMember},
    Member{L"Execute", executeMember},
};

ParameterDirection directionOf(const Value& value) {
  const auto direction = static_cast<ParameterDirection>(toInt32(value));
  if (direction != ParameterDirection::input) raiseAdo(AdoError::badParameter, commandSource);
  return direction;
}

DataType typeOf(const Value& value) {
  return static_cast<DataType>(toInt32(value));
}

ComPtr<ParameterObject> newParameter(const MemberCall& call) {
  Parameter parameter;
  parameter.type = typeOf(call.value(1, std::int32_t{0}));
  parameter.direction = directionOf(call.value(2, std::int32_t{1}));
  parameter.size = toInt32(call.value(3, std::int32_t{0}));
  if (call.given(4)) parameter.value = call.keptValue(4);
  return makeObject<ParameterObject>(toText(call.value(0, "")), std::move(parameter));
}

}  // namespace

Members ParameterObject::members() const {
  return parameterMembers;
}

Variant ParameterObject::call(DISPID member, const MemberCall& call) {
  const bool puts = call.isPut();
  switch (member) {
    case parameterValue:
      if (!puts) return Variant::of(Value(parameter_.value));
      setValue(call.keptValue(0));
      return {};
    case parameterName:
      if (!puts) return name_;
      name_ = toText(call.value(0));
      return {};
    case parameterType:
      if (!puts) return static_cast<std::int32_t>(parameter_.type);
      parameter_.type = typeOf(call.value(0));
      return {};
    case parameterDirection:
      if (!puts) return static_cast<std::int32_t>(parameter_.direction);
      parameter_.direction = directionOf(call.value(0));
      return {};
    case parameterSize:
      if (!puts) return parameter_.size;
      parameter_.size = toInt32(call.value(0));
      return {};
    default:
      automation::raiseNoSuchMember();
  }
}

std::size_t ParametersObject::indexOf(const Value& nameOrPosition) const {
  auto found = list_->end();
  if (const auto* name = nameOrPosition.get<std::string>()) {
    found = std::find_if(list_->begin(), list_->end(),
                         [&](const ComPtr<ParameterObject>& parameter) { return sameName(parameter->name(), *name); });
  } else if (const auto position = toInt32(nameOrPosition);
             position >= 0 && static_cast<std::size_t>(position) < list_->size()) {
    found = list_->begin() + position;
  }
  if (found == list_->end()) raiseAdo(AdoError::itemNotFound, commandSource);
  return static_cast<std::size_t>(found - list_->begin());
}

Variant ParametersObject::item(const MemberCall& call) const {
  const auto& parameter = (*list_)[indexOf(call.value(0))];
  if (!call.isPut()) return parameter;
  parameter->setValue(call.keptValue(1));
  return {};
}

Members ParametersObject::members() const {
  return parametersMembers;
}

Variant ParametersObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case append:
      list_->push_back(objectOfClass<ParameterObject>(call.value(0), commandSource));
      return {};
    case count:
      return static_cast<std::int32_t>(list_->size());
    case itemMember:
      return item(call);
    case deleteMember:
      list_->erase(list_->begin() + static_cast<std::ptrdiff_t>(indexOf(call.value(0))));
      return {};
    case DISPID_NEWENUM:
      return automation::enumerationResult(
          [list = list_] { return static_cast<std::int32_t>(list->size()); },
          [list = list_](std::int32_t index) { return Variant(list->at(static_cast<std::size_t>(index) - 1)); });
    default:
      automation::raiseNoSuchMember();
  }
}

std::shared_ptr<Recordset> CommandObject::run(const ComPtr<ConnectionObject>& otherwise) {
  if (!connection_) connection_ = otherwise;
  if (!connection_) raiseAdo(AdoError::invalidConnection, commandSource);
  const auto command = connection_->opened(commandSource).newCommand();
  command->setCommandText(text_);
  command->setCommandType(type_);
  command->setCommandTimeout(timeout_);
  for (const auto& parameter : *parameters_) command->appendParameter(parameter->parameter());
  return command->execute();
}

Variant CommandObject::execute(const MemberCall& call) {
  auto result = run({});
  if (call.given(0)) call.giveBack(0, connection_->recordsAffected(result));
  return makeObject<RecordsetObject>(suite_, connection_, std::move(result));
}

Variant CommandObject::commandType(const MemberCall& call) {
  if (!call.isPut()) return static_cast<std::int32_t>(type_);
  type_ = enumerationOf(call.value(0), CommandType::unspecified, CommandType::unknown, commandSource);
  return {};
}

Variant CommandObject::commandTimeout(const MemberCall& call) {
  if (!call.isPut()) return timeout_;
  const std::int32_t seconds = toInt32(call.value(0));
  if (seconds < 0) raiseAdo(AdoError::invalidArgument, commandSource);
  timeout_ = seconds;
  return {};
}

Members CommandObject::members() const {
  return commandMembers;
}

Variant CommandObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case activeConnection:
      if (!call.isPut()) return connection_;
      connection_ = ConnectionObject::of(suite_, call.value(0), commandSource);
      return {};
    case commandText:
      if (!call.isPut()) return text_;
      text_ = toText(call.value(0));
      return {};
    case commandTypeMember:
      return commandType(call);
    case commandTimeoutMember:
      return commandTimeout(call);
    case createParameter:
      return newParameter(call);
    case parametersMember: {
      const auto all = makeObject<ParametersObject>(parameters_);
      return call.count() == 0 ? Variant(all) : all->item(call);
    }
    case executeMember:
      return execute(call);
    default:
      automation::raiseNoSuchMember();
  }
}

}  // namespace tolvane::standalone_com
