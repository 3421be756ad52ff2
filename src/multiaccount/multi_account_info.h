// MultiAccountInfo: reads the multi-account-set configurations, and tells whether the caller may see a ledger account.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Answers questions about multi-account-set configurations: named descriptions of how reports reach another account
/// set. A configuration (t_Rpt_MultiAcct) belongs to its creator; users hold credentials for it (t_Rpt_MultiAcctEntry)
/// or are granted the owner's (t_Rpt_MultiAcctRight). The three tables are linked by name alone. Texts from the caller
/// go into SQL as they are, so a name with an apostrophe is the database's error.
class MultiAccountInfo : public Service {
 public:
  explicit MultiAccountInfo(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// Whether there is a configuration of that name, whoever owns it.
  bool ExistenceCheck(const std::string& sDsn, const std::string& sAcctName);
  /// Whether the caller has credentials for, or a grant on, the configuration of that name.
  bool ExistenceCheckByUser(const std::string& sDsn, const std::string& sAcctName);
  /// All configurations with their owner's credentials; one whose owner has none is left out.
  std::shared_ptr<ItemList> GetList(const std::string& sDsn);
  /// The caller's configurations: with own credentials (`FIsMyUserName` 1), or granted (0). A granted one comes once
  /// for every user who holds credentials for it, each time with that user's.
  std::shared_ptr<ItemList> GetListByUser(const std::string& sDsn);
  /// FPropsString of any entry of the configuration. Whatever fails, an unknown name above all, is error 5 with the
  /// failure's Source + "::GetPropStrByDsnName".
  Value GetPropStrByFName(const std::string& sDsn, const std::string& sAcctName);
  /// The grants of the configuration.
  std::shared_ptr<ItemList> GetRightList(const std::string& sDsn, std::string& sName);
  /// 1 when the ledger account of number `sAcctName` exists and the caller may see it, else 0. Who is an administrator,
  /// has an unrestricted view of the data, or works where accounts are not checked (setting GL, CheckAcctTable) sees
  /// every account; others those that they or their groups are granted, and with inheritance the accounts below.
  std::int32_t CheckAccountRight(std::string& sDsn, std::string& sAcctName);

 private:
  [[nodiscard]] bool seesEveryAccount(Call& call);
  [[nodiscard]] bool inheritsAccountRights(Call& call, std::int16_t userID);
};

}  // namespace tolvane
