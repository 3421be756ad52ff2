// SrvRptUpdate: writes the server report store.
#pragma once

#include <cstdint>
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

 private:
  struct Report;

  /// Adds or changes the report's row; answers its identifier, 0 for a new row's, which only the database knows.
  std::int32_t storeReport(Call& call, const Report& report, bool& isNew);
  /// Gives the creator of a new report the full right on it.
  void grantCreatorRight(Call& call, std::int32_t lRptID, std::int16_t userID);
  /// Makes the report known to the suite's object security: its name, its two kinds of access, the users group's row.
  void registerObject(Call& call, std::int32_t lRptID, const std::string& name);
};

}  // namespace tolvane
