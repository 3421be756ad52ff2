// The classes of a DLL in the Windows registry.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "automation/windows_headers.h"

namespace tolvane::automation {

/// A key of the registry, open while the object lives. Failures are AutomationErrors with the system's code
/// (E_ACCESSDENIED without rights) and words.
class RegistryKey {
 public:
  /// Opens a key for writing, making it and those above it when they are not there.
  [[nodiscard]] static RegistryKey create(HKEY root, const std::wstring& path);
  /// Opens a key for reading; nothing when it is not there.
  [[nodiscard]] static std::optional<RegistryKey> find(HKEY root, const std::wstring& path);
  RegistryKey(RegistryKey&& other) noexcept;
  RegistryKey& operator=(RegistryKey&& other) noexcept;
  ~RegistryKey();

  /// The empty name is the key's own value.
  void setText(const std::wstring& name, const std::wstring& text) const;
  /// Nothing when there is no such text.
  [[nodiscard]] std::optional<std::wstring> text(const std::wstring& name) const;

 private:
  explicit RegistryKey(HKEY key) : key_(key) {}
  HKEY key_ = nullptr;
};

/// Removes a key with everything below it; it need not be there.
void removeKey(HKEY root, const std::wstring& path);

/// For whom something is registered: everyone on the machine, or the user who runs the program.
enum class RegistrationScope { machine, user };

/// The machine when this process may write its classes, else the user.
[[nodiscard]] RegistrationScope availableScope();
/// The root under which a scope's software is kept.
[[nodiscard]] HKEY rootOf(RegistrationScope scope);

/// What the registry is told about a class.
struct Registration {
  CLSID identifier{};
  std::wstring name;  ///< "Library.Class"; the name with the version is `name` + ".1"
  std::wstring description;
  std::wstring threadingModel = L"Apartment";
  std::optional<GUID> typeLibrary = std::nullopt;
  std::wstring typeLibraryVersion = L"1.0";
};

/// The file of a loaded DLL.
[[nodiscard]] std::filesystem::path modulePath(HINSTANCE module);

/// Registers classes that `module` serves. When one cannot be registered none stays.
void registerClasses(std::span<const Registration> classes, const std::filesystem::path& module,
                     RegistrationScope scope);
/// Takes a scope's registrations away, those that are there. A name that meanwhile belongs to another class stays.
void unregisterClasses(std::span<const Registration> classes, RegistrationScope scope);

/// `{...}`, as the registry writes identifiers.
[[nodiscard]] std::wstring textOf(const GUID& identifier);

}  // namespace tolvane::automation
