// MultiAccountUpdate: writes the multi-account-set configurations.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Creates, changes, grants and deletes multi-account-set configurations (see MultiAccountInfo). Only the owner may
/// change a configuration or withdraw its grants; administrators have no exception. Anyone may grant, and store
/// anyone's credentials. Texts go into SQL as they are; Null and missing entries of a bag count as empty texts there.
/// Own errors have the Source "Tolvane.MultiAccountUpdate" and a Description in the caller's language. A bag that is
/// needed and not there is error 91.
class MultiAccountUpdate : public Service {
 public:
  explicit MultiAccountUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// Adds a configuration, owned by the caller, and the caller's credentials for it. `Properties`: FDriverType (0 when
  /// missing), FAisName, FSystemDB, FServerName, FMUserName, FMPassword, FPropsString. Error 80044047h when the name is
  /// taken.
  void CreateAcct(const std::string& sDsn, const std::string& sAcctName, std::shared_ptr<PropertyBag>& Properties);
  /// Grants configuration FName to FUserID in the name of FCreatorID; a grant that is there stays as it is.
  void CreateAcctRight(const std::string& sDsn, std::shared_ptr<PropertyBag>& Prop);
  /// Withdraws a grant. Always False, after a success too: callers go by the absence of an error. Error 80044015h when
  /// the caller is not the owner, ADO's 3021 when there is no such configuration.
  bool DeleteAcctRight(const std::string& sDsn, std::string& sName, std::int32_t lUserID);
  /// Deletes a configuration with its credentials and grants. Errors as DeleteAcctRight.
  void DeleteName(const std::string& sDsn, const std::string& sAcctName);
  /// Changes name (FName), FServerName, FAISName, FSystemDB and owner (FCreatorID). Credentials and grants keep the old
  /// name; UpdateUserInfo and CreateAcctRight store new ones. Always False. Error 80044015h when the caller is not the
  /// owner or the new name is another configuration's.
  bool UpdateAcct(const std::string& sDsn, const std::string& sAcctName, std::shared_ptr<PropertyBag>& Properties);
  /// Stores FMUserName, FMPassWord and FPropsString as user FUserID's entry for configuration FName.
  void UpdateUserInfo(const std::string& sDsn, std::shared_ptr<PropertyBag>& Properties);

 private:
  /// Error 80044015h with `refusal` unless the caller owns the configuration.
  void requireOwner(Call& call, const std::string& name, std::string_view refusal);
  [[noreturn]] void refuse(std::uint32_t number, std::string_view description);
};

}  // namespace tolvane
