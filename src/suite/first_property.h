// What an automation object tells about itself.
#pragma once

#include <string>

#include "automation/windows_headers.h"

namespace tolvane::suite {

/// The name of the first property of an object's interface that can be read without arguments, by its type information.
/// Error 438 for an object that has none, or that tells nothing about itself.
[[nodiscard]] std::wstring firstPropertyOf(IDispatch& object);

}  // namespace tolvane::suite
