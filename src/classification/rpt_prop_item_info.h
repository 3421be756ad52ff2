// RptPropItemInfo: reads classification items, audit marks and analysis documents.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Answers questions about the items of classification standards (t_Rpt_PropItem), the suite's cash-flow items (t_Item,
/// class 9), the marks of leaders on reports (t_Rpt_LeaderAudit) and the analysis documents (t_Rpt_EISDOC). Record sets
/// are detached copies. Texts from the caller go into SQL as they are.
class RptPropItemInfo : public Service {
 public:
  explicit RptPropItemInfo(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Items (rpt_prop_item_info.cpp)

  /// The identifier of the item with that identifier, else of the one with that number in that standard; 0 when there
  /// is none, or neither was asked in full.
  std::int32_t ExistenceCheck(const std::string& sDsn, const Value& PropItemID, const Value& PropClsID,
                              const Value& Number);
  /// FPropClsID, FPropItemID, FNumber, FName of one item. Error 80044041h when there is none.
  std::shared_ptr<Recordset> GetDetail(const std::string& sDsn, std::int32_t PropItemID);
  /// The same columns of every item with that number, of whatever standard. Fails as GetDetail does, under its name.
  std::shared_ptr<Recordset> GetDetailByNumber(const std::string& sDsn, std::int32_t ItemClassID,
                                               const std::string& Number);
  /// All items that satisfy `Filter`, by number unless `Sort` says otherwise. `ItemClassID` and `Options` have no
  /// effect.
  std::shared_ptr<Recordset> GetList(const std::string& sDsn, std::int32_t ItemClassID, std::int32_t Options,
                                     const std::string& Filter, const std::string& Sort);
  /// FNumber, FName, FLevel of the children of the one item of t_Item that has children, that number and that name. The
  /// FItemID rows of the items themselves when there is none or more than one.
  std::shared_ptr<Recordset> GetSubItem(const std::string& sDsn, const std::string& sFNumber, const std::string& sName);
  /// All cash-flow items below the roots.
  std::shared_ptr<Recordset> GetCashItem(const std::string& sDsn);
  /// The rows of t_Item that satisfy `Filter`, of any class; all without one.
  std::shared_ptr<Recordset> GetCashSubItem(const std::string& sDsn, std::string& Filter);
  /// The cash-flow item of that number. Error 80044041h when there is none.
  std::shared_ptr<Recordset> GetCashDetailByNumber(const std::string& sDsn, const std::string& Number);
  /// Writes a report's FVisibleInList ("1" shows it in lists). Always True.
  Value UpdateHiddenItem(const std::string& sDsn, std::int32_t lngRptID, const std::string& sFVisibleInList);

  // Audit marks and analysis documents (rpt_prop_item_info_documents.cpp)

  /// "name,identifier" of the user who first approved the report; Empty when nobody has.
  Value CheckRptIsAudit(const std::string& sDsn, std::int32_t lngRptID);
  /// The identifier of that user; 0 when nobody has.
  std::int32_t GetFUserID(const std::string& sDsn, std::int32_t lngRptID);
  /// Whether no analysis document bears the name yet.
  bool CheckValidEISFName(const std::string& sDsn, const std::string& sEISFName);
  /// "name||identifier" of every analysis document, joined by ","; empty text without any. A name with these marks in
  /// it makes a list that nobody can take apart.
  Value GetEISFileName(const std::string& sDsn);
};

}  // namespace tolvane
