#include "classification/rpt_prop_item_class_info.h"

#include "classification/identifier_ranges.h"
#include "classification/reports_of_item.h"
#include "frame/identity.h"
#include "frame/result_forms.h"
#include "frame/service_errors.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

// The suite's rights that decide which reports of an item a user sees.
constexpr std::int32_t rightsObjectType = 50;
constexpr std::int32_t rightsObjectID = 0;
constexpr std::int32_t sharedReportsMask = 0x4000000;
constexpr std::int32_t allReportsMask = 0x8000000;
constexpr const char* rightsSource = "Tolvane.RptPropItemClassInfo";

constexpr std::int32_t clientSide = 3;

}  // namespace

ClassDescription RptPropItemClassInfo::description() {
  using C = RptPropItemClassInfo;
  return describe<C>("RptPropItemClassInfo", TransactionMode::supported, "Reads classification standards.")
      .method(2, "ExistenceCheck", &C::ExistenceCheck, "Finds a standard's identifier by identifier or number.",
              {"sDsn", optional("PropClsID"), optional("Number")})
      .method(3, "GetAllPropName", &C::GetAllPropName, "Lists every item of every standard as \"(standard)-item\".",
              {"sDsn"})
      .method(4, "GetDetail", &C::GetDetail, "Gives one standard by identifier.", {"sDsn", "PropClsID"})
      .method(5, "GetDetailByNumber", &C::GetDetailByNumber, "Gives one standard by number.", {"sDsn", "Number"})
      .method(6, "GetList", &C::GetList, "Lists standards.",
              {"sDsn", optional("Options", std::int32_t{0}), optional("Filter"), optional("Sort"),
               optional("CursorLocation", clientSide)})
      .method(7, "GetRptByProp", &C::GetRptByProp, "Lists the reports under one item that the caller may see.",
              {"sDsn", "sPropName"})
      .method(8, "IsExistRptForPropCls", &C::IsExistRptForPropCls, "Tells whether a report is filed under a standard.",
              {"sDsn", "lPropClsID"});
}

std::int32_t RptPropItemClassInfo::ExistenceCheck(const std::string& sDsn, const Value& PropClsID,
                                                  const Value& Number) {
  auto call = beginCall(sDsn);
  if (PropClsID.isMissing() && Number.isMissing()) return 0;
  const auto command = call.newTextCommand();
  std::string text = "SELECT FPropClsID FROM t_Rpt_PropClass WHERE ";
  if (!PropClsID.isMissing()) {
    text += sql("FPropClsID = ", toText(PropClsID));
  } else {
    text += "FNumber = ?";
    command->appendParameter({DataType::varWChar, ParameterDirection::input, 20, toText(Number)});
  }
  command->setCommandText(text);
  const auto rows = command->execute();
  return rows->eof() ? 0 : toInt32(rows->value("FPropClsID"));
}

std::shared_ptr<Recordset> RptPropItemClassInfo::GetAllPropName(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const std::string name = nameColumn("FName");
  auto rows = call.openKeyset(sql("select '('+a.", name, "+')'+'-'+b.", name,
                                  " as FName,b.FPropItemID from t_Rpt_PropClass a,t_Rpt_PropItem b Where "
                                  "a.FPropClsID=b.FPropClsID order by b.FPropItemID"));
  return isEmpty(*rows) ? nullptr : detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemClassInfo::GetDetail(const std::string& sDsn, std::int32_t PropClsID) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(sql("select FPropClsID,FNumber,", nameColumn("FName"),
                                  " as FName from t_Rpt_PropClass where FPropClsID = ", PropClsID));
  if (isEmpty(*rows)) {
    throw AutomationError(service_error::notFound, "Tolvane.RptPropItemClassInfo.GetDetail", "PropClsID");
  }
  return detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemClassInfo::GetDetailByNumber(const std::string& sDsn, const std::string& Number) {
  auto call = beginCall(sDsn);
  auto rows = call.openKeyset(sql("select * from t_Rpt_PropClass where FNumber = '", Number, "'"));
  if (rows->eof()) {
    throw AutomationError(service_error::notFound, "Tolvane.RptPropItemClassInfo.GetDetailByNumber", "Number");
  }
  return detached(std::move(rows));
}

std::shared_ptr<Recordset> RptPropItemClassInfo::GetList(const std::string& sDsn, std::int32_t /*Options*/,
                                                         const std::string& Filter, const std::string& Sort,
                                                         std::int32_t CursorLocation) {
  auto call = beginCall(sDsn);
  std::string text = sql("SELECT ", "FPropClsID, FNumber,", nameColumn("FName"), " as FName ",
                         " FROM t_Rpt_PropClass WHERE FPropClsID <> 0");
  if (!Filter.empty()) text += sql(" AND (", Filter, ")");
  text += sql(" ORDER BY ", Sort.empty() ? " FNumber " : Sort);
  auto rows = call.connection()->newRecordset();
  rows->setCursorLocation(static_cast<tolvane::CursorLocation>(CursorLocation));
  rows->open(text, CursorType::forwardOnly, LockType::readOnly);
  return detached(std::move(rows));
}

std::int32_t RptPropItemClassInfo::IsExistRptForPropCls(const std::string& sDsn, std::int32_t lPropClsID) {
  auto call = beginCall(sDsn);
  const auto rows = call.execute(sql("SELECT FRptID FROM t_Rpt_Content WHERE  ", "F", lPropClsID, " >0 "));
  return rows->recordCount() > 0 ? 1 : 0;
}

std::shared_ptr<Recordset> RptPropItemClassInfo::GetRptByProp(const std::string& sDsn, const std::string& sPropName) {
  auto call = beginCall(sDsn);
  const auto mayDo = [this](std::int32_t mask) {
    return accessCheck(platform(), context(), rightsObjectType, rightsObjectID, mask, rightsSource);
  };
  ItemReader reader;
  try {
    reader.seesSharedReports = mayDo(sharedReportsMask);
  } catch (const AutomationError&) {
    reader.seesSharedReports = false;  // a right that cannot be told is not held
  }
  reader.seesAllReports = mayDo(allReportsMask);
  reader.isAdministrator = isAdministrator(platform(), context());
  reader.userID = currentUserID16();

  const auto names = splitItemName(sPropName);
  if (!names) return nullptr;
  const std::string name = nameColumn("FName");
  const auto found = call.execute(
      sql("Select a.FPropClsId,a.FNumber,b.FPropItemID From t_Rpt_PropClass a ,t_Rpt_PropItem b", " Where a.", name,
          "='", names->standard, "' And b.", name, "='", names->item, "' And a.FPropClsID=b.FPropClsID"));
  if (found->eof()) return nullptr;
  const std::string number = toText(found->value("FNumber"));
  const std::int32_t item = toInt32(found->value("FPropItemID"));
  const std::int32_t standard = toInt32(found->value("FPropClsID"));
  found->close();

  reader.nameColumn = nameColumn("FRptName");
  std::string text;
  if (standard == natureStandard) {
    const auto others = call.execute("Select FNumber From t_Rpt_PropClass Where FPropClsID>1");
    text = reportsOfNatureItem(reader, item, *others);
  } else {
    text = reportsOfItem(reader, number, item);
  }
  auto rows = call.execute(text);
  return rows->recordCount() > 0 ? detached(std::move(rows)) : nullptr;
}

}  // namespace tolvane
