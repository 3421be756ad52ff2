// One call of a service, as every host makes it.
#pragma once

#include <exception>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "host/call_request.h"
#include "platform/error.h"
#include "platform/platform.h"
#include "standalone/session.h"

namespace tolvane::host {

struct CallResult {
  Value result;
  /// The in/out parameters but the first, in the method's order.
  std::vector<std::pair<std::string, Value>> out;
  /// False when the method returned, but what it did was taken back, since an operation of the database had failed.
  bool kept = true;
};

/// Runs the call in its class's transaction mode: what it did is kept when it returns and taken back when it raises.
/// `platform` works on `session`, or wraps one that does.
[[nodiscard]] CallResult runCall(Platform& platform, standalone::Session& session, const CallRequest& request);

/// {"result":...,"out":{...}} without a line end.
void writeResult(std::ostream& out, const CallResult& result, bool showSecrets);

/// {"error":{"number":...,"source":...,"description":...}} without a line end.
void writeError(std::ostream& out, const AutomationError& error);

/// Any exception as the automation error that a caller is told. The one place that knows exceptions of other kinds.
[[nodiscard]] AutomationError toAutomationError(const std::exception_ptr& exception);

}  // namespace tolvane::host
