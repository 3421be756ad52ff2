// RptPropItemUpdate: maintains classification items, audit marks and analysis documents.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Creates, changes and deletes the items of users' own classification standards (t_Rpt_PropItem), each change ending
/// with the refresh of the function menu in the call's transaction; marks reports as approved (t_Rpt_LeaderAudit) and
/// stores analysis documents (t_Rpt_EISDOC). Numbers and names come from the caller's bag under "FNumber" and "FName"
/// and go into SQL as they are. Broken rules raise 80044047h; built-in items are refused with Create's Source.
class RptPropItemUpdate : public Service {
 public:
  explicit RptPropItemUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Items (rpt_prop_item_update.cpp)

  /// Adds an item under the next free identifier of all standards from 101 on, with one name in all three languages, a
  /// blank behind the English one. Always 0: callers look the identifier up. Refused: a built-in standard, one that
  /// does not exist, an empty number or name, a number or name that the standard has.
  std::int32_t Create(const std::string& sDsn, std::int32_t PropClsID, const std::shared_ptr<PropertyBag>& Properties);
  /// Changes the number, and the name in the caller's language. "FPropClsID" of the bag (0 when it is not there) is the
  /// standard in which the two must be new; the item stays in its own all the same. Refused: a built-in item, one that
  /// does not exist, an empty number or name, another item's number or name.
  void Update(const std::string& sDsn, std::int32_t PropItemID, const std::shared_ptr<PropertyBag>& Properties);
  /// Removes an item; the reports under it are filed under none. Refused: a built-in item, one that does not exist.
  void Delete(const std::string& sDsn, std::int32_t PropItemID);

  // Audit marks and analysis documents (rpt_prop_item_update_documents.cpp)

  /// Marks a report as approved by a user, beside marks that are there. 1, or 0 on any failure.
  std::int32_t SetRptIsAudit(const std::string& sDsn, std::int32_t lngRptID, std::int32_t lngUserID,
                             const std::string& sUserName);
  /// Takes all marks off a report. 1, or 0 on any failure.
  std::int32_t RevokeRptIsAudit(const std::string& sDsn, std::int32_t lngRptID);
  /// Stores a document of today, unchecked, and answers its identifier. Its bytes are the elements of `vDOC` from index
  /// 0 to the upper bound in turn; none when the upper bound is below 0. Error 9 when the array begins above 0.
  Value PutOutDoc(const std::string& sDsn, const std::string& sFileName, const std::string& sType, VariantArray& vDOC);
  /// Removes the document of that identifier if it bears that name, too. Always True.
  Value DelEISDoc(const std::string& sDsn, const std::string& FName, std::int32_t FID);
};

}  // namespace tolvane
