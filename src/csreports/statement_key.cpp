#include "csreports/statement_key.h"

#include "frame/sql_text.h"
#include "platform/calendar.h"

namespace tolvane {

// Every day that goes into SQL text goes through here. Any form with marks in it is read by the order of day and month
// of the login's language: "2012-03-04" is the third of April to a British login, and no date at all when the day is
// above 12. Eight digits are year, month and day to every language, for SQL Server and for the embedded engine alike.
std::string dayText(Date day) {
  return compactText(day);
}

std::string periodOrDay(std::int32_t year, std::int32_t period, Date day) {
  if (year >= 0 || period >= 0) return sql(" AND FYear=", year, " AND  FPeriod=", period);
  return sql(" AND FYear < 0 AND FPeriod <0 AND FDay='", dayText(day), "'");
}

std::string statementOf(std::int32_t type, std::int32_t currencyID, std::string_view companyNum, std::int32_t year,
                        std::int32_t period, Date day) {
  return sql(" AND FRptType=", type, " AND FCurrencyID=", currencyID, " AND FCompanyNum='", companyNum, "'",
             periodOrDay(year, period, day));
}

}  // namespace tolvane
