// Report folders.
#include "frame/sql_text.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {

bool SrvRptUpdate::Create(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath) {
  auto call = beginWork(sDsn);
  const auto folder = call.openKeyset(
      sql("Select * From t_Rpt_Path Where ", "FPathName='", sPathName, "' And FParentPath='", sParentPath, "'"));
  if (isEmpty(*folder)) {
    folder->addNew();
    folder->setValue("FPathName", sPathName);
    folder->setValue("FParentPath", sParentPath);
    folder->update();
  }
  call.complete();
  return false;
}

bool SrvRptUpdate::Delete(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath) {
  auto call = beginWork(sDsn);
  call.execute(sql("Delete From t_Rpt_Path Where ", "FPathName='", sPathName, "' And FParentPath='", sParentPath, "'"));
  call.complete();
  return false;
}

bool SrvRptUpdate::Update(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath,
                          const std::string& sNewName, const std::string& sNewParent) {
  auto call = beginWork(sDsn);
  const auto folder = call.openKeyset(
      sql("Select * From t_Rpt_Path Where ", "FPathName='", sNewName, "' And FParentPath='", sNewParent, "'"));
  // Clients find the folder by the new pair and hand its values in as the old one.
  if (!isEmpty(*folder)) {
    folder->setValue("FPathName", sPathName);
    folder->setValue("FParentPath", sParentPath);
    folder->update();
  }
  call.complete();
  return false;
}

}  // namespace tolvane
