// What the automation objects of one thread share.
#pragma once

#include <memory>
#include <vector>

#include "standalone/call.h"
#include "standalone/standalone_platform.h"

namespace tolvane::standalone_com {

/// The standalone suite of a thread, and the host's calls on it. Every object that works with it keeps it alive; with
/// the last of them it goes, what was not kept is taken back, and the files are closed.
class SuiteThread {
 public:
  /// The calling thread's; made when there is none.
  [[nodiscard]] static std::shared_ptr<SuiteThread> current();

  SuiteThread();
  SuiteThread(const SuiteThread&) = delete;
  SuiteThread& operator=(const SuiteThread&) = delete;

  [[nodiscard]] standalone::StandalonePlatform& platform() { return platform_; }
  [[nodiscard]] standalone::Session& session() { return platform_.session(); }

  /// Begins a host's call; a call within a call joins the outer one.
  void beginCall(TransactionMode mode);
  /// Ends the innermost call. The outermost one's work is kept, or taken back when a database operation had failed or
  /// an inner call was aborted; tells which. Error 5 without a call.
  bool endCall();
  /// Ends the innermost call and takes the work of all of them back: that of an inner call when the outermost one ends.
  void abortCall();

 private:
  using CallHandle = std::unique_ptr<standalone::Call>;
  [[nodiscard]] CallHandle takeCall();

  /// Goes after everything that uses the files.
  struct FileCloser {
    FileCloser() = default;
    FileCloser(const FileCloser&) = delete;
    FileCloser& operator=(const FileCloser&) = delete;
    ~FileCloser();
  };

  FileCloser closer_;
  standalone::StandalonePlatform platform_;
  std::vector<CallHandle> calls_;
  bool aborted_ = false;
};

}  // namespace tolvane::standalone_com
