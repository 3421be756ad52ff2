#include "suite/suite_platform.h"

#include "fake_object.h"
#include "platform/calendar.h"
#include "standalone/code_page.h"
#include "suite/suite_library.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;

class SuitePlatformTest : public SuiteTest {
 protected:
  SuitePlatformTest() { application_->gives(L"GetContext", context_); }

  [[nodiscard]] Binding binding(bool hostCalls = false) const {
    return {.application = applications_.name(),
            .security = securities_.name(),
            .loader = L"Missing.Loader",
            .dataFlow = dataFlows_.name(),
            .recordset = L"ADODB.Recordset",
            .command = L"ADODB.Command",
            .callTextMember = {},
            .hostCalls = hostCalls};
  }

  SuiteLibrary names_{suiteBinding()};
  ComPtr<FakeObject> application_ = fake("application", names_.application);
  ComPtr<FakeObject> context_ = fake("context", names_.context);
  int made_ = 0;
  FakeClass applications_{[this] {
    ++made_;
    return ComPtr<IDispatch>(application_.get());
  }};
  FakeClass securities_{[this] {
    ++made_;
    return ComPtr<IDispatch>(fake("security", names_.security).get());
  }};
  FakeClass dataFlows_{[this] {
    ++made_;
    return ComPtr<IDispatch>(fake("dataFlow", names_.dataFlow).get());
  }};
};

TEST_F(SuitePlatformTest, NothingIsCreatedBeforeItIsAskedFor) {
  const SuitePlatform platform(binding());
  EXPECT_EQ(made_, 0);
}

TEST_F(SuitePlatformTest, TheApplicationObjectIsCreatedOnce) {
  SuitePlatform platform(binding());
  EXPECT_EQ(platform.application(), platform.application());
  (void)platform.application()->getContext();
  EXPECT_EQ(made_, 1);
  EXPECT_EQ(said(), (Conversation{"ask application.GetContext"}));
}

TEST_F(SuitePlatformTest, SecurityAndDataFlowAreCreatedAnewEachTime) {
  SuitePlatform platform(binding());
  (void)platform.newSecurity();
  (void)platform.newSecurity();
  (void)platform.newDataFlow(nullptr);
  (void)platform.newDataFlow(nullptr);
  EXPECT_EQ(made_, 4);
}

TEST_F(SuitePlatformTest, AComponentThatIsNotRegisteredIsError429WithItsName) {
  SuitePlatform platform(binding());
  const auto error = errorOf([&] { (void)platform.newResourceLoader(); });
  EXPECT_EQ(error.number(), errorNumber(RuntimeError::cannotCreateObject));
  EXPECT_EQ(error.source(), "Tolvane");
  EXPECT_EQ(error.description(), "ActiveX component can't create object: 'Missing.Loader'");
}

TEST_F(SuitePlatformTest, TheSuiteIsNotToldOfAHostsCalls) {
  SuitePlatform platform(binding());
  platform.hostBegin(TransactionMode::required);
  EXPECT_TRUE(platform.hostEnd());
  platform.hostAbort();
  EXPECT_EQ(said(), Conversation{});
  EXPECT_EQ(made_, 0);
}

TEST_F(SuitePlatformTest, TheStandaloneObjectsAreTold) {
  SuitePlatform platform(binding(true));
  application_->gives(L"EndCall", Value(false));
  platform.hostBegin(TransactionMode::supported);
  EXPECT_FALSE(platform.hostEnd());
  platform.hostAbort();
  EXPECT_EQ(said(), (Conversation{"call application.BeginCall(I4 3)", "ask application.EndCall",
                                  "call application.AbortCall"}));
}

TEST_F(SuitePlatformTest, AFailureToTakeWorkBackIsNotReported) {
  SuitePlatform platform(binding(true));
  application_->fails(L"AbortCall", AutomationError(oledb::unspecified, "x", "gone"));
  platform.hostAbort();
  EXPECT_EQ(said(), (Conversation{"call application.AbortCall"}));
}

TEST_F(SuitePlatformTest, BagsAndListsAreItsOwn) {
  SuitePlatform platform(binding());
  const auto bag = platform.newPropertyBag();
  bag->set("FName", Value("x"));
  EXPECT_EQ(bag->item("fname"), Value("x"));
  const auto list = platform.newItemList();
  list->add(Value(std::shared_ptr<PropertyBag>(bag)));
  EXPECT_EQ(list->count(), 1);
}

TEST_F(SuitePlatformTest, TodayIsAWholeDayOfTheMachinesCalendar) {
  SuitePlatform platform(binding());
  SYSTEMTIME now{};
  GetLocalTime(&now);
  const Date first = dateOf(now.wYear, now.wMonth, now.wDay);
  const Date today = platform.today();
  EXPECT_TRUE(today.days == first.days || today.days == first.days + 1);  // midnight may pass
}

TEST_F(SuitePlatformTest, RandomNumbersAreBelowOneAndDiffer) {
  SuitePlatform platform(binding());
  const double first = platform.random();
  const double second = platform.random();
  EXPECT_GE(first, 0);
  EXPECT_LT(first, 1);
  EXPECT_NE(first, second);
}

TEST_F(SuitePlatformTest, TextsInFilesAreOfTheCodePageThatWindowsIsSetTo) {
  SuitePlatform platform(binding());
  EXPECT_EQ(platform.ansi().fromUtf8("plain"), "plain");
  standalone::CodePage windows(static_cast<int>(GetACP()));
  EXPECT_EQ(platform.ansi().fromUtf8("\u00e9资"), windows.fromUtf8("\u00e9资"));
}

}  // namespace
}  // namespace tolvane::suite
