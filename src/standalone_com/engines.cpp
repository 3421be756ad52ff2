#include "standalone_com/engines.h"

#include <memory>

#include "embedded/embedded_engine.h"
#include "standalone/account_set_builder.h"
#include "standalone/account_set_maker.h"
#include "standalone/share_folder.h"

namespace tolvane::standalone_com {

standalone::Engines engines() {
  return {{standalone::defaultEngine, std::make_shared<embedded::EmbeddedEngine>()}};
}

void createAccountSet(const std::string& dsn, const std::optional<std::string>& sample) {
  const standalone::DatabaseMakers makers{
      {standalone::defaultEngine, [](const DataSourceName& name) { return embedded::EmbeddedEngine().openNew(name); }}};
  const standalone::AccountSetBuilder builder(standalone::findShared("schema"), standalone::findShared("samples"));
  standalone::makeAccountSet(engines(), makers, DataSourceName::parse(dsn),
                             [&](EngineConnection& connection) { builder.build(connection, sample); });
}

void closeUnusedFiles() {
  embedded::EmbeddedEngine::closeUnused();
}

}  // namespace tolvane::standalone_com
