#include "automation/registry.h"

#include <array>
#include <utility>

#include "automation/error_translation.h"

namespace tolvane::automation {
namespace {

const std::wstring classesPath = L"Software\\Classes\\";

void checkStatus(LSTATUS status) {
  check(HRESULT_FROM_WIN32(static_cast<unsigned long>(status)));
}

std::wstring identifierPath(const Registration& registration) {
  return classesPath + L"CLSID\\" + textOf(registration.identifier);
}

std::wstring versionedName(const Registration& registration) {
  return registration.name + L".1";
}

void setKey(HKEY root, const std::wstring& path, const std::wstring& text) {
  RegistryKey::create(root, path).setText({}, text);
}

void registerNames(HKEY root, const Registration& registration) {
  const std::wstring identifier = textOf(registration.identifier);
  const std::wstring plain = classesPath + registration.name;
  const std::wstring versioned = classesPath + versionedName(registration);
  for (const std::wstring& path : {plain, versioned}) {
    setKey(root, path, registration.description);
    setKey(root, path + L"\\CLSID", identifier);
  }
  setKey(root, plain + L"\\CurVer", versionedName(registration));
}

void registerClass(HKEY root, const Registration& registration, const std::filesystem::path& module) {
  const std::wstring path = identifierPath(registration);
  setKey(root, path, registration.description);
  const auto server = RegistryKey::create(root, path + L"\\InprocServer32");
  server.setText({}, module.wstring());
  server.setText(L"ThreadingModel", registration.threadingModel);
  setKey(root, path + L"\\ProgID", versionedName(registration));
  setKey(root, path + L"\\VersionIndependentProgID", registration.name);
  setKey(root, path + L"\\Programmable", {});
  if (registration.typeLibrary) {
    setKey(root, path + L"\\TypeLib", textOf(*registration.typeLibrary));
    setKey(root, path + L"\\Version", registration.typeLibraryVersion);
  }
  registerNames(root, registration);
}

bool belongsTo(HKEY root, const std::wstring& name, const Registration& registration) {
  const auto key = RegistryKey::find(root, classesPath + name + L"\\CLSID");
  return key && key->text({}) == textOf(registration.identifier);
}

void unregisterClass(HKEY root, const Registration& registration) {
  for (const std::wstring& name : {registration.name, versionedName(registration)}) {
    if (belongsTo(root, name, registration)) removeKey(root, classesPath + name);
  }
  removeKey(root, identifierPath(registration));
}

}  // namespace

RegistryKey RegistryKey::create(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  checkStatus(RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr,
                              &key, nullptr));
  return RegistryKey(key);
}

std::optional<RegistryKey> RegistryKey::find(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key);
  if (status == ERROR_FILE_NOT_FOUND) return std::nullopt;
  checkStatus(status);
  return RegistryKey(key);
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
  std::swap(key_, other.key_);
  return *this;
}

RegistryKey::~RegistryKey() {
  if (key_) RegCloseKey(key_);
}

void RegistryKey::setText(const std::wstring& name, const std::wstring& text) const {
  checkStatus(RegSetValueExW(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                             static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

std::optional<std::wstring> RegistryKey::text(const std::wstring& name) const {
  DWORD size = 0;
  LSTATUS status = RegGetValueW(key_, nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr, &size);
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_UNSUPPORTED_TYPE) return std::nullopt;
  checkStatus(status);
  std::wstring result(size / sizeof(wchar_t), L'\0');
  checkStatus(RegGetValueW(key_, nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, result.data(), &size));
  result.resize(size / sizeof(wchar_t) - 1);  // the end mark counts in it
  return result;
}

void removeKey(HKEY root, const std::wstring& path) {
  const LSTATUS status = RegDeleteTreeW(root, path.c_str());
  if (status != ERROR_FILE_NOT_FOUND) checkStatus(status);
}

RegistrationScope availableScope() {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID", 0, KEY_READ | KEY_WRITE, &key);
  if (status == ERROR_ACCESS_DENIED) return RegistrationScope::user;
  checkStatus(status);
  RegCloseKey(key);
  return RegistrationScope::machine;
}

HKEY rootOf(RegistrationScope scope) {
  return scope == RegistrationScope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::filesystem::path modulePath(HINSTANCE module) {
  std::wstring buffer(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0) checkStatus(static_cast<LSTATUS>(GetLastError()));
    if (length < buffer.size()) return buffer.substr(0, length);
    buffer.resize(buffer.size() * 2);
  }
}

void registerClasses(std::span<const Registration> classes, const std::filesystem::path& module,
                     RegistrationScope scope) {
  try {
    for (const Registration& registration : classes) registerClass(rootOf(scope), registration, module);
  } catch (const AutomationError&) {
    unregisterClasses(classes, scope);
    throw;
  }
}

void unregisterClasses(std::span<const Registration> classes, RegistrationScope scope) {
  for (const Registration& registration : classes) unregisterClass(rootOf(scope), registration);
}

std::wstring textOf(const GUID& identifier) {
  std::array<wchar_t, 40> buffer{};
  const int length = StringFromGUID2(identifier, buffer.data(), static_cast<int>(buffer.size()));
  return {buffer.data(), static_cast<std::size_t>(length) - 1};
}

}  // namespace tolvane::automation
