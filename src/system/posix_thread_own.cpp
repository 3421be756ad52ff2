#include <unordered_map>

#include "system/thread_own.h"

namespace tolvane::system {
namespace {

std::unordered_map<const ThreadPlace*, std::unique_ptr<ThreadObject>>& objectsOfThisThread() {
  thread_local std::unordered_map<const ThreadPlace*, std::unique_ptr<ThreadObject>> objects;
  return objects;
}

}  // namespace

ThreadPlace::ThreadPlace() = default;
ThreadPlace::~ThreadPlace() = default;

ThreadObject* ThreadPlace::get() const {
  const auto& objects = objectsOfThisThread();
  const auto found = objects.find(this);
  return found == objects.end() ? nullptr : found->second.get();
}

void ThreadPlace::set(std::unique_ptr<ThreadObject> object) {
  objectsOfThisThread()[this] = std::move(object);
}

}  // namespace tolvane::system
