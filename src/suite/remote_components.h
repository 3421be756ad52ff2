// The suite's components that are created where they are needed: security, resource loader, data-flow.
#pragma once

#include <memory>
#include <string>

#include "automation/late_bound.h"
#include "platform/suite.h"
#include "suite/suite_library.h"

namespace tolvane::suite {

class RemoteSecurity : public Security {
 public:
  RemoteSecurity(std::shared_ptr<SuiteLibrary> suite, automation::LateBound security)
      : suite_(std::move(suite)), security_(std::move(security)) {}

  /// Error 6 for an identifier above 32767.
  [[nodiscard]] std::int16_t getCurrentUserID(const std::string& userKey) override;
  [[nodiscard]] bool isAdministrator(const std::string& userKey) override;
  /// Numbers and source go by reference; the component may write to them, to no effect.
  [[nodiscard]] bool accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID,
                                 std::int32_t accessMask, const std::string& source) override;

 private:
  std::shared_ptr<SuiteLibrary> suite_;
  automation::LateBound security_;
};

class RemoteResourceLoader : public ResourceLoader {
 public:
  RemoteResourceLoader(std::shared_ptr<SuiteLibrary> suite, automation::LateBound loader)
      : suite_(std::move(suite)), loader_(std::move(loader)) {}

  void setResFileBaseName(const std::string& name) override;
  void setLanguageID(const std::string& language) override;
  /// The text goes by reference.
  [[nodiscard]] std::string loadString(const std::string& text) override;
  void unload() override;

 private:
  std::shared_ptr<SuiteLibrary> suite_;
  automation::LateBound loader_;
};

class RemoteDataFlow : public DataFlow {
 public:
  RemoteDataFlow(std::shared_ptr<SuiteLibrary> suite, automation::LateBound dataFlow)
      : suite_(std::move(suite)), dataFlow_(std::move(dataFlow)) {}

  void refreshSubFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                      bool first, bool second) override;
  void refreshDetailFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                         bool first, bool second) override;

 private:
  /// The entries go by reference, as an automation list of automation bags.
  void refresh(automation::RemoteMember& member, const std::string& callText, std::int16_t system,
               const std::shared_ptr<ItemList>& entries, bool first, bool second);

  std::shared_ptr<SuiteLibrary> suite_;
  automation::LateBound dataFlow_;
};

}  // namespace tolvane::suite
