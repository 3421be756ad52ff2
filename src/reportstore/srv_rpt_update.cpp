#include "reportstore/srv_rpt_update.h"

#include "reportstore/report_types.h"

namespace tolvane {

ClassDescription SrvRptUpdate::description() {
  using C = SrvRptUpdate;
  constexpr std::int32_t none = 0;
  return describe<C>("SrvRptUpdate", TransactionMode::required, "Writes the server report store.")
      .method(2, "SavePlxToSrv", &C::SavePlxToSrv, "Stores a report under its name and type.",
              {"sDsn", "sSysName", "sRptName", "vPlx", "lOwner", optional("vPrinterBuf"), optional("lYear", none),
               optional("lPeriod", none), optional("lRptType", report_type::ordinary)});
}

}  // namespace tolvane
