// Making, changing, granting and deleting configurations, on a real account set.
#include <gmock/gmock.h>

#include "support/account_set.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct MultiAccountUpdateOnAccountSet : testing::Test {
  AccountSet set;

  MultiAccountUpdateOnAccountSet() {
    set.asNewUser(12);
    set.asNewUser(11);
  }
  static Named given() {
    return {{"FDriverType", std::int32_t{2}}, {"FAisName", "AIS"},     {"FSystemDB", "master"},
            {"FServerName", "db1"},           {"FMUserName", "login"}, {"FMPassword", "secret"},
            {"FPropsString", "props"}};
  }
  void create(const std::string& name, Named properties = given()) {
    set.call("MultiAccountUpdate.CreateAcct", {{"sAcctName", name}, {"Properties", bag(std::move(properties))}});
  }
  AutomationError createError(const std::string& name, Named properties = given()) {
    return set.error("MultiAccountUpdate.CreateAcct",
                     {{"sAcctName", name}, {"Properties", bag(std::move(properties))}});
  }
  static Value grantBag(const std::string& name, std::int32_t userID, std::int32_t creator = 11) {
    return bag({{"FName", name}, {"FUserID", userID}, {"FCreatorID", creator}});
  }
  static Value change(const std::string& name, std::int32_t creator = 11) {
    return bag({{"FName", name},
                {"FServerName", "db2"},
                {"FAISName", "AIS2"},
                {"FSystemDB", "model"},
                {"FCreatorID", creator}});
  }
  std::vector<std::string> configurations() { return set.rows("Select * From t_Rpt_MultiAcct Order By FName"); }
  std::vector<std::string> entries() { return set.rows("Select * From t_Rpt_MultiAcctEntry Order By FName,FUserID"); }
  std::vector<std::string> grants() { return set.rows("Select * From t_Rpt_MultiAcctRight Order By FName,FUserID"); }
};

TEST_F(MultiAccountUpdateOnAccountSet, CreateAcctStoresTheConfigurationAndTheOwnersCredentials) {
  create("North");
  EXPECT_THAT(configurations(), ElementsAre("North|11|2|AIS|master|db1|0"));
  EXPECT_THAT(entries(), ElementsAre("11|North|login|secret|props"));
}

TEST_F(MultiAccountUpdateOnAccountSet, CreateAcctOfATakenNameRaisesAndWritesNothing) {
  create("North");
  EXPECT_EQ(
      shown(set.as(12).error("MultiAccountUpdate.CreateAcct", {{"sAcctName", "NORTH"}, {"Properties", bag(given())}})),
      "0x80044047 Tolvane.MultiAccountUpdate: 多账套配置名已存在，新增失败！");
  EXPECT_EQ(configurations().size(), 1U);
  EXPECT_EQ(entries().size(), 1U);
}

TEST_F(MultiAccountUpdateOnAccountSet, ErrorsSpeakTheCallersLanguage) {
  create("North");
  EXPECT_EQ(set.in("en")
                .error("MultiAccountUpdate.CreateAcct", {{"sAcctName", "North"}, {"Properties", bag({})}})
                .description(),
            "The name of the account-set configuration is taken; nothing was added!");
}

TEST_F(MultiAccountUpdateOnAccountSet, ABagWithoutEntriesMakesAnEmptyConfiguration) {
  create("North", {});
  EXPECT_THAT(configurations(), ElementsAre("North|11|0||||0"));
  EXPECT_THAT(entries(), ElementsAre("11|North|||"));
}

TEST_F(MultiAccountUpdateOnAccountSet, ADriverTypeThatIsNoNumberIsTheDatabasesErrorAndWritesNothing) {
  EXPECT_EQ(createError("North", {{"FDriverType", "odbc"}}).number(), oledb::errorsInCommand);
  EXPECT_THAT(configurations(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, ADriverTypeInTextIsANumberAllTheSame) {
  create("North", {{"FDriverType", "7"}});
  EXPECT_THAT(configurations(), ElementsAre("North|11|7||||0"));
}

TEST_F(MultiAccountUpdateOnAccountSet, AnApostropheInANameIsTheDatabasesErrorAndWritesNothing) {
  EXPECT_EQ(createError("O'Brien").number(), oledb::errorsInCommand);
  EXPECT_EQ(set.error("MultiAccountUpdate.DeleteName", {{"sAcctName", "O'Brien"}}).number(), oledb::errorsInCommand);
  EXPECT_THAT(configurations(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, AFailureAfterTheFirstInsertLeavesNothing) {
  EXPECT_EQ(createError("North", {{"FPropsString", "it's"}}).number(), oledb::errorsInCommand);
  EXPECT_THAT(configurations(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, ABagThatIsNotThereIsAnObjectThatIsNotSet) {
  EXPECT_EQ(set.error("MultiAccountUpdate.CreateAcct", {{"sAcctName", "North"}, {"Properties", ObjectRef()}}).number(),
            errorNumber(RuntimeError::objectNotSet));
}

TEST_F(MultiAccountUpdateOnAccountSet, GrantingTwiceLeavesOneGrant) {
  create("North");
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12)}});
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12, 99)}});
  EXPECT_THAT(grants(), ElementsAre("North|12|11"));
}

TEST_F(MultiAccountUpdateOnAccountSet, AnyoneMayGrantAnything) {
  set.as(12).call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("nowhere", 12)}});
  EXPECT_THAT(grants(), ElementsAre("nowhere|12|11"));
}

TEST_F(MultiAccountUpdateOnAccountSet, AGrantWithoutAUserIsTheDatabasesError) {
  EXPECT_EQ(set.error("MultiAccountUpdate.CreateAcctRight", {{"Prop", bag({{"FName", "North"}})}}).number(),
            oledb::errorsInCommand);
}

TEST_F(MultiAccountUpdateOnAccountSet, DeleteAcctRightIsFalseAfterASuccess) {
  create("North");
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12)}});
  EXPECT_EQ(set.result("MultiAccountUpdate.DeleteAcctRight", {{"sName", "North"}, {"lUserID", std::int32_t{12}}}),
            Value(false));
  EXPECT_THAT(grants(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, OnlyTheOwnerWithdrawsAGrant) {
  create("North");
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12)}});
  EXPECT_EQ(shown(set.as(12).error("MultiAccountUpdate.DeleteAcctRight",
                                   {{"sName", "North"}, {"lUserID", std::int32_t{12}}})),
            "0x80044015 Tolvane.MultiAccountUpdate: 无权修改当前多账套授权，修改失败！");
  EXPECT_EQ(grants().size(), 1U);
}

TEST_F(MultiAccountUpdateOnAccountSet, DeleteNameTakesCredentialsAndGrantsWithIt) {
  create("North");
  create("South");
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12)}});
  set.call("MultiAccountUpdate.DeleteName", {{"sAcctName", "North"}});
  EXPECT_THAT(configurations(), ElementsAre(testing::StartsWith("South|")));
  EXPECT_THAT(entries(), ElementsAre(testing::StartsWith("11|South|")));
  EXPECT_THAT(grants(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, AnAdministratorDeletesNobodyElsesConfiguration) {
  create("North");
  EXPECT_EQ(shown(set.as(1).error("MultiAccountUpdate.DeleteName", {{"sAcctName", "North"}})),
            "0x80044015 Tolvane.MultiAccountUpdate: 该多账套配置非你所建。你无权删除该多账套配置！");
  EXPECT_EQ(configurations().size(), 1U);
  EXPECT_EQ(entries().size(), 1U);
}

TEST_F(MultiAccountUpdateOnAccountSet, AConfigurationThatDoesNotExistHasNoOwnerToRead) {
  const auto noRow = errorNumber(AdoError::noCurrentRecord);
  EXPECT_EQ(set.error("MultiAccountUpdate.DeleteName", {{"sAcctName", "nowhere"}}).number(), noRow);
  EXPECT_EQ(
      set.error("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "nowhere"}, {"Properties", change("x")}}).number(),
      noRow);
  EXPECT_EQ(
      set.error("MultiAccountUpdate.DeleteAcctRight", {{"sName", "nowhere"}, {"lUserID", std::int32_t{1}}}).number(),
      noRow);
}

TEST_F(MultiAccountUpdateOnAccountSet, UpdateAcctWithTheSameNameChangesAndIsFalse) {
  create("North");
  EXPECT_EQ(set.result("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", change("North")}}),
            Value(false));
  EXPECT_THAT(configurations(), ElementsAre("North|11|2|AIS2|model|db2|0"));
}

TEST_F(MultiAccountUpdateOnAccountSet, ARenameLeavesCredentialsAndGrantsBehind) {
  create("North");
  set.call("MultiAccountUpdate.CreateAcctRight", {{"Prop", grantBag("North", 12)}});
  set.call("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", change("South")}});
  EXPECT_THAT(configurations(), ElementsAre("South|11|2|AIS2|model|db2|0"));
  EXPECT_THAT(entries(), ElementsAre("11|North|login|secret|props"));
  EXPECT_THAT(grants(), ElementsAre("North|12|11"));
  EXPECT_THAT(rowsOf(set.result("MultiAccountInfo.GetListByUser")), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, AfterARenameUpdateUserInfoStoresCredentialsUnderTheNewName) {
  create("North");
  set.call("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", change("South")}});
  set.call("MultiAccountUpdate.UpdateUserInfo", {{"Properties", bag({{"FName", "South"},
                                                                     {"FUserID", std::int32_t{11}},
                                                                     {"FMUserName", "new"},
                                                                     {"FMPassWord", "pw"},
                                                                     {"FPropsString", ""}})}});
  EXPECT_THAT(column(set.result("MultiAccountInfo.GetListByUser"), "FName"), ElementsAre("South"));
  EXPECT_THAT(entries(), ElementsAre("11|North|login|secret|props", "11|South|new|pw|"));
}

TEST_F(MultiAccountUpdateOnAccountSet, ANewNameThatIsTakenIsRefused) {
  create("North");
  create("South");
  EXPECT_EQ(
      shown(set.error("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", change("south")}})),
      "0x80044015 Tolvane.MultiAccountUpdate: 新配置名称已存在，修改失败！");
  EXPECT_THAT(configurations(), ElementsAre("North|11|2|AIS|master|db1|0", "South|11|2|AIS|master|db1|0"));
}

TEST_F(MultiAccountUpdateOnAccountSet, OnlyTheOwnerChangesAConfiguration) {
  create("North");
  EXPECT_EQ(shown(set.as(12).error("MultiAccountUpdate.UpdateAcct",
                                   {{"sAcctName", "North"}, {"Properties", change("North", 12)}})),
            "0x80044015 Tolvane.MultiAccountUpdate: 当前多账套配置非你所建，不得修改！");
  EXPECT_THAT(configurations(), ElementsAre("North|11|2|AIS|master|db1|0"));
}

TEST_F(MultiAccountUpdateOnAccountSet, AConfigurationMayBeHandedToAnotherOwner) {
  create("North");
  set.call("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", change("North", 12)}});
  EXPECT_EQ(set.error("MultiAccountUpdate.DeleteName", {{"sAcctName", "North"}}).number(), 0x80044015U);
  set.as(12).call("MultiAccountUpdate.DeleteName", {{"sAcctName", "North"}});
  EXPECT_THAT(configurations(), IsEmpty());
}

TEST_F(MultiAccountUpdateOnAccountSet, AChangeWithoutAnOwnerIsTheDatabasesError) {
  create("North");
  EXPECT_EQ(
      set.error("MultiAccountUpdate.UpdateAcct", {{"sAcctName", "North"}, {"Properties", bag({{"FName", "North"}})}})
          .number(),
      oledb::errorsInCommand);
}

TEST_F(MultiAccountUpdateOnAccountSet, AnyonesCredentialsCanBeStoredAndReplaced) {
  create("North");
  for (const char* login : {"first", "second"}) {
    set.as(12).call("MultiAccountUpdate.UpdateUserInfo", {{"Properties", bag({{"FName", "North"},
                                                                              {"FUserID", std::int32_t{11}},
                                                                              {"FMUserName", login},
                                                                              {"FMPassWord", "it's"},
                                                                              {"FPropsString", "p'q"}})}});
  }
  EXPECT_THAT(entries(), ElementsAre("11|North|second|it's|p'q"));
}

TEST_F(MultiAccountUpdateOnAccountSet, PasswordsAreStoredAsReceived) {
  create("North", {{"FMPassword", " 密码 Pass "}});
  EXPECT_EQ(set.value("Select FMPassWord From t_Rpt_MultiAcctEntry"), Value(" 密码 Pass "));
}

TEST_F(MultiAccountUpdateOnAccountSet, TransModeIsTwo) {
  EXPECT_EQ(set.result("MultiAccountUpdate.TransMode"), Value(std::int32_t{2}));
}

}  // namespace
}  // namespace tolvane::test
