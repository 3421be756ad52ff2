#include "host/environment.h"

#ifdef TOLVANE_WITH_EMBEDDED
#include "embedded/embedded_engine.h"
#endif
#ifdef TOLVANE_WITH_ODBC
#include "odbc/odbc_engine.h"
#endif

namespace tolvane::host {

standalone::Engines builtInEngines() {
  standalone::Engines engines;
#ifdef TOLVANE_WITH_EMBEDDED
  engines.emplace("sqlite", std::make_shared<embedded::EmbeddedEngine>());
#endif
#ifdef TOLVANE_WITH_ODBC
  engines.emplace("odbc", std::make_shared<odbc::OdbcEngine>());
#endif
  return engines;
}

standalone::DatabaseMakers builtInMakers() {
  standalone::DatabaseMakers makers;
#ifdef TOLVANE_WITH_EMBEDDED
  makers.emplace("sqlite", [](const DataSourceName& name) { return embedded::EmbeddedEngine().openNew(name); });
#endif
  return makers;
}

}  // namespace tolvane::host
