#include <windows.h>

#include <new>

#include "system/thread_own.h"

namespace tolvane::system {
namespace {

void WINAPI destroy(void* object) {
  const std::unique_ptr<ThreadObject> own(static_cast<ThreadObject*>(object));
}

}  // namespace

// Windows calls `destroy` at the end of each thread that has an object, and for all that are left when the slot goes.
ThreadPlace::ThreadPlace() : slot_(FlsAlloc(&destroy)) {
  if (slot_ == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
}

ThreadPlace::~ThreadPlace() {
  FlsFree(slot_);
}

ThreadObject* ThreadPlace::get() const {
  return static_cast<ThreadObject*>(FlsGetValue(slot_));
}

void ThreadPlace::set(std::unique_ptr<ThreadObject> object) {
  if (FlsSetValue(slot_, object.get()) == FALSE) throw std::bad_alloc();
  (void)object.release();
}

}  // namespace tolvane::system
