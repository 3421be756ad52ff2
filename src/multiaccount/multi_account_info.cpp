#include "multiaccount/multi_account_info.h"

#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "platform/error.h"

namespace tolvane {

ClassDescription MultiAccountInfo::description() {
  using C = MultiAccountInfo;
  return describe<C>("MultiAccountInfo", TransactionMode::supported,
                     "Reads multi-account-set configurations and checks rights on ledger accounts.")
      .method(2, "ExistenceCheck", &C::ExistenceCheck, "Tells whether there is a configuration of that name.",
              {"sDsn", "sAcctName"})
      .method(3, "ExistenceCheckByUser", &C::ExistenceCheckByUser,
              "Tells whether the caller has credentials for, or a grant on, a configuration.", {"sDsn", "sAcctName"})
      .method(4, "GetList", &C::GetList, "Lists all configurations with their owners' credentials.", {"sDsn"})
      .method(5, "GetListByUser", &C::GetListByUser, "Lists the configurations that the caller owns or is granted.",
              {"sDsn"})
      .method(6, "GetPropStrByFName", &C::GetPropStrByFName, "Gives a configuration's connection properties.",
              {"sDsn", "sAcctName"})
      .method(7, "GetRightList", &C::GetRightList, "Lists a configuration's grants.", {"sDsn", "sName"})
      .method(8, "CheckAccountRight", &C::CheckAccountRight,
              "Tells whether the caller may see the ledger account of that number.", {"sDsn", "sAcctName"});
}

bool MultiAccountInfo::ExistenceCheck(const std::string& sDsn, const std::string& sAcctName) {
  auto call = beginCall(sDsn);
  return !call.execute(sql("Select * From t_Rpt_MultiAcct Where FName ='", sAcctName, "'"))->eof();
}

bool MultiAccountInfo::ExistenceCheckByUser(const std::string& sDsn, const std::string& sAcctName) {
  auto call = beginCall(sDsn);
  const std::int16_t userID = currentUserID16();
  const auto rows = call.execute(sql(" Select FName From t_Rpt_MultiAcctEntry ", " Where FName ='", sAcctName, "'",
                                     " And FUserID=", userID, " Union ", " Select FName From t_Rpt_MultiAcctRight  ",
                                     " Where FName ='", sAcctName, "'", " And FUserID=", userID));
  return !rows->eof();
}

std::shared_ptr<ItemList> MultiAccountInfo::GetList(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const auto rows =
      call.execute(sql(" Select a.*, e.FMUserName, e.FMPassWord, e.FPropsString From t_Rpt_MultiAcct a inner join "
                       "t_Rpt_MultiAcctEntry e ",
                       " On a.FName = e.FName And a.FCreatorID = e.FUserID "));
  return rowList(platform(), *rows);
}

std::shared_ptr<ItemList> MultiAccountInfo::GetListByUser(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const std::int16_t userID = currentUserID16();
  const auto rows = call.execute(
      sql(" Select a.FName, a.FCreatorID, a.FDriverType, a.FAisName, a.FSystemDB, ",
          " a.FServerName, a.FCompanyID, e.FUserID, e.FMUserName, e.FMPassWord, e.FPropsString, 1 as FIsMyUserName ",
          " From t_Rpt_MultiAcct a, t_Rpt_MultiAcctEntry e ", " Where a.FName=e.FName And e.FUserId=", userID,
          " Union ", " Select a.FName, a.FCreatorID, a.FDriverType, a.FAisName, a.FSystemDB, ",
          " a.FServerName, a.FCompanyID, r.FUserID, e.FMUserName, e.FMPassWord, e.FPropsString, 0 as FIsMyUserName ",
          // Every entry of a granted configuration, not the owner's alone: a grantee may use any of the credentials.
          " From t_Rpt_MultiAcct a, t_Rpt_MultiAcctEntry e, t_Rpt_MultiAcctRight r ",
          " Where a.FName=e.FName And e.FName=r.FName And r.FUserID=", userID, " And r.FName Not In ",
          " (Select FName From t_Rpt_MultiAcctEntry Where FUserID=", userID, ")"));
  return rowList(platform(), *rows);
}

Value MultiAccountInfo::GetPropStrByFName(const std::string& sDsn, const std::string& sAcctName) {
  try {
    auto call = beginCall(sDsn);
    const auto rows = call.execute(sql("Select b.FPropsString From t_Rpt_MultiAcct a,t_Rpt_MultiAcctEntry b",
                                       " Where a.FName=b.FName And a.FName='", sAcctName, "'"));
    Value properties = rows->value("FPropsString");
    rows->detach();
    return properties;
  } catch (const AutomationError& error) {
    // Callers know the failure by this Source, which names the method as it was once called.
    throw AutomationError(errorNumber(RuntimeError::invalidArgument), sql(error.source(), "::GetPropStrByDsnName"),
                          translate("#账套配置名错误"));
  }
}

std::shared_ptr<ItemList> MultiAccountInfo::GetRightList(const std::string& sDsn, std::string& sName) {
  auto call = beginCall(sDsn);
  const auto rows = call.execute(sql("Select * From t_Rpt_MultiAcctRight Where FName='", sName, "'"));
  return rowList(platform(), *rows);
}

}  // namespace tolvane
