// Saving and deleting statements and samples; status fields.
#include "csreports/cs_update.h"
#include "csreports/statement_key.h"
#include "frame/sql_text.h"
#include "platform/error.h"

namespace tolvane {
namespace {

/// The type as the column takes it.
constexpr auto ordinaryType = static_cast<std::int16_t>(statement_type::ordinary);

}  // namespace

bool CsUpdate::SaveCsData(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                          std::int32_t lngRptGroupID, std::int32_t lCurrencyID, const std::string& sCompanyNum,
                          Value& varRptContent) {
  auto call = beginCall(sDsn);
  const auto row =
      call.openKeyset(sql("Select * From t_CsRptContent Where FRptGroupID=", lngRptGroupID,
                          statementOf(statement_type::ordinary, lCurrencyID, sCompanyNum, lYear, lPeriod, dDay)));
  if (isEmpty(*row)) {
    row->addNew();
    row->setValue("FRptGroupID", lngRptGroupID);
    row->setValue("frpttype", ordinaryType);
    row->setValue("FCompanyNum", sCompanyNum);
    row->setValue("FYear", lYear);
    row->setValue("FPeriod", lPeriod);
    row->setValue("FDay", dDay);
    row->setValue("FCurrencyID", lCurrencyID);
  }
  row->setValue("FRptContent", varRptContent);
  row->update();
  row->close();
  return true;
}

bool CsUpdate::SaveCsSample(const std::string& sDsn, std::int32_t lRptGroupID, Value& varRptContent) {
  auto call = beginCall(sDsn);
  const auto row =
      call.openKeyset(sql("Select * From t_CsRptSample Where FRptGroupID =", lRptGroupID, " And FRptType =1"));
  if (isEmpty(*row)) {
    row->addNew();
    row->setValue("FRptGroupID", lRptGroupID);
    row->setValue("frpttype", ordinaryType);
  }
  row->setValue("FRptContent", varRptContent);
  row->update();
  row->close();
  return true;
}

bool CsUpdate::DelOneCsRpt(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                           std::int32_t lngRptGroupID, std::int32_t lngCurrencyID, std::string& sCompanyNum) {
  try {
    auto call = beginCall(sDsn);
    call.execute(sql("Delete t_CsRptContent Where  FRptGroupID =", lngRptGroupID,
                     statementOf(statement_type::ordinary, lngCurrencyID, sCompanyNum, lYear, lPeriod, dDay)));
    return true;
  } catch (const AutomationError&) {
    return false;
  }
}

bool CsUpdate::CsDataStatusUpdate(const std::string& sDsn, const std::string& sFilterStr, const std::string& sFieldName,
                                  const Value& varValue) {
  try {
    auto call = beginCall(sDsn);
    const auto rows = call.openKeyset(sql("Select ", sFieldName, " From t_CsRptContent Where ", sFilterStr));
    if (!isEmpty(*rows)) {
      rows->setValue(sFieldName, varValue);
      rows->update();
    }
    rows->close();
    return true;
  } catch (const AutomationError&) {
    return false;
  }
}

}  // namespace tolvane
