// RptBatchPrnUpdate: writes batch print schemes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Adds, changes and deletes batch print schemes (see RptBatchPrnInfo). Names go into SQL as they are. What fails half
/// way is left to the host's transaction.
///
/// `vect` lists the reports: objects that answer GetValue for "lRptID" and "sRptName" (scheme_reports.h). An empty list
/// is refused by the data access (80040E0Ch, no command), a list that is not there is error 91; both come after the
/// scheme's own row was written.
class RptBatchPrnUpdate : public Service {
 public:
  explicit RptBatchPrnUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// Adds a scheme with its reports. Names need not be unique; the reports go to the scheme that the database finds
  /// first under the name. Always True.
  bool Add(const std::string& sDsn, const std::string& sSchemeName, const std::string& sAuthor,
           std::shared_ptr<ItemList>& vect);
  /// Renames a scheme and replaces its reports; the author stays. Always True.
  bool Modify(const std::string& sDsn, std::int32_t lSchemeID, const std::string& sSchemeName,
              std::shared_ptr<ItemList>& vect);
  /// Deletes the scheme's row; the rows of its reports stay. Always True.
  bool Delete(const std::string& sDsn, std::int32_t lngSchemeID);
};

}  // namespace tolvane
