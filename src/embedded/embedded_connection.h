#pragma once

#include <memory>
#include <string>

#include "embedded/session.h"
#include "platform/engine.h"

namespace tolvane::embedded {

/// ADO's connection on the embedded engine. What is not committed when it goes is undone.
class EmbeddedConnection final : public EngineConnection {
 public:
  explicit EmbeddedConnection(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  EmbeddedConnection(const EmbeddedConnection&) = delete;
  EmbeddedConnection& operator=(const EmbeddedConnection&) = delete;
  ~EmbeddedConnection() override { session_->rollbackIfAny(); }

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override;
  [[nodiscard]] std::shared_ptr<Recordset> newRecordset() override;
  [[nodiscard]] std::shared_ptr<Command> newCommand() override;

  void begin() override;
  void commit() override;
  void rollback() override;
  [[nodiscard]] bool inTransaction() const override { return session_->transactionCount() > 0; }
  [[nodiscard]] std::uint64_t failureCount() const override { return session_->failures(); }

  [[nodiscard]] Session& session() { return *session_; }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace tolvane::embedded
