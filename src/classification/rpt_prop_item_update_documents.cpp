// Audit marks and analysis documents, written.
#include "classification/rpt_prop_item_update.h"
#include "frame/sql_text.h"
#include "platform/error.h"

namespace tolvane {
namespace {

constexpr std::int16_t unchecked = 0;

}  // namespace

std::int32_t RptPropItemUpdate::SetRptIsAudit(const std::string& sDsn, std::int32_t lngRptID, std::int32_t lngUserID,
                                              const std::string& sUserName) {
  try {
    auto call = beginCall(sDsn);
    call.execute(sql("InSert Into t_Rpt_LeaderAudit(FRptID,FUserID,FUserName) Values(", lngRptID, ",", lngUserID, ",'",
                     sUserName, "')"));
    return 1;
  } catch (const AutomationError&) {
    return 0;  // the answer for a mark that could not be set, whatever the reason
  }
}

std::int32_t RptPropItemUpdate::RevokeRptIsAudit(const std::string& sDsn, std::int32_t lngRptID) {
  try {
    auto call = beginCall(sDsn);
    call.execute(sql("Delete t_Rpt_LeaderAudit Where FRptID=", lngRptID));
    return 1;
  } catch (const AutomationError&) {
    return 0;  // likewise
  }
}

Value RptPropItemUpdate::PutOutDoc(const std::string& sDsn, const std::string& sFileName, const std::string& sType,
                                   VariantArray& vDOC) {
  auto call = beginCall(sDsn);
  // No document has identifier 0: the set is there for adding to it.
  const auto document = call.connection()->newRecordset();
  document->setCursorLocation(CursorLocation::client);
  document->open("Select * from t_Rpt_EISDOC Where FID=0 ", CursorType::keyset, LockType::optimistic);
  document->addNew();
  document->setValue("FName", sFileName);
  document->setValue("FLastDate", platform().today());
  document->setValue("FChecked", unchecked);
  document->setValue("FType", sType);
  for (std::int32_t i = 0; i <= vDOC.upper(); ++i) document->appendChunk("FBinaryImg", vDOC.at(i));
  document->update();
  return document->value("FID");
}

Value RptPropItemUpdate::DelEISDoc(const std::string& sDsn, const std::string& FName, std::int32_t FID) {
  auto call = beginCall(sDsn);
  call.execute(sql("delete from t_Rpt_EISDOC where FID=", FID, " and FName='", FName, "'"));
  return true;
}

}  // namespace tolvane
