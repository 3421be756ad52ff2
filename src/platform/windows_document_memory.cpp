#include "platform/windows_document_memory.h"

#include <windows.h>
// Stands on windows.h.
#include <oleauto.h>

#include <limits>
#include <new>

#include "platform/document_memory.h"

namespace tolvane {

void OwnedAutomationArray::operator()(const void*) const noexcept {
  if (!array) return;
  SafeArrayUnlock(array);
  SafeArrayDestroy(array);
}

std::shared_ptr<std::uint8_t[]> newDocumentMemory(std::size_t size) {
  if (size > std::numeric_limits<ULONG>::max()) throw std::bad_alloc();
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size));
  if (!array) throw std::bad_alloc();
  SafeArrayLock(array);
  // An empty array may have no memory, but the pointer has to own the array all the same.
  auto* memory = static_cast<std::uint8_t*>(array->pvData);
  return {memory, OwnedAutomationArray{array}};
}

}  // namespace tolvane
