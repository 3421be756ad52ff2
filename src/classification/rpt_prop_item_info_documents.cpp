// Audit marks and analysis documents, read.
#include "classification/rpt_prop_item_info.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {

Value RptPropItemInfo::CheckRptIsAudit(const std::string& sDsn, std::int32_t lngRptID) {
  auto call = beginCall(sDsn);
  const auto marks = call.openKeyset(sql("Select * From t_Rpt_LeaderAudit Where FRptID=", lngRptID));
  Value mark;
  if (!isEmpty(*marks)) {
    const Value name = marks->value("FUserName");
    mark = sql(name.isNull() ? std::string() : toText(name), ",", toInt32(marks->value("FUserID")));
  }
  marks->close();
  return mark;
}

std::int32_t RptPropItemInfo::GetFUserID(const std::string& sDsn, std::int32_t lngRptID) {
  auto call = beginCall(sDsn);
  const auto marks = call.openKeyset(sql("Select FUserID From t_Rpt_LeaderAudit Where FRptID=", lngRptID));
  const std::int32_t userID = isEmpty(*marks) ? 0 : toInt32(marks->value("FUserID"));
  marks->close();
  return userID;
}

bool RptPropItemInfo::CheckValidEISFName(const std::string& sDsn, const std::string& sEISFName) {
  auto call = beginCall(sDsn);
  const auto documents = call.openKeyset(sql("Select * from t_Rpt_EISDOC WHERE FName='", sEISFName, "'"));
  const bool isFree = documents->recordCount() == 0;
  documents->close();
  return isFree;
}

Value RptPropItemInfo::GetEISFileName(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const auto documents = call.openKeyset("Select FID,FName from t_Rpt_EISDOC ");
  std::string names;
  for (; !documents->eof(); documents->moveNext()) {
    if (!names.empty()) names += ",";
    names += sql(toText(documents->value("FName")), "||", toInt32(documents->value("FID")));
  }
  documents->close();
  return names;
}

}  // namespace tolvane
