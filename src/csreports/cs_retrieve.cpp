#include "csreports/cs_retrieve.h"

#include "csreports/statement_key.h"

namespace tolvane {

ClassDescription CsRetrieve::description() {
  using C = CsRetrieve;
  return describe<C>("CsRetrieve", TransactionMode::supported, "Reads the companies' periodic statements.")
      .method(2, "GetCsData", &C::GetCsData, "Fetches a statement's document.",
              {"sDsn", "lYear", "lPeriod", "dDay", "lngRptGroupID", "lCurrencyID", "sCompanyNum", "vPlx",
               optional("lRptType", statement_type::ordinary)})
      .method(3, "GetExistRpt", &C::GetExistRpt, "Lists the groups that have a statement at a date.",
              {"sDsn", "lYear", "lMonth", "dDay", "lCurrencyID", "oExistRptList"})
      .method(4, "IsExists", &C::IsExists, "Finds a statement's identifier by a condition.", {"sDsn", "vFilter"})
      .method(5, "CsDataStatusInfo", &C::CsDataStatusInfo, "Reads a status field of a statement.",
              {"sDsn", "sFilterStr", "sFieldName", "vValue"})
      .method(6, "GetRptGroupList", &C::GetRptGroupList, "Lists the groups of the older layout left to convert.",
              {"sDsn", "oRptGroupList"})
      .method(7, "GetRptGroupListNew", &C::GetRptGroupListNew, "Lists the report groups.", {"sDsn", "oRptGroupList"})
      .method(8, "GetRptGroupID", &C::GetRptGroupID, "Finds a group's identifier by its number.",
              {"sDsn", "sRptGroupNum"})
      .method(9, "GetCsRptGroupID", &C::GetCsRptGroupID,
              "Finds a withdrawn statement's identifier by its group's number.", {"sDsn", "sCsRptNum"})
      .method(10, "GetCsRptGroupNum", &C::GetCsRptGroupNum, "Tells the group number of a withdrawn statement.",
              {"sDsn", "lCsRptID"})
      .method(11, "GetCurrencyID", &C::GetCurrencyID, "Finds a currency's identifier by its number.",
              {"sDsn", "sCurrencyNum"})
      .method(12, "GetCurrencyNum", &C::GetCurrencyNum, "Tells a currency's number.", {"sDsn", "lCurrencyID"})
      .method(13, "GetNewCurrencyInfo", &C::GetNewCurrencyInfo, "Tells all currencies in one text.", {"sDsn"})
      .method(14, "GetCurCompanyNum", &C::GetCurCompanyNum, "Tells the number of the account set's own company.",
              {"sDsn"})
      .method(15, "ReadProfileValue", &C::ReadProfileValue, "Reads a setting.", {"sDsn", "sKey"})
      .method(16, "IsNeedUpGrade", &C::IsNeedUpGrade, "Tells whether the tables of the older layout are there.",
              {"sDsn"})
      .method(17, "GetDeleteCsRpt", &C::GetDeleteCsRpt, "Fetches a withdrawn statement's document.",
              {"sDsn", "sRptGroupNum", "lYear", "lPeriod", "dDay", "sCurrencyNum", "sCompanyNum", "vPlx",
               optional("lRptType", statement_type::ordinary)})
      .method(18, "GetDelCsSample", &C::GetDelCsSample, "Lists the groups that have withdrawn statements.", {"sDsn"});
}

}  // namespace tolvane
