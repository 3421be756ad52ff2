// The type library's text in the interface definition language, from the method table.
#pragma once

#include <span>
#include <string>

#include "frame/method_table.h"

namespace tolvane::typelib {

/// The whole library: the enumeration of transaction modes, and for every class a dispatch interface ("_" and the
/// class's name), whose members carry the method table's dispatch numbers, and the class itself. `TransMode` is the
/// first member of each.
[[nodiscard]] std::string interfaceText(std::span<const ClassDescription> classes);

}  // namespace tolvane::typelib
