#include "host/call_runner.h"

#include <new>

#include "host/value_codec.h"
#include "standalone/call.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

// Below this, a number is one of the platform's own small ones.
constexpr std::uint32_t firstLargeNumber = 0x10000;

std::uint32_t shownNumber(std::uint32_t number) {
  return number < firstLargeNumber ? number + errorNumber(static_cast<RuntimeError>(0)) : number;
}

}  // namespace

CallResult runCall(Platform& platform, standalone::Session& session, const CallRequest& request) {
  std::vector<Value> bound = bindArguments(*request.method, request.arguments);
  standalone::Call call(session, request.serviceClass->transMode);
  CallResult result;
  {
    const auto service = request.serviceClass->create(platform);
    result.result = invoke(*service, *request.method, bound);
  }
  result.kept = call.finish();
  const auto& parameters = request.method->parameters;
  for (std::size_t i = 1; i < parameters.size(); ++i) {
    if (parameters[i].direction == Direction::inOut) result.out.emplace_back(parameters[i].name, std::move(bound[i]));
  }
  return result;
}

void writeResult(std::ostream& out, const CallResult& result, bool showSecrets) {
  out << "{\"result\":";
  writeValue(out, result.result, showSecrets);
  out << ",\"out\":{";
  bool first = true;
  for (const auto& [name, value] : result.out) {
    out << (first ? "" : ",") << quoted(name) << ':';
    first = false;
    writeValue(out, value, showSecrets);
  }
  out << "}}";
}

void writeError(std::ostream& out, const AutomationError& error) {
  out << "{\"error\":{\"number\":\"" << tracing::hexNumber(shownNumber(error.number()))
      << "\",\"source\":" << quoted(error.source()) << ",\"description\":" << quoted(error.description()) << "}}";
}

AutomationError toAutomationError(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const AutomationError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return AutomationError(RuntimeError::outOfMemory, std::string(applicationName));
  } catch (const std::exception& error) {
    return AutomationError(oledb::unspecified, std::string(applicationName), error.what());
  } catch (...) {
    return AutomationError(oledb::unspecified, std::string(applicationName), "Unspecified error");
  }
}

}  // namespace tolvane::host
