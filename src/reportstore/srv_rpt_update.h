// SrvRptUpdate: writes the server report store.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Saves and maintains reports. Every method works in the caller's transaction; what fails leaves nothing behind once
/// the host has rolled that back.
class SrvRptUpdate : public Service {
 public:
  explicit SrvRptUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Saving (srv_rpt_update_save.cpp)

  /// Stores a report under its name (in the caller's language) and type: a new one with its creator's full right, or
  /// the document, year, period, owner and print settings of the one that is there. Registers it as a securable object
  /// and refreshes the function menu. Answers the report's identifier. `vPrinterBuf` is stored only when it is given
  /// and not Empty. The name is stored with its apostrophes doubled. Error 80044047h for a blank name.
  std::int32_t SavePlxToSrv(const std::string& sDsn, const std::string& sSysName, const std::string& sRptName,
                            const Value& vPlx, std::int32_t lOwner, const Value& vPrinterBuf, std::int32_t lYear,
                            std::int32_t lPeriod, std::int32_t lRptType);

  // Maintenance (srv_rpt_update_maintenance.cpp). All but SetReportProp refresh the function menu.

  /// Removes a report with its rights and its registration as a securable object. Always True, also for an identifier
  /// that does not exist.
  bool DelReport(const std::string& sDsn, std::int32_t lRptID);
  /// Removes the report of that Chinese name (whatever the caller's language) and type with its rights. The object
  /// registration stays. The database's error when there are several such reports. Always True.
  bool DelRptViaName(const std::string& sDsn, const std::string& sRptName, std::int32_t lRptType);
  /// Gives every report of the old name, of any type, the new one, in the caller's language. Always True.
  bool ReRptName(const std::string& sDsn, const std::string& sOldName, const std::string& sNewName);
  /// Files a report under items: each entry of `Properties` is named by a standard's identifier and holds an item's;
  /// entry 1 is the report's type. Errors: 80044047h when there is no such report, 13 for a name that is no number,
  /// 3265 for a standard without a column.
  void SetReportProp(const std::string& sDsn, std::int32_t lRptID, std::shared_ptr<PropertyBag>& Properties);
  /// Copies the templates of an accounting regime into ordinary reports owned by the caller, under the template's name
  /// without the regime's. `sProps` is the data-source name, `sID` the regime's item in standard 1001. Always False,
  /// whatever was imported; both texts come back as they went in.
  bool ImportRpt(std::string& sProps, std::string& sID);

  // Rights and views (srv_rpt_update_rights.cpp)

  /// Replaces all rights on a report: one row for each element of `lUserID`, with the code at the same index of
  /// `lRightCode`. The arrays may have any bounds; `lUserID` without elements leaves no rights. Always True. Error 9 at
  /// the first index that `lRightCode` does not have, 6 when the index runs past the 32-bit range.
  bool SetRptRight(const std::string& sDsn, std::int32_t lRptID, Int32Array& lUserID, Int32Array& lRightCode);
  /// Stores the order of the caller's report list, in place of the one that was stored.
  void SetViewOrder(const std::string& sDsn, const std::string& sCode);

  // Folders (srv_rpt_update_folders.cpp). A folder is a name and its parent's name. Names go into SQL as they are: one
  // with an apostrophe fails with the database's error. Always False; callers learn of failure through an error alone.

  /// Adds a folder unless it is there.
  bool Create(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath);
  /// Removes one folder; its children and its reports stay.
  bool Delete(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath);
  /// Turns the folder (`sNewName`, `sNewParent`), if there is one, into (`sPathName`, `sParentPath`): the reverse of
  /// what the parameters' names say. Children keep their parent's old name.
  bool Update(const std::string& sDsn, const std::string& sPathName, const std::string& sParentPath,
              const std::string& sNewName, const std::string& sNewParent);

 private:
  struct Report;

  /// Adds or changes the report's row; answers its identifier, 0 for a new row's, which only the database knows.
  std::int32_t storeReport(Call& call, const Report& report, bool& isNew);
  /// Gives the creator of a new report the full right on it.
  void grantCreatorRight(Call& call, std::int32_t lRptID, std::int16_t userID);
  /// Makes the report known to the suite's object security: its name, its two kinds of access, the users group's row.
  void registerObject(Call& call, std::int32_t lRptID, const std::string& name);
  /// Refreshes the function menu and gives the completion call: how a change that the menu shows ends.
  void finishWithMenu(Call& call);
};

}  // namespace tolvane
