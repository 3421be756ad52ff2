#include <windows.h>

#include <string>
#include <system_error>

#include "standalone/program_folder.h"
#include "system/windows_text.h"

namespace tolvane::standalone {
namespace {

constexpr std::size_t longestPath = 32768;

// Any address of the module that this code was linked into will do.
const char ownAddress = 0;

}  // namespace

std::filesystem::path programFolder() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&ownAddress), &module);
  std::wstring file(longestPath, L'\0');
  file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
  std::error_code ignored;
  return file.empty() ? std::filesystem::current_path(ignored) : std::filesystem::path(file).parent_path();
}

std::optional<std::filesystem::path> folderVariable(const char* name) {
  const auto wideName = system::wideOf(name);
  const DWORD size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
  if (size == 0) return std::nullopt;
  std::wstring folder(size, L'\0');
  folder.resize(GetEnvironmentVariableW(wideName.c_str(), folder.data(), size));
  return std::filesystem::path(folder);
}

}  // namespace tolvane::standalone
