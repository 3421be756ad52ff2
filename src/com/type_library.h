// The type library inside this DLL.
#pragma once

#include <string_view>

#include "automation/windows_headers.h"
#include "typelib/identifiers.h"

namespace tolvane::com {

/// The handle of the module that this code was linked into.
[[nodiscard]] HINSTANCE moduleInstance() noexcept;

[[nodiscard]] GUID nativeIdentifier(const typelib::Identifier& identifier) noexcept;

/// The description of a class's dispatch interface, from the library in the DLL's resources.
[[nodiscard]] HRESULT interfaceInformation(std::string_view className, ITypeInfo** information) noexcept;

/// Writes the library into the registry for everyone or for the user only, or takes it away.
[[nodiscard]] HRESULT registerTypeLibrary(bool forUser) noexcept;
[[nodiscard]] HRESULT unregisterTypeLibrary(bool forUser) noexcept;

}  // namespace tolvane::com
