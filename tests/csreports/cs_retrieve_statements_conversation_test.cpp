// The exact statements, cursors and order of operations behind the reading of statements.
#include <gmock/gmock.h>

#include "csreports/cs_retrieve.h"
#include "platform/calendar.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

const AutomationError databaseError(oledb::errorsInCommand, "provider", "Incorrect syntax");

struct CsRetrieveStatements : testing::Test {
  RecordingPlatform platform;
  CsRetrieve service{platform};
  Date day = dateOf(2012, 3, 15);
  Value value = "before";
  ObjectRef list;

  bool fetch(std::int32_t year, std::int32_t period, std::int32_t type) {
    return service.GetCsData("x", year, period, day, 7, 2, "001", value, type);
  }
  bool status() { return service.CsDataStatusInfo("x", "FRptID=7", "FIsChecked", value); }
};

TEST_F(CsRetrieveStatements, GetCsDataRunsTheFrameThenOneForwardOnlyReadOnlyStatement) {
  platform.log.clear();
  EXPECT_FALSE(fetch(2012, 3, 1));
  EXPECT_EQ(value, Value("before"));
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Open 0 1 Select FRptContent From t_CsRptContent Where FRptGroupID=7 AND "
                          "FRptType=1 AND FCurrencyID=2 AND FCompanyNum='001' AND FYear=2012 AND  "
                          "FPeriod=3",
                          "Close"));
}

TEST_F(CsRetrieveStatements, GetCsDataHandsOutTheFirstRowsDocument) {
  platform.answer("Select FRptContent", {{"FRptContent"}, {{bytes("first")}, {bytes("second")}}});
  EXPECT_TRUE(fetch(2012, 3, 1));
  EXPECT_EQ(value, bytes("first"));
}

TEST_F(CsRetrieveStatements, GetCsDataOfTypeFiveLooksUpByDayWhateverYearAndPeriodSay) {
  fetch(2012, 3, 5);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContent Where FRptGroupID=7 AND FRptType=5 AND "
                          "FCurrencyID=2 AND FCompanyNum='001' AND FYear < 0 AND FPeriod <0 AND FDay='20120315'"));
}

TEST_F(CsRetrieveStatements, GetCsDataOfTypeZeroLooksForTypeOne) {
  fetch(2012, 3, 0);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContent Where FRptGroupID=7 AND FRptType=1 AND "
                          "FCurrencyID=2 AND FCompanyNum='001' AND FYear=2012 AND  FPeriod=3"));
}

TEST_F(CsRetrieveStatements, GetCsDataUsesTheYearWhenThePeriodAloneIsNegative) {
  fetch(2012, -1, 1);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContent Where FRptGroupID=7 AND FRptType=1 AND "
                          "FCurrencyID=2 AND FCompanyNum='001' AND FYear=2012 AND  FPeriod=-1"));
}

TEST_F(CsRetrieveStatements, GetCsDataRaisesWhatTheDatabaseRaises) {
  platform.fail("Open", databaseError);
  EXPECT_THROW(fetch(2012, 3, 1), AutomationError);
}

TEST_F(CsRetrieveStatements, GetExistRptOpensOneKeysetWithAllThreeAlternatives) {
  EXPECT_TRUE(service.GetExistRpt("x", 2012, 8, dateOf(2011, 11, 5), 2, list));
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Open 1 3 Select b.*,a.FRptType From t_CsRptContent a inner join t_CsRptGroup b  on a.FRptGroupID = "
                  "b.FRptGroupID  WHERE a.FCurrencyID=2 And (( a.FYear < 0 AND a.FPeriod <0 AND a.FDay='20111105') Or "
                  "((a.FRptType =5 And (( a.FYear=-100  And FCycleID = 0 And  FDay ='20111105') "
                  "Or (FCycleID= 1  And Datepart(Year,FDay)='2011' And Datepart(Month,FDay)='11') "
                  "Or (FCycleID= 3  And Datepart(Year,FDay)='2011' And (Datepart(Month,FDay)-1)/3='3') "
                  "Or (FCycleID= 6  And Datepart(Year,FDay)='2011' And (Datepart(Month,FDay)-1)/6='1') "
                  "Or (FCycleID= 12 And Datepart(Year,FDay)='2011') ))) Or ( a.FYear=2012 AND 8<= "
                  "a.FPeriod*b.FCycleID AND 8>(a.FPeriod-1)*b.FCycleID )) Order by b.FRptGroupNum "));
}

TEST_F(CsRetrieveStatements, GetExistRptGivesOneBagForEachRow) {
  platform.answer("Select b.*", {{"FRptGroupNum", "FRptType"}, {{"G1", 1}, {"G1", 5}}});
  EXPECT_TRUE(service.GetExistRpt("x", 2012, 3, day, 2, list));
  EXPECT_THAT(rowsOf(list), ElementsAre("G1|1", "G1|5"));
}

TEST_F(CsRetrieveStatements, GetExistRptWithoutRowsHandsOutAnEmptyList) {
  EXPECT_TRUE(service.GetExistRpt("x", 2012, 3, day, 2, list));
  EXPECT_THAT(rowsOf(list), ElementsAre());
  EXPECT_NE(list, nullptr);
}

TEST_F(CsRetrieveStatements, GetExistRptAnswersFalseOnFailureAndKeepsTheList) {
  const ObjectRef before = list = platform.newItemList();
  platform.fail("Open", databaseError);
  EXPECT_FALSE(service.GetExistRpt("x", 2012, 3, day, 2, list));
  EXPECT_EQ(list, before);
}

TEST_F(CsRetrieveStatements, IsExistsPutsTheConditionInUnchanged) {
  platform.answer("SELECT", {{"FRptID"}, {{std::int32_t{42}}, {std::int32_t{43}}}});
  EXPECT_EQ(service.IsExists("x", " FYear = 2012  "), 42);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 SELECT FRptID FROM t_CsRptContent WHERE  FYear = 2012  ", "Close"));
}

TEST_F(CsRetrieveStatements, IsExistsWithoutAConditionSendsNothing) {
  EXPECT_EQ(service.IsExists("x", ""), 0);
  EXPECT_THAT(platform.statements(), ElementsAre());
}

TEST_F(CsRetrieveStatements, IsExistsAnswersZeroWithoutARowAndOnFailure) {
  EXPECT_EQ(service.IsExists("x", "1=2"), 0);
  platform.fail("Open", databaseError);
  EXPECT_EQ(service.IsExists("x", "no sql"), 0);
  platform.fail("OpenDataSource", databaseError);
  EXPECT_EQ(service.IsExists("x", "1=1"), 0);
}

TEST_F(CsRetrieveStatements, CsDataStatusInfoExecutesFieldAndConditionUnchanged) {
  EXPECT_TRUE(status());
  EXPECT_THAT(platform.work(), ElementsAre("Execute Select FIsChecked From t_CsRptContent Where FRptID=7"));
}

TEST_F(CsRetrieveStatements, CsDataStatusInfoTellsSetFromNotSetFromNoStatementAsA16BitInteger) {
  const std::vector<std::pair<Value, std::int16_t>> cases = {{true, 1},  {std::int32_t{1}, 1}, {std::int16_t{-1}, 1},
                                                             {false, 3}, {std::uint8_t{0}, 3}, {Null{}, 3}};
  for (const auto& [stored, expected] : cases) {
    platform.answer("Select", {{"FIsChecked"}, {{stored}, {true}}});
    EXPECT_TRUE(status());
    EXPECT_EQ(value, Value(expected));
  }
  EXPECT_TRUE(status());
  EXPECT_EQ(value, Value(std::int16_t{2}));
}

TEST_F(CsRetrieveStatements, CsDataStatusInfoAnswersFalseOnFailureAndKeepsTheValue) {
  platform.fail("Execute", databaseError);
  EXPECT_FALSE(status());
  EXPECT_EQ(value, Value("before"));
}

TEST_F(CsRetrieveStatements, CsDataStatusInfoOfAFieldThatIsNoFlagAnswersFalse) {
  platform.answer("Select", {{"FIsChecked"}, {{"word"}}});
  EXPECT_FALSE(status());
  EXPECT_EQ(value, Value("before"));
}

}  // namespace
}  // namespace tolvane::test
