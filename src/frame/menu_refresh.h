// The report part of the suite's function menu, rebuilt after every change that it shows.
#pragma once

#include "frame/service.h"
#include "platform/platform.h"

namespace tolvane {

/// Hands the suite's data-flow component the menu of reports anew: the items of all classification standards as
/// sub-functions (701 is "new report", the items follow as 702, 703, ...), and under each item the reports that belong
/// to it (item's number × 100 + 1, + 2, ...). Runs on the call's connection, in its transaction. Without any item the
/// menu is left alone. Errors of the queries and of the data-flow component pass through.
void refreshFuncMenu(Platform& platform, Call& call);

}  // namespace tolvane
