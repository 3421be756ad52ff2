// The service classes.
#pragma once

#include <string_view>
#include <vector>

#include "frame/method_table.h"

namespace tolvane {

/// All classes, in the order in which they are listed everywhere.
[[nodiscard]] const std::vector<ClassDescription>& classes();

/// The class of that name, without regard to letter case; null when there is none.
[[nodiscard]] const ClassDescription* findClass(std::string_view name);

}  // namespace tolvane
