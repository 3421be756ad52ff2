#include "standalone/call.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "standalone/application.h"
#include "standalone/fake_engine.h"

namespace tolvane::standalone {
namespace {

using testing::failing;
using testing::FakeEngine;
using testing::one;

class CallTest : public ::testing::Test {
 protected:
  CallTest() {
    engine_->script->answers["Select FUserID"] = one(1);
    engine_->script->answers["bad"] = failing(oledb::errorsInCommand);
  }

  /// begin, commit and rollback in order.
  std::vector<std::string> transactions() const {
    std::vector<std::string> result;
    std::copy_if(engine_->script->log.begin(), engine_->script->log.end(), std::back_inserter(result),
                 [](const std::string& line) { return line == "begin" || line == "commit" || line == "rollback"; });
    return result;
  }
  std::shared_ptr<Context> open(const std::string& dsn) {
    auto context = application_.getContext();
    context->openDataSource(dsn);
    return context;
  }
  static void fail(const std::shared_ptr<Context>& context) {
    EXPECT_THROW(context->getConnection()->execute("bad"), AutomationError);
  }

  std::shared_ptr<FakeEngine> engine_ = std::make_shared<FakeEngine>();
  std::shared_ptr<Session> session_ = std::make_shared<Session>(Engines{{"sqlite", engine_}});
  StandaloneApplication application_{session_};
};

using Lines = std::vector<std::string>;

TEST_F(CallTest, AWritingCallCommitsWhatItDid) {
  Call call(*session_, TransactionMode::required);
  (void)open("Database=a.db");
  EXPECT_TRUE(call.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "commit"}));
}

TEST_F(CallTest, AReadingCallStartsNoTransaction) {
  Call call(*session_, TransactionMode::supported);
  fail(open("Database=a.db"));
  EXPECT_TRUE(call.finish());
  EXPECT_EQ(transactions(), Lines{});
}

TEST_F(CallTest, ACallThatIsLeftByAnErrorTakesEverythingBack) {
  {
    Call call(*session_, TransactionMode::required);
    (void)open("Database=a.db");
  }
  EXPECT_EQ(transactions(), (Lines{"begin", "rollback"}));
  EXPECT_EQ(session_->call(), nullptr);
}

TEST_F(CallTest, AFailedOperationDoomsTheWorkThoughTheMethodHidesIt) {
  Call call(*session_, TransactionMode::required);
  fail(open("Database=a.db"));
  EXPECT_FALSE(call.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "rollback"}));
}

TEST_F(CallTest, AVoteAfterTheFailurePardonsIt) {
  Call call(*session_, TransactionMode::required);
  const auto context = open("Database=a.db");
  fail(context);
  context->completeWork();
  EXPECT_TRUE(call.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "commit"}));
}

TEST_F(CallTest, AVoteBeforeTheFailureDoesNot) {
  Call call(*session_, TransactionMode::required);
  const auto context = open("Database=a.db");
  context->completeWork();
  fail(context);
  EXPECT_FALSE(call.finish());
}

TEST_F(CallTest, AVoteIsNoCommitInTheMiddle) {
  {
    Call call(*session_, TransactionMode::required);
    open("Database=a.db")->completeWork();
  }
  EXPECT_EQ(transactions(), (Lines{"begin", "rollback"}));
}

TEST_F(CallTest, OpeningTheSameDataSourceAgainJoins) {
  Call call(*session_, TransactionMode::required);
  const auto first = open("Database=a.db;UserID=1");
  const auto second = open("Database=a.db;UserID=2;Language=en");
  EXPECT_EQ(first->getConnection(), second->getConnection());
  EXPECT_TRUE(call.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "commit"}));
}

TEST_F(CallTest, ACallInsideACallJoinsIt) {
  Call outer(*session_, TransactionMode::required);
  {
    Call inner(*session_, TransactionMode::required);
    (void)open("Database=a.db");
    EXPECT_TRUE(inner.finish());
  }
  EXPECT_EQ(transactions(), (Lines{"begin"}));
  EXPECT_TRUE(outer.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "commit"}));
}

TEST_F(CallTest, SeveralDataSourcesAreKeptOrTakenBackTogether) {
  Call call(*session_, TransactionMode::required);
  fail(open("Database=a.db"));
  (void)open("Database=b.db");
  EXPECT_FALSE(call.finish());
  EXPECT_EQ(transactions(), (Lines{"begin", "begin", "rollback", "rollback"}));
}

TEST_F(CallTest, ACommitThatFailsTakesTheRestBackAndIsRaised) {
  {
    Call call(*session_, TransactionMode::required);
    (void)open("Database=a.db");
    engine_->connections.back()->failsToCommit = true;
    EXPECT_THROW(call.finish(), AutomationError);
  }
  EXPECT_EQ(transactions(), (Lines{"begin", "commit", "rollback"}));
}

TEST_F(CallTest, ATransactionThatTheDatabaseEndedIsNotCommitted) {
  Call call(*session_, TransactionMode::required);
  (void)open("Database=a.db");
  engine_->connections.back()->rollback();
  EXPECT_FALSE(call.finish());
}

TEST_F(CallTest, TheNextCallOpensAnew) {
  {
    Call call(*session_, TransactionMode::required);
    (void)open("Database=a.db");
    EXPECT_TRUE(call.finish());
  }
  Call call(*session_, TransactionMode::required);
  (void)open("Database=a.db");
  EXPECT_EQ(engine_->connections.size(), 2U);
}

}  // namespace
}  // namespace tolvane::standalone
