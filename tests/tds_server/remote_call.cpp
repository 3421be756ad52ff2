#include "tds_server/remote_call.h"

#include <utility>

#include "tds_server/wire_parameters.h"

namespace tolvane::tds {
namespace {

using tsql::TypeKind;

std::string nameOf(ProcedureNumber number) {
  switch (number) {
    case ProcedureNumber::executeSql:
      return "sp_executesql";
    case ProcedureNumber::prepare:
      return "sp_prepare";
    case ProcedureNumber::execute:
      return "sp_execute";
    case ProcedureNumber::prepareAndExecute:
      return "sp_prepexec";
    case ProcedureNumber::unprepare:
      return "sp_unprepare";
    case ProcedureNumber::cursorOpen:
    case ProcedureNumber::cursorClose:
      break;
  }
  return "sp_cursor";
}

}  // namespace

std::string CallParameter::text() const {
  return value.value.kind() == tsql::Kind::Text ? value.value.text() : std::string();
}

std::int64_t CallParameter::integer() const {
  return value.value.kind() == tsql::Kind::Integer ? value.value.integer() : 0;
}

bool CallParameter::isBeforeDateTime() const {
  return value.type.kind == TypeKind::DateTime && !value.value.isNull() && text() < "1753";
}

void skipHeaders(WireReader& reader) {
  const auto size = reader.number<std::uint32_t>();
  if (size < sizeof size) throw ProtocolError("headers without a length");
  (void)reader.take(size - sizeof size);
}

RemoteCall readCall(WireReader& reader) {
  RemoteCall call;
  const auto length = reader.number<std::uint16_t>();
  call.procedure = length == maxLengthMark ? nameOf(reader.number<ProcedureNumber>()) : reader.text(length);
  (void)reader.number<std::uint16_t>();
  while (!reader.atEnd()) {
    CallParameter parameter;
    parameter.name = reader.text(reader.number<std::uint8_t>());
    parameter.isOutput = (reader.number<std::uint8_t>() & 1U) != 0;
    parameter.value = readParameter(reader);
    call.parameters.push_back(std::move(parameter));
  }
  return call;
}

}  // namespace tolvane::tds
