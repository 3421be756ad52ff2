// CsUpdate: writes the companies' periodic statements.
#pragma once

#include <cstdint>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Stores and deletes statements (t_CsRptContent) and the empty samples of groups (t_CsRptSample), sets status fields,
/// and converts the older layout.
///
/// Only ordinary statements (type 1) are written or deleted. A statement is found as CsRetrieve finds it: by year and
/// period unless both are negative, else by day. What is raised and what is answered with False or 0 each method says;
/// whether anything of a call that failed is kept, the host's transaction decides.
class CsUpdate : public Service {
 public:
  explicit CsUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Statements (cs_update_statements.cpp)

  /// Stores a statement's document, in place of the one that is there. `dDay` is kept with a period statement too.
  /// Always True; failures are raised.
  bool SaveCsData(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                  std::int32_t lngRptGroupID, std::int32_t lCurrencyID, const std::string& sCompanyNum,
                  Value& varRptContent);
  /// Stores the sample of a group, in place of the one that is there. Always True; failures are raised.
  bool SaveCsSample(const std::string& sDsn, std::int32_t lRptGroupID, Value& varRptContent);
  /// Deletes a statement for good; no copy is kept. True also when there was none; False on any failure.
  bool DelOneCsRpt(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                   std::int32_t lngRptGroupID, std::int32_t lngCurrencyID, std::string& sCompanyNum);
  /// Sets a status field of the first statement under a condition; other statements under it stay as they are. True
  /// also when there is none; False on any failure.
  bool CsDataStatusUpdate(const std::string& sDsn, const std::string& sFilterStr, const std::string& sFieldName,
                          const Value& varValue);

  // The older layout (cs_update_upgrade.cpp)

  /// Converts a group of the older layout into a group that the caller has created, and marks it as converted. Its
  /// statements become statements of the account set's own company in the currency given; those of a second conversion
  /// are added again. The values of its items are copied unless there are such values already. 1 when the call came to
  /// its end, also when there is no such old group; 0 on any failure.
  std::int32_t UpGradeOneCsRpt(const std::string& sDsn, std::int32_t lngOldRptGroupID, std::int32_t lngNewRptGroupID,
                               std::int32_t lCurrencyID, const std::string& sCurrencyNum);

 private:
  struct Conversion;

  void convertGroup(Call& call, const Conversion& conversion);
  /// Adds the statements of the old group of that name.
  void convertStatements(Call& call, const Conversion& conversion, const std::string& oldGroupName);
  /// Adds the values of all items of the old group.
  void convertItems(Call& call, const Conversion& conversion);
  /// Adds the values of one item, whatever group they were entered for.
  void convertItemValues(Call& call, const Conversion& conversion, const std::string& itemNum);
};

}  // namespace tolvane
