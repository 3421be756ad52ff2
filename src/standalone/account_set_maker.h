// Makes new account sets.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/engine.h"
#include "standalone/data_sources.h"

namespace tolvane::standalone {

/// Makes the empty database that a data-source name asks for, and opens it. Raises an error when there is one already.
using DatabaseMaker = std::function<std::shared_ptr<EngineConnection>(const DataSourceName&)>;
/// By engine. An engine without a maker takes databases that somebody else made.
using DatabaseMakers = std::map<std::string, DatabaseMaker>;

/// Puts an account set into an empty database.
using Filling = std::function<void(EngineConnection&)>;

/// Makes the database where the engine can and lets `fill` put the account set into it, in one transaction. After a
/// failure nothing is left. Error 5 when there is an account set already.
void makeAccountSet(const Engines& engines, const DatabaseMakers& makers, const DataSourceName& name,
                    const Filling& fill);

}  // namespace tolvane::standalone
