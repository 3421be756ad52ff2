// The numbers of the errors that the services raise themselves.
#pragma once

#include <cstdint>

namespace tolvane::service_error {

/// The caller does not own a multi-account-set configuration, or its new name is taken.
inline constexpr std::uint32_t notOwner = 0x80044015;
/// A row that must exist was not found; the Description names the argument that matched nothing.
inline constexpr std::uint32_t notFound = 0x80044041;
/// A classification standard to change does not exist.
inline constexpr std::uint32_t noSuchStandard = 0x80044042;
/// A business rule was violated.
inline constexpr std::uint32_t ruleViolated = 0x80044047;

}  // namespace tolvane::service_error
