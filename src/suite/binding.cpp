#include "suite/binding.h"

#include <array>
#include <optional>

#include "automation/registry.h"

namespace tolvane::suite {
namespace {

using automation::RegistryKey;

const std::wstring keyPath = L"Software\\NorvTolvane\\Binding";
const std::wstring hostCallsName = L"HostCalls";

struct Entry {
  const wchar_t* name;
  std::wstring Binding::*content;
};
constexpr std::array entries{Entry{L"Application", &Binding::application},
                             Entry{L"Security", &Binding::security},
                             Entry{L"Loader", &Binding::loader},
                             Entry{L"DataFlow", &Binding::dataFlow},
                             Entry{L"Recordset", &Binding::recordset},
                             Entry{L"Command", &Binding::command},
                             Entry{L"CallTextMember", &Binding::callTextMember}};

std::optional<Binding> read(HKEY root) {
  const auto key = RegistryKey::find(root, keyPath);
  if (!key) return std::nullopt;
  Binding result = suiteBinding();
  for (const Entry& entry : entries) {
    if (auto text = key->text(entry.name)) result.*entry.content = std::move(*text);
  }
  if (const auto text = key->text(hostCallsName)) result.hostCalls = *text == L"1";
  return result;
}

}  // namespace

Binding suiteBinding() {
  return {.application = L"NorvGlobal.GlobalApplication",
          .security = L"NorvEBSBase.SecurityInfo",
          .loader = L"ZelRESLOADER.Loader",
          .dataFlow = L"NorvEBSDataFlow.DatasUpdate",
          .recordset = L"ADODB.Recordset",
          .command = L"ADODB.Command",
          .callTextMember = {},
          .hostCalls = false};
}

Binding standaloneBinding() {
  return {.application = L"NorvStandalone.Application",
          .security = L"NorvStandalone.Security",
          .loader = L"NorvStandalone.Loader",
          .dataFlow = L"NorvStandalone.DataFlow",
          .recordset = L"NorvStandalone.Recordset",
          .command = L"NorvStandalone.Command",
          .callTextMember = L"CallText",
          .hostCalls = true};
}

Binding loadBinding() {
  for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (auto binding = read(root)) return *std::move(binding);
  }
  return suiteBinding();
}

void storeBinding(HKEY root, const Binding& binding) {
  const auto key = RegistryKey::create(root, keyPath);
  for (const Entry& entry : entries) key.setText(entry.name, binding.*entry.content);
  key.setText(hostCallsName, binding.hostCalls ? L"1" : L"0");
}

void removeBinding(HKEY root) {
  automation::removeKey(root, keyPath);
}

}  // namespace tolvane::suite
