// Users' rights on reports, and their view of the report list.
#include <limits>

#include "frame/sql_text.h"
#include "platform/error.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {

bool SrvRptUpdate::SetRptRight(const std::string& sDsn, std::int32_t lRptID, Int32Array& lUserID,
                               Int32Array& lRightCode) {
  auto call = beginWork(sDsn);
  call.execute(sql("Delete From T_Rpt_Right Where FRptID = ", lRptID));
  const auto rights = call.openKeyset("T_Rpt_Right");
  for (std::int32_t i = lUserID.lower; i <= lUserID.upper(); ++i) {
    rights->addNew();
    rights->setValue("FRptID", lRptID);
    rights->setValue("FUserID", lUserID.at(i));
    rights->setValue("FRightCode", lRightCode.at(i));
    rights->update();
    // The counter must be able to pass the last index.
    if (i == std::numeric_limits<std::int32_t>::max()) raise(RuntimeError::overflow);
  }
  call.complete();
  return true;
}

void SrvRptUpdate::SetViewOrder(const std::string& sDsn, const std::string& sCode) {
  auto call = beginWork(sDsn);
  const std::int16_t userID = currentUserID16();
  const auto view = call.openKeyset(sql("Select * From T_Rpt_View Where FUserID='", userID, "'"));
  if (isEmpty(*view)) {
    view->addNew();
    view->setValue("FUserID", userID);
  }
  view->setValue("FViewCode", sCode);
  view->update();
  call.complete();
}

}  // namespace tolvane
