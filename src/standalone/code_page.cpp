#include "standalone/code_page.h"

#include "platform/error.h"

namespace tolvane::standalone {

void refuseCodePage(int number) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
                        "There is no table for the code page " + std::to_string(number) + ".");
}

}  // namespace tolvane::standalone
