#include "standalone_com/ado_arguments.h"

#include <string>

namespace tolvane::standalone_com {

void raiseAdo(AdoError error, std::string_view source) {
  throw AutomationError(error, std::string(source));
}

}  // namespace tolvane::standalone_com
