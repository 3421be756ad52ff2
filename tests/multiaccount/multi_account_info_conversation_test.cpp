// The exact statements and order of operations behind the reading of configurations and the check of an account.
#include <gmock/gmock.h>

#include "multiaccount/multi_account_info.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct MultiAccountInfoConversation : testing::Test {
  RecordingPlatform platform;
  MultiAccountInfo service{platform};
  std::string dsn = "x";
  std::string number = "1001.01";

  MultiAccountInfoConversation() { platform.userID = 17; }

  /// No administrator, accounts are checked, and the user's view of the data is restricted.
  void restrict() {
    platform.administrator = false;
    platform.answer("Select FValue", {{"FValue"}, {{"1"}}});
    platform.answer("Select FDataVokeType,FPrimaryGroup",
                    {{"FDataVokeType", "FPrimaryGroup"}, {{std::int16_t{1}, std::int32_t{2}}}});
    platform.answer("select FPrimaryGroup", {{"FPrimaryGroup"}, {{std::int32_t{2}}}});
  }
  void answerClassRight(std::int32_t holder, std::int32_t right) {
    platform.answer("Select FUserItemClassRight From t_UserItemClassRight  Where FUserID =" + std::to_string(holder),
                    {{"FUserItemClassRight"}, {{right}}});
  }
  [[nodiscard]] std::string lastStatement() const { return platform.statements().back(); }
};

constexpr auto grantedAndBelow =
    "Execute  select z.* from (( Select FAccountID,FNumber FROM t_Account ,(Select Distinct c1.FAccountID FItemID  "
    "From "
    "t_Account c1  ,(Select Distinct r.FItemID FItemID,FNumber FNumber1 From  t_ItemRight r,t_Account a Where "
    "(r.FAuthtype & 1=1) AND  FTypeID=105 AND r.FItemID=a.FAccountID  AND (FUserID IN (Select FGroupID From t_Group "
    "Where FGroupID <> 0 And FUserID=17 ) OR FUserID=17)) c  Where c1.FNumber=c.FNumber1 OR "
    "PATINDEX(c.FNumber1+'.%',c1.FNumber)>0 ) c  WHERE FAccountID=c.FItemID   ) ) z  where z.FNumber='1001.01'";
constexpr auto grantedAlone =
    "Execute  select z.* from (( Select FAccountID,FNumber FROM t_Account  ,(Select Distinct FItemID From  t_ItemRight "
    "r,t_Account a Where (r.FAuthtype & 1=1) AND FTypeID=105 AND r.FItemID=a.FAccountID  AND (FUserID IN  (Select "
    "FGroupID From t_Group Where FGroupID <> 0 And FUserID=17 ) OR FUserID=17)) c  WHERE FAccountID=c.FItemID   ) ) z  "
    "where z.FNumber='1001.01'";
constexpr auto everyAccount =
    "Execute  select z.* from (( Select FAccountID,FNumber FROM t_Account  ) ) z  where z.FNumber='1001.01'";
constexpr auto checkSwitch =
    "Command 1 30 Select FValue From t_SystemProfile Where FCategory = ? And FKey = ? [202 80 'GL'] "
    "[202 80 'CheckAcctTable']";

TEST_F(MultiAccountInfoConversation, ExistenceCheckRunsTheFrameThenOneStatement) {
  platform.log.clear();
  EXPECT_FALSE(service.ExistenceCheck("x", "O'Brien"));
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Execute Select * From t_Rpt_MultiAcct Where FName ='O'Brien'"));
}

TEST_F(MultiAccountInfoConversation, ExistenceCheckIsTrueWithARow) {
  platform.answer("Select *", {{"FName"}, {{"North"}}});
  EXPECT_TRUE(service.ExistenceCheck("x", "North"));
}

TEST_F(MultiAccountInfoConversation, ExistenceCheckByUserAsksForCredentialsAndGrants) {
  EXPECT_FALSE(service.ExistenceCheckByUser("x", "North"));
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID",
                          "Execute  Select FName From t_Rpt_MultiAcctEntry  Where FName ='North' And FUserID=17 Union  "
                          "Select FName From t_Rpt_MultiAcctRight   Where FName ='North' And FUserID=17"));
}

TEST_F(MultiAccountInfoConversation, ExistenceCheckByUserIsTrueWithARow) {
  platform.answer(" Select FName", {{"FName"}, {{"North"}}});
  EXPECT_TRUE(service.ExistenceCheckByUser("x", "North"));
}

TEST_F(MultiAccountInfoConversation, TheUserIdentifierIsTakenAsSixteenBits) {
  platform.userID = 32768;
  try {
    service.GetListByUser("x");
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), errorNumber(RuntimeError::overflow));
  }
}

TEST_F(MultiAccountInfoConversation, GetListJoinsTheOwnersCredentials) {
  platform.answer(" Select a.*", {{"FName", "FMUserName"}, {{"North", "sa"}, {"South", Null{}}}});
  const auto list = service.GetList("x");
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->item(2).objectAs<PropertyBag>()->item("FMUserName"), Value(Null{}));
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Execute  Select a.*, e.FMUserName, e.FMPassWord, e.FPropsString From t_Rpt_MultiAcct a inner "
                  "join t_Rpt_MultiAcctEntry e  On a.FName = e.FName And a.FCreatorID = e.FUserID "));
}

TEST_F(MultiAccountInfoConversation, GetListByUserUnitesOwnAndGrantedConfigurations) {
  EXPECT_EQ(service.GetListByUser("x")->count(), 0);
  EXPECT_THAT(
      platform.work(),
      ElementsAre(
          "CurrentUserID",
          "Execute  Select a.FName, a.FCreatorID, a.FDriverType, a.FAisName, a.FSystemDB,  a.FServerName, "
          "a.FCompanyID, "
          "e.FUserID, e.FMUserName, e.FMPassWord, e.FPropsString, 1 as FIsMyUserName  From t_Rpt_MultiAcct a, "
          "t_Rpt_MultiAcctEntry e  Where a.FName=e.FName And e.FUserId=17 Union  Select a.FName, a.FCreatorID, "
          "a.FDriverType, a.FAisName, a.FSystemDB,  a.FServerName, a.FCompanyID, r.FUserID, e.FMUserName, "
          "e.FMPassWord, "
          "e.FPropsString, 0 as FIsMyUserName  From t_Rpt_MultiAcct a, t_Rpt_MultiAcctEntry e, t_Rpt_MultiAcctRight r  "
          "Where a.FName=e.FName And e.FName=r.FName And r.FUserID=17 And r.FName Not In  (Select FName From "
          "t_Rpt_MultiAcctEntry Where FUserID=17)"));
}

TEST_F(MultiAccountInfoConversation, GetPropStrByFNameReadsTheFirstRowAndDetaches) {
  platform.answer("Select b.FPropsString", {{"FPropsString"}, {{"Port=1433"}, {"other"}}});
  EXPECT_EQ(service.GetPropStrByFName("x", "North"), Value("Port=1433"));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Select b.FPropsString From t_Rpt_MultiAcct a,t_Rpt_MultiAcctEntry b "
                          "Where a.FName=b.FName And a.FName='North'",
                          "Detach"));
}

TEST_F(MultiAccountInfoConversation, GetPropStrByFNameGivesNullProperties) {
  platform.answer("Select b.FPropsString", {{"FPropsString"}, {{Null{}}}});
  EXPECT_EQ(service.GetPropStrByFName("x", "North"), Value(Null{}));
}

struct Failing {
  const char* operation;
  const char* source;
};
class GetPropStrByFNameFailing : public MultiAccountInfoConversation, public testing::WithParamInterface<Failing> {};

TEST_P(GetPropStrByFNameFailing, RaisesNumberFiveWithTheFailuresSourceAndTheTranslatedText) {
  platform.language = "en";
  platform.translations["#账套配置名错误"] = "Wrong name";
  platform.answer("Select b.FPropsString", {{"FPropsString"}, {{"p"}}});
  platform.fail(GetParam().operation, AutomationError(0x80040E14, GetParam().source, "anything"));
  try {
    service.GetPropStrByFName("x", "North");
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x800A0005U);
    EXPECT_EQ(error.source(), std::string(GetParam().source) + "::GetPropStrByDsnName");
    EXPECT_EQ(error.description(), "Wrong name");
  }
}
INSTANTIATE_TEST_SUITE_P(Everywhere, GetPropStrByFNameFailing,
                         testing::Values(Failing{"CompleteWork", "Context"}, Failing{"OpenDataSource", "Context"},
                                         Failing{"GetConnection", "Context"}, Failing{"Execute", "Provider"},
                                         Failing{"Detach", "ADODB.Recordset"}));

TEST_F(MultiAccountInfoConversation, GetPropStrByFNameOfAnUnknownNameNamesTheFailingRead) {
  try {
    service.GetPropStrByFName("x", "nowhere");
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_THAT(error.source(), testing::EndsWith("::GetPropStrByDsnName"));
    EXPECT_EQ(error.description(), "#账套配置名错误");
  }
}

TEST_F(MultiAccountInfoConversation, GetRightListReadsTheGrantsOfOneName) {
  std::string name = "North";
  EXPECT_EQ(service.GetRightList("x", name)->count(), 0);
  EXPECT_THAT(platform.work(), ElementsAre("Execute Select * From t_Rpt_MultiAcctRight Where FName='North'"));
}

TEST_F(MultiAccountInfoConversation, AnAdministratorIsAskedForNothingElse) {
  platform.answer(" select z.*", {{"FAccountID"}, {{std::int32_t{7}}}});
  EXPECT_EQ(service.CheckAccountRight(dsn, number), 1);
  EXPECT_THAT(platform.work(),
              ElementsAre("CreateSecurity", "GetLoginInfo", "UserKey", "IsAdministrator", everyAccount));
}

TEST_F(MultiAccountInfoConversation, AnAccountThatDoesNotExistIsSeenByNobody) {
  EXPECT_EQ(service.CheckAccountRight(dsn, number), 0);
}

TEST_F(MultiAccountInfoConversation, TheSwitchIsOffWhenTheProfileDoesNotKnowIt) {
  platform.administrator = false;
  EXPECT_EQ(service.CheckAccountRight(dsn, number), 0);
  EXPECT_THAT(platform.statements(), ElementsAre(checkSwitch, everyAccount));
}

TEST_F(MultiAccountInfoConversation, TheSwitchIsReadAsANumber) {
  platform.administrator = false;
  platform.answer("Select FValue", {{"FValue"}, {{" 0.0 "}}});
  service.CheckAccountRight(dsn, number);
  EXPECT_THAT(platform.statements(), ElementsAre(checkSwitch, everyAccount));
}

TEST_F(MultiAccountInfoConversation, AnUnrestrictedViewOfTheDataSeesEveryAccount) {
  platform.administrator = false;
  platform.answer("Select FValue", {{"FValue"}, {{"1"}}});
  service.CheckAccountRight(dsn, number);
  EXPECT_THAT(platform.statements(),
              ElementsAre(checkSwitch, "Command 1 0 Select FDataVokeType,FPrimaryGroup From t_user Where FUserID =17",
                          everyAccount));
}

TEST_F(MultiAccountInfoConversation, ARestrictedUserIsAskedForRightsOnAccountsInOrder) {
  restrict();
  EXPECT_EQ(service.CheckAccountRight(dsn, number), 0);
  EXPECT_THAT(
      platform.statements(),
      ElementsAre(
          checkSwitch, "Command 1 0 Select FDataVokeType,FPrimaryGroup From t_user Where FUserID =17",
          "Command 1 0 Select FDataVokeType From t_user Where FUserID =2",
          "Execute Select FUserItemClassRight From t_UserItemClassRight  Where FUserID =17 and FItemClassID=105",
          "Execute select FPrimaryGroup from t_user where fuserid=17",
          "Execute Select FUserItemClassRight From t_UserItemClassRight  Where FUserID =2 and FItemClassID=105",
          grantedAlone));
  EXPECT_THAT(platform.work(), ElementsAre(testing::_, "Close", grantedAlone));
}

TEST_F(MultiAccountInfoConversation, TheUsersIdentifierComesFromTheSecurityComponent) {
  restrict();
  platform.log.clear();
  service.CheckAccountRight(dsn, number);
  EXPECT_THAT(platform.log, testing::Contains("Security.GetCurrentUserID").Times(2));
  EXPECT_THAT(platform.log, testing::Not(testing::Contains("CurrentUserID")));
}

TEST_F(MultiAccountInfoConversation, TheUsersInheritanceAsksForAccountsBelow) {
  restrict();
  answerClassRight(17, 4);
  service.CheckAccountRight(dsn, number);
  EXPECT_EQ(lastStatement(), grantedAndBelow);
}

TEST_F(MultiAccountInfoConversation, ThePrimaryGroupsInheritanceAsksForAccountsBelow) {
  restrict();
  answerClassRight(2, 6);
  service.CheckAccountRight(dsn, number);
  EXPECT_EQ(lastStatement(), grantedAndBelow);
}

TEST_F(MultiAccountInfoConversation, OtherBitsOfTheClassRightDoNotInherit) {
  restrict();
  answerClassRight(17, 3);
  answerClassRight(2, 8);
  service.CheckAccountRight(dsn, number);
  EXPECT_EQ(lastStatement(), grantedAlone);
}

TEST_F(MultiAccountInfoConversation, ARestrictedUserSeesAnAccountThatTheStatementFinds) {
  restrict();
  platform.answer(" select z.*", {{"FAccountID"}, {{std::int32_t{7}}}});
  EXPECT_EQ(service.CheckAccountRight(dsn, number), 1);
}

TEST_F(MultiAccountInfoConversation, ArgumentsThatAreOnlyReadStayAsTheyCame) {
  service.CheckAccountRight(dsn, number);
  EXPECT_EQ(dsn, "x");
  EXPECT_EQ(number, "1001.01");
}

}  // namespace
}  // namespace tolvane::test
