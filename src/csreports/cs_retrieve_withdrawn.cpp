// Withdrawn statements. They name group and currency by number, so that they stay readable when either is gone.
#include "csreports/cs_retrieve.h"
#include "csreports/statement_key.h"
#include "frame/sql_text.h"
#include "platform/error.h"

namespace tolvane {

bool CsRetrieve::GetDeleteCsRpt(const std::string& sDsn, const std::string& sRptGroupNum, std::int32_t lYear,
                                std::int32_t lPeriod, Date dDay, const std::string& sCurrencyNum,
                                const std::string& sCompanyNum, Value& vPlx, std::int32_t lRptType) {
  try {
    auto call = beginCall(sDsn);
    // Unlike in GetCsData, a type of 0 is asked for as 0.
    if (lRptType == statement_type::byDay) lYear = lPeriod = noPeriod;
    const auto rows = call.open(sql("Select FRptContent From t_CsRptContentDel Where FRptGroupNum='", sRptGroupNum, "'",
                                    " AND FCurrencyNum='", sCurrencyNum, "'", " AND FCompanyNum='", sCompanyNum, "'",
                                    " AND FRptType=", lRptType, periodOrDay(lYear, lPeriod, dDay)),
                                CursorType::forwardOnly, LockType::readOnly);
    const bool found = !isEmpty(*rows);
    if (found) vPlx = rows->value("FRptContent");
    rows->close();
    return found;
  } catch (const AutomationError&) {
    return false;
  }
}

std::shared_ptr<Recordset> CsRetrieve::GetDelCsSample(const std::string& sDsn) {
  try {
    auto call = beginCall(sDsn);
    return call.open(
        "Select FRptGroupNum,FRptGroupName,FCycleID,FBaseRptStyle From t_CsRptContentDel Group By "
        "FRptGroupNum,FRptGroupName,FCycleID,FBaseRptStyle ",
        CursorType::forwardOnly, LockType::readOnly);
  } catch (const AutomationError&) {
    return nullptr;
  }
}

}  // namespace tolvane
