#include "platform/document_memory.h"

namespace tolvane {

std::shared_ptr<std::uint8_t[]> newDocumentMemory(std::size_t size) {
  return std::shared_ptr<std::uint8_t[]>(new std::uint8_t[size]);
}

}  // namespace tolvane
