#include "tds_server/server_state.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "embedded/embedded_engine.h"

namespace tolvane::tds {
namespace {

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return result;
}

}  // namespace

std::filesystem::path ServerState::fileOf(std::string_view name) const {
  return folder_ / (lowered(name) + ".db");
}

bool ServerState::hasDatabase(std::string_view name) const {
  return name.find('/') == std::string_view::npos && std::filesystem::exists(fileOf(name));
}

void ServerState::createDatabase(std::string_view name) {
  embedded::EmbeddedEngine::createAccountSet(fileOf(name));
}

void ServerState::dropDatabase(std::string_view name) {
  const auto wanted = lowered(name);
  {
    std::unique_lock lock(mutex_);
    const auto isOfIt = [&](const auto& entry) { return entry.second.database == wanted; };
    for (const auto& entry : entries_) {
      if (isOfIt(entry)) entry.second.end();
    }
    left_.wait_for(lock, std::chrono::seconds(10),
                   [&] { return std::none_of(entries_.begin(), entries_.end(), isOfIt); });
  }
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(fileOf(name).string() + suffix);
}

std::uint64_t ServerState::enter(std::string_view database, std::function<void()> end) {
  const std::lock_guard lock(mutex_);
  entries_.emplace(++lastEntry_, Entry{lowered(database), std::move(end)});
  return lastEntry_;
}

void ServerState::leave(std::uint64_t connection) {
  const std::lock_guard lock(mutex_);
  entries_.erase(connection);
  left_.notify_all();
}

void ServerState::endConnections() {
  std::unique_lock lock(mutex_);
  for (const auto& entry : entries_) entry.second.end();
  left_.wait_for(lock, std::chrono::seconds(10), [&] { return entries_.empty(); });
}

std::size_t ServerState::connections() const {
  const std::lock_guard lock(mutex_);
  return entries_.size();
}

void ServerState::imitate(const Imitation& imitation) {
  const std::lock_guard lock(mutex_);
  imitation_ = imitation;
}

Imitation ServerState::imitation() const {
  const std::lock_guard lock(mutex_);
  return imitation_;
}

void ServerState::plan(const Fault& fault) {
  const std::lock_guard lock(mutex_);
  fault_ = fault;
}

std::optional<Fault> ServerState::takeFault(std::string_view text) {
  const std::lock_guard lock(mutex_);
  if (!fault_ || text.find(fault_->onText) == std::string_view::npos) return std::nullopt;
  return std::exchange(fault_, std::nullopt);
}

void ServerState::record(std::string_view text) {
  const std::lock_guard lock(mutex_);
  texts_.emplace_back(text);
}

std::vector<std::string> ServerState::takeTexts() {
  const std::lock_guard lock(mutex_);
  return std::exchange(texts_, {});
}

}  // namespace tolvane::tds
