#include "catalogue/catalogue.h"

#include <algorithm>

#include "batchprint/rpt_batch_prn_info.h"
#include "batchprint/rpt_batch_prn_update.h"
#include "classification/rpt_prop_item_class_info.h"
#include "classification/rpt_prop_item_class_update.h"
#include "classification/rpt_prop_item_info.h"
#include "classification/rpt_prop_item_update.h"
#include "csreports/cs_retrieve.h"
#include "csreports/cs_update.h"
#include "multiaccount/multi_account_info.h"
#include "multiaccount/multi_account_update.h"
#include "reportstore/srv_rpt_retrieve.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {

const std::vector<ClassDescription>& classes() {
  // clang-format off
  static const std::vector<ClassDescription> all{
      SrvRptRetrieve::description(),
      SrvRptUpdate::description(),
      RptPropItemClassInfo::description(),
      RptPropItemClassUpdate::description(),
      RptPropItemInfo::description(),
      RptPropItemUpdate::description(),
      CsRetrieve::description(),
      CsUpdate::description(),
      MultiAccountInfo::description(),
      MultiAccountUpdate::description(),
      RptBatchPrnInfo::description(),
      RptBatchPrnUpdate::description(),
  };
  // clang-format on
  return all;
}

const ClassDescription* findClass(std::string_view name) {
  const auto found = std::find_if(classes().begin(), classes().end(),
                                  [&](const ClassDescription& candidate) { return sameName(candidate.name, name); });
  return found == classes().end() ? nullptr : &*found;
}

}  // namespace tolvane
