#include "classification/rpt_prop_item_info.h"

#include "frame/result_forms.h"
#include "frame/service_errors.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

// Both ways of asking for one item fail under the first one's name.
[[noreturn]] void raiseNoItem() {
  throw AutomationError(service_error::notFound, "Tolvane.RptPropItemInfo.GetDetail", "PropItemID");
}

}  // namespace

ClassDescription RptPropItemInfo::description() {
  using C = RptPropItemInfo;
  constexpr std::int32_t none = 0;
  return describe<C>("RptPropItemInfo", TransactionMode::supported,
                     "Reads classification items, audit marks and analysis documents.")
      .method(2, "ExistenceCheck", &C::ExistenceCheck, "Finds an item's identifier by identifier or number.",
              {"sDsn", optional("PropItemID"), optional("PropClsID"), optional("Number")})
      .method(3, "GetDetail", &C::GetDetail, "Gives one item by identifier.", {"sDsn", "PropItemID"})
      .method(4, "GetDetailByNumber", &C::GetDetailByNumber, "Gives the items of a number.",
              {"sDsn", "ItemClassID", "Number"})
      .method(5, "GetList", &C::GetList, "Lists items.",
              {"sDsn", optional("ItemClassID", none), optional("Options", none), optional("Filter"), optional("Sort")})
      .method(6, "GetSubItem", &C::GetSubItem, "Lists the children of one of the suite's items.",
              {"sDsn", "sFNumber", "sName"})
      .method(7, "GetCashItem", &C::GetCashItem, "Lists the cash-flow items.", {"sDsn"})
      .method(8, "GetCashSubItem", &C::GetCashSubItem, "Lists the suite's items by a condition.", {"sDsn", "Filter"})
      .method(9, "GetCashDetailByNumber", &C::GetCashDetailByNumber, "Gives one cash-flow item by number.",
              {"sDsn", "Number"})
      .method(10, "UpdateHiddenItem", &C::UpdateHiddenItem, "Shows a report in lists, or hides it.",
              {"sDsn", "lngRptID", "sFVisibleInList"})
      .method(11, "CheckRptIsAudit", &C::CheckRptIsAudit, "Tells who approved a report.", {"sDsn", "lngRptID"})
      .method(12, "GetFUserID", &C::GetFUserID, "Tells the identifier of who approved a report.", {"sDsn", "lngRptID"})
      .method(13, "CheckValidEISFName", &C::CheckValidEISFName,
              "Tells whether the name of an analysis document is still free.", {"sDsn", "sEISFName"})
      .method(14, "GetEISFileName", &C::GetEISFileName, "Lists the analysis documents in one text.", {"sDsn"});
}

std::int32_t RptPropItemInfo::ExistenceCheck(const std::string& sDsn, const Value& PropItemID, const Value& PropClsID,
                                             const Value& Number) {
  auto call = beginCall(sDsn);
  if (PropItemID.isMissing() && (PropClsID.isMissing() || Number.isMissing())) return 0;
  const auto command = call.newTextCommand();
  std::string text = "SELECT FPropItemID FROM t_Rpt_PropItem WHERE ";
  if (!PropItemID.isMissing()) {
    text += sql("FPropItemID = ", toText(PropItemID));
  } else {
    text += sql("FPropClsID = ", toInt32(PropClsID), "And FNumber = ?");
    command->appendParameter({DataType::varWChar, ParameterDirection::input, 80, toText(Number)});
  }
  command->setCommandText(text);
  const auto rows = command->execute();
  return rows->eof() ? 0 : toInt32(rows->value("FPropItemID"));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetDetail(const std::string& sDsn, std::int32_t PropItemID) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(sql("select FPropClsID,FPropItemID,FNumber,", nameColumn("FName"),
                                  " as FName from t_Rpt_PropItem where FPropItemID = ", PropItemID));
  if (rows->eof()) raiseNoItem();
  return detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetDetailByNumber(const std::string& sDsn, std::int32_t /*ItemClassID*/,
                                                              const std::string& Number) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(sql("select FPropClsID,FPropItemID,FNumber,", nameColumn("FName"),
                                  " as FName from t_Rpt_PropItem where FNumber ='", Number, "'"));
  if (rows->eof()) raiseNoItem();
  return detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetList(const std::string& sDsn, std::int32_t /*ItemClassID*/,
                                                    std::int32_t /*Options*/, const std::string& Filter,
                                                    const std::string& Sort) {
  auto call = beginCall(sDsn);
  std::string text = sql("SELECT ", "FPropItemID,FPropClsID, FNumber, ", nameColumn("FName"), " as FName ",
                         " FROM t_Rpt_PropItem WHERE FPropItemID <> 0");
  if (!Filter.empty()) text += sql(" AND (", Filter, ")");
  text += sql(" ORDER BY ", Sort.empty() ? " FNumber " : Sort);
  return detached(call.open(text, CursorType::forwardOnly, LockType::readOnly));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetSubItem(const std::string& sDsn, const std::string& sFNumber,
                                                       const std::string& sName) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(
      sql("Select FItemID From t_Item where FDetail=0 and FNumber='", sFNumber, "' and FName='", sName, "'"));
  if (rows->recordCount() == 1) {
    const std::int32_t parent = toInt32(rows->value("FItemID"));
    rows->close();
    rows->open(sql("Select FNumber,FName,FLevel From t_Item where FParentID=", parent, " Order by FNumber"),
               CursorType::keyset, LockType::optimistic);
  }
  return detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetCashItem(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  return detached(call.openKeyset("Select * from t_Item where FItemClassID=9 and FParentID>0"));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetCashSubItem(const std::string& sDsn, std::string& Filter) {
  auto call = beginCall(sDsn);
  std::string text = "SELECT  * FROM t_Item";
  if (!Filter.empty()) text += sql(" Where ", Filter);
  return detached(call.openKeyset(text));
}

std::shared_ptr<Recordset> RptPropItemInfo::GetCashDetailByNumber(const std::string& sDsn, const std::string& Number) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(sql("select * from t_Item where FItemClassID=9 and  FNumber = '", Number, "'"));
  if (rows->eof()) {
    throw AutomationError(service_error::notFound, "Tolvane.RptPropItemInfo.GetCashDetailByNumber", "Number");
  }
  return detached(std::move(rows));
}

Value RptPropItemInfo::UpdateHiddenItem(const std::string& sDsn, std::int32_t lngRptID,
                                        const std::string& sFVisibleInList) {
  auto call = beginCall(sDsn);
  call.execute(sql(" Update t_Rpt_Content set FVisibleInList = '", sFVisibleInList, "' Where FRptID =", lngRptID));
  return true;
}

}  // namespace tolvane
