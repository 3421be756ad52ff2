// Byte documents on their way between a caller and a record set.
#pragma once

#include <optional>
#include <vector>

#include "platform/bytes.h"
#include "platform/value.h"

namespace tolvane::rowset {

/// The bytes of a document given as bytes, as an array of byte values or as an empty text, which has none; nothing when
/// it is none of these.
[[nodiscard]] std::optional<Bytes> bytesOf(const Value& value);

/// The pieces of a document as one; a single one is not copied.
[[nodiscard]] Bytes joined(const std::vector<Bytes>& pieces);

}  // namespace tolvane::rowset
