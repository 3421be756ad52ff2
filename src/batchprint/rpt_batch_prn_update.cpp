#include "batchprint/rpt_batch_prn_update.h"

#include "batchprint/scheme_reports.h"
#include "frame/object_argument.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {

ClassDescription RptBatchPrnUpdate::description() {
  using C = RptBatchPrnUpdate;
  return describe<C>("RptBatchPrnUpdate", TransactionMode::required, "Writes batch print schemes.")
      .method(2, "Add", &C::Add, "Adds a scheme with its reports.", {"sDsn", "sSchemeName", "sAuthor", "vect"})
      .method(3, "Modify", &C::Modify, "Renames a scheme and replaces its reports.",
              {"sDsn", "lSchemeID", "sSchemeName", "vect"})
      .method(4, "Delete", &C::Delete, "Deletes a scheme; the rows of its reports stay.", {"sDsn", "lngSchemeID"});
}

bool RptBatchPrnUpdate::Add(const std::string& sDsn, const std::string& sSchemeName, const std::string& sAuthor,
                            std::shared_ptr<ItemList>& vect) {
  auto call = beginCall(sDsn);
  call.execute(sql("INSERT INTO t_Rpt_PrintScheme (FSchemeName,FAuthor ) Values('", sSchemeName, "','", sAuthor, "')"));
  const auto scheme =
      call.execute(sql("SELECT FSchemeID FROM t_Rpt_PrintScheme WHERE FSchemeName='", sSchemeName, "'"));
  const std::int32_t schemeID = toInt32(scheme->value("FSchemeID"));
  scheme->close();
  call.execute(schemeReportsBatch(schemeID, required(vect)));
  return true;
}

bool RptBatchPrnUpdate::Modify(const std::string& sDsn, std::int32_t lSchemeID, const std::string& sSchemeName,
                               std::shared_ptr<ItemList>& vect) {
  auto call = beginCall(sDsn);
  call.execute(sql("Update t_Rpt_PrintScheme Set FSchemeName='", sSchemeName, "'", " Where FSchemeID=", lSchemeID));
  call.execute(sql("DELETE FROM t_Rpt_PrintSchemeDetail WHERE FSchemeID=", lSchemeID));
  call.execute(schemeReportsBatch(lSchemeID, required(vect)));
  return true;
}

bool RptBatchPrnUpdate::Delete(const std::string& sDsn, std::int32_t lngSchemeID) {
  auto call = beginCall(sDsn);
  // The rows of its reports stay, unlike in Modify.
  call.execute(sql("Delete From t_Rpt_PrintScheme Where ", "FSchemeID=", lngSchemeID));
  return true;
}

}  // namespace tolvane
