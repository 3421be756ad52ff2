// The exact statements, cursors and order of operations behind the report lists.
#include <gmock/gmock.h>

#include "platform/error.h"
#include "reportstore/srv_rpt_retrieve.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

const std::string columns =
    " B.FRptID,  B.FRptName as FRptName, B.FSysName, B.FOwner, B.FYear, B.FPeriod, B.FRptType, B.FLastOperator, "
    "B.FLastDate";
const std::string menuColumns =
    " (B.FRptID+10000000) as FDetailFuncID,  B.FRptName as FFuncName, 0 FFuncType, 'Other' as FClassParam, '701' as "
    "FSubFuncID, 'TarnRpt.Application' as FClassName, B.FYear, B.FPeriod, B.FRptType, B.FLastOperator, B.FLastDate";
const std::string rightsPart = "Open 1 3 Select Distinct A.FRightCode as FRightCode, " + columns +
                               " From T_Rpt_Right A, T_Rpt_Content B   Where A.FRptID = B.FRptID and B.FRptType = 1 ";
const std::string allPart =
    "Open 1 3 Select Distinct 4 as FRightCode," + columns + " From T_Rpt_Content B   Where B.FRptType = 1 ";
const std::string templatesPart =
    " UNION Select Distinct 4 as FRightCode," + columns + " From T_Rpt_Content B   Where B.FRptType = 3";

constexpr std::int32_t own = 1;
constexpr std::int32_t shared = 2;
constexpr std::int32_t all = 3;

struct SrvRptRetrieveLists : testing::Test {
  RecordingPlatform platform;
  SrvRptRetrieve service{platform};
  ObjectRef list;

  SrvRptRetrieveLists() { platform.userID = 17; }
  void callerIsNoAdministrator() { platform.administrator = false; }
  void rightsCannotBeTold(const std::string& operation = "AccessCheck") {
    platform.fail(operation, AutomationError(RuntimeError::cannotCreateObject, "Security"));
  }
  std::string statement() const { return platform.statements().back(); }
};

TEST_F(SrvRptRetrieveLists, GetRptlistAsksForTheUserThenForTheRightThenForTheLanguage) {
  EXPECT_TRUE(service.GetRptlist("x", list, "", own));
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID", "CreateSecurity", "GetLoginInfo", "UserKey",
                          "AccessCheck 50 0 134217728 Tolvane.SrvRptRetrieve", "LanguageCode",
                          rightsPart + " And B.FOwner =17" + templatesPart + " Order by FSysName, FRptType "));
}

TEST_F(SrvRptRetrieveLists, GetRptlistOfSharedReportsAsksForARightOfOne) {
  service.GetRptlist("x", list, "", shared);
  EXPECT_EQ(statement(),
            rightsPart + " And A.FUserID =17 And A.FRightCode >=1" + templatesPart + " Order by FSysName, FRptType ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistOfAllReportsAppliesNoRights) {
  service.GetRptlist("x", list, "", all);
  EXPECT_EQ(statement(), allPart + templatesPart + " Order by FSysName, FRptType ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistOfAnUnknownStyleJoinsTheRightsWithoutACondition) {
  service.GetRptlist("x", list, "", 0);
  EXPECT_EQ(statement(), rightsPart + templatesPart + " Order by FSysName, FRptType ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistListsAllWhenTheRightCannotBeTold) {
  rightsCannotBeTold();
  EXPECT_TRUE(service.GetRptlist("x", list, "", own));
  EXPECT_EQ(statement(), allPart + templatesPart + " Order by FSysName, FRptType ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistListsAllWhenTheSecurityComponentCannotBeCreated) {
  rightsCannotBeTold("CreateSecurity");
  EXPECT_TRUE(service.GetRptlist("x", list, "", shared));
  EXPECT_THAT(statement(), StartsWith(allPart));
}

TEST_F(SrvRptRetrieveLists, GetRptlistDoesNotHeedWhatTheAccessCheckAnswers) {
  platform.access = false;
  service.GetRptlist("x", list, "", own);
  EXPECT_THAT(statement(), StartsWith(rightsPart + " And B.FOwner =17"));
}

TEST_F(SrvRptRetrieveLists, GetRptlistOrdersByTheViewsWords) {
  service.GetRptlist("x", list, "年度!期间", all);
  EXPECT_THAT(statement(), EndsWith(" Where B.FRptType = 3 Order by  FYear ,  FPeriod "));
}

TEST_F(SrvRptRetrieveLists, GetRptlistShowsTheNameOfTheCallersLanguageInBothHalves) {
  platform.language = "en";
  service.GetRptlist("x", list, "", all);
  EXPECT_THAT(statement(), testing::ContainsRegex("B.FRptName_en as FRptName.* UNION .*B.FRptName_en as FRptName"));
}

TEST_F(SrvRptRetrieveLists, GetRptlistOfNoReportIsAnEmptyListInPlaceOfWhatWasThere) {
  list = platform.newPropertyBag();
  EXPECT_TRUE(service.GetRptlist("x", list, "", own));
  EXPECT_EQ(std::dynamic_pointer_cast<ItemList>(list)->count(), 0);
}

TEST_F(SrvRptRetrieveLists, GetRptlistOrderByPutsTheTextBetweenBlanks) {
  service.GetRptlistOrderBy("x", list, "FYear desc", all);
  EXPECT_EQ(statement(), allPart + templatesPart + " Order By FYear desc ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistOrderByOfBlanksSendsTheBlanksAndNoOrder) {
  service.GetRptlistOrderBy("x", list, "   ", all);
  EXPECT_EQ(statement(), allPart + templatesPart + "   ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistOrderByWithoutTextHasNoOrder) {
  service.GetRptlistOrderBy("x", list, "", shared);
  EXPECT_EQ(statement(), rightsPart + " And A.FUserID =17 And A.FRightCode >=1" + templatesPart);
}

TEST_F(SrvRptRetrieveLists, GetRptlistWebAsksForTheUserBeforeTheAdministratorTest) {
  EXPECT_TRUE(service.GetRptlistWeb("x", list, "", own));
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID", "CreateSecurity", "GetLoginInfo", "UserKey", "IsAdministrator",
                          "LanguageCode", allPart + " Order by FSysName, FRptType "));
}

TEST_F(SrvRptRetrieveLists, GetRptlistWebOfAUserIgnoresTheStyleAndListsNoTemplates) {
  callerIsNoAdministrator();
  service.GetRptlistWeb("x", list, "创建人", all);
  EXPECT_EQ(statement(), rightsPart + " And A.FUserID =17 And A.FRightCode >=1 Order by  FOwner ");
}

TEST_F(SrvRptRetrieveLists, GetRptlistWebKeepsAllThirtyTwoBitsOfTheUser) {
  callerIsNoAdministrator();
  platform.userID = 40000;
  service.GetRptlistWeb("x", list, "", own);
  EXPECT_THAT(statement(), testing::HasSubstr(" And A.FUserID =40000 "));
}

TEST_F(SrvRptRetrieveLists, GetRptRSOfAnAdministratorHoldsAtMostThirtyTwoEntries) {
  EXPECT_NE(service.GetRptRS("x"), nullptr);
  EXPECT_THAT(platform.work(),
              ElementsAre("CreateSecurity", "GetLoginInfo", "UserKey", "IsAdministrator",
                          "Execute select distinct top 32 4 as FRightCode," + menuColumns +
                              " From T_Rpt_Content B   Where B.FRptType = 1 and B.FVisibleInList = '1'",
                          "Detach"));
}

TEST_F(SrvRptRetrieveLists, GetRptRSOfAUserHasNoLimitAndShowsOwnReportsWithRightFour) {
  callerIsNoAdministrator();
  service.GetRptRS("x");
  EXPECT_EQ(
      statement(),
      "Execute Select Distinct * from  (select case when b.FOwner = 17 then 4 else A.FRightCode end as "
      "FRightCode, " +
          menuColumns +
          " From T_Rpt_Right A, T_Rpt_Content B   Where A.FRptID = B.FRptID and B.FRptType = 1 and "
          "B.FVisibleInList = '1' and A.FRightCode <> '0' and A.FUserID = 17 Union all  select 4 as FRightCode, " +
          menuColumns +
          " From T_Rpt_Content B   Where B.FRptType = 1 and B.FVisibleInList = '1' and B.FOwner = 17 ) a ");
}

TEST_F(SrvRptRetrieveLists, GetRptRSAsksTheSecurityComponentForTheUserAtEachUse) {
  callerIsNoAdministrator();
  service.GetRptRS("x");
  const auto& log = platform.log;
  EXPECT_EQ(std::count(log.begin(), log.end(), "Security.GetCurrentUserID"), 3);
  EXPECT_THAT(log, testing::Not(testing::Contains("CurrentUserID")));
}

TEST_F(SrvRptRetrieveLists, GetSchemeRptListOfAUserAsksForARightOfTwo) {
  callerIsNoAdministrator();
  platform.language = "cht";
  EXPECT_NE(service.GetSchemeRptList("x"), nullptr);
  EXPECT_EQ(platform.log.back(),
            "Open 1 3 Select a.FRptID,a.FRptName_cht as FRptName From t_Rpt_Content a  Inner Join t_Rpt_Right b  On "
            "a.FRptID=b.FRptID and b.FRightCode>=2 and b.FUserID=17 Where a.FRptType=1 AND a.FRptID NOT IN (Select "
            "FRptID From t_Rpt_LeaderAudit)");
}

TEST_F(SrvRptRetrieveLists, GetSchemeRptListOfAnAdministratorIsNotDetached) {
  EXPECT_NE(service.GetSchemeRptList("x"), nullptr);
  EXPECT_EQ(platform.log.back(),
            "Open 1 3 Select FRptID, FRptName as FRptName From t_Rpt_Content Where FRptType=1 AND FRptID NOT IN "
            "(Select FRptID From t_Rpt_LeaderAudit)");
}

const std::string listColumns =
    "a.FRptID FRptID ,a.FRptName FRptName ,a.FSysName FSysName ,a.FOwner FOwner ,a.FYear FYear ,a.FPeriod FPeriod "
    ",a.FRptType FRptType ,a.FLastOperator FLastOperator ,a.FLastDate FLastDate ,a.F1001 F1001 ";

TEST_F(SrvRptRetrieveLists, GetListReadsTheStandardsFirst) {
  EXPECT_NE(service.GetList("x", nullptr), nullptr);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 3 Select * from t_Rpt_PropClass Where FPropClsID >= 1000",
                          "Open 0 3  Select Distinct * from (  Select 4 as   FRightCode, " + listColumns +
                              " From t_Rpt_Content a Where a.FRptType = 1  Union all  Select 4 as   FRightCode, " +
                              listColumns + " From t_Rpt_Content a Where a.FRptType = 3  ) a "));
}

TEST_F(SrvRptRetrieveLists, GetListHasOneColumnForEachUserDefinedStandard) {
  platform.answer("Select * from t_Rpt_PropClass",
                  {{"FPropClsID"}, {{std::int32_t{1000}}, {std::int32_t{1001}}, {std::int32_t{1002}}}});
  service.GetList("x", nullptr);
  EXPECT_THAT(statement(), testing::HasSubstr(",a.F1001 F1001 ,a.F1000 F1000 ,a.F1002 F1002  From"));
}

TEST_F(SrvRptRetrieveLists, GetListOfAUserJoinsOwnReportsAndThoseWithARight) {
  callerIsNoAdministrator();
  service.GetList("x", nullptr);
  EXPECT_EQ(statement(),
            "Open 0 3  Select Distinct * from (  Select 4 as   FRightCode, " + listColumns +
                " From t_Rpt_Content a Where a.FRptType = 1 And a.FOwner = 17 Union all  Select b.FRightCode, " +
                listColumns +
                " From t_Rpt_Content a Inner Join t_Rpt_Right b  On a.FRptID = b.FRptID Where a.FRptType = 1 And "
                "a.FOwner <> 17 And b.FUserID = 17 And b.FRightCode >= 1 Union all  Select 4 as   FRightCode, " +
                listColumns + " From t_Rpt_Content a Where a.FRptType = 3  ) a ");
}

TEST_F(SrvRptRetrieveLists, GetListRefusesAnEntryThatIsNoColumnBeforeItAsksForReports) {
  auto filter = platform.newPropertyBag();
  filter->set("FRptData", "x");
  EXPECT_THROW((void)service.GetList("x", filter), AutomationError);
  EXPECT_THAT(platform.statements(), ElementsAre(StartsWith("Open 0 3 Select * from t_Rpt_PropClass")));
}

}  // namespace
}  // namespace tolvane::test
