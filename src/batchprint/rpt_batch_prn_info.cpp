#include "batchprint/rpt_batch_prn_info.h"

#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {

ClassDescription RptBatchPrnInfo::description() {
  using C = RptBatchPrnInfo;
  return describe<C>("RptBatchPrnInfo", TransactionMode::supported, "Reads batch print schemes.")
      .method(2, "GetList", &C::GetList, "Lists all schemes.", {"sDsn"})
      .method(3, "GetDetail", &C::GetDetail, "Gives a scheme with its reports.", {"sDsn", "FID"})
      .method(4, "IsExists", &C::IsExists, "Tells whether a scheme has that name.", {"sDsn", "sSchemeName"});
}

std::shared_ptr<Recordset> RptBatchPrnInfo::GetList(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  return call.execute("SELECT * FROM t_Rpt_PrintScheme");
}

std::shared_ptr<Recordset> RptBatchPrnInfo::GetDetail(const std::string& sDsn, std::int32_t FID) {
  auto call = beginCall(sDsn);
  return call.execute(sql("SELECT a.*,b.* FROM t_Rpt_PrintScheme a ",
                          " INNER JOIN t_Rpt_PrintSchemeDetail b ON a.FSchemeID=b.FSchemeID",
                          " Where a.FSchemeID=", FID));
}

bool RptBatchPrnInfo::IsExists(const std::string& sDsn, const std::string& sSchemeName) {
  auto call = beginCall(sDsn);
  if (sSchemeName.empty()) return false;
  const auto rows = call.execute(sql("If Exists (SELECT FSchemeID FROM t_Rpt_PrintScheme WHERE FSchemeName='",
                                     sSchemeName, "' )", "Select 1 as Result ", " Else ", "Select 0 as Result "));
  const std::string answer(trim(toText(rows->value("Result"))));
  rows->close();
  rows->detach();
  return toInt32(answer) == 1;
}

}  // namespace tolvane
