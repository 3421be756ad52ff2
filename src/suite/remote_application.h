// The suite's application object, contexts and logins.
#pragma once

#include <memory>
#include <string>

#include "automation/late_bound.h"
#include "platform/suite.h"
#include "suite/ado_library.h"
#include "suite/suite_library.h"

namespace tolvane::suite {

/// What all objects of a platform share.
struct Libraries {
  std::shared_ptr<SuiteLibrary> suite;
  std::shared_ptr<AdoLibrary> ado;
};

class RemoteLogin : public Login {
 public:
  RemoteLogin(std::shared_ptr<SuiteLibrary> suite, automation::LateBound login)
      : suite_(std::move(suite)), login_(std::move(login)) {}

  [[nodiscard]] std::int32_t currentUserID() override;
  [[nodiscard]] std::string userKey() override;
  [[nodiscard]] std::string languageCode() override;

 private:
  std::shared_ptr<SuiteLibrary> suite_;
  automation::LateBound login_;
};

/// An operation that gives nothing where an object is due is error 91.
class RemoteContext : public Context {
 public:
  RemoteContext(Libraries libraries, automation::LateBound context)
      : libraries_(std::move(libraries)), context_(std::move(context)) {}

  void openDataSource(const std::string& dsn) override;
  [[nodiscard]] std::shared_ptr<Login> getLoginInfo() override;
  [[nodiscard]] std::shared_ptr<Connection> getConnection() override;
  void beginWork() override;
  void completeWork() override;
  [[nodiscard]] std::string callText() override;

 private:
  Libraries libraries_;
  automation::LateBound context_;
};

class RemoteApplication : public GlobalApplication {
 public:
  RemoteApplication(Libraries libraries, automation::LateBound application)
      : libraries_(std::move(libraries)), application_(std::move(application)) {}

  [[nodiscard]] std::shared_ptr<Context> getContext() override;

  // A host's call, for application objects that are told.
  void beginCall(TransactionMode mode);
  [[nodiscard]] bool endCall();
  void abortCall();

 private:
  Libraries libraries_;
  automation::LateBound application_;
};

}  // namespace tolvane::suite
