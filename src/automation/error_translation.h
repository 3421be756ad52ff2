// Errors at the automation border: exceptions into codes in one function, codes into exceptions in one other.
#pragma once

#include <cstddef>

#include "automation/windows_headers.h"
#include "platform/error.h"

namespace tolvane::automation {

/// The exception under way, for the caller of an automation method: fills `info` (which may be null) with number,
/// Source, Description and help, and answers DISP_E_EXCEPTION; an ArgumentFault becomes its own code. Called in a catch
/// block only. Never throws.
[[nodiscard]] HRESULT reportException(EXCEPINFO* info, UINT* argument) noexcept;

/// The exception under way as a bare code, for entries that can answer no more. Called in a catch block only. Never
/// throws.
[[nodiscard]] HRESULT currentCode() noexcept;

/// An error of the call itself that reaches the caller as a code of Invoke and not as an exception of the method.
class ArgumentFault {
 public:
  ArgumentFault(HRESULT code, UINT argument) : code_(code), argument_(argument) {}
  [[nodiscard]] HRESULT code() const noexcept { return code_; }
  /// The argument's place among those that were passed, as automation counts them: from the last.
  [[nodiscard]] UINT argument() const noexcept { return argument_; }

 private:
  HRESULT code_;
  UINT argument_;
};

/// The code under which Invoke itself reports an error that the caller's arguments are to blame for; S_OK when it has
/// none and the error travels as an exception.
[[nodiscard]] HRESULT invokeCode(RuntimeError error) noexcept;

/// Raises what a failed call means: the callee's own error for DISP_E_EXCEPTION (`info` is emptied), the platform's for
/// codes of Invoke, the system's words for the rest.
[[noreturn]] void raiseFailure(HRESULT code, EXCEPINFO* info = nullptr);

/// Raises when a call failed.
inline void check(HRESULT code) {
  if (FAILED(code)) raiseFailure(code);
}

}  // namespace tolvane::automation
