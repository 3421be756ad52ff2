// Deleting, renaming, filing and importing reports.
#include "frame/service_errors.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "reportstore/report_types.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {
namespace {

/// Entry 1 of a report's properties, the nature standard's: the nature of a report is its type.
constexpr std::int32_t natureStandard = 1;

/// The name of an accounting regime, as its templates carry it in theirs.
std::string_view regimeName(const std::string& item) {
  if (item == "123") return "小企业会计制度";
  if (item == "124") return "新会计准则";
  return "企业会计制度";
}

std::string without(std::string text, std::string_view part) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) text.erase(at, part.size());
  return text;
}

}  // namespace

bool SrvRptUpdate::DelReport(const std::string& sDsn, std::int32_t lRptID) {
  auto call = beginWork(sDsn);
  call.execute(sql(" Delete From T_Rpt_Right Where FRptID=", lRptID, "\r\n",
                   " Delete From T_Rpt_Content Where FRptID=", lRptID));
  call.execute(sql("Delete From t_ObjectType Where FObjectType=136 And FObjectID=", lRptID));
  call.execute(sql("Delete From t_ObjectAccessType Where FObjectType=136 And FObjectID=", lRptID));
  call.execute(sql("delete from t_objectaccess where fgroupid=251 and fobjecttype=136 and fobjectid=", lRptID));
  finishWithMenu(call);
  return true;
}

bool SrvRptUpdate::DelRptViaName(const std::string& sDsn, const std::string& sRptName, std::int32_t lRptType) {
  auto call = beginWork(sDsn);
  const std::string name = doubled(sRptName);
  call.execute(sql(" Delete From T_Rpt_Right Where FRptID =(Select FRptID From T_Rpt_Content Where FRptName='", name,
                   "' and FRptType =", lRptType, ")", "\r\n", " Delete From T_Rpt_Content Where FRptName='", name,
                   "' and FRptType =", lRptType));
  finishWithMenu(call);
  return true;
}

bool SrvRptUpdate::ReRptName(const std::string& sDsn, const std::string& sOldName, const std::string& sNewName) {
  auto call = beginWork(sDsn);
  const std::string column = nameColumn("FRptName");
  call.execute(sql("Update t_Rpt_Content Set ", column, "='", doubled(sNewName), "' Where ", column, "='",
                   doubled(sOldName), "'"));
  finishWithMenu(call);
  return true;
}

void SrvRptUpdate::SetReportProp(const std::string& sDsn, std::int32_t lRptID,
                                 std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginWork(sDsn);
  const auto row = call.openKeyset(sql(" Select * From t_Rpt_Content Where FRptID=", lRptID));
  if (isEmpty(*row)) {
    throw AutomationError(service_error::ruleViolated, "SrvRptUpdate.SetReportProp",
                          sql(translate("不存在报表ID "), lRptID));
  }
  if (!Properties) raise(RuntimeError::objectNotSet);
  for (std::int32_t i = 1; i <= Properties->count(); ++i) {
    const std::string standard = Properties->name(i);
    const bool isType = toInt32(standard) == natureStandard;
    row->setValue(isType ? "FRptType" : "F" + standard, Properties->item(standard));
  }
  row->update();
  call.complete();
}

bool SrvRptUpdate::ImportRpt(std::string& sProps, std::string& sID) {
  auto call = beginWork(sProps);
  const std::int16_t userID = currentUserID16();
  const auto templates =
      call.open(sql("select FRPTID,FRptName from t_RPT_Content a Where F1001 =", sID, " And frpttype = 3",
                    " and not exists (select 1 from t_RPT_Content b where b.frptname=a.frptname and b.frpttype=1)"),
                CursorType::forwardOnly, LockType::readOnly);
  if (templates->state() == ObjectState::open && templates->recordCount() > 0) {
    for (; !templates->eof(); templates->moveNext()) {
      const std::int32_t oldID = toInt32(templates->value("FRptID"));
      const std::string name = without(toText(templates->value("FRptName")), regimeName(sID));
      const std::int32_t newID =
          SavePlxToSrv(sProps, "报表系统", name, "", userID, missingArgument, 0, 0, report_type::ordinary);
      if (newID <= 1) continue;
      call.execute(sql("update t_RPT_Content set FRptData=b.FRptData,FPrinterBuf=b.FPrinterBuf",
                       "  from (select FRptData,FPrinterBuf from t_RPT_Content where  FRptID=", oldID, ") b",
                       "  where FRptID =", newID));
    }
  }
  // Saving has opened the data source again: the object's context is the one of the last report that was saved.
  context().completeWork();
  return false;
}

}  // namespace tolvane
