// Writing rights and views, on a real account set.
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SrvRptUpdateRightsOnAccountSet : ReportStore {
  std::int32_t report = save("a");

  Named rights(const Value& users, const Value& codes) {
    return {{"lRptID", report}, {"lUserID", users}, {"lRightCode", codes}};
  }
  std::vector<std::string> stored() {
    return set.rows(
        sql("Select FUserID,FRightCode From t_Rpt_Right Where FRptID=", report, " Order By FUserID,FRightCode"));
  }
  void setView(const std::string& code) { set.call("SrvRptUpdate.SetViewOrder", {{"sCode", code}}); }
};

TEST_F(SrvRptUpdateRightsOnAccountSet, TheWholeListOfRightsIsReplaced) {
  grant(report, 99, 1);
  const auto outcome = set.call("SrvRptUpdate.SetRptRight", rights(int32Array({16, 17, 18}), int32Array({4, 1, 0})));
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_THAT(stored(), ElementsAre("16|4", "17|1", "18|0"));
  EXPECT_EQ(outcome.out.at("lUserID"), int32Array({16, 17, 18}));
}

TEST_F(SrvRptUpdateRightsOnAccountSet, AnotherReportsRightsStay) {
  const auto other = save("b");
  set.call("SrvRptUpdate.SetRptRight", rights(int32Array({16}), int32Array({4})));
  EXPECT_EQ(count(sql("t_Rpt_Right Where FRptID=", other)), 1);
}

TEST_F(SrvRptUpdateRightsOnAccountSet, AnArrayWithoutElementsLeavesNoRights) {
  EXPECT_EQ(set.result("SrvRptUpdate.SetRptRight", {{"lRptID", report}}), Value(true));
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(SrvRptUpdateRightsOnAccountSet, EqualIndicesArePairedWhateverTheBounds) {
  set.call("SrvRptUpdate.SetRptRight", rights(int32Array({16, 17}, 0), int32Array({9, 4, 1}, -1)));
  EXPECT_THAT(stored(), ElementsAre("16|4", "17|1"));
}

TEST_F(SrvRptUpdateRightsOnAccountSet, AUserWhoIsNamedTwiceGetsTwoRows) {
  set.call("SrvRptUpdate.SetRptRight", rights(int32Array({16, 16}), int32Array({4, 1})));
  EXPECT_THAT(stored(), ElementsAre("16|1", "16|4"));
}

TEST_F(SrvRptUpdateRightsOnAccountSet, AMissingCodeFailsAndTheOldRightsAreBack) {
  const auto error = set.error("SrvRptUpdate.SetRptRight", rights(int32Array({16, 17}), int32Array({4})));
  EXPECT_EQ(error.number(), 0x800A0009);
  EXPECT_THAT(stored(), ElementsAre("1|4"));
}

TEST_F(SrvRptUpdateRightsOnAccountSet, AViewIsCreatedOnceAndOverwrittenAfterwards) {
  setView("1\\1001");
  setView("2\\O'Brien");
  EXPECT_THAT(set.rows("Select * From t_Rpt_View"), ElementsAre("1|2\\O'Brien"));
}

TEST_F(SrvRptUpdateRightsOnAccountSet, EveryUserHasAViewOfHisOwn) {
  setView("a");
  set.asNewUser(16394);
  setView("b");
  EXPECT_THAT(set.rows("Select * From t_Rpt_View Order By FUserID"), ElementsAre("1|a", "16394|b"));
  EXPECT_EQ(set.call("SrvRptRetrieve.GetViewCode").out.at("sOrderStr"), Value("b"));
}

}  // namespace
}  // namespace tolvane::test
