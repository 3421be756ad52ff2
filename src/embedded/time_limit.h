#pragma once

#include <chrono>

#include "embedded/database.h"

namespace tolvane::embedded {

/// Limits the time of what runs while it lives. A limit inside another one can only be shorter.
class TimeLimit {
 public:
  /// No limit of its own for 0 seconds.
  TimeLimit(Database& database, std::chrono::seconds limit) : database_(database), outer_(database.deadline()) {
    if (limit.count() == 0) return;
    const auto end = std::chrono::steady_clock::now() + limit;
    if (!outer_ || end < *outer_) database_.setDeadline(end);
  }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;
  ~TimeLimit() { database_.setDeadline(outer_); }

 private:
  Database& database_;
  Deadline outer_;
};

}  // namespace tolvane::embedded
