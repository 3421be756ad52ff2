#include "host/init_command.h"

#include "host/call_runner.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "standalone/account_set_builder.h"
#include "standalone/account_set_maker.h"
#include "standalone/share_folder.h"
#include "tracing/json_values.h"

namespace tolvane::host {
int runInitCommand(const Environment& environment, const InitOptions& options) {
  if (!options.dsn) throw UsageError("No data source is named: give --dsn TEXT or set TOLVANE_DSN.");
  if (!isUtf8(*options.dsn)) throw UsageError("The data-source name is not UTF-8.");
  try {
    const auto name = DataSourceName::parse(*options.dsn);
    standalone::makeAccountSet(environment.engines, environment.makers, name, [&](EngineConnection& connection) {
      standalone::AccountSetBuilder(standalone::findShared("schema"), standalone::findShared("samples"))
          .build(connection, options.sample);
    });
    environment.out << "The account set " << name.publicText() << " is ready"
                    << (options.sample ? ", with the sample " + *options.sample : std::string()) << ".\n";
    return exitDone;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
