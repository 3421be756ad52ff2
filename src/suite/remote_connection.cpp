#include "suite/remote_connection.h"

#include "suite/remote_command.h"
#include "suite/remote_recordset.h"

namespace tolvane::suite {

using automation::LateBound;
using automation::Variant;

std::shared_ptr<Recordset> RemoteConnection::execute(const std::string& sql, std::int32_t options) {
  LateBound rows(connection_.call(ado_->connection.execute, sql, Variant::missing(), options).object());
  if (!rows) return newRecordset();
  return std::make_shared<RemoteRecordset>(ado_, std::move(rows), connection_);
}

std::shared_ptr<Recordset> RemoteConnection::newRecordset() {
  return std::make_shared<RemoteRecordset>(ado_, ado_->newRecordset.create(), connection_);
}

std::shared_ptr<Command> RemoteConnection::newCommand() {
  return std::make_shared<RemoteCommand>(ado_, ado_->newCommand.create(), connection_);
}

}  // namespace tolvane::suite
