// Objects of which every thread has its own.
#pragma once

#include <memory>
#include <utility>

namespace tolvane::system {

class ThreadObject {
 public:
  ThreadObject() = default;
  ThreadObject(const ThreadObject&) = delete;
  ThreadObject& operator=(const ThreadObject&) = delete;
  virtual ~ThreadObject() = default;
};

/// Keeps one object for each thread and destroys it at the thread's end; lives as long as the module.
class ThreadPlace {
 public:
  ThreadPlace();
  ~ThreadPlace();
  ThreadPlace(const ThreadPlace&) = delete;
  ThreadPlace& operator=(const ThreadPlace&) = delete;

  /// The calling thread's; null when it has none.
  [[nodiscard]] ThreadObject* get() const;
  /// Gives the calling thread its object; it must have none.
  void set(std::unique_ptr<ThreadObject> object);

 private:
  unsigned long slot_ = 0;
};

/// A `T` for each thread that asks for one. It stands in the place of `thread_local`, whose objects the compiler for
/// Windows destroys when it has given their memory back already.
template <typename T>
class ThreadOwn {
 public:
  [[nodiscard]] T& get() {
    if (ThreadObject* known = place_.get()) return static_cast<Holder*>(known)->content;
    auto fresh = std::make_unique<Holder>();
    T& content = fresh->content;
    place_.set(std::move(fresh));
    return content;
  }

 private:
  struct Holder : ThreadObject {
    T content{};
  };
  ThreadPlace place_;
};

}  // namespace tolvane::system
