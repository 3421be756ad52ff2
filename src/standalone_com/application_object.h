// NorvStandalone.Application and the objects that it leads to.
#pragma once

#include <memory>

#include "automation/dispatch_object.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {

/// Stands for the suite's global application object, and for the component host around it: `GetContext`,
/// `BeginCall(mode)`, `EndCall` (whether the work was kept), `AbortCall`, `CreateAccountSet(dsn[, sample])` (a sample's
/// name, or True for the demonstration), `Version`.
/// A host's modes are those of TransactionMode; without a call every operation stands for itself.
class ApplicationObject : public automation::DispatchObject {
 public:
  explicit ApplicationObject(std::shared_ptr<SuiteThread> suite) : suite_(std::move(suite)) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<SuiteThread> suite_;
};

/// The suite's context: `OpenDataSource(sDsn[, out ignored])`, `GetLoginInfo`, `GetConnection`, `BeginWork`,
/// `CompleteWork`, `CallText`.
class ContextObject : public automation::DispatchObject {
 public:
  ContextObject(std::shared_ptr<SuiteThread> suite, std::shared_ptr<Context> context)
      : suite_(std::move(suite)), context_(std::move(context)) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<SuiteThread> suite_;
  std::shared_ptr<Context> context_;
};

/// The suite's login: `CurrentUserID`, `UserKey`, `LanguageCode`.
class LoginObject : public automation::DispatchObject {
 public:
  explicit LoginObject(std::shared_ptr<Login> login) : login_(std::move(login)) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<Login> login_;
};

}  // namespace tolvane::standalone_com
