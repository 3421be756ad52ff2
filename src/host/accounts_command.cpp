#include "host/accounts_command.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "frame/method_table.h"
#include "host/account_reach.h"
#include "host/call_request.h"
#include "host/call_runner.h"
#include "host/usage_error.h"
#include "host/value_codec.h"
#include "host/value_view.h"
#include "platform/conversions.h"
#include "standalone/share_folder.h"
#include "standalone/standalone_platform.h"
#include "tracing/secrets.h"

namespace tolvane::host {
namespace {

constexpr std::string_view propertiesColumn = "FPropsString";

/// The user's configurations. Properties are the clients' own text and may hold a password like a data-source name.
std::shared_ptr<ItemList> configurations(const Environment& environment, const AccountsOptions& options,
                                         bool showSecrets) {
  const CallRequest request = readCall("MultiAccountInfo.GetListByUser", {}, options.dsn);
  standalone::StandalonePlatform platform({environment.engines, standalone::findResources(), 936});
  auto list = runCall(platform, platform.session(), request).result.objectAs<ItemList>();
  for (std::int32_t i = 1; !showSecrets && i <= list->count(); ++i) {
    const auto configuration = list->item(i).objectAs<PropertyBag>();
    const Value properties = configuration->item(propertiesColumn);
    if (const auto* text = properties.get<std::string>()) configuration->set(propertiesColumn, tracing::maskDsn(*text));
  }
  return list;
}

int report(const Environment& environment, const AccountsOptions& options) {
  const AutomationError error = toAutomationError(std::current_exception());
  if (options.asJson) {
    writeError(environment.out, error);
    environment.out << '\n';
  }
  environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
  return exitRaised;
}

struct Attempt {
  std::string login;
  std::vector<ReachStep> steps;
  [[nodiscard]] bool reached() const {
    return std::all_of(steps.begin(), steps.end(), [](const ReachStep& step) { return step.done; });
  }
};

std::vector<Attempt> tryAll(const Environment& environment, const AccountsOptions& options) {
  const auto list = configurations(environment, options, true);
  std::vector<Attempt> attempts;
  bool known = false;
  for (std::int32_t i = 1; i <= list->count(); ++i) {
    const auto configuration = list->item(i).objectAs<PropertyBag>();
    if (!sameName(toText(configuration->item("FName")), options.name)) continue;
    known = true;
    const Value login = configuration->item("FMUserName");
    attempts.push_back({login.isNull() ? "" : toText(login), reachAccountSet(environment.engines, *configuration)});
    if (attempts.back().reached()) break;
  }
  if (!known) throw UsageError("The user has no configuration " + options.name + ": see tolvane accounts.");
  return attempts;
}

void printJson(const Environment& environment, const AccountsOptions& options, const std::vector<Attempt>& attempts) {
  Json all = Json::array();
  for (const Attempt& attempt : attempts) {
    Json steps = Json::array();
    for (const auto& [name, done, text] : attempt.steps) {
      steps.push_back(Json{{"step", name}, {"done", done}, {"text", text}});
    }
    all.push_back(Json{{"login", attempt.login}, {"steps", steps}});
  }
  const Json result{{"name", options.name}, {"reached", attempts.back().reached()}, {"attempts", all}};
  environment.out << result.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void printText(const Environment& environment, const AccountsOptions& options, const std::vector<Attempt>& attempts) {
  for (const Attempt& attempt : attempts) {
    environment.out << options.name << (attempt.login.empty() ? "" : " as " + attempt.login) << ":\n";
    for (const auto& [name, done, text] : attempt.steps) {
      environment.out << "  " << (done ? "yes" : "no ") << "  " << name << ": " << text << '\n';
    }
  }
}

}  // namespace

int runAccountsCommand(const Environment& environment, const AccountsOptions& options) {
  try {
    const Value list = configurations(environment, options, options.showSecrets);
    if (options.asJson) {
      writeValue(environment.out, list, options.showSecrets);
      environment.out << '\n';
    } else {
      printValue(environment.out, "configurations", list, options.showSecrets);
    }
    return exitDone;
  } catch (const UsageError&) {
    throw;
  } catch (...) {
    return report(environment, options);
  }
}

int runAccountsTestCommand(const Environment& environment, const AccountsOptions& options) {
  try {
    const std::vector<Attempt> attempts = tryAll(environment, options);
    if (options.asJson) {
      printJson(environment, options, attempts);
    } else {
      printText(environment, options, attempts);
    }
    return attempts.back().reached() ? exitDone : exitRaised;
  } catch (const UsageError&) {
    throw;
  } catch (...) {
    return report(environment, options);
  }
}

}  // namespace tolvane::host
