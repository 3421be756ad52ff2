#include "host/call_command.h"

#include <fstream>
#include <memory>
#include <sstream>

#include "host/call_request.h"
#include "host/call_runner.h"
#include "host/usage_error.h"
#include "host/value_view.h"
#include "standalone/share_folder.h"
#include "standalone/standalone_platform.h"
#include "tracing/tracing_platform.h"

namespace tolvane::host {
namespace {

/// Where a trace goes, and the platform that writes it.
class Trace {
 public:
  Trace(const Environment& environment, const CallOptions& options, Platform& inner) {
    if (options.trace.empty()) return;
    if (options.trace != "-") {
      file_.open(options.trace, std::ios::binary | std::ios::trunc);
      if (!file_) throw UsageError("The trace file " + options.trace + " cannot be written.");
    }
    sink_ = std::make_unique<tracing::StreamSink>(options.trace == "-" ? environment.err : file_);
    platform_ = std::make_unique<tracing::TracingPlatform>(inner, *sink_, options.showSecrets);
  }
  [[nodiscard]] Platform* platform() const { return platform_.get(); }

 private:
  std::ofstream file_;
  std::unique_ptr<tracing::StreamSink> sink_;
  std::unique_ptr<tracing::TracingPlatform> platform_;
};

void printResult(const Environment& environment, const CallResult& result, bool showSecrets) {
  printValue(environment.out, "result", result.result, showSecrets);
  for (const auto& [name, value] : result.out) printValue(environment.out, name, value, showSecrets);
}

/// Says which argument an error of the call itself is about; the error's own words do not.
void explain(const Environment& environment, const CallRequest& request, const ArgumentError& error) {
  environment.err << "tolvane: " << request.method->parameters[error.position()].name << ": " << error.description()
                  << '\n';
}

int printError(const Environment& environment, const AutomationError& error) {
  writeError(environment.out, error);
  environment.out << '\n';
  return exitRaised;
}

}  // namespace

int runCallCommand(const Environment& environment, const CallOptions& options) {
  const CallRequest request = readCall(options.classAndMethod, options.assignments, options.dsn);
  standalone::StandalonePlatform platform({environment.engines, standalone::findResources(), 936});
  const Trace trace(environment, options, platform);
  try {
    const CallResult result = runCall(trace.platform() ? *trace.platform() : platform, platform.session(), request);
    if (!result.kept) {
      environment.err << "tolvane: an operation of the database failed on the way, so nothing of this call was kept\n";
    }
    if (options.asTable) {
      printResult(environment, result, options.showSecrets);
    } else {
      writeResult(environment.out, result, options.showSecrets);
      environment.out << '\n';
    }
    return exitDone;
  } catch (const UsageError&) {
    throw;
  } catch (const ArgumentError& error) {
    explain(environment, request, error);
    return printError(environment, error);
  } catch (...) {
    return printError(environment, toAutomationError(std::current_exception()));
  }
}

}  // namespace tolvane::host
