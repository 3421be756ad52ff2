#include "com/server.h"

#include "automation/registry.h"
#include "automation_server.h"
#include "catalogue/catalogue.h"
#include "com/type_library.h"
#include "suite/binding.h"

namespace tolvane::com {
namespace {

using automation::RegistryKey;
using automation::wide;

class Registration : public AutomationServer {
 protected:
  void TearDown() override {
    // The other tests stand on the standalone components.
    EXPECT_EQ(install(L"NorvTolvane.dll", true, L"standalone"), S_OK);
    AutomationServer::TearDown();
  }
  static std::optional<std::wstring> valueOf(const std::wstring& path, const std::wstring& name = {}) {
    const auto key = RegistryKey::find(HKEY_LOCAL_MACHINE, L"Software\\Classes\\" + path);
    return key ? key->text(name) : std::nullopt;
  }
  static std::wstring classKey(const ClassDescription& description) {
    return L"CLSID\\" + automation::textOf(nativeIdentifier(typelib::classIdentifier(description.name)));
  }
};

TEST_F(Registration, NamesEveryClassWithAndWithoutItsVersion) {
  for (const ClassDescription& description : classes()) {
    const std::wstring name = wide(typelib::programmaticIdentifier(description.name));
    const std::wstring identifier = automation::textOf(nativeIdentifier(typelib::classIdentifier(description.name)));
    EXPECT_EQ(valueOf(name + L"\\CLSID"), identifier);
    EXPECT_EQ(valueOf(name + L".1\\CLSID"), identifier);
    EXPECT_EQ(valueOf(name + L"\\CurVer"), name + L".1");
    EXPECT_EQ(valueOf(classKey(description) + L"\\VersionIndependentProgID"), name);
    EXPECT_EQ(valueOf(classKey(description) + L"\\ProgID"), name + L".1");
  }
}

TEST_F(Registration, PutsEveryClassIntoApartments) {
  for (const ClassDescription& description : classes()) {
    EXPECT_EQ(valueOf(classKey(description) + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  }
}

TEST_F(Registration, LetsTheTypeLibraryBeFoundByItsIdentifier) {
  automation::ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadRegTypeLib(nativeIdentifier(typelib::libraryIdentifier()), typelib::majorVersion, typelib::minorVersion,
                           0, library.receive()),
            S_OK);
  EXPECT_GE(library->GetTypeInfoCount(), 2 * classes().size());
}

TEST_F(Registration, StandsOnTheSuiteUnlessItIsToldOtherwise) {
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllRegisterServer"), S_OK);
  EXPECT_EQ(suite::loadBinding(), suite::suiteBinding());
  ASSERT_EQ(install(L"NorvTolvane.dll", true, L"standalone"), S_OK);
  EXPECT_EQ(suite::loadBinding(), suite::standaloneBinding());
}

TEST_F(Registration, WithoutTheSuiteTheClassesCannotBeCreatedAndSayWhy) {
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllRegisterServer"), S_OK);
  automation::ComPtr<IDispatch> object;
  const GUID identifier = nativeIdentifier(typelib::classIdentifier("CsRetrieve"));
  const HRESULT code = CoCreateInstance(identifier, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.receiveAny());
  EXPECT_EQ(static_cast<std::uint32_t>(code), 0x800A01ADU);
}

TEST_F(Registration, TakenAwayLeavesNothingBehind) {
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllUnregisterServer"), S_OK);
  for (const ClassDescription& description : classes()) {
    const std::wstring name = wide(typelib::programmaticIdentifier(description.name));
    EXPECT_FALSE(RegistryKey::find(HKEY_LOCAL_MACHINE, L"Software\\Classes\\" + classKey(description)));
    EXPECT_FALSE(RegistryKey::find(HKEY_LOCAL_MACHINE, L"Software\\Classes\\" + name));
    EXPECT_FALSE(RegistryKey::find(HKEY_LOCAL_MACHINE, L"Software\\Classes\\" + name + L".1"));
  }
  EXPECT_FALSE(RegistryKey::find(HKEY_LOCAL_MACHINE, L"Software\\NorvTolvane\\Binding"));
  automation::ComPtr<ITypeLib> library;
  EXPECT_NE(LoadRegTypeLib(nativeIdentifier(typelib::libraryIdentifier()), typelib::majorVersion, typelib::minorVersion,
                           0, library.receive()),
            S_OK);
}

TEST_F(Registration, TakenAwayTwiceIsNoError) {
  EXPECT_EQ(callEntry(L"NorvTolvane.dll", "DllUnregisterServer"), S_OK);
  EXPECT_EQ(callEntry(L"NorvTolvane.dll", "DllUnregisterServer"), S_OK);
}

TEST_F(Registration, RefusesWordsThatItDoesNotKnow) {
  EXPECT_EQ(static_cast<std::uint32_t>(install(L"NorvTolvane.dll", true, L"sweet")), 0x800A0005U);
}

TEST_F(Registration, ReadsItsWordsInAnyOrderAndLetterCase) {
  const auto request = parseRequest(L"User, STANDALONE");
  EXPECT_EQ(request.scope, automation::RegistrationScope::user);
  EXPECT_EQ(request.components, Components::standalone);
  EXPECT_EQ(parseRequest(L"machine").components, Components::suite);
}

TEST_F(Registration, ForTheUserAloneWritesNothingForTheMachine) {
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllUnregisterServer"), S_OK);
  ASSERT_EQ(install(L"NorvTolvane.dll", true, L"user"), S_OK);
  const std::wstring path = L"Software\\Classes\\NorvTolvane.CsUpdate";
  EXPECT_TRUE(RegistryKey::find(HKEY_CURRENT_USER, path));
  EXPECT_FALSE(RegistryKey::find(HKEY_LOCAL_MACHINE, path));
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllUnregisterServer"), S_OK);
  EXPECT_FALSE(RegistryKey::find(HKEY_CURRENT_USER, path));
}

TEST_F(Registration, ServesNoOtherClasses) {
  const HMODULE module = LoadLibraryW(library(L"NorvTolvane.dll").c_str());
  ASSERT_NE(module, nullptr);
  const auto get = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  void* factory = &factory;
  EXPECT_EQ(get(IID_IDispatch, IID_IClassFactory, &factory), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(get(IID_IDispatch, IID_IClassFactory, nullptr), E_POINTER);
  FreeLibrary(module);
}

}  // namespace
}  // namespace tolvane::com
