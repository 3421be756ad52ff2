#include "standalone/table_security.h"

#include <gtest/gtest.h>

#include "standalone/fake_engine.h"

namespace tolvane::standalone {
namespace {

using testing::FakeEngine;
using testing::none;
using testing::one;

class TableSecurityTest : public ::testing::Test {
 protected:
  TableSecurityTest() {
    auto& answers = engine_->script->answers;
    answers["Select FUserID From t_User Where FUserID = "] = one(17);
    answers["Select FUserID From t_User Where FUserID = 17 And FPrimaryGroup = 1"] = none();
    answers["Select FUserID From t_Group Where FGroupID = 1 And FUserID = 17"] = none();
    answers["Select FAccessMask"] = none("FAccessMask");
    (void)session_->open("Database=demo.db;UserID=17");
  }
  void grant(std::vector<std::int32_t> masks) {
    auto& answer = engine_->script->answers["Select FAccessMask"];
    for (const auto mask : masks) answer.rows.push_back({mask});
  }

  std::shared_ptr<FakeEngine> engine_ = std::make_shared<FakeEngine>();
  std::shared_ptr<Session> session_ = std::make_shared<Session>(Engines{{"sqlite", engine_}});
  TableSecurity security_{session_};
};

TEST_F(TableSecurityTest, TheKeyIsTheUsersIdentifier) {
  EXPECT_EQ(security_.getCurrentUserID("17"), 17);
  EXPECT_THROW((void)security_.getCurrentUserID("someone"), AutomationError);
}

TEST_F(TableSecurityTest, IdentifiersBeyondSixteenBitsOverflow) {
  try {
    (void)security_.getCurrentUserID("32768");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x800A0006U);
  }
}

TEST_F(TableSecurityTest, PrimaryGroupOneMakesAnAdministrator) {
  EXPECT_FALSE(security_.isAdministrator("17"));
  engine_->script->answers["Select FUserID From t_User Where FUserID = 17 And FPrimaryGroup = 1"] = one(17);
  EXPECT_TRUE(security_.isAdministrator("17"));
}

TEST_F(TableSecurityTest, GroupOneMakesAnAdministrator) {
  engine_->script->answers["Select FUserID From t_Group Where FGroupID = 1 And FUserID = 17"] = one(17);
  EXPECT_TRUE(security_.isAdministrator("17"));
}

TEST_F(TableSecurityTest, AnAdministratorMayEverything) {
  engine_->script->answers["Select FUserID From t_Group Where FGroupID = 1 And FUserID = 17"] = one(17);
  EXPECT_TRUE(security_.accessCheck("17", 50, 0, 0x8000000, "here"));
}

TEST_F(TableSecurityTest, OneRowMustGrantEveryAskedBit) {
  EXPECT_FALSE(security_.accessCheck("17", 50, 0, 6, "here"));
  grant({2, 4});
  EXPECT_FALSE(security_.accessCheck("17", 50, 0, 6, "here"));
  grant({7});
  EXPECT_TRUE(security_.accessCheck("17", 50, 0, 6, "here"));
}

TEST_F(TableSecurityTest, AsksForUserGroupsAndPrimaryGroupOfTheObject) {
  (void)security_.accessCheck("17", 50, 3, 1, "here");
  EXPECT_EQ(engine_->script->log.back(),
            "Select FAccessMask From t_ObjectAccess Where FObjectType = 50 And FObjectID = 3 And (FGroupID = 17 Or "
            "FGroupID In (Select FGroupID From t_Group Where FUserID = 17) Or FGroupID In (Select FPrimaryGroup From "
            "t_User Where FUserID = 17))");
}

TEST_F(TableSecurityTest, WithoutADataSourceThereIsNobodyToAsk) {
  TableSecurity fresh(std::make_shared<Session>(Engines{}));
  EXPECT_THROW((void)fresh.isAdministrator("1"), AutomationError);
}

}  // namespace
}  // namespace tolvane::standalone
