// What the suite's objects of one thread share: the engines, the data source in use, and the call that is under way.
#pragma once

#include <memory>
#include <string>

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
  Engines engines_;
  OpenSource current_;
  Call* call_ = nullptr;
};

}  // namespace tolvane::standalone
