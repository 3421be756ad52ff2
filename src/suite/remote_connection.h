// ADO's connection, as the suite's context hands it out.
#pragma once

#include <memory>
#include <string>

#include "automation/late_bound.h"
#include "automation/object_border.h"
#include "platform/data_access.h"
#include "suite/ado_library.h"

namespace tolvane::suite {

/// Neither opens nor closes the connection and leaves its properties alone: it is the context's.
class RemoteConnection : public Connection, public automation::RemoteReference {
 public:
  RemoteConnection(std::shared_ptr<AdoLibrary> ado, automation::LateBound connection)
      : ado_(std::move(ado)), connection_(std::move(connection)) {}

  [[nodiscard]] IDispatch* dispatch() const override { return connection_.get(); }

  /// Never null: where ADO gives no record set, a closed one.
  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override;
  /// Error 429 when ADO is not registered.
  [[nodiscard]] std::shared_ptr<Recordset> newRecordset() override;
  [[nodiscard]] std::shared_ptr<Command> newCommand() override;

 private:
  std::shared_ptr<AdoLibrary> ado_;
  automation::LateBound connection_;
};

}  // namespace tolvane::suite
