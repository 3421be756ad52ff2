#include "batchprint/scheme_reports.h"

#include <limits>
#include <memory>

#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

std::shared_ptr<PropertyBag> reportAt(const ItemList& reports, std::int32_t index) {
  const Value element = reports.item(index);
  if (!element.isObject()) raise(RuntimeError::objectRequired);
  if (element.isNothing()) raise(RuntimeError::objectNotSet);
  auto report = element.objectAs<PropertyBag>();
  if (!report) raise(RuntimeError::memberNotFound);
  return report;
}

}  // namespace

std::string schemeReportsBatch(std::int32_t schemeID, const ItemList& reports) {
  std::string batch;
  const std::int32_t count = reports.count();
  for (std::int32_t i = 1; i <= count; i = nextIndex(i)) {
    const auto report = reportAt(reports, i);
    const std::int32_t id = toInt32(report->getValue("lRptID"));
    const std::string name = toText(report->getValue("sRptName"));
    batch += sql(" INSERT INTO t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( ", schemeID, ",", id, ",'",
                 name, "')", "\r\n");
  }
  return batch;
}

std::int32_t nextIndex(std::int32_t index) {
  if (index == std::numeric_limits<std::int32_t>::max()) raise(RuntimeError::overflow);
  return index + 1;
}

}  // namespace tolvane
