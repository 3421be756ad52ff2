#include "automation_server.h"

#include "automation/error_translation.h"
#include "platform/conversions.h"

namespace tolvane::com {

using automation::ComPtr;
using automation::LateBound;
using automation::RemoteMember;
using automation::Variant;

std::filesystem::path AutomationServer::library(const wchar_t* name) {
  std::wstring buffer(1024, L'\0');
  buffer.resize(GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size())));
  return std::filesystem::path(buffer).parent_path() / name;
}

HRESULT AutomationServer::callEntry(const wchar_t* dll, const char* entry) {
  const HMODULE module = LoadLibraryW(library(dll).c_str());
  if (!module) return HRESULT_FROM_WIN32(GetLastError());
  const auto address =
      reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(module, entry)));
  const HRESULT code = address ? address() : E_NOTIMPL;
  FreeLibrary(module);
  return code;
}

HRESULT AutomationServer::install(const wchar_t* dll, bool installs, const wchar_t* words) {
  const HMODULE module = LoadLibraryW(library(dll).c_str());
  if (!module) return HRESULT_FROM_WIN32(GetLastError());
  const auto address = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(BOOL, PCWSTR)>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllInstall")));
  const HRESULT code = address ? address(installs, words) : E_NOTIMPL;
  FreeLibrary(module);
  return code;
}

void AutomationServer::SetUpTestSuite() {
  ASSERT_EQ(callEntry(L"NorvStandalone.dll", "DllRegisterServer"), S_OK);
  ASSERT_EQ(install(L"NorvTolvane.dll", true, L"standalone"), S_OK);
}

void AutomationServer::SetUp() {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
}

void AutomationServer::TearDown() {
  CoFreeUnusedLibraries();
  CoUninitialize();
  if (!folder_.empty()) std::filesystem::remove_all(folder_);
}

const std::string& AutomationServer::dsn() {
  if (!dsn_.empty()) return dsn_;
  folder_ = std::filesystem::temp_directory_path() /
            ("tolvane_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(GetTickCount()));
  std::filesystem::create_directories(folder_);
  dsn_ = "Database=" + automation::utf8((folder_ / "set.db").wstring());
  RemoteMember createAccountSet(L"CreateAccountSet");
  automation::RemoteClass(L"NorvStandalone.Application").create().call(createAccountSet, dsn_, "demo");
  return dsn_;
}

ComPtr<IDispatch> AutomationServer::create(const std::wstring& programmaticIdentifier) {
  return automation::RemoteClass(programmaticIdentifier).create().reference();
}

DISPID AutomationServer::idOf(IDispatch& object, const wchar_t* name) {
  return RemoteMember(name).in(object);
}

Answer AutomationServer::call(IDispatch& object, const wchar_t* member, std::vector<VARIANT> arguments, WORD flags) {
  std::vector<VARIANT> given(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(given.size()), 0};
  Answer answer;
  answer.code = object.Invoke(idOf(object, member), IID_NULL, LOCALE_SYSTEM_DEFAULT, flags, &parameters,
                              answer.result.receive(), &answer.error, &answer.argument);
  return answer;
}

std::int32_t AutomationServer::selected(const std::string& query) {
  const auto retrieve = service(L"SrvRptRetrieve");
  const Variant name(dsn());
  const Variant sql(query);
  Variant rows;
  VARIANT reference = byReference(*rows.receive());
  const auto answer = call(*retrieve, L"GetSqlExecResult", {name.get(), sql.get(), reference});
  automation::check(answer.code);
  RemoteMember item(L"Item");
  RemoteMember nameOfField(L"Name");
  const LateBound row(LateBound(rows.object()).read(item, 1).object());
  return toInt32(row.read(item, toText(row.read(nameOfField, 1).take())).take());
}

VARIANT number(LONG value) {
  VARIANT result;
  VariantInit(&result);
  result.vt = VT_I4;
  result.lVal = value;
  return result;
}

VARIANT missing() {
  VARIANT result;
  VariantInit(&result);
  result.vt = VT_ERROR;
  result.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

VARIANT byReference(VARIANT& target) {
  return byReference(VT_VARIANT, &target);
}

VARIANT byReference(VARTYPE type, void* target) {
  VARIANT result;
  VariantInit(&result);
  result.vt = static_cast<VARTYPE>(VT_BYREF | type);
  result.byref = target;
  return result;
}

}  // namespace tolvane::com
