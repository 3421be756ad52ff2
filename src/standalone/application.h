// Application, context and login of the suite, without the suite.
#pragma once

#include <memory>
#include <string>

#include "platform/suite.h"
#include "standalone/session.h"

namespace tolvane::standalone {

/// The identity that a data-source name states; before one is opened user 0, "chs".
class StandaloneLogin : public Login {
 public:
  explicit StandaloneLogin(Identity identity) : identity_(std::move(identity)) {}
  [[nodiscard]] std::int32_t currentUserID() override { return identity_.userID; }
  /// The user's identifier in decimal.
  [[nodiscard]] std::string userKey() override { return std::to_string(identity_.userID); }
  [[nodiscard]] std::string languageCode() override { return identity_.language; }

 private:
  Identity identity_;
};

class StandaloneContext : public Context {
 public:
  explicit StandaloneContext(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  void openDataSource(const std::string& dsn) override;
  [[nodiscard]] std::shared_ptr<Login> getLoginInfo() override;
  /// Error 91 before a data source is open.
  [[nodiscard]] std::shared_ptr<Connection> getConnection() override;
  void beginWork() override {}
  void completeWork() override;
  /// The caller's user key.
  [[nodiscard]] std::string callText() override;

 private:
  std::shared_ptr<Session> session_;
  OpenSource source_{nullptr, {0, "chs"}};
};

class StandaloneApplication : public GlobalApplication {
 public:
  explicit StandaloneApplication(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  [[nodiscard]] std::shared_ptr<Context> getContext() override { return std::make_shared<StandaloneContext>(session_); }

 private:
  std::shared_ptr<Session> session_;
};

}  // namespace tolvane::standalone
