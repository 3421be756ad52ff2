// The exact statements, cursors and order of operations behind the look-up of single reports.
#include <gmock/gmock.h>

#include "reportstore/srv_rpt_retrieve.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct SrvRptRetrieveReports : testing::Test {
  RecordingPlatform platform;
  SrvRptRetrieve service{platform};
  Value document;
  Value printer;
};

TEST_F(SrvRptRetrieveReports, CreationTakesContextAndLogin) {
  EXPECT_THAT(platform.log, ElementsAre("GetContext", "GetLoginInfo"));
}

TEST_F(SrvRptRetrieveReports, GetRptPlxRunsTheFrameThenOneStatement) {
  platform.log.clear();
  service.GetRptPlx("x", 7, document, printer);
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Execute Select FRptType, FRptData, FPrinterBuf From T_Rpt_Content Where FRptID=7", "Close"));
}

TEST_F(SrvRptRetrieveReports, GetRptViaNameOpensAKeysetInTheCallersLanguage) {
  platform.language = "en";
  service.GetRptViaName("x", "Cash'2", document, printer, 3);
  EXPECT_THAT(platform.work(), ElementsAre("LanguageCode",
                                           "Open 1 3 Select FRptType, FRptData, FPrinterBuf From T_Rpt_Content Where "
                                           "FRptName_en='Cash''2' and FRptType=3",
                                           "Close"));
}

TEST_F(SrvRptRetrieveReports, GetDetailByIDOpensForwardOnly) {
  EXPECT_EQ(service.GetDetailByID("x", -5), nullptr);
  EXPECT_THAT(platform.work(), ElementsAre("Open 0 3 Select * from t_Rpt_Content where FRptID=-5"));
}

TEST_F(SrvRptRetrieveReports, GetDetailByNameAsksForTheLanguageTwice) {
  EXPECT_EQ(service.GetDetailByName("x", "O'Brien", 17), nullptr);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("LanguageCode", "LanguageCode",
                  "Open 0 3 Select a.FRptID,a.FRptName as FRptName,a.FSysName,a.FYear,a.FPeriod,a.FOwner,a.FRptType,"
                  "a.FLastOperator,a.FLastDate,b.FRightCode from t_Rpt_Content a left join t_Rpt_Right b on a.FRptID "
                  "=b.FRptID and b.FUserID=17 where a.FRptName='O''Brien' AND a.FRptType=1 "));
}

TEST_F(SrvRptRetrieveReports, ExistenceCheckOfNothingSendsNothing) {
  std::int32_t id = 0;
  EXPECT_EQ(service.ExistenceCheck("x", id, "", 1), 0);
  EXPECT_THAT(platform.work(), ElementsAre());
}

TEST_F(SrvRptRetrieveReports, ExistenceCheckByIdentifierIgnoresTheName) {
  platform.answer("Select", {{"FRptID"}, {{std::int32_t{7}}}});
  std::int32_t id = 7;
  EXPECT_EQ(service.ExistenceCheck("x", id, "other", 1), 7);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select * From T_Rpt_Content Where FRptID =7", "Close"));
}

TEST_F(SrvRptRetrieveReports, ExistenceCheckByNameKeepsBothBlanksBeforeTheType) {
  std::int32_t id = -1;
  EXPECT_EQ(service.ExistenceCheck("x", id, "Cash", 2), 0);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 1 3 Select * From T_Rpt_Content Where FRptName='Cash' And  FRptType =2"));
}

TEST_F(SrvRptRetrieveReports, IsValidRptExecutesTheNameQuery) {
  platform.language = "cht";
  EXPECT_TRUE(service.IsValidRpt("x", "Cash", 1));
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode",
                          "Execute Select * From T_Rpt_Content Where FRptName_cht='Cash' And  FRptType =1", "Close"));
}

TEST_F(SrvRptRetrieveReports, GetCurUserIDNeitherCompletesNorTakesTheConnection) {
  platform.log.clear();
  EXPECT_EQ(service.GetCurUserID("x"), 1);
  EXPECT_THAT(platform.log, ElementsAre("GetContext", "OpenDataSource x", "GetLoginInfo", "CurrentUserID"));
}

TEST_F(SrvRptRetrieveReports, GetCurUserIDAnswersZeroWhenTheDataSourceDoesNotOpen) {
  platform.fail("OpenDataSource", AutomationError(RuntimeError::invalidArgument, "x"));
  EXPECT_EQ(service.GetCurUserID("x"), 0);
}

}  // namespace
}  // namespace tolvane::test
