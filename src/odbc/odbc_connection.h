#pragma once

#include <memory>
#include <string>
#include <utility>

#include "odbc/session.h"
#include "platform/engine.h"

namespace tolvane::odbc {

/// ADO's connection on ODBC. What is not committed when it goes is undone.
class OdbcConnection final : public EngineConnection {
 public:
  explicit OdbcConnection(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection() override { session_->rollback(); }

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override;
  [[nodiscard]] std::shared_ptr<Recordset> newRecordset() override;
  [[nodiscard]] std::shared_ptr<Command> newCommand() override;

  void begin() override { session_->begin(); }
  void commit() override { session_->commit(); }
  void rollback() override { session_->rollback(); }
  [[nodiscard]] bool inTransaction() const override { return session_->inTransaction(); }
  [[nodiscard]] std::uint64_t failureCount() const override { return session_->failures(); }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace tolvane::odbc
