#include "odbc/odbc_connection.h"

#include "odbc/batch_run.h"
#include "odbc/odbc_command.h"
#include "odbc/odbc_recordset.h"

namespace tolvane::odbc {
namespace {

constexpr std::int32_t noRecords = 128;

}  // namespace

std::shared_ptr<Recordset> OdbcConnection::execute(const std::string& sql, std::int32_t options) {
  requireText(sql);
  auto result = runBatch(*session_, sql);
  const bool discarded = options != unspecifiedOptions && (options & noRecords) != 0;
  if (discarded) return nullptr;
  return OdbcRecordset::of(session_, std::move(result));
}

std::shared_ptr<Recordset> OdbcConnection::newRecordset() {
  return std::make_shared<OdbcRecordset>(session_);
}

std::shared_ptr<Command> OdbcConnection::newCommand() {
  return std::make_shared<OdbcCommand>(session_);
}

}  // namespace tolvane::odbc
