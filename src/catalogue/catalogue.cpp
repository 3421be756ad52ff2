#include "catalogue/catalogue.h"

#include <algorithm>

#include "classification/rpt_prop_item_class_info.h"
#include "csreports/cs_retrieve.h"
#include "csreports/cs_update.h"
#include "reportstore/srv_rpt_retrieve.h"
#include "reportstore/srv_rpt_update.h"

namespace tolvane {

const std::vector<ClassDescription>& classes() {
  static const std::vector<ClassDescription> all{
      SrvRptRetrieve::description(), SrvRptUpdate::description(), RptPropItemClassInfo::description(),
      CsRetrieve::description(),     CsUpdate::description(),
  };
  return all;
}

const ClassDescription* findClass(std::string_view name) {
  const auto found = std::find_if(classes().begin(), classes().end(),
                                  [&](const ClassDescription& candidate) { return sameName(candidate.name, name); });
  return found == classes().end() ? nullptr : &*found;
}

}  // namespace tolvane
