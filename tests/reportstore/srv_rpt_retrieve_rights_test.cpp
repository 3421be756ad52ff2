// Reading rights and views and running free queries, on a real account set.
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SrvRptRetrieveRightsOnAccountSet : ReportStore {
  void viewIs(const std::string& code) { set.sql("Insert Into t_Rpt_View Values (1,'" + code + "')"); }
  Value newView() { return set.result("SrvRptRetrieve.GetUserRptView"); }
};

TEST_F(SrvRptRetrieveRightsOnAccountSet, AnOwnerWithoutARightRowHasNoRight) {
  const auto id = save("a");
  set.sql("Delete From t_Rpt_Right");
  const auto outcome = set.call("SrvRptRetrieve.GetRptRight", {{"lRptID", id}, {"lRightCode", 9}});
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("lRightCode"), Value(9));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, ACreatorHasRightFour) {
  const auto outcome = set.call("SrvRptRetrieve.GetRptRight", {{"lRptID", save("a")}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("lRightCode"), Value(4));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AReportsRightsComeInTwoArraysFromOne) {
  const auto id = save("a");
  grant(id, 16394, 1);
  grant(id, 16395, 0);
  const auto outcome = set.call("SrvRptRetrieve.GetRptAuthorize", {{"lRptID", id}, {"lUserID", int32Array({7}, 5)}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("lUserID"), int32Array({1, 16394, 16395}));
  EXPECT_EQ(outcome.out.at("lRightCode"), int32Array({4, 1, 0}));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AReportWithoutRightsLeavesTheArraysAlone) {
  const auto outcome =
      set.call("SrvRptRetrieve.GetRptAuthorize", {{"lRptID", 999}, {"lUserID", int32Array({7, 8}, 5)}});
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("lUserID"), int32Array({7, 8}, 5));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, TheTwoViewMethodsHaveDefaultsOfTheirOwn) {
  const auto outcome = set.call("SrvRptRetrieve.GetViewCode", {{"sOrderStr", "before"}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("sOrderStr"), Value("0001"));
  EXPECT_EQ(newView(), Value("1\\1001"));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AViewThatBeginsWithLettersIsRawForOneMethodAndTheDefaultForTheOther) {
  viewIs("abc\\1001");
  EXPECT_EQ(set.call("SrvRptRetrieve.GetViewCode").out.at("sOrderStr"), Value("abc\\1001"));
  EXPECT_EQ(newView(), Value("1\\1001"));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AViewThatBeginsWithANumberIsUnchanged) {
  viewIs("2\\1001");
  EXPECT_EQ(newView(), Value("2\\1001"));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AnEmptyViewIsEmpty) {
  viewIs("");
  EXPECT_EQ(newView(), Value(""));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AFreeQueryGivesItsRows) {
  const auto outcome =
      set.call("SrvRptRetrieve.GetSqlExecResult", {{"sSql", "Select FPropClsID, FName From t_Rpt_PropClass"}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_THAT(rowsOf(outcome.out.at("oResult")), ElementsAre("1|性质", "1001|会计制度"));
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, AFreeQueryWithoutRowsGivesAnEmptyList) {
  const auto outcome = set.call("SrvRptRetrieve.GetSqlExecResult", {{"sSql", "Select * From t_Rpt_Path"}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_THAT(rowsOf(outcome.out.at("oResult")), IsEmpty());
}

TEST_F(SrvRptRetrieveRightsOnAccountSet, ABadQueryFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("SrvRptRetrieve.GetSqlExecResult", {{"sSql", "Select * From t_None"}}).number(), 0x80040E37);
}

}  // namespace
}  // namespace tolvane::test
