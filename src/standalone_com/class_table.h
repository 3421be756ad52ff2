// The classes of NorvStandalone.dll.
#pragma once

#include <span>

#include "automation/com_ptr.h"

namespace tolvane::standalone_com {

struct ClassEntry {
  CLSID identifier;
  const wchar_t* name;  ///< as programs create it
  const wchar_t* description;
  automation::ComPtr<IDispatch> (*make)();
};

/// The one place where the classes' identifiers stand. They are fixed for good: programs may hold them.
[[nodiscard]] std::span<const ClassEntry> classTable();

}  // namespace tolvane::standalone_com
