// The exact statements, cursors and order of operations behind saving and deleting.
#include <gmock/gmock.h>

#include "csreports/cs_update.h"
#include "platform/calendar.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

const AutomationError databaseError(oledb::errorsInCommand, "provider", "Incorrect syntax");

struct CsUpdateStatements : testing::Test {
  RecordingPlatform platform;
  CsUpdate service{platform};
  Date day = dateOf(2012, 3, 15);
  Value document = bytes("12345");
  std::string company = "001";

  bool save(std::int32_t year, std::int32_t period) {
    return service.SaveCsData("x", year, period, day, 7, 2, company, document);
  }
};

TEST_F(CsUpdateStatements, SaveCsDataOpensAKeysetAndSetsTheFieldsOfANewRowInOrder) {
  platform.log.clear();
  EXPECT_TRUE(save(2012, 3));
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Open 1 3 Select * From t_CsRptContent Where FRptGroupID=7 AND FRptType=1 AND FCurrencyID=2 "
                          "AND FCompanyNum='001' AND FYear=2012 AND  FPeriod=3",
                          "AddNew", "Set FRptGroupID=7", "Set frpttype=1", "Set FCompanyNum='001'", "Set FYear=2012",
                          "Set FPeriod=3", "Set FDay=2012-3-15", "Set FCurrencyID=2", "Set FRptContent=bytes(5)",
                          "Update", "Close"));
}

TEST_F(CsUpdateStatements, SaveCsDataOfAStatementThatIsThereSetsTheDocumentAlone) {
  platform.answer("Select", {{"FRptID", "FRptContent"}, {{std::int32_t{1}, Null{}}, {std::int32_t{2}, Null{}}}});
  EXPECT_TRUE(save(-1, -1));
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_CsRptContent Where FRptGroupID=7 AND FRptType=1 AND FCurrencyID=2 "
                          "AND FCompanyNum='001' AND FYear < 0 AND FPeriod <0 AND FDay='20120315'",
                          "Set FRptContent=bytes(5)", "Update", "Close"));
}

TEST_F(CsUpdateStatements, SaveCsDataKeepsTheNegativeYearAndPeriodOfADayStatement) {
  save(-3, -2);
  EXPECT_THAT(platform.work(), testing::IsSupersetOf({"Set FYear=-3", "Set FPeriod=-2", "Set FDay=2012-3-15"}));
}

TEST_F(CsUpdateStatements, SaveCsSampleAddsTheSampleOfAGroup) {
  EXPECT_TRUE(service.SaveCsSample("x", 7, document));
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_CsRptSample Where FRptGroupID =7 And FRptType =1", "AddNew",
                          "Set FRptGroupID=7", "Set frpttype=1", "Set FRptContent=bytes(5)", "Update", "Close"));
}

TEST_F(CsUpdateStatements, SaveCsSampleReplacesTheDocumentOfTheSampleThatIsThere) {
  platform.answer("Select", {{"FRptGroupID"}, {{std::int32_t{7}}}});
  EXPECT_TRUE(service.SaveCsSample("x", 7, document));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select * From t_CsRptSample Where FRptGroupID =7 And FRptType =1",
                                           "Set FRptContent=bytes(5)", "Update", "Close"));
}

TEST_F(CsUpdateStatements, SavingRaisesWhatTheDatabaseRaises) {
  platform.fail("Update", databaseError);
  EXPECT_THROW(save(2012, 3), AutomationError);
  platform.fail("Open ", databaseError);
  EXPECT_THROW(service.SaveCsSample("x", 7, document), AutomationError);
}

TEST_F(CsUpdateStatements, DelOneCsRptExecutesOneDelete) {
  EXPECT_TRUE(service.DelOneCsRpt("x", 2012, 3, day, 7, 2, company));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Delete t_CsRptContent Where  FRptGroupID =7 AND FRptType=1 AND FCurrencyID=2 AND "
                          "FCompanyNum='001' AND FYear=2012 AND  FPeriod=3"));
}

TEST_F(CsUpdateStatements, DelOneCsRptOfADayStatementNamesTheDay) {
  EXPECT_TRUE(service.DelOneCsRpt("x", -1, -1, day, 7, 2, company));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Delete t_CsRptContent Where  FRptGroupID =7 AND FRptType=1 AND FCurrencyID=2 AND "
                          "FCompanyNum='001' AND FYear < 0 AND FPeriod <0 AND FDay='20120315'"));
}

TEST_F(CsUpdateStatements, DelOneCsRptAnswersFalseOnFailure) {
  platform.fail("Execute", databaseError);
  EXPECT_FALSE(service.DelOneCsRpt("x", 2012, 3, day, 7, 2, company));
  platform.fail("OpenDataSource", databaseError);
  EXPECT_FALSE(service.DelOneCsRpt("x", 2012, 3, day, 7, 2, company));
}

TEST_F(CsUpdateStatements, CsDataStatusUpdateSetsTheFieldOfTheFirstRowAlone) {
  platform.answer("Select", {{"FIsChecked"}, {{false}, {false}, {false}}});
  EXPECT_TRUE(service.CsDataStatusUpdate("x", "FYear=2012", "FIsChecked", true));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select FIsChecked From t_CsRptContent Where FYear=2012",
                                           "Set FIsChecked=True", "Update", "Close"));
}

TEST_F(CsUpdateStatements, CsDataStatusUpdateWithoutARowIsTrueAndWritesNothing) {
  EXPECT_TRUE(service.CsDataStatusUpdate("x", "1=2", "FIsChecked", true));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select FIsChecked From t_CsRptContent Where 1=2", "Close"));
}

TEST_F(CsUpdateStatements, CsDataStatusUpdateAnswersFalseOnFailure) {
  platform.fail("Open ", databaseError);
  EXPECT_FALSE(service.CsDataStatusUpdate("x", "no sql", "FIsChecked", true));
  platform.answer("Select", {{"FIsChecked"}, {{false}}});
  platform.fail("Set ", databaseError);
  EXPECT_FALSE(service.CsDataStatusUpdate("x", "1=1", "FIsChecked", "word"));
}

}  // namespace
}  // namespace tolvane::test
