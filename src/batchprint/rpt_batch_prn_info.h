// RptBatchPrnInfo: reads batch print schemes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Answers questions about batch print schemes (t_Rpt_PrintScheme), named lists of reports that are printed together
/// (t_Rpt_PrintSchemeDetail). Record sets are handed out as the connection gave them, still attached.
class RptBatchPrnInfo : public Service {
 public:
  explicit RptBatchPrnInfo(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// All schemes.
  std::shared_ptr<Recordset> GetList(const std::string& sDsn);
  /// The scheme's columns and its reports' columns, one row for each report; no rows for a scheme without reports.
  std::shared_ptr<Recordset> GetDetail(const std::string& sDsn, std::int32_t FID);
  /// Whether a scheme has that name, by the database's comparison; False for the empty name, which is not asked for.
  /// The name goes into SQL as it is.
  bool IsExists(const std::string& sDsn, const std::string& sSchemeName);
};

}  // namespace tolvane
