#include "standalone/session.h"

#include "standalone/call.h"

namespace tolvane::standalone {

OpenSource Session::open(const std::string& dsn) {
  const auto name = DataSourceName::parse(dsn);
  OpenSource source{nullptr, identityIn(name)};
  const std::string key = connectionKey(name);
  if (call_) source.connection = call_->opened(key);
  if (!source.connection) source.connection = connect(engines_, name);
  requireUser(*source.connection, name, source.identity.userID);
  if (call_) call_->take(key, source.connection);
  current_ = source;
  return source;
}

}  // namespace tolvane::standalone
