#include "suite/remote_application.h"

#include "fake_object.h"
#include "suite/remote_connection.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;
using automation::LateBound;
using automation::RemoteClass;
using automation::Variant;

class RemoteApplicationTest : public SuiteTest {
 protected:
  RemoteApplicationTest() {
    application_->gives(L"GetContext", context_);
    context_->gives(L"GetLoginInfo", login_);
    context_->gives(L"GetConnection", connection_);
  }

  Libraries libraries_{std::make_shared<SuiteLibrary>(suiteBinding()),
                       std::make_shared<AdoLibrary>(L"ADODB.Recordset", L"ADODB.Command")};
  ComPtr<FakeObject> application_ = fake("application", libraries_.suite->application);
  ComPtr<FakeObject> context_ = fake("context", libraries_.suite->context);
  ComPtr<FakeObject> login_ = fake("login", libraries_.suite->login);
  ComPtr<FakeObject> connection_ = fake("connection", libraries_.ado->connection);
  std::shared_ptr<RemoteApplication> remote_ = std::make_shared<RemoteApplication>(libraries_, bound(application_));
};

TEST_F(RemoteApplicationTest, OpeningADataSourceTakesItsNameAndAVariantThatIsDiscarded) {
  context_->answer(L"OpenDataSource", [](DISPPARAMS& given) {
    *given.rgvarg[0].pvarVal = Variant("whatever the suite says").detach();
    return Variant();
  });
  const auto context = remote_->getContext();
  context->openDataSource("总账2012");
  EXPECT_EQ(said(), (Conversation{"ask application.GetContext",
                                  "call context.OpenDataSource(\"总账2012\", ref VARIANT Empty)"}));
}

TEST_F(RemoteApplicationTest, ContextsLoginsAndConnectionsAreAskedForAnewEachTime) {
  const auto context = remote_->getContext();
  (void)context->getLoginInfo();
  (void)context->getLoginInfo();
  const auto connection = context->getConnection();
  (void)context->getConnection();
  (void)remote_->getContext();
  EXPECT_EQ(said(),
            (Conversation{"ask application.GetContext", "ask context.GetLoginInfo", "ask context.GetLoginInfo",
                          "ask context.GetConnection", "ask context.GetConnection", "ask application.GetContext"}));
  EXPECT_EQ(dynamic_cast<RemoteConnection&>(*connection).dispatch(), connection_.get());
}

TEST_F(RemoteApplicationTest, WorkIsBegunAndCompletedByCalls) {
  const auto context = remote_->getContext();
  context->beginWork();
  context->completeWork();
  EXPECT_EQ(said(),
            (Conversation{"ask application.GetContext", "call context.BeginWork", "call context.CompleteWork"}));
}

TEST_F(RemoteApplicationTest, ALoginTellsUserKeyAndLanguage) {
  login_->gives(L"CurrentUserID", Value(std::int32_t{40000}));
  login_->gives(L"UserKey", Value("{key}"));
  login_->gives(L"LanguageCode", Value("cht"));
  const auto login = remote_->getContext()->getLoginInfo();
  EXPECT_EQ(login->currentUserID(), 40000);
  EXPECT_EQ(login->userKey(), "{key}");
  EXPECT_EQ(login->languageCode(), "cht");
}

TEST_F(RemoteApplicationTest, NothingWhereAnObjectIsDueIsError91) {
  const auto context = remote_->getContext();
  context_->gives(L"GetConnection", ComPtr<FakeObject>());
  EXPECT_EQ(errorOf([&] { (void)context->getConnection(); }).number(), errorNumber(RuntimeError::objectNotSet));
  application_->gives(L"GetContext", Value());
  EXPECT_EQ(errorOf([&] { (void)remote_->getContext(); }).number(), errorNumber(RuntimeError::objectNotSet));
}

TEST_F(RemoteApplicationTest, AnErrorOfTheSuiteArrivesUnchanged) {
  context_->fails(L"OpenDataSource", AutomationError(0x80040005, "NorvGlobal", "帐套不存在"));
  const auto context = remote_->getContext();
  const auto error = errorOf([&] { context->openDataSource("none"); });
  EXPECT_EQ(error.number(), 0x80040005U);
  EXPECT_EQ(error.source(), "NorvGlobal");
  EXPECT_EQ(error.description(), "帐套不存在");
}

TEST_F(RemoteApplicationTest, TheTextOfACallIsThePropertyThatTheBindingNames) {
  Binding binding = suiteBinding();
  binding.callTextMember = L"UserKey";
  const Libraries named{std::make_shared<SuiteLibrary>(binding), libraries_.ado};
  login_->gives(L"UserKey", Value("the call's text"));
  EXPECT_EQ(RemoteContext(named, bound(login_)).callText(), "the call's text");
}

TEST_F(RemoteApplicationTest, WithoutANameItIsTheFirstPropertyThatTheContextTellsOf) {
  RemoteContext context(libraries_, RemoteClass(L"Scripting.Dictionary").create());
  EXPECT_EQ(context.callText(), "0");  // its Count
}

TEST_F(RemoteApplicationTest, AHostsCallIsPassedOnToTheApplicationObject) {
  application_->gives(L"EndCall", Value(true));
  remote_->beginCall(TransactionMode::required);
  EXPECT_TRUE(remote_->endCall());
  remote_->abortCall();
  EXPECT_EQ(said(), (Conversation{"call application.BeginCall(I4 2)", "ask application.EndCall",
                                  "call application.AbortCall"}));
}

}  // namespace
}  // namespace tolvane::suite
