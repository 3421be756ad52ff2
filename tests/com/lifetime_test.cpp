// References, memory, threads: what keeps the DLLs in use, and for how long.
#include <thread>

#include "automation/foundation_objects.h"
#include "automation_server.h"
#include "catalogue/catalogue.h"
#include "com/type_library.h"
// Stands on the Windows headers above.
#include <psapi.h>

namespace tolvane::com {
namespace {

using automation::ComPtr;
using automation::Variant;
using automation::wide;

class Lifetime : public AutomationServer {
 protected:
  static ComPtr<IClassFactory> factoryOf(const ClassDescription& description) {
    ComPtr<IClassFactory> factory;
    const GUID identifier = nativeIdentifier(typelib::classIdentifier(description.name));
    EXPECT_EQ(CoGetClassObject(identifier, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.receiveAny()),
              S_OK);
    return factory;
  }
  /// Creates an object, reads its TransMode and lets it go; answers whether all went well.
  static bool useOnce(IClassFactory& factory) {
    ComPtr<IDispatch> object;
    if (FAILED(factory.CreateInstance(nullptr, IID_IDispatch, object.receiveAny()))) return false;
    DISPPARAMS none{};
    Variant mode;
    return object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, mode.receive(), nullptr, nullptr) == S_OK &&
           mode.get().lVal != 0;
  }
  static std::size_t committedBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
  }
};

TEST_F(Lifetime, AHundredThousandObjectsOfEveryClassLeaveNoMemoryBehind) {
  constexpr int warmUp = 1000;
  constexpr int rounds = 100000;
  const auto keepsTheThreadsPlatform = service(L"CsRetrieve");
  for (const ClassDescription& description : classes()) {
    const auto factory = factoryOf(description);
    int failed = 0;
    for (int i = 0; i < warmUp; ++i) failed += useOnce(*factory) ? 0 : 1;
    const std::size_t before = committedBytes();
    for (int i = 0; i < rounds; ++i) failed += useOnce(*factory) ? 0 : 1;
    EXPECT_EQ(failed, 0) << description.name;
    // A byte an object would show; the heap's own ups and downs are smaller than this.
    EXPECT_LT(committedBytes(), before + 2 * 1024 * 1024) << description.name;
  }
}

TEST_F(Lifetime, CallsThatGiveDocumentsAndListsLeaveNoMemoryBehind) {
  const auto reader = service(L"SrvRptRetrieve");
  const Variant name(dsn());
  const auto readOnce = [&] {
    Variant document;
    IDispatch* list = nullptr;
    const bool well =
        call(*reader, L"GetRptPlx", {name.get(), number(2), byReference(*document.receive())}).code == S_OK &&
        call(*reader, L"GetRptlist", {name.get(), byReference(VT_DISPATCH, &list)}).code == S_OK;
    if (list) list->Release();
    return well;
  };
  for (int i = 0; i < 50; ++i) ASSERT_TRUE(readOnce());
  const std::size_t before = committedBytes();
  for (int i = 0; i < 300; ++i) ASSERT_TRUE(readOnce());
  EXPECT_LT(committedBytes(), before + 2 * 1024 * 1024);
}

TEST_F(Lifetime, TheServerMayGoWhenItsLastObjectHasGone) {
  ASSERT_EQ(callEntry(L"NorvTolvane.dll", "DllCanUnloadNow"), S_OK);
  auto reader = service(L"SrvRptRetrieve");
  EXPECT_EQ(callEntry(L"NorvTolvane.dll", "DllCanUnloadNow"), S_FALSE);
  const Variant name(dsn());
  IDispatch* list = nullptr;
  ASSERT_EQ(call(*reader, L"GetRptlist", {name.get(), byReference(VT_DISPATCH, &list)}).code, S_OK);
  reader = {};
  EXPECT_EQ(callEntry(L"NorvTolvane.dll", "DllCanUnloadNow"), S_FALSE) << "the list is still in use";
  list->Release();
  EXPECT_EQ(callEntry(L"NorvTolvane.dll", "DllCanUnloadNow"), S_OK);
  EXPECT_EQ(callEntry(L"NorvStandalone.dll", "DllCanUnloadNow"), S_OK);
}

TEST_F(Lifetime, AnEnumerationKeepsItsListAlive) {
  const Variant name(dsn());
  IDispatch* list = nullptr;
  ASSERT_EQ(call(*service(L"SrvRptRetrieve"), L"GetRptlist", {name.get(), byReference(VT_DISPATCH, &list)}).code, S_OK);
  ComPtr<IEnumVARIANT> walk;
  {
    DISPPARAMS none{};
    Variant result;
    ASSERT_EQ(
        list->Invoke(DISPID_NEWENUM, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, result.receive(), nullptr, nullptr),
        S_OK);
    walk = ComPtr<IUnknown>(result.get().punkVal).as<IEnumVARIANT>(IID_IEnumVARIANT);
  }
  list->Release();
  Variant first;
  ULONG fetched = 0;
  EXPECT_EQ(walk->Next(1, first.receive(), &fetched), S_OK);
  EXPECT_EQ(first.get().vt, VT_DISPATCH);
}

TEST_F(Lifetime, AnObjectIsUsedFromItsOwnThreadOnly) {
  const auto object = service(L"CsRetrieve");
  HRESULT code = S_OK;
  std::thread([&] {
    DISPPARAMS none{};
    code = object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr);
  }).join();
  EXPECT_EQ(code, RPC_E_WRONG_THREAD);
}

TEST_F(Lifetime, TwoApartmentsWorkAtOnce) {
  const std::string source = dsn();
  const auto work = [&](int& wrong) {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) ++wrong;
    {
      const auto reader = service(L"SrvRptRetrieve");
      const Variant name(source);
      for (int i = 0; i < 100; ++i) {
        Variant document;
        const auto answer = call(*reader, L"GetRptPlx", {name.get(), number(2), byReference(*document.receive())});
        if (answer.code != S_OK || document.get().vt != (VT_ARRAY | VT_UI1)) ++wrong;
      }
    }
    CoUninitialize();
  };
  int firstWrong = 0;
  int secondWrong = 0;
  std::thread first(work, std::ref(firstWrong));
  std::thread second(work, std::ref(secondWrong));
  first.join();
  second.join();
  EXPECT_EQ(firstWrong, 0);
  EXPECT_EQ(secondWrong, 0);
}

}  // namespace
}  // namespace tolvane::com
