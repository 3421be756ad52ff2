// The exact statements, cursors and order of operations behind the writing of configurations.
#include <gmock/gmock.h>

#include "multiaccount/multi_account_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

constexpr auto ownerOfNorth = "Execute Select FCreatorID From t_Rpt_MultiAcct Where FName ='North'";

struct MultiAccountUpdateConversation : testing::Test {
  RecordingPlatform platform;
  MultiAccountUpdate service{platform};
  std::shared_ptr<PropertyBag> bag = platform.newPropertyBag();
  std::shared_ptr<PropertyBag> nothing;
  std::string north = "North";

  MultiAccountUpdateConversation() {
    platform.userID = 17;
    platform.language = "en";
    bag->set("FName", "North");
    bag->set("FUserID", std::int32_t{21});
    bag->set("FCreatorID", std::int32_t{17});
    bag->set("FDriverType", std::int32_t{3});
    bag->set("FAisName", "AIS2012");
    bag->set("FSystemDB", "master");
    bag->set("FServerName", "db1");
    bag->set("FMUserName", "sa");
    bag->set("FMPassword", "secret");
    bag->set("FPropsString", "Port=1433");
  }
  void ownedBy(std::int32_t userID) { platform.answer("Select FCreatorID", {{"FCreatorID"}, {{userID}}}); }
  /// "number Source: Description" of the error that `action` raises.
  template <typename Action>
  static std::string errorOf(Action action) {
    try {
      action();
    } catch (const AutomationError& error) {
      char number[16];
      std::snprintf(number, sizeof number, "0x%08X", error.number());
      return std::string(number) + " " + error.source() + ": " + error.description();
    }
    return "no error";
  }
};

TEST_F(MultiAccountUpdateConversation, CreateAcctLooksTheNameUpAndInsertsTwice) {
  platform.log.clear();
  service.CreateAcct("x", "North", bag);
  EXPECT_THAT(
      platform.log,
      ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                  "Open 1 3 Select  * From t_Rpt_MultiAcct Where FName ='North'", "CurrentUserID",
                  "Execute Insert Into t_Rpt_MultiAcct(FCreatorID,FName,FDriverType,FAisName,FSystemDB,FServerName)"
                  "Values(17,'North',3,'AIS2012','master','db1')",
                  "Execute Insert Into t_Rpt_MultiAcctEntry(FUserID,FName,FMUserName,FMPassword,FPropsString)"
                  "Values(17,'North','sa','secret','Port=1433')"));
}

TEST_F(MultiAccountUpdateConversation, CreateAcctOfAnEmptyBagWritesDriverZeroAndEmptyTexts) {
  auto empty = platform.newPropertyBag();
  service.CreateAcct("x", "North", empty);
  const auto sent = platform.statements();
  EXPECT_THAT(sent[1], testing::EndsWith("Values(17,'North',0,'','','')"));
  EXPECT_THAT(sent[2], testing::EndsWith("Values(17,'North','','','')"));
}

TEST_F(MultiAccountUpdateConversation, NullEntriesAreEmptyTexts) {
  bag->set("FSystemDB", Null{});
  service.CreateAcct("x", "North", bag);
  EXPECT_THAT(platform.statements()[1], testing::EndsWith(",3,'AIS2012','','db1')"));
}

TEST_F(MultiAccountUpdateConversation, ApostrophesAreNotDoubled) {
  bag->set("FServerName", "O'Brien");
  service.CreateAcct("x", "D'Arcy", bag);
  EXPECT_THAT(platform.statements()[1], testing::EndsWith("Values(17,'D'Arcy',3,'AIS2012','master','O'Brien')"));
}

TEST_F(MultiAccountUpdateConversation, CreateAcctOfATakenNameRaisesAndWritesNothing) {
  platform.answer("Select  *", {{"FName"}, {{"North"}}});
  platform.translations["多账套配置名已存在，新增失败！"] = "Taken!";
  EXPECT_EQ(errorOf([&] { service.CreateAcct("x", "North", bag); }), "0x80044047 Tolvane.MultiAccountUpdate: Taken!");
  EXPECT_EQ(platform.statements().size(), 1U);
}

TEST_F(MultiAccountUpdateConversation, CreateAcctRightAddsOneRow) {
  service.CreateAcctRight("x", bag);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3  Select * From t_Rpt_MultiAcctRight Where FName='North' And FUserID=21", "AddNew",
                          "Set FName='North'", "Set FUserID=21", "Set FCreatorID=17", "Update"));
}

TEST_F(MultiAccountUpdateConversation, CreateAcctRightLeavesAGrantAsItIs) {
  platform.answer(" Select *", {{"FName"}, {{"North"}}});
  service.CreateAcctRight("x", bag);
  EXPECT_EQ(platform.work().size(), 1U);
}

TEST_F(MultiAccountUpdateConversation, DeleteAcctRightIsFalseAfterASuccess) {
  ownedBy(17);
  EXPECT_FALSE(service.DeleteAcctRight("x", north, 21));
  EXPECT_THAT(platform.work(),
              ElementsAre(ownerOfNorth, "CurrentUserID",
                          "Execute  Delete From t_Rpt_MultiAcctRight Where  FName = 'North' And FUserID=21"));
}

TEST_F(MultiAccountUpdateConversation, DeleteAcctRightOfAnotherOwnersConfigurationIsRefused) {
  ownedBy(18);
  EXPECT_EQ(errorOf([&] { (void)service.DeleteAcctRight("x", north, 21); }),
            "0x80044015 Tolvane.MultiAccountUpdate: en:无权修改当前多账套授权，修改失败！");
  EXPECT_EQ(platform.statements().size(), 1U);
}

TEST_F(MultiAccountUpdateConversation, DeleteNameDeletesFromTheThreeTablesInOrder) {
  ownedBy(17);
  service.DeleteName("x", "North");
  EXPECT_THAT(platform.statements(),
              ElementsAre(ownerOfNorth, "Execute Delete From t_Rpt_MultiAcct Where FName = 'North'",
                          "Execute Delete From t_Rpt_MultiAcctEntry Where FName = 'North'",
                          "Execute Delete From t_Rpt_MultiAcctRight Where FName = 'North'"));
}

TEST_F(MultiAccountUpdateConversation, DeleteNameOfAnotherOwnersConfigurationIsRefused) {
  ownedBy(18);
  EXPECT_EQ(errorOf([&] { service.DeleteName("x", "North"); }),
            "0x80044015 Tolvane.MultiAccountUpdate: en:该多账套配置非你所建。你无权删除该多账套配置！");
}

TEST_F(MultiAccountUpdateConversation, UpdateAcctIsFalseAfterASuccess) {
  ownedBy(17);
  bag->set("FName", "South");
  bag->set("FCreatorID", std::int32_t{21});
  EXPECT_FALSE(service.UpdateAcct("x", "North", bag));
  EXPECT_THAT(
      platform.statements(),
      ElementsAre(ownerOfNorth, "Execute  Select FName From t_Rpt_MultiAcct Where  FName ='South'  And FName <>'North'",
                  "Execute Update t_Rpt_MultiAcct Set  FName = 'South', FServerName = 'db1', FAISName = 'AIS2012',  "
                  "FSystemDB = 'master',  FCreatorID= 21 Where FName = 'North'"));
}

TEST_F(MultiAccountUpdateConversation, UpdateAcctOfAnotherOwnersConfigurationIsRefused) {
  ownedBy(18);
  EXPECT_EQ(errorOf([&] { (void)service.UpdateAcct("x", "North", bag); }),
            "0x80044015 Tolvane.MultiAccountUpdate: en:当前多账套配置非你所建，不得修改！");
  EXPECT_EQ(platform.statements().size(), 1U);
}

TEST_F(MultiAccountUpdateConversation, UpdateAcctToATakenNameIsRefused) {
  ownedBy(17);
  platform.answer(" Select FName", {{"FName"}, {{"South"}}});
  EXPECT_EQ(errorOf([&] { (void)service.UpdateAcct("x", "North", bag); }),
            "0x80044015 Tolvane.MultiAccountUpdate: en:新配置名称已存在，修改失败！");
  EXPECT_EQ(platform.statements().size(), 2U);
}

TEST_F(MultiAccountUpdateConversation, AnAdministratorIsNoOwner) {
  platform.administrator = true;
  ownedBy(18);
  EXPECT_NE(errorOf([&] { service.DeleteName("x", "North"); }), "no error");
  EXPECT_THAT(platform.log, testing::Not(testing::Contains("IsAdministrator")));
}

TEST_F(MultiAccountUpdateConversation, TheOwnerOfNoConfigurationCannotBeRead) {
  EXPECT_NE(errorOf([&] { service.DeleteName("x", "North"); }), "no error");
  EXPECT_THAT(platform.statements(), ElementsAre(ownerOfNorth));
}

TEST_F(MultiAccountUpdateConversation, UpdateUserInfoAddsAnEntry) {
  service.UpdateUserInfo("x", bag);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_Rpt_MultiAcctEntry Where  FName='North'  And FUserID=21", "AddNew",
                          "Set FName='North'", "Set FUserID=21", "Set FMUserName='sa'", "Set FMPassWord='secret'",
                          "Set FPropsString='Port=1433'", "Update"));
}

TEST_F(MultiAccountUpdateConversation, UpdateUserInfoChangesTheEntryThatIsThere) {
  platform.answer("Select *", {{"FName"}, {{"North"}}});
  service.UpdateUserInfo("x", bag);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_Rpt_MultiAcctEntry Where  FName='North'  And FUserID=21",
                          "Set FMUserName='sa'", "Set FMPassWord='secret'", "Set FPropsString='Port=1433'", "Update"));
}

TEST_F(MultiAccountUpdateConversation, ABagThatIsNotThereIsAnObjectThatIsNotSet) {
  ownedBy(17);
  const auto expected = testing::StartsWith("0x800A005B");
  EXPECT_THAT(errorOf([&] { service.CreateAcct("x", "North", nothing); }), expected);
  EXPECT_THAT(errorOf([&] { service.CreateAcctRight("x", nothing); }), expected);
  EXPECT_THAT(errorOf([&] { (void)service.UpdateAcct("x", "North", nothing); }), expected);
  EXPECT_THAT(errorOf([&] { service.UpdateUserInfo("x", nothing); }), expected);
}

}  // namespace
}  // namespace tolvane::test
