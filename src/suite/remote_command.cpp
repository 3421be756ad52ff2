#include "suite/remote_command.h"

#include "suite/remote_recordset.h"

namespace tolvane::suite {

using automation::LateBound;
using automation::Variant;

RemoteCommand::RemoteCommand(std::shared_ptr<AdoLibrary> ado, LateBound command, LateBound connection)
    : ado_(std::move(ado)), command_(std::move(command)), connection_(std::move(connection)) {
  putReference(command_, ado_->command.activeConnection, connection_.get());
}

void RemoteCommand::setCommandText(const std::string& text) {
  command_.put(ado_->command.commandText, text);
}

void RemoteCommand::setCommandType(CommandType type) {
  command_.put(ado_->command.commandType, static_cast<std::int32_t>(type));
}

void RemoteCommand::setCommandTimeout(std::int32_t seconds) {
  command_.put(ado_->command.commandTimeout, seconds);
}

void RemoteCommand::appendParameter(const Parameter& parameter) {
  if (!parameters_) parameters_ = readObject(command_, ado_->command.parameters);
  const LateBound made(command_
                           .call(ado_->command.createParameter, "", static_cast<std::int32_t>(parameter.type),
                                 static_cast<std::int32_t>(parameter.direction), parameter.size,
                                 Variant::of(Value(parameter.value)))
                           .object());
  parameters_.call(ado_->parameters.append, made.reference());
}

std::shared_ptr<Recordset> RemoteCommand::execute() {
  LateBound rows(command_.call(ado_->command.execute).object());
  if (!rows) rows = ado_->newRecordset.create();
  return std::make_shared<RemoteRecordset>(ado_, std::move(rows), connection_);
}

}  // namespace tolvane::suite
