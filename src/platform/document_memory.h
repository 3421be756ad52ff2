// Where documents lie while they are on their way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tolvane {

/// Memory for a document of `size` bytes, not zeroed; bad_alloc when there is none. On Windows it is an automation
/// array's, so that a document crosses the border to an automation client as it is
/// (platform/windows_document_memory.h).
[[nodiscard]] std::shared_ptr<std::uint8_t[]> newDocumentMemory(std::size_t size);

}  // namespace tolvane
