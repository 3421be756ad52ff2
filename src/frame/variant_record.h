// Variants as byte documents: the record that the platform's binary file statements write for a variant.
#pragma once

#include "platform/platform.h"

namespace tolvane {

/// The record of `value`, a byte array with bounds 1 to n, moved through a temporary file in the current directory.
/// Errors: 458 for what a record cannot hold (objects), 6 for a text of more than 65,535 bytes, the platform's file
/// errors.
[[nodiscard]] Bytes encodeVariant(Platform& platform, const Value& value);

/// The variant whose record `document` (a byte array with any lower bound) holds; bytes behind the record do not count.
/// Error 458 for bytes that are no record: an unknown type, a length beyond the end, a number of dimensions out of
/// range; 13 when `document` is no byte array.
[[nodiscard]] Value decodeVariant(Platform& platform, const Value& document);

}  // namespace tolvane
