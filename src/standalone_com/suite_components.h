// The suite's components that are created by their names: security, resource loader, data-flow.
#pragma once

#include <memory>
#include <string>

#include "automation/dispatch_object.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {

/// `GetCurrentUserID(key)`, `IsAdministrator(key)`, `AccessCheck(key, type, id, mask, ignored, source)`: answered from
/// the data source that the thread opened last.
class SecurityObject : public automation::DispatchObject {
 public:
  explicit SecurityObject(std::shared_ptr<SuiteThread> suite)
      : suite_(std::move(suite)), security_(suite_->platform().newSecurity()) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<SuiteThread> suite_;
  std::shared_ptr<Security> security_;
};

/// `ResFileBaseName`, `LanguageID`, `LoadString(text)`, `Unload`.
class LoaderObject : public automation::DispatchObject {
 public:
  explicit LoaderObject(std::shared_ptr<SuiteThread> suite)
      : suite_(std::move(suite)), loader_(suite_->platform().newResourceLoader()) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<SuiteThread> suite_;
  std::shared_ptr<ResourceLoader> loader_;
  std::string baseName_;
  std::string language_;
};

/// `RefreshSubFunc` and `RefreshDetailFunc(callText, system, entries, first, second)`: on the connection and in the
/// transaction of the data source that the thread opened last.
class DataFlowObject : public automation::DispatchObject {
 public:
  explicit DataFlowObject(std::shared_ptr<SuiteThread> suite) : suite_(std::move(suite)) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::shared_ptr<SuiteThread> suite_;
};

}  // namespace tolvane::standalone_com
