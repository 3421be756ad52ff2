#include "host/upgrade_command.h"

#include <array>
#include <exception>

#include "host/call_runner.h"
#include "host/older_groups.h"
#include "host/progress_display.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "standalone/share_folder.h"
#include "standalone/standalone_platform.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

/// The run over the groups of one account set.
class Upgrade {
 public:
  Upgrade(const Environment& environment, const UpgradeOptions& options, OlderGroups& older)
      : environment_(environment), options_(options), older_(older) {}

  int run() {
    if (!older_.exist()) {
      environment_.out << "This account set has no tables of the older layout: nothing is to be converted.\n";
      return exitDone;
    }
    currencyID_ = older_.currencyID(options_.currency);
    if (currencyID_ == 0) throw UsageError("There is no currency with the number " + options_.currency + ".");
    const std::vector<OlderGroup> groups = choose();
    convertAll(groups);
    environment_.out << outcomes_[0] << " converted, " << outcomes_[1] << " skipped, " << outcomes_[2] << " refused\n";
    return outcomes_[2] == 0 ? exitDone : exitRaised;
  }

 private:
  std::vector<OlderGroup> choose() {
    if (options_.groups.empty()) return older_.left();
    std::vector<OlderGroup> chosen;
    for (const std::int32_t id : options_.groups) {
      const auto found = older_.find(id);
      if (found.empty()) {
        print("group " + std::to_string(id), {GroupOutcome::refused, "there is no such group"});
      }
      chosen.insert(chosen.end(), found.begin(), found.end());
    }
    return chosen;
  }

  void convertAll(const std::vector<OlderGroup>& groups) {
    std::int64_t total = 0;
    for (const OlderGroup& group : groups) total += group.isConverted() ? 0 : group.rows();
    ProgressDisplay progress(environment_.err, total, "rows", {.isTerminal = options_.isTerminal});
    std::int64_t before = 0;
    for (const OlderGroup& group : groups) {
      const auto result = older_.convert(group, currencyID_, options_.currency, [&](std::int64_t rowsDone) {
        progress.show(before + rowsDone, group.number);
      });
      before += group.isConverted() ? 0 : group.rows();
      progress.clear();
      print(group.number + " " + group.name, result);
    }
  }

  void print(const std::string& group, const GroupResult& result) {
    ++outcomes_[static_cast<std::size_t>(result.outcome)];
    environment_.out << group << ": " << outcomeName(result.outcome);
    if (result.outcome == GroupOutcome::converted) {
      environment_.out << ", " << grouped(result.statements) << " statements, " << grouped(result.values)
                       << " item values";
    } else {
      environment_.out << ", " << result.reason;
    }
    // At once: a line that is out is about a group that is done, whatever happens next.
    environment_.out << std::endl;
  }

  const Environment& environment_;
  const UpgradeOptions& options_;
  OlderGroups& older_;
  std::int32_t currencyID_ = 0;
  std::array<std::int64_t, groupOutcomeCount> outcomes_{};
};

}  // namespace

int runUpgradeCommand(const Environment& environment, const UpgradeOptions& options) {
  if (!options.dsn) throw UsageError("No data source is named: give --dsn TEXT or set TOLVANE_DSN.");
  if (!isUtf8(*options.dsn) || !isUtf8(options.currency)) throw UsageError("The text is not UTF-8.");
  standalone::StandalonePlatform platform({environment.engines, standalone::findResources(), 936});
  OlderGroups older(platform, platform.session(), *options.dsn);
  try {
    return Upgrade(environment, options, older).run();
  } catch (const UsageError&) {
    throw;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
