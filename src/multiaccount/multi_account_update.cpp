#include "multiaccount/multi_account_update.h"

#include "frame/object_argument.h"
#include "frame/service_errors.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

/// A bag's value as SQL text takes it: joining texts makes nothing of Null.
std::string textOf(const Value& value) {
  return value.isNull() ? std::string() : toText(value);
}

void copyFields(const PropertyBag& from, Recordset& row, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) row.setValue(name, from.item(name));
}

}  // namespace

ClassDescription MultiAccountUpdate::description() {
  using C = MultiAccountUpdate;
  return describe<C>("MultiAccountUpdate", TransactionMode::required, "Writes multi-account-set configurations.")
      .method(2, "CreateAcct", &C::CreateAcct, "Adds a configuration with its owner's credentials.",
              {"sDsn", "sAcctName", "Properties"})
      .method(3, "CreateAcctRight", &C::CreateAcctRight, "Grants a configuration to a user.", {"sDsn", "Prop"})
      .method(4, "DeleteAcctRight", &C::DeleteAcctRight, "Withdraws a grant. Always False.",
              {"sDsn", "sName", "lUserID"})
      .method(5, "DeleteName", &C::DeleteName, "Deletes a configuration with its credentials and grants.",
              {"sDsn", "sAcctName"})
      .method(6, "UpdateAcct", &C::UpdateAcct, "Changes or renames a configuration. Always False.",
              {"sDsn", "sAcctName", "Properties"})
      .method(7, "UpdateUserInfo", &C::UpdateUserInfo, "Stores a user's credentials for a configuration.",
              {"sDsn", "Properties"});
}

void MultiAccountUpdate::CreateAcct(const std::string& sDsn, const std::string& sAcctName,
                                    std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginCall(sDsn);
  const auto taken = call.openKeyset(sql("Select  * From t_Rpt_MultiAcct Where FName ='", sAcctName, "'"));
  if (!isEmpty(*taken)) refuse(service_error::ruleViolated, "多账套配置名已存在，新增失败！");

  const PropertyBag& given = required(Properties);
  const std::int16_t userID = currentUserID16();
  call.execute(sql("Insert Into t_Rpt_MultiAcct(FCreatorID,FName,FDriverType,FAisName,FSystemDB,FServerName)",
                   "Values(", userID, ",'", sAcctName, "',", textOf(given.getValue("FDriverType", std::int32_t{0})),
                   ",'", textOf(given.getValue("FAisName")), "','", textOf(given.getValue("FSystemDB")), "','",
                   textOf(given.item("FServerName")), "')"));
  call.execute(sql("Insert Into t_Rpt_MultiAcctEntry(FUserID,FName,FMUserName,FMPassword,FPropsString)", "Values(",
                   userID, ",'", sAcctName, "','", textOf(given.getValue("FMUserName")), "','",
                   textOf(given.getValue("FMPassword")), "','", textOf(given.getValue("FPropsString")), "')"));
}

void MultiAccountUpdate::CreateAcctRight(const std::string& sDsn, std::shared_ptr<PropertyBag>& Prop) {
  auto call = beginCall(sDsn);
  const PropertyBag& grant = required(Prop);
  const auto row = call.openKeyset(sql(" Select * From t_Rpt_MultiAcctRight ", "Where FName='",
                                       textOf(grant.item("FName")), "' And FUserID=", textOf(grant.item("FUserID"))));
  if (!isEmpty(*row)) return;
  row->addNew();
  copyFields(grant, *row, {"FName", "FUserID", "FCreatorID"});
  row->update();
}

bool MultiAccountUpdate::DeleteAcctRight(const std::string& sDsn, std::string& sName, std::int32_t lUserID) {
  auto call = beginCall(sDsn);
  requireOwner(call, sName, "无权修改当前多账套授权，修改失败！");
  call.execute(sql(" Delete From t_Rpt_MultiAcctRight Where ", " FName = '", sName, "' And FUserID=", lUserID));
  return false;  // never anything else: callers are used to it
}

void MultiAccountUpdate::DeleteName(const std::string& sDsn, const std::string& sAcctName) {
  auto call = beginCall(sDsn);
  requireOwner(call, sAcctName, "该多账套配置非你所建。你无权删除该多账套配置！");
  call.execute(sql("Delete From t_Rpt_MultiAcct Where FName = '", sAcctName, "'"));
  call.execute(sql("Delete From t_Rpt_MultiAcctEntry Where FName = '", sAcctName, "'"));
  call.execute(sql("Delete From t_Rpt_MultiAcctRight Where FName = '", sAcctName, "'"));
}

bool MultiAccountUpdate::UpdateAcct(const std::string& sDsn, const std::string& sAcctName,
                                    std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginCall(sDsn);
  requireOwner(call, sAcctName, "当前多账套配置非你所建，不得修改！");

  const PropertyBag& given = required(Properties);
  const auto taken = call.execute(sql(" Select FName From t_Rpt_MultiAcct Where ", " FName ='",
                                      textOf(given.item("FName")), "' ", " And FName <>'", sAcctName, "'"));
  if (!taken->eof()) refuse(service_error::notOwner, "新配置名称已存在，修改失败！");

  call.execute(sql("Update t_Rpt_MultiAcct Set ", " FName = '", textOf(given.item("FName")), "',", " FServerName = '",
                   textOf(given.item("FServerName")), "',", " FAISName = '", textOf(given.item("FAISName")), "', ",
                   " FSystemDB = '", textOf(given.item("FSystemDB")), "', ",
                   " FCreatorID= ", textOf(given.item("FCreatorID")), " Where FName = '", sAcctName, "'"));
  return false;  // never anything else: callers are used to it
}

void MultiAccountUpdate::UpdateUserInfo(const std::string& sDsn, std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginCall(sDsn);
  const PropertyBag& given = required(Properties);
  const auto row =
      call.openKeyset(sql("Select * From t_Rpt_MultiAcctEntry Where ", " FName='", textOf(given.item("FName")), "' ",
                          " And FUserID=", textOf(given.item("FUserID"))));
  if (isEmpty(*row)) {
    row->addNew();
    copyFields(given, *row, {"FName", "FUserID"});
  }
  copyFields(given, *row, {"FMUserName", "FMPassWord", "FPropsString"});
  row->update();
}

void MultiAccountUpdate::requireOwner(Call& call, const std::string& name, std::string_view refusal) {
  const auto rows = call.execute(sql("Select FCreatorID From t_Rpt_MultiAcct Where FName ='", name, "'"));
  if (toInt32(rows->value("FCreatorID")) != currentUserID16()) refuse(service_error::notOwner, refusal);
}

void MultiAccountUpdate::refuse(std::uint32_t number, std::string_view description) {
  throw AutomationError(number, "Tolvane.MultiAccountUpdate", translate(description));
}

}  // namespace tolvane
