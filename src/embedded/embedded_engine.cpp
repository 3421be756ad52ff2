#include "embedded/embedded_engine.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "embedded/account_file.h"
#include "embedded/embedded_connection.h"
#include "embedded/errors.h"
#include "embedded/kept_sessions.h"
#include "system/path_text.h"

namespace tolvane::embedded {
namespace {

// Open files kept by a thread that has let go of their connections: opening costs as much as many statements.
constexpr std::size_t keptSessions = 4;

std::shared_ptr<EmbeddedConnection> connectionOf(KeptSession& kept) {
  if (auto connection = kept.connection.lock()) return connection;
  kept.session->forgetOptions();
  auto connection = std::make_shared<EmbeddedConnection>(kept.session);
  kept.connection = connection;
  return connection;
}

// Those whose connection is in use stay, or the thread would come to two connections to one account set.
void forgetOldest(std::vector<KeptSession>& kept) {
  for (auto i = kept.size(); i > 0 && kept.size() > keptSessions; --i) {
    const auto candidate = kept.begin() + static_cast<std::ptrdiff_t>(i - 1);
    if (candidate->connection.expired()) kept.erase(candidate);
  }
}

}  // namespace

std::shared_ptr<EngineConnection> EmbeddedEngine::open(const DataSourceName& name) {
  const auto text = name.get("Database");
  if (text.empty()) {
    throw openError(name.publicText(), "the data source names no file. Write it as Database=path.");
  }
  const auto file = system::pathOf(text);
  auto& kept = keptByThisThread();
  const auto find = [&](auto&& isTheFile) {
    return std::find_if(kept.begin(), kept.end(), [&](const KeptSession& k) {
      return k.process == currentProcess() && k.busyTimeout == options_.busyTimeout && isTheFile(k);
    });
  };
  auto found = kept.end();
  std::filesystem::path lastingName;
  if (openFilesKeepTheirNames()) {
    // There, looking at a file costs more than many statements.
    lastingName = std::filesystem::absolute(file);
    found = find([&](const KeptSession& k) { return k.lastingName == lastingName; });
  }
  FileIdentity identity;
  if (found == kept.end()) {
    // A file that was removed and made again under its name is another account set.
    identity = identityOf(file);
    found = find([&](const KeptSession& k) { return identity != FileIdentity{} && k.identity == identity; });
  }
  if (found != kept.end()) {
    std::rotate(kept.begin(), found, found + 1);
    return connectionOf(kept.front());
  }
  auto session = std::make_shared<Session>(file, options_.busyTimeout);
  kept.insert(
      kept.begin(),
      KeptSession{currentProcess(), std::move(lastingName), identity, options_.busyTimeout, std::move(session), {}});
  auto connection = connectionOf(kept.front());
  forgetOldest(kept);
  return connection;
}

std::shared_ptr<EngineConnection> EmbeddedEngine::openNew(const DataSourceName& name) const {
  const auto file = system::pathOf(name.get("Database"));
  createAccountSet(file);
  return std::make_shared<EmbeddedConnection>(std::make_shared<Session>(file, options_.busyTimeout));
}

void EmbeddedEngine::closeUnused() {
  std::erase_if(keptByThisThread(), [](const KeptSession& kept) { return kept.connection.expired(); });
}

void EmbeddedEngine::createAccountSet(const std::filesystem::path& file) {
  Database::create(file);
}

}  // namespace tolvane::embedded
