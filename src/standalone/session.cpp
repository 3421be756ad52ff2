#include "standalone/session.h"

#include <algorithm>

#include "standalone/call.h"

namespace tolvane::standalone {

OpenSource Session::open(const std::string& dsn) {
  const auto name = DataSourceName::parse(dsn);
  OpenSource source{nullptr, identityIn(name)};
  const std::string key = connectionKey(name);
  if (call_) source.connection = call_->opened(key);
  if (!source.connection) source.connection = connect(engines_, name);
  if (!isKnown(source)) {
    requireUser(*source.connection, name, source.identity.userID);
    known_.push_back({source.connection, source.identity.userID});
  }
  if (call_) call_->take(key, source.connection);
  current_ = source;
  return source;
}

bool Session::isKnown(const OpenSource& source) {
  std::erase_if(known_, [](const KnownUser& known) { return known.connection.expired(); });
  return std::any_of(known_.begin(), known_.end(), [&](const KnownUser& known) {
    return known.userID == source.identity.userID && known.connection.lock() == source.connection;
  });
}

}  // namespace tolvane::standalone
