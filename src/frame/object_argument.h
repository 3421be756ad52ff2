// Objects as callers pass them.
#pragma once

#include <memory>

#include "platform/error.h"

namespace tolvane {

/// The object that a caller passed; error 91 when it is used and the caller passed nothing.
template <typename T>
[[nodiscard]] T& required(const std::shared_ptr<T>& object) {
  if (!object) raise(RuntimeError::objectNotSet);
  return *object;
}

}  // namespace tolvane
