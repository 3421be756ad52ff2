#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/session.h"
#include "platform/data_access.h"

namespace tolvane::embedded {

/// ADO's command on the embedded engine.
class EmbeddedCommand final : public Command {
 public:
  explicit EmbeddedCommand(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  void setCommandText(const std::string& text) override { text_ = text; }
  void setCommandType(CommandType type) override { type_ = type; }
  void setCommandTimeout(std::int32_t seconds) override;
  void appendParameter(const Parameter& parameter) override;
  [[nodiscard]] std::shared_ptr<Recordset> execute() override;

 private:
  std::shared_ptr<Session> session_;
  std::string text_;
  CommandType type_ = CommandType::unknown;
  std::int32_t timeout_ = 30;
  std::vector<Parameter> parameters_;
};

}  // namespace tolvane::embedded
