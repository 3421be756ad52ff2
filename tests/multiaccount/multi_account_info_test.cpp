// What users see of the configurations, on a real account set.
#include <gmock/gmock.h>

#include "support/account_set.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct MultiAccountInfoOnAccountSet : testing::Test {
  AccountSet set;

  MultiAccountInfoOnAccountSet() {
    set.asNewUser(11);
    set.asNewUser(12);
    set.asNewUser(13);
  }
  /// A configuration of user `owner`, with the owner's credentials.
  void create(std::int32_t owner, const std::string& name) {
    set.as(owner).call("MultiAccountUpdate.CreateAcct",
                       {{"sAcctName", name},
                        {"Properties", bag({{"FDriverType", std::int32_t{2}},
                                            {"FAisName", "AIS" + name},
                                            {"FSystemDB", "master"},
                                            {"FServerName", "db1"},
                                            {"FMUserName", "login" + std::to_string(owner)},
                                            {"FMPassword", "secret" + std::to_string(owner)},
                                            {"FPropsString", "props" + std::to_string(owner)}})}});
  }
  void grant(std::int32_t owner, const std::string& name, std::int32_t userID) {
    set.as(owner).call("MultiAccountUpdate.CreateAcctRight",
                       {{"Prop", bag({{"FName", name}, {"FUserID", userID}, {"FCreatorID", owner}})}});
  }
  void credentials(const std::string& name, std::int32_t userID) {
    set.call("MultiAccountUpdate.UpdateUserInfo",
             {{"Properties", bag({{"FName", name},
                                  {"FUserID", userID},
                                  {"FMUserName", "login" + std::to_string(userID)},
                                  {"FMPassWord", "secret" + std::to_string(userID)},
                                  {"FPropsString", "props" + std::to_string(userID)}})}});
  }
  std::vector<std::string> listOf(std::int32_t userID) {
    return rowsOf(set.as(userID).result("MultiAccountInfo.GetListByUser"));
  }
  bool exists(std::string_view method, std::int32_t userID, const std::string& name) {
    return *set.as(userID).result(method, {{"sAcctName", name}}).get<bool>();
  }
};

TEST_F(MultiAccountInfoOnAccountSet, AnAccountSetBeginsWithoutConfigurations) {
  EXPECT_THAT(rowsOf(set.result("MultiAccountInfo.GetList")), IsEmpty());
  EXPECT_THAT(listOf(11), IsEmpty());
}

TEST_F(MultiAccountInfoOnAccountSet, AConfigurationIsThereForEveryone) {
  create(11, "North");
  EXPECT_TRUE(exists("MultiAccountInfo.ExistenceCheck", 11, "North"));
  EXPECT_TRUE(exists("MultiAccountInfo.ExistenceCheck", 12, "North"));
  EXPECT_FALSE(exists("MultiAccountInfo.ExistenceCheck", 12, "South"));
}

TEST_F(MultiAccountInfoOnAccountSet, NamesCompareAsTheDatabaseDoes) {
  create(11, "North");
  EXPECT_TRUE(exists("MultiAccountInfo.ExistenceCheck", 11, "NORTH "));
  EXPECT_FALSE(exists("MultiAccountInfo.ExistenceCheck", 11, " North"));
}

TEST_F(MultiAccountInfoOnAccountSet, AUserHasAConfigurationByCredentialsOrByGrant) {
  create(11, "North");
  grant(11, "North", 12);
  EXPECT_TRUE(exists("MultiAccountInfo.ExistenceCheckByUser", 11, "North"));
  EXPECT_TRUE(exists("MultiAccountInfo.ExistenceCheckByUser", 12, "North"));
  EXPECT_FALSE(exists("MultiAccountInfo.ExistenceCheckByUser", 13, "North"));
}

TEST_F(MultiAccountInfoOnAccountSet, GetListShowsTheOwnersCredentialsToEveryone) {
  create(11, "North");
  credentials("North", 12);
  EXPECT_THAT(rowsOf(set.as(13).result("MultiAccountInfo.GetList")),
              ElementsAre("North|11|2|AISNorth|master|db1|0|login11|secret11|props11"));
}

TEST_F(MultiAccountInfoOnAccountSet, GetListOmitsAConfigurationWhoseOwnerHasNoEntry) {
  create(11, "North");
  set.sql("Delete From t_Rpt_MultiAcctEntry Where FUserID=11");
  credentials("North", 12);
  EXPECT_THAT(rowsOf(set.result("MultiAccountInfo.GetList")), IsEmpty());
}

TEST_F(MultiAccountInfoOnAccountSet, GetListByUserNamesItsColumns) {
  create(11, "North");
  const auto list = set.as(11).result("MultiAccountInfo.GetListByUser").objectAs<ItemList>();
  const auto row = list->item(1).objectAs<PropertyBag>();
  std::vector<std::string> names;
  for (std::int32_t i = 1; i <= row->count(); ++i) names.push_back(row->name(i));
  EXPECT_THAT(names, ElementsAre("FName", "FCreatorID", "FDriverType", "FAisName", "FSystemDB", "FServerName",
                                 "FCompanyID", "FUserID", "FMUserName", "FMPassWord", "FPropsString", "FIsMyUserName"));
}

TEST_F(MultiAccountInfoOnAccountSet, TheOwnerSeesTheConfigurationWithTheOwnCredentials) {
  create(11, "North");
  EXPECT_THAT(listOf(11), ElementsAre("North|11|2|AISNorth|master|db1|0|11|login11|secret11|props11|1"));
}

TEST_F(MultiAccountInfoOnAccountSet, AGranteeSeesItWithTheOwnersCredentials) {
  create(11, "North");
  grant(11, "North", 12);
  EXPECT_THAT(listOf(12), ElementsAre("North|11|2|AISNorth|master|db1|0|12|login11|secret11|props11|0"));
  EXPECT_THAT(listOf(13), IsEmpty());
}

TEST_F(MultiAccountInfoOnAccountSet, AGranteeReceivesOneRowForEveryUserWithCredentials) {
  create(11, "North");
  credentials("North", 13);
  grant(11, "North", 12);
  EXPECT_THAT(listOf(12), UnorderedElementsAre("North|11|2|AISNorth|master|db1|0|12|login11|secret11|props11|0",
                                               "North|11|2|AISNorth|master|db1|0|12|login13|secret13|props13|0"));
}

TEST_F(MultiAccountInfoOnAccountSet, OwnCredentialsHideTheGrant) {
  create(11, "North");
  grant(11, "North", 12);
  credentials("North", 12);
  EXPECT_THAT(listOf(12), ElementsAre("North|11|2|AISNorth|master|db1|0|12|login12|secret12|props12|1"));
}

TEST_F(MultiAccountInfoOnAccountSet, AdministratorsSeeTheirOwnConfigurationsAlone) {
  create(11, "North");
  EXPECT_THAT(listOf(1), IsEmpty());
}

TEST_F(MultiAccountInfoOnAccountSet, PropertiesAreReadByName) {
  create(11, "North");
  EXPECT_EQ(set.as(13).result("MultiAccountInfo.GetPropStrByFName", {{"sAcctName", "North"}}), Value("props11"));
}

TEST_F(MultiAccountInfoOnAccountSet, PropertiesThatWereNeverStoredAreNull) {
  create(11, "North");
  set.sql("Update t_Rpt_MultiAcctEntry Set FPropsString=Null");
  EXPECT_EQ(set.result("MultiAccountInfo.GetPropStrByFName", {{"sAcctName", "North"}}), Value(Null{}));
}

TEST_F(MultiAccountInfoOnAccountSet, PropertiesOfAnUnknownNameAreNumberFiveInTheCallersLanguage) {
  const std::pair<const char*, const char*> table[] = {{"chs", "#账套配置名错误"},
                                                       {"cht", "#帳套配置名錯誤"},
                                                       {"en", "The name of the account-set configuration is wrong"}};
  for (const auto& [language, text] : table) {
    const auto error = set.in(language).error("MultiAccountInfo.GetPropStrByFName", {{"sAcctName", "nowhere"}});
    EXPECT_EQ(error.number(), 0x800A0005U);
    EXPECT_THAT(error.source(), testing::EndsWith("::GetPropStrByDsnName"));
    EXPECT_EQ(error.description(), text);
  }
}

TEST_F(MultiAccountInfoOnAccountSet, PropertiesOfANameWithAnApostropheAreNumberFiveToo) {
  EXPECT_EQ(set.error("MultiAccountInfo.GetPropStrByFName", {{"sAcctName", "O'Brien"}}).number(), 0x800A0005U);
}

TEST_F(MultiAccountInfoOnAccountSet, GrantsAreListedByName) {
  create(11, "North");
  create(11, "South");
  grant(11, "North", 12);
  grant(11, "North", 13);
  EXPECT_THAT(rowsOf(set.result("MultiAccountInfo.GetRightList", {{"sName", "North"}})),
              UnorderedElementsAre("North|12|11", "North|13|11"));
  EXPECT_THAT(rowsOf(set.result("MultiAccountInfo.GetRightList", {{"sName", "South"}})), IsEmpty());
}

TEST_F(MultiAccountInfoOnAccountSet, ANameWithAnApostropheIsTheDatabasesError) {
  for (const char* method : {"MultiAccountInfo.ExistenceCheck", "MultiAccountInfo.ExistenceCheckByUser"}) {
    EXPECT_EQ(set.error(method, {{"sAcctName", "O'Brien"}}).number(), oledb::errorsInCommand) << method;
  }
  EXPECT_EQ(set.error("MultiAccountInfo.GetRightList", {{"sName", "O'Brien"}}).number(), oledb::errorsInCommand);
}

TEST_F(MultiAccountInfoOnAccountSet, TransModeIsThree) {
  EXPECT_EQ(set.result("MultiAccountInfo.TransMode"), Value(std::int32_t{3}));
}

}  // namespace
}  // namespace tolvane::test
