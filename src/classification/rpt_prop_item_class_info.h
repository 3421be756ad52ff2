// RptPropItemClassInfo: reads classification standards.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Answers questions about classification standards (t_Rpt_PropClass), the axes along which reports are grouped. A
/// report carries its item of standard N in column "F" + N of t_Rpt_Content. Record sets are detached copies. Texts
/// from the caller go into SQL as they are.
class RptPropItemClassInfo : public Service {
 public:
  explicit RptPropItemClassInfo(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// The identifier of the standard with that identifier, else with that number; 0 when there is none or nothing was
  /// asked.
  std::int32_t ExistenceCheck(const std::string& sDsn, const Value& PropClsID, const Value& Number);
  /// Every item of every standard as "(standard)-item" with its identifier, or nothing.
  std::shared_ptr<Recordset> GetAllPropName(const std::string& sDsn);
  /// FPropClsID, FNumber, FName of one standard. Error 80044041h when there is none.
  std::shared_ptr<Recordset> GetDetail(const std::string& sDsn, std::int32_t PropClsID);
  /// All columns of the standard with that number. Error 80044041h when there is none.
  std::shared_ptr<Recordset> GetDetailByNumber(const std::string& sDsn, const std::string& Number);
  /// All standards that satisfy `Filter`, by number unless `Sort` says otherwise. `Options` has no effect.
  std::shared_ptr<Recordset> GetList(const std::string& sDsn, std::int32_t Options, const std::string& Filter,
                                     const std::string& Sort, std::int32_t CursorLocation);
  /// The reports under one item, given as GetAllPropName names it, as far as the caller may see them; or nothing.
  std::shared_ptr<Recordset> GetRptByProp(const std::string& sDsn, const std::string& sPropName);
  /// 1 when a report is filed under the standard, else 0.
  std::int32_t IsExistRptForPropCls(const std::string& sDsn, std::int32_t lPropClsID);
};

}  // namespace tolvane
