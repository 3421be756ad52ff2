#include "embedded/kept_sessions.h"

namespace tolvane::embedded {

std::vector<KeptSession>& keptByThisThread() {
  thread_local std::vector<KeptSession> kept;
  return kept;
}

}  // namespace tolvane::embedded
