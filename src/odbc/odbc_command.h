#pragma once

#include <memory>
#include <string>
#include <vector>

#include "odbc/session.h"
#include "platform/data_access.h"

namespace tolvane::odbc {

/// ADO's command on ODBC.
class OdbcCommand final : public Command {
 public:
  explicit OdbcCommand(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  void setCommandText(const std::string& text) override { text_ = text; }
  void setCommandType(CommandType type) override { type_ = type; }
  void setCommandTimeout(std::int32_t seconds) override;
  void appendParameter(const Parameter& parameter) override;
  [[nodiscard]] std::shared_ptr<Recordset> execute() override;

 private:
  std::shared_ptr<Session> session_;
  std::string text_;
  CommandType type_ = CommandType::unknown;
  std::int32_t timeout_ = defaultCommandTimeout;
  std::vector<Parameter> parameters_;
};

/// Raises ADO's error for a text of blanks alone.
void requireText(const std::string& text);

}  // namespace tolvane::odbc
