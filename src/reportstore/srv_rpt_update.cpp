#include "reportstore/srv_rpt_update.h"

#include "frame/menu_refresh.h"
#include "reportstore/report_types.h"

namespace tolvane {

ClassDescription SrvRptUpdate::description() {
  using C = SrvRptUpdate;
  constexpr std::int32_t none = 0;
  return describe<C>("SrvRptUpdate", TransactionMode::required, "Writes the server report store.")
      .method(2, "SavePlxToSrv", &C::SavePlxToSrv, "Stores a report under its name and type.",
              {"sDsn", "sSysName", "sRptName", "vPlx", "lOwner", optional("vPrinterBuf"), optional("lYear", none),
               optional("lPeriod", none), optional("lRptType", report_type::ordinary)})
      .method(3, "DelReport", &C::DelReport, "Removes a report with its rights and its registration.",
              {"sDsn", "lRptID"})
      .method(4, "DelRptViaName", &C::DelRptViaName, "Removes the report of a name and type with its rights.",
              {"sDsn", "sRptName", optional("lRptType", report_type::ordinary)})
      .method(5, "ReRptName", &C::ReRptName, "Renames all reports of a name.", {"sDsn", "sOldName", "sNewName"})
      .method(6, "SetReportProp", &C::SetReportProp, "Files a report under items of classification standards.",
              {"sDsn", "lRptID", "Properties"})
      .method(7, "ImportRpt", &C::ImportRpt, "Copies the templates of an accounting regime into ordinary reports.",
              {"sProps", "sID"})
      .method(8, "SetRptRight", &C::SetRptRight, "Replaces all users' rights on a report.",
              {"sDsn", "lRptID", "lUserID", "lRightCode"})
      .method(9, "SetViewOrder", &C::SetViewOrder, "Stores the order of the caller's report list.", {"sDsn", "sCode"})
      .method(10, "Create", &C::Create, "Adds a report folder.", {"sDsn", "sPathName", "sParentPath"})
      .method(11, "Delete", &C::Delete, "Removes a report folder.", {"sDsn", "sPathName", "sParentPath"})
      .method(12, "Update", &C::Update, "Changes the folder of the new name and parent into that of the old ones.",
              {"sDsn", "sPathName", "sParentPath", "sNewName", "sNewParent"});
}

void SrvRptUpdate::finishWithMenu(Call& call) {
  refreshFuncMenu(platform(), call);
  call.complete();
}

}  // namespace tolvane
