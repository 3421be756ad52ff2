// The identifiers of classification standards and items: which are built in, and how new ones are given.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {

/// The standard whose items stand for report types.
inline constexpr std::int32_t natureStandard = 1;
/// Standards below are built in; users' own begin one above.
inline constexpr std::int32_t builtInStandardsEnd = 1000;
/// Items below are built in; users' own begin one above.
inline constexpr std::int32_t builtInItemsEnd = 100;

/// One more than the largest identifier in use (Null: there is none), and more than `floor`. Error 6 when the 32-bit
/// range is used up.
[[nodiscard]] inline std::int32_t nextIdentifier(const Value& largest, std::int32_t floor) {
  const std::int32_t used = largest.isNull() ? floor : std::max(toInt32(largest), floor);
  if (used == std::numeric_limits<std::int32_t>::max()) raise(RuntimeError::overflow);
  return used + 1;
}

}  // namespace tolvane
