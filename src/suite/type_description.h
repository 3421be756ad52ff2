// Walks through what an automation interface tells about itself.
#pragma once

#include <functional>
#include <string>

#include "automation/windows_headers.h"

namespace tolvane::suite {

/// Visits an interface in the form that tells most, those that it stands on before it, IDispatch left out. `visit` says
/// whether to stop; whether one did.
using InterfaceVisitor = std::function<bool(ITypeInfo& info)>;
bool visitInterfaces(ITypeInfo& info, const InterfaceVisitor& visit);

/// Visits the functions of these interfaces in their order, those left out that the system cannot describe.
using FunctionVisitor = std::function<bool(ITypeInfo& info, const FUNCDESC& function)>;
bool visitFunctions(ITypeInfo& info, const FunctionVisitor& visit);

/// The arguments that a caller may give a function, its result and a property's new value not among them.
struct ArgumentCount {
  std::size_t atLeast = 0;
  std::size_t atMost = 0;
};
[[nodiscard]] ArgumentCount argumentCount(const FUNCDESC& function);

[[nodiscard]] std::wstring memberName(ITypeInfo& info, MEMBERID member);

}  // namespace tolvane::suite
