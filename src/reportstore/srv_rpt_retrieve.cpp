#include "reportstore/srv_rpt_retrieve.h"

namespace tolvane {

ClassDescription SrvRptRetrieve::description() {
  using C = SrvRptRetrieve;
  constexpr std::int32_t ordinary = 1;
  return describe<C>("SrvRptRetrieve", TransactionMode::supported, "Reads the server report store.")
      .method(2, "GetRptPlx", &C::GetRptPlx, "Fetches a report's document and print settings by identifier.",
              {"sDsn", "lRptID", "vPlx", optional("vPrinterBuf")})
      .method(3, "GetRptViaName", &C::GetRptViaName, "Fetches a report's document and print settings by name and type.",
              {"sDsn", "sRptName", "vPlx", optional("vPrinterBuf"), optional("lRptType", ordinary)})
      .method(4, "GetDetailByID", &C::GetDetailByID, "Gives all columns of a report's row.", {"sDsn", "RptID"})
      .method(5, "GetDetailByName", &C::GetDetailByName, "Gives a report's header and a user's right on it.",
              {"sDsn", "sRptName", "lUserID"})
      .method(6, "ExistenceCheck", &C::ExistenceCheck, "Finds a report's identifier by identifier or by name and type.",
              {"sDsn", optional("lRptID"), optional("sRptName"), optional("lRptType", ordinary)})
      .method(7, "IsValidRpt", &C::IsValidRpt, "Tells whether a report name is still free.",
              {"sDsn", "sRptName", optional("lRptType", ordinary)})
      .method(8, "GetCurUserID", &C::GetCurUserID, "Tells the calling user's identifier.", {"sDsn"})
      .method(9, "GetRptlist", &C::GetRptlist, "Lists the reports that the caller may see, and all templates.",
              {"sDsn", "objRptInfo", optional("sViewCode"), optional("lGetStyle", ordinary)})
      .method(10, "GetRptlistOrderBy", &C::GetRptlistOrderBy, "Lists reports in an order given by column names.",
              {"sDsn", "objRptInfo", optional("sOrderStr"), optional("lGetStyle", ordinary)})
      .method(11, "GetRptlistWeb", &C::GetRptlistWeb, "Lists reports for the web pages.",
              {"sDsn", "objRptInfo", optional("sViewCode"), optional("lGetStyle", ordinary)})
      .method(12, "GetRptRS", &C::GetRptRS, "Gives the entries of the web function menu.", {"sDsn"})
      .method(13, "GetSchemeRptList", &C::GetSchemeRptList, "Lists the reports that a batch print scheme may hold.",
              {"sDsn"})
      .method(14, "GetList", &C::GetList, "Lists reports with their classification, filtered by column values.",
              {"sDsn", optional("Filter")})
      .method(15, "GetRptRight", &C::GetRptRight, "Tells the caller's right on a report.",
              {"sDsn", "lRptID", "lRightCode"})
      .method(16, "GetRptAuthorize", &C::GetRptAuthorize, "Tells all users' rights on a report.",
              {"sDsn", "lRptID", "lUserID", "lRightCode"})
      .method(17, "GetViewCode", &C::GetViewCode, "Tells the stored order of the caller's report list.",
              {"sDsn", "sOrderStr"})
      .method(18, "GetUserRptView", &C::GetUserRptView, "Tells the order of the caller's report list, normalised.",
              {"sDsn"})
      .method(19, "GetSqlExecResult", &C::GetSqlExecResult, "Runs a query and gives its rows.",
              {"sDsn", "sSql", "oResult"});
}

}  // namespace tolvane
