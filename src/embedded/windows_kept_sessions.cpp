#include <windows.h>

#include <new>
#include <stdexcept>

#include "embedded/kept_sessions.h"

namespace tolvane::embedded {
namespace {

using KeptSessions = std::vector<KeptSession>;

// A place for a value of each thread. A thread_local variable would be destroyed after GCC's run-time library has given
// its memory back. Windows keeps a pointer for each thread and tells when the thread ends; and when this module is
// unloaded, for all threads that have one.
class ThreadPlace {
 public:
  ThreadPlace() : index_(FlsAlloc(&end)) {
    if (index_ == FLS_OUT_OF_INDEXES) throw std::runtime_error("Windows has no place for values of threads left");
  }
  ThreadPlace(const ThreadPlace&) = delete;
  ThreadPlace& operator=(const ThreadPlace&) = delete;
  ~ThreadPlace() { FlsFree(index_); }

  [[nodiscard]] KeptSessions& value() const {
    if (auto* known = static_cast<KeptSessions*>(FlsGetValue(index_))) return *known;
    auto made = std::make_unique<KeptSessions>();
    if (FlsSetValue(index_, made.get()) == FALSE) throw std::bad_alloc();
    return *made.release();
  }

 private:
  static void NTAPI end(void* value) { const std::unique_ptr<KeptSessions> ended(static_cast<KeptSessions*>(value)); }

  DWORD index_;
};

}  // namespace

std::vector<KeptSession>& keptByThisThread() {
  static const ThreadPlace place;
  return place.value();
}

}  // namespace tolvane::embedded
