// tolvane doctor: whether a data source is fit to be worked with, and what is wrong if not.
#pragma once

#include <optional>
#include <string>

#include "host/environment.h"
#include "platform/error.h"

namespace tolvane::host {

struct DoctorOptions {
  std::optional<std::string> dsn;
};

/// Checks, each in a line with what was found and what to do: the name, the engine, the connection (driver, host and
/// port, login, database), the tables and columns, the user, the collation and isolation of a server, and how record
/// sets behave. Status 0 when nothing is wrong, 1 otherwise.
int runDoctorCommand(const Environment& environment, const DoctorOptions& options);

/// What a connection that cannot be opened is for want of, in a sentence that says what to do.
[[nodiscard]] std::string adviceFor(const AutomationError& error);

}  // namespace tolvane::host
