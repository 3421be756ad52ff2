// Single reports, by identifier or by name.
#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "frame/variant_record.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "reportstore/report_types.h"
#include "reportstore/srv_rpt_retrieve.h"

namespace tolvane {

void SrvRptRetrieve::handOutDocument(Recordset& rows, Value& vPlx, Value& vPrinterBuf) {
  const bool isVariant = toInt32(rows.value("frpttype")) == report_type::variantDocument;
  vPlx = rows.value("FRptData");
  if (isVariant) vPlx = decodeVariant(platform(), vPlx);
  vPrinterBuf = rows.value("FPrinterBuf");
}

bool SrvRptRetrieve::GetRptPlx(const std::string& sDsn, std::int32_t lRptID, Value& vPlx, Value& vPrinterBuf) {
  auto call = beginCall(sDsn);
  const auto rows =
      call.execute(sql("Select FRptType, FRptData, FPrinterBuf From T_Rpt_Content Where FRptID=", lRptID));
  const bool found = rows->recordCount() > 0;
  if (found) handOutDocument(*rows, vPlx, vPrinterBuf);
  rows->close();
  return found;
}

bool SrvRptRetrieve::GetRptViaName(const std::string& sDsn, const std::string& sRptName, Value& vPlx,
                                   Value& vPrinterBuf, std::int32_t lRptType) {
  auto call = beginCall(sDsn);
  const auto rows = call.openKeyset(sql("Select FRptType, FRptData, FPrinterBuf From T_Rpt_Content Where ",
                                        nameColumn("FRptName"), "='", doubled(sRptName), "' and FRptType=", lRptType));
  const bool found = !isEmpty(*rows);
  if (found) handOutDocument(*rows, vPlx, vPrinterBuf);
  rows->close();
  return found;
}

std::shared_ptr<PropertyBag> SrvRptRetrieve::GetDetailByID(const std::string& sDsn, std::int32_t RptID) {
  auto call = beginCall(sDsn);
  const auto rows =
      call.open(sql("Select * from t_Rpt_Content where FRptID=", RptID), CursorType::forwardOnly, LockType::optimistic);
  return isEmpty(*rows) ? nullptr : propertyBag(platform(), *rows);
}

std::shared_ptr<PropertyBag> SrvRptRetrieve::GetDetailByName(const std::string& sDsn, const std::string& sRptName,
                                                             std::int32_t lUserID) {
  auto call = beginCall(sDsn);
  const std::string columns =
      sql("a.FRptID,a.", nameColumn("FRptName"),
          " as FRptName,a.FSysName,a.FYear,a.FPeriod,a.FOwner,a.FRptType,a.FLastOperator,a.FLastDate");
  const auto rows = call.open(
      sql("Select ", columns,
          ",b.FRightCode from t_Rpt_Content a left join t_Rpt_Right b on a.FRptID =b.FRptID and b.FUserID=", lUserID,
          " where a.", nameColumn("FRptName"), "='", doubled(sRptName), "'", " AND a.FRptType=1 "),
      CursorType::forwardOnly, LockType::optimistic);
  return isEmpty(*rows) ? nullptr : propertyBag(platform(), *rows);
}

std::string SrvRptRetrieve::selectByName(const std::string& sRptName, std::int32_t lRptType) {
  return sql("Select * From T_Rpt_Content Where ", nameColumn("FRptName"), "='", doubled(sRptName), "' And ",
             " FRptType =", lRptType);
}

std::int32_t SrvRptRetrieve::ExistenceCheck(const std::string& sDsn, std::int32_t& lRptID, const std::string& sRptName,
                                            std::int32_t lRptType) {
  auto call = beginCall(sDsn);
  if (sRptName.empty() && lRptID == 0) return 0;
  const auto rows = call.openKeyset(lRptID >= 1 ? sql("Select * From T_Rpt_Content Where FRptID =", lRptID)
                                                : selectByName(sRptName, lRptType));
  const std::int32_t found = isEmpty(*rows) ? 0 : toInt32(rows->value("FRptID"));
  rows->close();
  return found;
}

bool SrvRptRetrieve::IsValidRpt(const std::string& sDsn, const std::string& sRptName, std::int32_t lRptType) {
  auto call = beginCall(sDsn);
  const auto rows = call.execute(selectByName(sRptName, lRptType));
  const bool isFree = rows->recordCount() == 0;
  rows->close();
  return isFree;
}

std::int32_t SrvRptRetrieve::GetCurUserID(const Value& sDsn) {
  try {
    openConnection(toText(sDsn));
    return login().currentUserID();
  } catch (const AutomationError&) {
    return 0;  // a caller that is not known is user 0
  }
}

}  // namespace tolvane
