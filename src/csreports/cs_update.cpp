#include "csreports/cs_update.h"

namespace tolvane {

ClassDescription CsUpdate::description() {
  using C = CsUpdate;
  return describe<C>("CsUpdate", TransactionMode::required, "Writes the companies' periodic statements.")
      .method(2, "SaveCsData", &C::SaveCsData, "Stores a statement's document.",
              {"sDsn", "lYear", "lPeriod", "dDay", "lngRptGroupID", "lCurrencyID", "sCompanyNum", "varRptContent"})
      .method(3, "SaveCsSample", &C::SaveCsSample, "Stores the sample document of a group.",
              {"sDsn", "lRptGroupID", "varRptContent"})
      .method(4, "DelOneCsRpt", &C::DelOneCsRpt, "Deletes a statement.",
              {"sDsn", "lYear", "lPeriod", "dDay", "lngRptGroupID", "lngCurrencyID", "sCompanyNum"})
      .method(5, "CsDataStatusUpdate", &C::CsDataStatusUpdate, "Sets a status field of a statement.",
              {"sDsn", "sFilterStr", "sFieldName", "varValue"})
      .method(6, "UpGradeOneCsRpt", &C::UpGradeOneCsRpt, "Converts a group of the older layout.",
              {"sDsn", "lngOldRptGroupID", "lngNewRptGroupID", "lCurrencyID", "sCurrencyNum"});
}

}  // namespace tolvane
