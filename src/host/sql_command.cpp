#include "host/sql_command.h"

#include <iostream>
#include <iterator>

#include "host/call_runner.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "host/value_codec.h"
#include "host/value_view.h"
#include "standalone/session.h"
#include "standalone/sql_batches.h"
#include "standalone/text_file.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

std::string readScript(const SqlOptions& options) {
  if (options.text.has_value() == options.file.has_value()) {
    throw UsageError("Give either the text of a batch or --file FILE.");
  }
  if (options.text) return *options.text;
  if (*options.file == "-") return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
  auto script = standalone::readTextFile(*options.file);
  if (!script) throw UsageError("The file " + *options.file + " cannot be read.");
  return *script;
}

void print(const Environment& environment, const SqlOptions& options, const std::shared_ptr<Recordset>& rows) {
  if (rows->state() != ObjectState::open) return;
  if (options.asJson) {
    writeValue(environment.out, rows, options.showSecrets);
    environment.out << '\n';
  } else {
    printRecordset(environment.out, *rows, options.showSecrets);
  }
}

}  // namespace

int runSqlCommand(const Environment& environment, const SqlOptions& options) {
  const std::string script = readScript(options);
  if (!options.dsn) throw UsageError("No data source is named: give --dsn TEXT or set TOLVANE_DSN.");
  if (!isUtf8(script) || !isUtf8(*options.dsn)) throw UsageError("The text is not UTF-8.");
  try {
    standalone::Session session(environment.engines);
    const auto source = session.open(*options.dsn);
    for (const auto& batch : standalone::splitBatches(script)) {
      for (auto rows = source.connection->execute(batch); rows; rows = rows->nextRecordset()) {
        print(environment, options, rows);
      }
    }
    return exitDone;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    if (options.asJson) {
      writeError(environment.out, error);
      environment.out << '\n';
    }
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
