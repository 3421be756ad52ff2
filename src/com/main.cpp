// What Windows and COM ask of the DLL.
#include "automation/class_factory.h"
#include "automation/error_translation.h"
#include "com/server.h"
#include "com/type_library.h"

namespace tolvane::com {
namespace {

template <typename Work>
HRESULT run(Work&& work) noexcept {
  try {
    work();
    return S_OK;
  } catch (...) {
    return automation::currentCode();
  }
}

}  // namespace

}  // namespace tolvane::com

STDAPI DllGetClassObject(REFCLSID identifier, REFIID iid, void** factory) {
  if (!factory) return E_POINTER;
  *factory = nullptr;
  HRESULT code = CLASS_E_CLASSNOTAVAILABLE;
  const HRESULT failed = tolvane::com::run([&] {
    if (auto make = tolvane::com::objectMaker(identifier)) {
      code = tolvane::automation::giveClassFactory(std::move(make), iid, factory);
    }
  });
  return FAILED(failed) ? failed : code;
}

STDAPI DllCanUnloadNow() {
  return tolvane::automation::canUnloadNow();
}

STDAPI DllRegisterServer() {
  return tolvane::com::run([] { tolvane::com::registerServer(tolvane::com::parseRequest({})); });
}

STDAPI DllUnregisterServer() {
  return tolvane::com::run([] { tolvane::com::unregisterServer(); });
}

// "regsvr32 /i:WORDS": registers as the words say; with /u it takes the registration away.
STDAPI DllInstall(BOOL install, PCWSTR words) {
  return tolvane::com::run([&] {
    if (install) {
      tolvane::com::registerServer(tolvane::com::parseRequest(words ? words : L""));
    } else {
      tolvane::com::unregisterServer();
    }
  });
}
