// What the objects of one thread share.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "automation/windows_headers.h"

namespace tolvane::automation {

/// One `T` for each thread that needs one, made on first use and kept by those who use it: when the thread's last user
/// lets go, it goes too, so nothing is left for the thread's or the module's end, when others may be gone already.
template <typename T>
class PerThread {
 public:
  /// The calling thread's object; `make()` gives a shared_ptr to a new one.
  template <typename Make>
  [[nodiscard]] std::shared_ptr<T> get(Make&& make) {
    if (auto known = find()) return known;
    std::shared_ptr<T> fresh = make();  // outside the lock: it may take long and may ask for others
    const std::lock_guard lock(mutex_);
    std::erase_if(objects_, [](const auto& entry) { return entry.second.expired(); });
    objects_[GetCurrentThreadId()] = fresh;
    return fresh;
  }
  /// Null when the thread has none.
  [[nodiscard]] std::shared_ptr<T> find() {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(GetCurrentThreadId());
    return found == objects_.end() ? nullptr : found->second.lock();
  }

 private:
  std::mutex mutex_;
  std::map<DWORD, std::weak_ptr<T>> objects_;
};

}  // namespace tolvane::automation
