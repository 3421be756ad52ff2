#include "odbc/odbc_engine.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "odbc/connection_text.h"
#include "odbc/odbc_connection.h"

namespace tolvane::odbc {
namespace {

// Connections kept by a thread that has let go of them: logging in costs as much as many statements.
constexpr std::size_t keptSessions = 4;

struct Kept {
  ConnectionOptions options;
  std::shared_ptr<Session> session;
  std::weak_ptr<OdbcConnection> connection;
};

// The one used last is first.
std::vector<Kept>& keptByThisThread() {
  thread_local std::vector<Kept> kept;
  return kept;
}

bool isFor(const Kept& kept, const ConnectionOptions& options) {
  return kept.options.text == options.text && kept.options.loginTimeout == options.loginTimeout &&
         kept.options.networkTimeout == options.networkTimeout;
}

std::shared_ptr<OdbcConnection> connectionOf(Kept& kept) {
  if (auto connection = kept.connection.lock()) return connection;
  auto connection = std::make_shared<OdbcConnection>(kept.session);
  kept.connection = connection;
  return connection;
}

// Those whose connection is in use stay, or the thread would come to two connections to one data source.
void forgetOldest(std::vector<Kept>& kept) {
  for (auto i = kept.size(); i > 0 && kept.size() > keptSessions; --i) {
    const auto candidate = kept.begin() + static_cast<std::ptrdiff_t>(i - 1);
    if (candidate->connection.expired()) kept.erase(candidate);
  }
}

}  // namespace

std::shared_ptr<EngineConnection> OdbcEngine::open(const DataSourceName& name) {
  auto options = connectionOptions(name);
  auto& kept = keptByThisThread();
  const auto found = std::find_if(kept.begin(), kept.end(), [&](const Kept& k) { return isFor(k, options); });
  if (found != kept.end()) {
    found->session->ensureConnected();
    std::rotate(kept.begin(), found, found + 1);
    return connectionOf(kept.front());
  }
  auto session = std::make_shared<Session>(name);
  kept.insert(kept.begin(), Kept{std::move(options), std::move(session), {}});
  auto connection = connectionOf(kept.front());
  forgetOldest(kept);
  return connection;
}

void OdbcEngine::closeIdle() {
  std::erase_if(keptByThisThread(), [](const Kept& kept) { return kept.connection.expired(); });
}

}  // namespace tolvane::odbc
