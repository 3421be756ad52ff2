#include "suite/remote_components.h"

#include "automation/object_border.h"
#include "automation/text.h"
#include "fake_object.h"
#include "standalone/objects.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;
using automation::Variant;

class RemoteComponentsTest : public SuiteTest {
 protected:
  std::shared_ptr<SuiteLibrary> suite_ = std::make_shared<SuiteLibrary>(suiteBinding());
  ComPtr<FakeObject> security_ = fake("security", suite_->security);
  ComPtr<FakeObject> loader_ = fake("loader", suite_->loader);
  ComPtr<FakeObject> dataFlow_ = fake("dataFlow", suite_->dataFlow);
};

TEST_F(RemoteComponentsTest, SecurityIsAskedByUserKey) {
  security_->gives(L"GetCurrentUserID", Value(std::int32_t{16394}));
  security_->gives(L"IsAdministrator", Value(true));
  RemoteSecurity remote(suite_, bound(security_));
  EXPECT_EQ(remote.getCurrentUserID("key"), 16394);
  EXPECT_TRUE(remote.isAdministrator("key"));
  EXPECT_EQ(said(), (Conversation{"ask security.GetCurrentUserID(\"key\")", "ask security.IsAdministrator(\"key\")"}));
}

TEST_F(RemoteComponentsTest, AUserIdentifierThatDoesNotFitSixteenBitsIsAnOverflow) {
  security_->gives(L"GetCurrentUserID", Value(std::int32_t{32768}));
  RemoteSecurity remote(suite_, bound(security_));
  EXPECT_EQ(errorOf([&] { (void)remote.getCurrentUserID("key"); }).number(), errorNumber(RuntimeError::overflow));
}

TEST_F(RemoteComponentsTest, AnAccessCheckPassesNumbersAndSourceByReference) {
  security_->answer(L"AccessCheck", [](DISPPARAMS& given) {
    *given.rgvarg[2].plVal = 0;  // what it writes is nobody's business
    SysReAllocString(given.rgvarg[0].pbstrVal, L"changed");
    return Variant(false);
  });
  RemoteSecurity remote(suite_, bound(security_));
  EXPECT_FALSE(remote.accessCheck("key", 50, 0, 0x8000000, "Tolvane.SrvRptRetrieve"));
  EXPECT_EQ(said(), (Conversation{"ask security.AccessCheck(\"key\", ref I4 50, ref I4 0, ref I4 134217728, True, ref "
                                  "\"Tolvane.SrvRptRetrieve\")"}));
}

TEST_F(RemoteComponentsTest, TheLoaderIsSetUpAskedByReferenceAndUnloaded) {
  loader_->gives(L"LoadString", Value("New Report..."));
  RemoteResourceLoader remote(suite_, bound(loader_));
  remote.setResFileBaseName("ebo");
  remote.setLanguageID("en");
  EXPECT_EQ(remote.loadString("新建报表..."), "New Report...");
  remote.unload();
  EXPECT_EQ(said(), (Conversation{"let loader.ResFileBaseName = \"ebo\"", "let loader.LanguageID = \"en\"",
                                  "ask loader.LoadString(ref \"新建报表...\")", "call loader.Unload"}));
}

TEST_F(RemoteComponentsTest, MenuEntriesGoByReferenceWithATextASixteenBitNumberAndTwoFlags) {
  RemoteDataFlow remote(suite_, bound(dataFlow_));
  const auto entries = std::make_shared<standalone::List>();
  remote.refreshSubFunc("call", 7, entries, true, true);
  remote.refreshDetailFunc("call", 7, entries, true, true);
  EXPECT_EQ(said(), (Conversation{"call dataFlow.RefreshSubFunc(\"call\", I2 7, ref object, True, True)",
                                  "call dataFlow.RefreshDetailFunc(\"call\", I2 7, ref object, True, True)"}));
}

TEST_F(RemoteComponentsTest, TheComponentReadsTheEntriesAsAListOfBags) {
  const auto entry = std::make_shared<standalone::Dictionary>();
  entry->set("FSubFuncID", Value(std::int32_t{701}));
  const auto entries = std::make_shared<standalone::List>();
  entries->add(Value(std::shared_ptr<PropertyBag>(entry)));
  Value read;
  dataFlow_->answer(L"RefreshSubFunc", [&](DISPPARAMS& given) {
    automation::RemoteMember item(L"Item");
    const automation::LateBound list(ComPtr<IDispatch>(*given.rgvarg[2].ppdispVal));
    const automation::LateBound bag(list.read(item, std::int32_t{1}).object());
    automation::RemoteMember value(L"Item");
    read = bag.read(value, "fsubfuncid").take();
    return Variant();
  });
  RemoteDataFlow(suite_, bound(dataFlow_)).refreshSubFunc("call", 7, entries, true, true);
  EXPECT_EQ(read, Value(std::int32_t{701}));
}

TEST_F(RemoteComponentsTest, AComponentMayPutAnotherListInThePlaceOfTheEntries) {
  const ComPtr<FakeObject> other = fake("other", suite_->login);
  dataFlow_->answer(L"RefreshDetailFunc", [&](DISPPARAMS& given) {
    IDispatch*& place = *given.rgvarg[2].ppdispVal;
    place->Release();
    place = ComPtr<IDispatch>(other.get()).detach();
    return Variant();
  });
  RemoteDataFlow(suite_, bound(dataFlow_))
      .refreshDetailFunc("call", 7, std::make_shared<standalone::List>(), true, true);
  EXPECT_EQ(other->AddRef(), 2U);
  EXPECT_EQ(other->Release(), 1U);
}

}  // namespace
}  // namespace tolvane::suite
