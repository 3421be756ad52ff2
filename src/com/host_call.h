// The component host's part in a call.
#pragma once

#include "suite/suite_platform.h"

namespace tolvane::com {

/// Tells the host that a call begins, and how it ended: finish() when it returned, else it failed. Inside the suite the
/// component host sees calls by itself and nothing is told; the standalone suite has no other way to know.
class HostCall {
 public:
  HostCall(suite::SuitePlatform& platform, TransactionMode mode) : platform_(platform) { platform.hostBegin(mode); }
  HostCall(const HostCall&) = delete;
  HostCall& operator=(const HostCall&) = delete;
  ~HostCall() {
    if (!finished_) platform_.hostAbort();
  }
  /// Keeps what the call did. Raises the database's error when that fails; nothing is kept then.
  void finish() {
    finished_ = true;
    static_cast<void>(platform_.hostEnd());
  }

 private:
  suite::SuitePlatform& platform_;
  bool finished_ = false;
};

}  // namespace tolvane::com
