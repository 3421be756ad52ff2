#include "standalone/session.h"

#include <gtest/gtest.h>

#include "standalone/application.h"
#include "standalone/fake_engine.h"

namespace tolvane::standalone {
namespace {

using testing::failing;
using testing::FakeEngine;
using testing::none;
using testing::one;

class SessionTest : public ::testing::Test {
 protected:
  SessionTest() {
    engine_->script->answers["Select FUserID From t_User Where FUserID = "] = one(1);
    engine_->script->answers["Select FUserID From t_User Where FUserID = 99"] = none();
  }

  std::string refusal(const std::string& dsn) {
    try {
      (void)session_->open(dsn);
    } catch (const AutomationError& error) {
      return error.description();
    }
    return {};
  }

  std::shared_ptr<FakeEngine> engine_ = std::make_shared<FakeEngine>();
  std::shared_ptr<Session> session_ = std::make_shared<Session>(Engines{{"sqlite", engine_}});
};

TEST_F(SessionTest, TakesTheIdentityFromTheDataSourceName) {
  const auto source = session_->open("Database=demo.db;UserID=17;Language=EN");
  EXPECT_EQ(source.identity.userID, 17);
  EXPECT_EQ(source.identity.language, "en");
}

TEST_F(SessionTest, TheDefaultCallerIsUserOneInSimplifiedChinese) {
  const auto source = session_->open("Database=demo.db");
  EXPECT_EQ(source.identity.userID, 1);
  EXPECT_EQ(source.identity.language, "chs");
}

TEST_F(SessionTest, AUserWithoutARowIsNamed) {
  EXPECT_EQ(refusal("Database=demo.db;UserID=99"),
            "User 99 is not a user of the account set Database=demo.db;UserID=99: t_User has no such row.");
}

TEST_F(SessionTest, ADatabaseWithoutUsersIsNoAccountSet) {
  engine_->script->answers["Select FUserID"] = failing(oledb::noTable);
  engine_->script->answers["Select FUserID From t_User Where FUserID = "] = failing(oledb::noTable);
  EXPECT_EQ(refusal("Database=demo.db;PWD=secret"),
            "The data source Database=demo.db;PWD=*** is not an account set: it has no table t_User.");
}

TEST_F(SessionTest, OtherErrorsOfTheDatabaseAreToldAsTheyAre) {
  engine_->script->answers["Select FUserID From t_User Where FUserID = "] = failing(oledb::unspecified);
  EXPECT_EQ(refusal("Database=demo.db"), "refused");
  EXPECT_EQ(refusal("Database=missing.db"), "missing.db does not exist");
}

TEST_F(SessionTest, UnknownEnginesUsersAndLanguagesAreRefused) {
  EXPECT_NE(refusal("Engine=oracle;Database=x").find("there is sqlite"), std::string::npos);
  EXPECT_NE(refusal("Database=x;UserID=me").find("UserID=me"), std::string::npos);
  EXPECT_NE(refusal("Database=x;Language=fr").find("Language=fr"), std::string::npos);
}

TEST_F(SessionTest, AContextHandsOutLoginConnectionAndCallText) {
  StandaloneApplication application(session_);
  const auto context = application.getContext();
  EXPECT_EQ(context->getLoginInfo()->currentUserID(), 0);
  EXPECT_THROW((void)context->getConnection(), AutomationError);
  context->openDataSource("Database=demo.db;UserID=17;Language=cht");
  EXPECT_EQ(context->getConnection(), engine_->connections.back());
  EXPECT_EQ(context->getLoginInfo()->userKey(), "17");
  EXPECT_EQ(context->getLoginInfo()->languageCode(), "cht");
  EXPECT_EQ(context->callText(), "17");
}

TEST_F(SessionTest, ContextsKeepTheirOwnDataSource) {
  StandaloneApplication application(session_);
  const auto first = application.getContext();
  const auto second = application.getContext();
  first->openDataSource("Database=a.db;UserID=2");
  second->openDataSource("Database=b.db;UserID=3");
  EXPECT_EQ(first->getLoginInfo()->currentUserID(), 2);
  EXPECT_EQ(second->getLoginInfo()->currentUserID(), 3);
  EXPECT_NE(first->getConnection(), second->getConnection());
}

}  // namespace
}  // namespace tolvane::standalone
