// What NorvStandalone.dll gives to COM.
#include <algorithm>
#include <vector>

#include "automation/class_factory.h"
#include "automation/error_translation.h"
#include "automation/registry.h"
#include "standalone_com/class_table.h"

// The linker's name for the place where the module lies in memory.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tolvane::standalone_com {
namespace {

std::filesystem::path ownPath() {
  return automation::modulePath(reinterpret_cast<HINSTANCE>(&__ImageBase));
}

std::vector<automation::Registration> registrations() {
  std::vector<automation::Registration> all;
  for (const ClassEntry& entry : classTable()) all.push_back({entry.identifier, entry.name, entry.description});
  return all;
}

/// Runs what a DLL function does; an error becomes its code.
template <typename Work>
HRESULT guarded(Work&& work) noexcept {
  try {
    work();
    return S_OK;
  } catch (...) {
    return automation::currentCode();
  }
}

}  // namespace
}  // namespace tolvane::standalone_com

using namespace tolvane;

STDAPI DllGetClassObject(REFCLSID identifier, REFIID iid, void** factory) {
  if (!factory) return E_POINTER;
  *factory = nullptr;
  const auto classes = standalone_com::classTable();
  const auto found = std::find_if(classes.begin(), classes.end(),
                                  [&](const auto& entry) { return IsEqualCLSID(entry.identifier, identifier) != 0; });
  if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
  return automation::giveClassFactory(found->make, iid, factory);
}

STDAPI DllCanUnloadNow() {
  return automation::canUnloadNow();
}

STDAPI DllRegisterServer() {
  return standalone_com::guarded([] {
    automation::registerClasses(standalone_com::registrations(), standalone_com::ownPath(),
                                automation::availableScope());
  });
}

STDAPI DllUnregisterServer() {
  return standalone_com::guarded([] {
    const auto classes = standalone_com::registrations();
    automation::unregisterClasses(classes, automation::RegistrationScope::user);
    if (automation::availableScope() == automation::RegistrationScope::machine) {
      automation::unregisterClasses(classes, automation::RegistrationScope::machine);
    }
  });
}
