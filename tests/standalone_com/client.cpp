#include "standalone_com/client.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>

#include "automation/error_translation.h"
#include "automation/text.h"
#include "standalone_com/class_table.h"

namespace tolvane::standalone_com::testing {
namespace {

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();

/// An entry of the DLL, which lies beside the test and stays loaded.
template <typename Entry>
Entry entry(const char* name) {
  static const HMODULE module = LoadLibraryW(L"NorvStandalone.dll");
  return reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

CLSID identifierOf(const std::string& className) {
  const std::wstring name = L"NorvStandalone." + automation::wide(className);
  for (const ClassEntry& known : classTable()) {
    if (known.name == name) return known.identifier;
  }
  raise(RuntimeError::cannotCreateObject);
}

std::string newDataSourceName() {
  static int number = 0;
  return "Database=" + ::testing::TempDir() + "standalone_com_" + std::to_string(GetCurrentProcessId()) + "_" +
         std::to_string(++number) + ".db";
}

void removeFile(const std::string& dsn) {
  std::error_code ignored;
  std::filesystem::remove(dsn.substr(std::string("Database=").size()), ignored);
}

}  // namespace

Client Client::create(const std::string& className) {
  automation::ComPtr<IClassFactory> factory;
  automation::ComPtr<IDispatch> object;
  automation::check(
      entry<GetClassObject>("DllGetClassObject")(identifierOf(className), IID_IClassFactory, factory.receiveAny()));
  automation::check(factory->CreateInstance(nullptr, IID_IDispatch, object.receiveAny()));
  return Client(std::move(object));
}

bool Client::canUnload() {
  return entry<CanUnloadNow>("DllCanUnloadNow")() == S_OK;
}

std::string textOf(const AutomationError& error) {
  std::array<char, 9> number{};
  std::snprintf(number.data(), number.size(), "%08X", static_cast<unsigned>(error.number()));
  return std::string(number.data()) + " " + error.source() + ": " + error.description();
}

TryOut::TryOut() : dsn_(newDataSourceName()), application_(Client::create("Application")) {
  removeFile(dsn_);  // of a run that was broken off
  (void)application_.get(L"CreateAccountSet", dsn_);
  const Client context = application_.object(L"GetContext");
  (void)context.get(L"OpenDataSource", dsn_, automation::Variant());
  connection_ = context.object(L"GetConnection");
}

TryOut::~TryOut() {
  connection_ = {};
  application_ = {};
  removeFile(dsn_);
}

Value TryOut::asked(const std::string& sql) const {
  return connection_.object(L"Execute", sql).object(L"Fields", 0).get(L"Value");
}

}  // namespace tolvane::standalone_com::testing
