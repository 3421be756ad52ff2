// Which automation classes stand behind the platform: the suite's and ADO's, or the standalone ones.
#pragma once

#include <string>

#include "automation/windows_headers.h"

namespace tolvane::suite {

/// Programmatic identifiers and what else differs between the suite and its stand-ins.
struct Binding {
  std::wstring application;
  std::wstring security;
  std::wstring loader;
  std::wstring dataFlow;
  std::wstring recordset;
  std::wstring command;
  /// The context's property with the text of the current call. Empty: the first property of the context's interface, as
  /// its type information tells it.
  std::wstring callTextMember;
  /// Whether the application object is told when a host's call begins and ends. The suite is not: its transactions are
  /// those of the component host.
  bool hostCalls = false;

  friend bool operator==(const Binding&, const Binding&) = default;
};

/// The suite's own components and ADO.
[[nodiscard]] Binding suiteBinding();
/// The objects of NorvStandalone.dll.
[[nodiscard]] Binding standaloneBinding();

/// What was chosen at registration: the key `Software\NorvTolvane\Binding` of the user, else that of the machine, else
/// suiteBinding(). A key that does not name something leaves that as the suite has it. The key's values are texts
/// called `Application`, `Security`, `Loader`, `DataFlow`, `Recordset`, `Command`, `CallTextMember` and `HostCalls`
/// ("1" or "0"). A 32-bit process sees the machine's key in the registry's 32-bit part.
[[nodiscard]] Binding loadBinding();
/// Writes all values below `root` (HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE). Raises the system's error, above all for
/// want of rights.
void storeBinding(HKEY root, const Binding& binding);
/// Removes the key; one that is not there is no error.
void removeBinding(HKEY root);

}  // namespace tolvane::suite
