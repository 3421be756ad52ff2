// What the suite's objects of one thread share: the engines, the data source in use, and the call that is under way.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "standalone/data_sources.h"

namespace tolvane::standalone {

class Call;

/// An open data source and its caller.
struct OpenSource {
  std::shared_ptr<EngineConnection> connection;
  Identity identity;
};

/// Used from one thread.
class Session {
 public:
  explicit Session(Engines engines) : engines_(std::move(engines)) {}

  /// Opens a data source for the call that is under way (without one: for itself, outside transactions) and makes it
  /// the session's current one. Errors say which data source and why.
  [[nodiscard]] OpenSource open(const std::string& dsn);

  /// The data source that was opened last; its connection is null before the first.
  [[nodiscard]] const OpenSource& current() const { return current_; }

  /// The call under way, or null.
  [[nodiscard]] Call* call() const { return call_; }

 private:
  friend class Call;
  /// A user who was found in the account set of a connection: asked once a connection, not once a call.
  struct KnownUser {
    std::weak_ptr<EngineConnection> connection;
    std::int32_t userID = 0;
  };
  [[nodiscard]] bool isKnown(const OpenSource& source);

  Engines engines_;
  OpenSource current_;
  std::vector<KnownUser> known_;
  Call* call_ = nullptr;
};

}  // namespace tolvane::standalone
