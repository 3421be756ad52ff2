// Automation arrays and the portable values that stand for them.
#pragma once

#include "automation/windows_headers.h"
#include "platform/value.h"

namespace tolvane::automation {

/// A caller's array as a value. One-dimensional byte arrays become Bytes that show the array itself, which stays locked
/// while they are in use; other arrays are copied. A null array is one without dimensions. Error 13 for element types
/// that automation does not have.
[[nodiscard]] Value borrowArray(SAFEARRAY* array, VARTYPE elementType);
/// The same for an array that becomes the value's own.
[[nodiscard]] Value adoptArray(SAFEARRAY* array, VARTYPE elementType);

/// The value's content as an array of the receiver's own: Bytes that nobody else holds give their array away, anything
/// else is copied. `elementType` is what was asked for; VT_EMPTY leaves the value's own type. Error 13 for values that
/// are no arrays, and for elements that do not convert. Null for an array without dimensions.
[[nodiscard]] SAFEARRAY* giveArray(Value&& value, VARTYPE elementType = VT_EMPTY);

/// The automation array that the bytes lie in, all of it and under the same lower bound; null where there is none.
[[nodiscard]] SAFEARRAY* arrayBehind(const Bytes& bytes);

/// The element type that giveArray() gives when none is asked for.
[[nodiscard]] VARTYPE elementTypeOf(const Value& value);

}  // namespace tolvane::automation
