#include "standalone/call.h"

#include <algorithm>

#include "platform/error.h"

namespace tolvane::standalone {

Call::Call(Session& session, TransactionMode mode) : session_(session), mode_(mode), joins_(session.call_ != nullptr) {
  if (!joins_) session_.call_ = this;
}

Call::~Call() {
  if (joins_) return;
  rollback();
  session_.call_ = nullptr;
}

bool Call::finish() {
  if (isDoomed()) {
    rollback();
    return false;
  }
  for (auto& member : members_) {
    if (!member.ownsTransaction) continue;
    member.connection->commit();
    member.ownsTransaction = false;
  }
  return true;
}

void Call::vote() {
  for (auto& member : members_) member.pardonedFailures = member.connection->failureCount();
}

std::shared_ptr<EngineConnection> Call::opened(const std::string& key) const {
  const auto found = std::find_if(members_.begin(), members_.end(), [&](const Member& m) { return m.key == key; });
  return found == members_.end() ? nullptr : found->connection;
}

void Call::take(const std::string& key, const std::shared_ptr<EngineConnection>& connection) {
  // Names that differ may still lead to one connection.
  const auto known = std::find_if(members_.begin(), members_.end(),
                                  [&](const Member& member) { return member.connection == connection; });
  if (known != members_.end()) return;
  Member member{key, connection, false, connection->failureCount()};
  if (mode_ == TransactionMode::required && !connection->inTransaction()) {
    connection->begin();
    member.ownsTransaction = true;
  }
  members_.push_back(std::move(member));
}

bool Call::isDoomed() const {
  return std::any_of(members_.begin(), members_.end(), [](const Member& member) {
    // A transaction that the database ended by itself has nothing left to keep.
    return member.ownsTransaction &&
           (!member.connection->inTransaction() || member.connection->failureCount() > member.pardonedFailures);
  });
}

void Call::rollback() noexcept {
  for (auto& member : members_) {
    if (!member.ownsTransaction) continue;
    member.ownsTransaction = false;
    try {
      member.connection->rollback();
    } catch (const AutomationError&) {
      // The connection is broken, and with it the transaction; the error that led here is the one to be told.
    }
  }
}

}  // namespace tolvane::standalone
