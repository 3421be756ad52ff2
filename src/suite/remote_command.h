// ADO's command.
#pragma once

#include <memory>
#include <string>

#include "automation/late_bound.h"
#include "platform/data_access.h"
#include "suite/ado_library.h"

namespace tolvane::suite {

class RemoteCommand : public Command {
 public:
  /// Ties a new command to the connection.
  RemoteCommand(std::shared_ptr<AdoLibrary> ado, automation::LateBound command, automation::LateBound connection);

  void setCommandText(const std::string& text) override;
  void setCommandType(CommandType type) override;
  void setCommandTimeout(std::int32_t seconds) override;
  /// Parameters have no names: the "?" marks take them in order.
  void appendParameter(const Parameter& parameter) override;
  [[nodiscard]] std::shared_ptr<Recordset> execute() override;

 private:
  std::shared_ptr<AdoLibrary> ado_;
  automation::LateBound command_;
  automation::LateBound connection_;
  automation::LateBound parameters_;
};

}  // namespace tolvane::suite
