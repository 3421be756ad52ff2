// Converting the older layout, on a real account set.
#include <gmock/gmock.h>

#include "support/account_set.h"
#include "support/older_layout.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Value one = std::int32_t{1};
const Value zero = std::int32_t{0};

const std::string newStatements =
    "select FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, convert(varchar(8), FDay, 112), "
    "FIsChecked, FIsAccepted, FRptContent from t_CsRptContent order by FRptID";
const std::string newValues =
    "select FCompanyNum, FItemNum, FCurrencyNum, FDataClass, FYear, FPeriod, convert(varchar(8), FDay, 112), FAmount, "
    "FAccuAmount, FIsNew from t_CsRptItemData order by FItemNum, FYear, FPeriod";

struct CsUpdateUpgradeOnAccountSet : testing::Test {
  AccountSet set;

  CsUpdateUpgradeOnAccountSet() {
    addOlderTables(set);
    addGroup(1, "P1", "Old");
  }
  void addGroup(std::int32_t id, const std::string& number, const std::string& name) {
    set.sql("insert into t_Rpt_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID) values (" +
            std::to_string(id) + ",'" + number + "','" + name + "',1)");
  }
  void addStatement(std::int32_t year, const std::string& day, const std::string& group = "Old") {
    set.sql("insert into t_Rpt_CsRptContent (FRptGroupName, FYear, FPeriod, FDay, FIsChecked, FRptContent) values ('" +
            group + "'," + std::to_string(year) + ",2," + day + ",1,0x414243)");
  }
  void addItem(const std::string& number, std::int32_t group = 1) {
    set.sql("insert into t_Rpt_CsRptItem (FRptGroupID, FItemNum) values (" + std::to_string(group) + ",'" + number +
            "')");
  }
  void addValue(const std::string& item, const std::string& yearPeriodDayAmountAccuNew) {
    set.sql("insert into t_Rpt_CsRptItemData (FItemNum, FYear, FPeriod, FDay, FAmount, FAccuAmount, FIsNew) values ('" +
            item + "'," + yearPeriodDayAmountAccuNew + ")");
  }
  Value convert(std::int32_t oldGroup = 1) {
    return set.result("CsUpdate.UpGradeOneCsRpt", {{"lngOldRptGroupID", oldGroup},
                                                   {"lngNewRptGroupID", std::int32_t{30}},
                                                   {"lCurrencyID", std::int32_t{2}},
                                                   {"sCurrencyNum", "USD"}});
  }
  std::vector<std::string> cycles() { return set.rows("select FCycleID from t_Rpt_CsRptGroup order by FRptGroupID"); }
};

TEST_F(CsUpdateUpgradeOnAccountSet, AnOldGroupThatDoesNotExistIsOneAndLeavesTheGroupsAlone) {
  EXPECT_EQ(convert(99), one);
  EXPECT_THAT(cycles(), ElementsAre("1"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AConvertedGroupCarriesItsMarkAndIsNoLongerListed) {
  addGroup(2, "P2", "Other");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(cycles(), ElementsAre("10000", "1"));
  const auto left = set.call("CsRetrieve.GetRptGroupList").out.at("oRptGroupList");
  EXPECT_THAT(column(left, "FRptGroupNum"), ElementsAre("P2"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AStatementOfAYearGetsTheFirstOf1900AsItsDay) {
  addStatement(2011, "'20110405'");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows(newStatements), ElementsAre("30|1|2|001|2011|2|19000101|True|NULL|<3 bytes>"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AStatementOfNoYearKeepsItsDay) {
  addStatement(-1, "'20110405'");
  addStatement(0, "null");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows(newStatements),
              ElementsAre("30|1|2|001|-1|2|20110405|True|NULL|<3 bytes>", "30|1|2|001|0|2|NULL|True|NULL|<3 bytes>"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, StatementsAreFoundByTheGroupsName) {
  addGroup(2, "P2", "Other");
  addStatement(2011, "null", "Other");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows(newStatements), IsEmpty());
}

TEST_F(CsUpdateUpgradeOnAccountSet, DocumentsComeOverByteForByte) {
  addStatement(2011, "null");
  EXPECT_EQ(convert(), one);
  EXPECT_EQ(set.value("select FRptContent from t_CsRptContent"), bytes("ABC"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, ItemValuesAreCopiedWithTheirDaysAmountsAndFlags) {
  addItem("I1");
  addValue("I1", "2011,1,'20110405',12.3456,100,1");
  addValue("I1", "0,2,'20110405',-1,null,0");
  addValue("I9", "2011,1,null,5,5,1");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows(newValues),
              ElementsAre("001|I1|USD|0|0|2|20110405|-1|0|False", "001|I1|USD|0|2011|1|19000101|12.3456|100|True"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, ANullAmountIsZeroAndATrueFlagIsOne) {
  addItem("I1");
  addValue("I1", "2011,1,null,null,null,1");
  addValue("I1", "2011,2,null,null,null,null");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows("select FAmount, FAccuAmount, FIsNew from t_CsRptItemData order by FPeriod"),
              ElementsAre("0|0|True", "0|0|False"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AmountsComeOverWithEveryDigit) {
  addItem("I1");
  addValue("I1", "2011,1,null,1234567890123456.7891,-0.0001,0");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows("select FAmount, FAccuAmount from t_CsRptItemData"),
              ElementsAre("1234567890123456.7891|-0.0001"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, ASecondConversionAddsStatementsAgainButNoItemValue) {
  addStatement(2011, "null");
  addItem("I1");
  addValue("I1", "2011,1,null,5,5,1");
  EXPECT_EQ(convert(), one);
  set.sql("update t_Rpt_CsRptGroup set FCycleID=1 update t_Rpt_CsRptItemData set FAmount=7");
  EXPECT_EQ(convert(), one);
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{2}));
  EXPECT_THAT(set.rows("select FAmount from t_CsRptItemData"), ElementsAre("5"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AGroupWithoutTheOwnCompanysNumberIsConvertedForAnEmptyOne) {
  set.sql("delete from t_CsSysParam");
  addStatement(2011, "null");
  EXPECT_EQ(convert(), one);
  EXPECT_THAT(set.rows("select FCompanyNum from t_CsRptContent"), ElementsAre(""));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AGroupNameWithAnApostropheIsZeroAndMarksNothing) {
  set.sql("update t_Rpt_CsRptGroup set FRptGroupName='O''Brien'");
  addItem("I1");
  EXPECT_EQ(convert(), zero);
  EXPECT_THAT(cycles(), ElementsAre("1"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, AFailureAmongTheItemsTakesTheStatementsBackToo) {
  addStatement(2011, "null");
  addItem("I1");
  addItem("I''2");
  addValue("I1", "2011,1,null,5,5,1");
  EXPECT_EQ(convert(), zero);
  EXPECT_THAT(set.rows(newStatements), IsEmpty());
  EXPECT_THAT(set.rows(newValues), IsEmpty());
  EXPECT_THAT(cycles(), ElementsAre("1"));
}

TEST_F(CsUpdateUpgradeOnAccountSet, WithoutTheOldTablesTheAnswerIsZero) {
  set.sql("drop table t_Rpt_CsRptGroup");
  EXPECT_EQ(convert(), zero);
}

}  // namespace
}  // namespace tolvane::test
