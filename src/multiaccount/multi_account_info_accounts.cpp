// Whether the caller may see a ledger account.
#include "frame/identity.h"
#include "frame/profile.h"
#include "frame/sql_text.h"
#include "multiaccount/multi_account_info.h"
#include "platform/conversions.h"

namespace tolvane {
namespace {

/// Accounts, as a class of items that rights are given on.
constexpr std::int32_t accountClass = 105;
/// A right on an account holds for the accounts below it too.
constexpr std::int32_t subAccountsInherit = 4;

/// The accounts granted to the user or to one of the user's groups (group 0 is none), and all accounts below them:
/// those whose number begins with a granted account's number and ".".
std::string grantedAccountsAndBelow(std::int16_t userID) {
  return sql(
      ",(Select Distinct c1.FAccountID FItemID  From t_Account c1 ",
      " ,(Select Distinct r.FItemID FItemID,FNumber FNumber1 From  t_ItemRight r,t_Account a Where (r.FAuthtype & ",
      "1", "=", "1", ") AND  FTypeID=105 AND r.FItemID=a.FAccountID ",
      " AND (FUserID IN (Select FGroupID From t_Group Where FGroupID <> 0 And FUserID=", userID,
      " ) OR FUserID=", userID, ")) c ", " Where c1.FNumber=c.FNumber1 OR PATINDEX(c.FNumber1+'.%',c1.FNumber)>0 ) c ");
}

std::string grantedAccounts(std::int16_t userID) {
  return sql(" ,(Select Distinct FItemID From  t_ItemRight r,t_Account a Where (r.FAuthtype & ", "1", "=", "1",
             ") AND FTypeID=105 AND r.FItemID=a.FAccountID ",
             " AND (FUserID IN  (Select FGroupID From t_Group Where FGroupID <> 0 And FUserID=", userID,
             " ) OR FUserID=", userID, ")) c ");
}

}  // namespace

std::int32_t MultiAccountInfo::CheckAccountRight(std::string& sDsn, std::string& sAcctName) {
  auto call = beginCall(sDsn);
  std::string visible = sql("( Select FAccountID,FNumber", " FROM t_Account ");
  if (!seesEveryAccount(call)) {
    const std::int16_t userID = getCurrentUserID(platform(), context());
    visible += inheritsAccountRights(call, userID) ? grantedAccountsAndBelow(userID) : grantedAccounts(userID);
    visible += " WHERE FAccountID=c.FItemID  ";
  }
  visible += " ) ";
  const auto rows = call.execute(sql(" select z.* from (", visible, ") z", "  where z.FNumber='", sAcctName, "'"));
  return rows->eof() ? 0 : 1;
}

bool MultiAccountInfo::seesEveryAccount(Call& call) {
  if (isAdministrator(platform(), context())) return true;
  if (toDouble(readProfile(*call.connection(), "GL", "CheckAcctTable", Value("0"))) == 0) return true;
  return isDataViewUnrestricted(platform(), context(), *call.connection()) == 1;
}

bool MultiAccountInfo::inheritsAccountRights(Call& call, std::int16_t userID) {
  const std::int32_t ownRights = checkParentItemRight(platform(), context(), userID, accountClass);
  const auto user = call.execute(sql("select FPrimaryGroup from t_user where fuserid=", userID));
  const std::int32_t primaryGroup = toInt32(user->value("FPrimaryGroup"));
  const std::int32_t groupRights = checkParentItemRight(platform(), context(), primaryGroup, accountClass);
  user->close();
  return ((ownRights | groupRights) & subAccountsInherit) != 0;
}

}  // namespace tolvane
