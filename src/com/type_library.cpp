#include "com/type_library.h"

#include <algorithm>
#include <array>

#include "automation/com_ptr.h"
#include "automation/error_translation.h"
#include "automation/registry.h"

// Windows has these two since Vista; the compiler's headers do not declare them.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID identifier, WORD major, WORD minor, LCID language,
                                                   SYSKIND system);

// The linker's name for the beginning of the module that this code is in.
extern "C" const IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace tolvane::com {
namespace {

using automation::ComPtr;

ComPtr<ITypeLib> load() {
  ComPtr<ITypeLib> library;
  automation::check(LoadTypeLibEx(automation::modulePath(moduleInstance()).c_str(), REGKIND_NONE, library.receive()));
  return library;
}

/// Windows describes the system in its own way to each word size.
constexpr SYSKIND systemKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

}  // namespace

HINSTANCE moduleInstance() noexcept {
  return reinterpret_cast<HINSTANCE>(const_cast<IMAGE_DOS_HEADER*>(&__ImageBase));
}

GUID nativeIdentifier(const typelib::Identifier& identifier) noexcept {
  GUID result{identifier.first, identifier.second, identifier.third, {}};
  std::copy(identifier.rest.begin(), identifier.rest.end(), result.Data4);
  return result;
}

HRESULT interfaceInformation(std::string_view className, ITypeInfo** information) noexcept {
  try {
    return load()->GetTypeInfoOfGuid(nativeIdentifier(typelib::interfaceIdentifier(className)), information);
  } catch (...) {
    return automation::currentCode();
  }
}

HRESULT registerTypeLibrary(bool forUser) noexcept {
  try {
    auto path = automation::modulePath(moduleInstance()).wstring();
    const auto library = load();
    return forUser ? RegisterTypeLibForUser(library.get(), path.data(), nullptr)
                   : RegisterTypeLib(library.get(), path.data(), nullptr);
  } catch (...) {
    return automation::currentCode();
  }
}

HRESULT unregisterTypeLibrary(bool forUser) noexcept {
  const GUID identifier = nativeIdentifier(typelib::libraryIdentifier());
  const auto unregister = forUser ? UnRegisterTypeLibForUser : UnRegisterTypeLib;
  return unregister(identifier, typelib::majorVersion, typelib::minorVersion, LOCALE_NEUTRAL, systemKind);
}

}  // namespace tolvane::com
