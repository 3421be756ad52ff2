// What a caller of a host got wrong before anything was called.
#pragma once

#include <stdexcept>
#include <string>

namespace tolvane::host {

/// Its text is a sentence for the caller that says what to do.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tolvane::host
