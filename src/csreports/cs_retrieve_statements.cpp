// Statements: one document, the groups that have some, identifiers, status fields.
#include "csreports/cs_retrieve.h"
#include "csreports/statement_key.h"
#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

// What CsDataStatusInfo answers.
constexpr std::int16_t statusSet = 1;
constexpr std::int16_t statusNoStatement = 2;
constexpr std::int16_t statusNotSet = 3;

}  // namespace

bool CsRetrieve::GetCsData(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                           std::int32_t lngRptGroupID, std::int32_t lCurrencyID, const std::string& sCompanyNum,
                           Value& vPlx, std::int32_t lRptType) {
  auto call = beginCall(sDsn);
  if (lRptType == statement_type::byDay) lYear = lPeriod = noPeriod;
  if (lRptType == 0) lRptType = statement_type::ordinary;
  const auto rows = call.open(sql("Select FRptContent From t_CsRptContent Where FRptGroupID=", lngRptGroupID,
                                  statementOf(lRptType, lCurrencyID, sCompanyNum, lYear, lPeriod, dDay)),
                              CursorType::forwardOnly, LockType::readOnly);
  const bool found = !isEmpty(*rows);
  if (found) vPlx = rows->value("FRptContent");
  rows->close();
  return found;
}

bool CsRetrieve::GetExistRpt(const std::string& sDsn, std::int32_t lYear, std::int32_t lMonth, Date dDay,
                             std::int32_t lCurrencyID, ObjectRef& oExistRptList) {
  try {
    auto call = beginCall(sDsn);
    const CalendarTime day = toCalendar(dDay);
    const std::int32_t quarter = (day.month - 1) / 3;
    const std::int32_t half = (day.month - 1) / 6;
    const std::string text = dayText(dDay);
    const auto rows = call.openKeyset(sql(
        "Select b.*,a.FRptType From t_CsRptContent a inner join t_CsRptGroup b ", " on a.FRptGroupID = b.FRptGroupID ",
        " WHERE a.FCurrencyID=", lCurrencyID, " And (", "( a.FYear < 0 AND a.FPeriod <0 AND a.FDay='", text, "') Or (",
        "(a.FRptType =5 And ((", " a.FYear=-100 ", " And FCycleID = 0 And ", " FDay ='", text, "')",  //
        " Or (FCycleID= 1  And Datepart(Year,FDay)='", day.year, "' And Datepart(Month,FDay)='", day.month, "')",
        " Or (FCycleID= 3  And Datepart(Year,FDay)='", day.year, "' And (Datepart(Month,FDay)-1)/3='", quarter,
        "')",  //
        " Or (FCycleID= 6  And Datepart(Year,FDay)='", day.year, "' And (Datepart(Month,FDay)-1)/6='", half, "')",
        " Or (FCycleID= 12 And Datepart(Year,FDay)='", day.year, "')", " ))) Or ",  //
        "( a.FYear=", lYear, " AND ", lMonth, "<= a.FPeriod*b.FCycleID AND ", lMonth, ">(a.FPeriod-1)*b.FCycleID )",
        ")", " Order by b.FRptGroupNum "));
    oExistRptList = rowList(platform(), *rows);
    return true;
  } catch (const AutomationError&) {
    return false;
  }
}

std::int32_t CsRetrieve::IsExists(const std::string& sDsn, const std::string& vFilter) {
  try {
    auto call = beginCall(sDsn);
    // Without a condition every statement would answer.
    if (vFilter.empty()) return 0;
    const auto rows = call.openKeyset(sql("SELECT FRptID FROM t_CsRptContent WHERE ", vFilter));
    const std::int32_t found = rows->recordCount() != 0 ? toInt32(rows->value("FRptID")) : 0;
    rows->close();
    return found;
  } catch (const AutomationError&) {
    return 0;
  }
}

bool CsRetrieve::CsDataStatusInfo(const std::string& sDsn, const std::string& sFilterStr, const std::string& sFieldName,
                                  Value& vValue) {
  try {
    auto call = beginCall(sDsn);
    const auto rows = call.execute(sql("Select ", sFieldName, " From t_CsRptContent Where ", sFilterStr));
    if (isEmpty(*rows)) {
      vValue = statusNoStatement;
      return true;
    }
    const Value status = rows->value(sFieldName);
    vValue = !status.isNull() && toBoolean(status) ? statusSet : statusNotSet;
    return true;
  } catch (const AutomationError&) {
    return false;
  }
}

}  // namespace tolvane
