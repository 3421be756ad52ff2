#include "embedded/kept_sessions.h"

namespace tolvane::embedded {
namespace {

using KeptSessions = std::vector<KeptSession>;

/// A thread's account sets, and whether they are there any more.
struct Place {
  KeptSessions kept;
  bool& ended;
  explicit Place(bool& hasEnded) : ended(hasEnded) {}
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() { ended = true; }
};

}  // namespace

std::vector<KeptSession>& keptByThisThread() {
  thread_local bool ended = false;
  // What lives until the program ends outlives the main thread's own variables, and may still let go of an account set.
  if (ended) {
    static KeptSessions late;
    return late;
  }
  thread_local Place place(ended);
  return place.kept;
}

}  // namespace tolvane::embedded
