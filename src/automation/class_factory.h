// How COM gets the objects of a DLL.
#pragma once

#include <functional>

#include "automation/com_ptr.h"

namespace tolvane::automation {

/// Makes an object of a class; may raise.
using ObjectMaker = std::function<ComPtr<IDispatch>()>;

/// The answer to DllGetClassObject: a class factory whose objects `make` makes. The factory and its locks keep the
/// module in use. Objects cannot be aggregated; an error of `make` reaches the caller as its number.
[[nodiscard]] HRESULT giveClassFactory(ObjectMaker make, REFIID iid, void** factory) noexcept;

/// The answer to DllCanUnloadNow: S_OK when nothing of the module is in use, else S_FALSE.
[[nodiscard]] HRESULT canUnloadNow() noexcept;

}  // namespace tolvane::automation
