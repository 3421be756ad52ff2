// One call of a host, and the transaction around it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/engine.h"
#include "platform/suite.h"
#include "standalone/session.h"

namespace tolvane::standalone {

/// Lives as long as the call. In mode `required` every data source that the call opens gets a transaction, unless its
/// connection is in one already; in mode `supported` none does. finish() keeps the work; a Call that goes without it
/// (the method raised an error) takes everything back. A Call made while another is under way on the session joins that
/// one.
///
/// A database operation that failed dooms the work, even when the method hides the failure behind a default answer,
/// unless the method voted for completion after it.
class Call {
 public:
  Call(Session& session, TransactionMode mode);
  ~Call();
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  /// Ends the transactions: all kept (true), or all taken back because an operation had failed (false). Raises the
  /// database's error when keeping them fails; nothing more is kept then.
  bool finish();

  /// The method votes that the work so far may be kept.
  void vote();

  /// The connection that this call opened under `key`, or null.
  [[nodiscard]] std::shared_ptr<EngineConnection> opened(const std::string& key) const;
  /// Makes a connection part of the call.
  void take(const std::string& key, const std::shared_ptr<EngineConnection>& connection);

 private:
  struct Member {
    std::string key;
    std::shared_ptr<EngineConnection> connection;
    bool ownsTransaction = false;
    std::uint64_t pardonedFailures = 0;
  };
  [[nodiscard]] bool isDoomed() const;
  void rollback() noexcept;

  Session& session_;
  TransactionMode mode_;
  bool joins_;
  std::vector<Member> members_;
};

}  // namespace tolvane::standalone
