// Groups, currencies and settings, on a real account set.
#include <gmock/gmock.h>

#include "csreports/statements.h"
#include "support/older_layout.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct CsRetrieveGroupsOnAccountSet : testing::Test {
  AccountSet set;

  Value ask(const std::string& method, Named arguments = {}) {
    return set.result("CsRetrieve." + method, std::move(arguments));
  }
  std::vector<std::string> listed(const std::string& method) {
    const auto outcome = set.call("CsRetrieve." + method);
    EXPECT_EQ(outcome.result, Value(std::int32_t{1}));
    return column(outcome.out.at("oRptGroupList"), "FRptGroupNum");
  }
  void withdraw(std::int32_t id, const std::string& group) {
    set.sql(
        "insert into t_CsRptContentDel (FRptID, FRptGroupNum, FRptGroupName, FCurrencyNum, FYear, FPeriod) values (" +
        std::to_string(id) + ",'" + group + "','name','RMB',2012,1)");
  }
};

const Value zero = std::int32_t{0};

TEST_F(CsRetrieveGroupsOnAccountSet, TheOldListNeverHoldsAConvertedGroup) {
  addOlderTables(set);
  set.sql(
      "insert into t_Rpt_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID) values "
      "(1,'P1','b',1), (2,'P2','a',10000), (3,'P3','a',12)");
  EXPECT_THAT(listed("GetRptGroupList"), ElementsAre("P3", "P1"));
}

TEST_F(CsRetrieveGroupsOnAccountSet, TheOldListIsTheDatabasesErrorWithoutTheOldTables) {
  EXPECT_EQ(set.error("CsRetrieve.GetRptGroupList").number(), oledb::noTable);
}

TEST_F(CsRetrieveGroupsOnAccountSet, TheNewListIsOrderedByName) {
  set.sql("insert into t_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName) values (1,'G1','b'), (2,'G2','a')");
  EXPECT_THAT(listed("GetRptGroupListNew"), ElementsAre("G2", "G1"));
}

TEST_F(CsRetrieveGroupsOnAccountSet, AnEmptyListIsAListWithoutItems) {
  EXPECT_THAT(listed("GetRptGroupListNew"), ElementsAre());
}

TEST_F(CsRetrieveGroupsOnAccountSet, AGroupIsFoundByItsNumber) {
  addGroups(set);
  EXPECT_EQ(ask("GetRptGroupID", {{"sRptGroupNum", "G06"}}), Value(std::int32_t{4}));
  EXPECT_EQ(ask("GetRptGroupID", {{"sRptGroupNum", "G99"}}), zero);
}

TEST_F(CsRetrieveGroupsOnAccountSet, ANumberWithAnApostropheIsAnsweredWithTheDefault) {
  addGroups(set);
  EXPECT_EQ(ask("GetRptGroupID", {{"sRptGroupNum", "G'06"}}), zero);
  EXPECT_EQ(ask("GetCsRptGroupID", {{"sCsRptNum", "G'06"}}), zero);
  EXPECT_EQ(ask("GetCurrencyID", {{"sCurrencyNum", "R'MB"}}), zero);
  EXPECT_EQ(ask("ReadProfileValue", {{"sKey", "Company'Num"}}), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, GetCsRptGroupIDAndGetCsRptGroupNumReadWithdrawnStatementsNotGroups) {
  addGroups(set);
  EXPECT_EQ(ask("GetCsRptGroupID", {{"sCsRptNum", "G06"}}), zero);
  EXPECT_EQ(ask("GetCsRptGroupNum", {{"lCsRptID", std::int32_t{4}}}), Value(""));
  withdraw(77, "G06");
  EXPECT_EQ(ask("GetCsRptGroupID", {{"sCsRptNum", "G06"}}), Value(std::int32_t{77}));
  EXPECT_EQ(ask("GetCsRptGroupNum", {{"lCsRptID", std::int32_t{77}}}), Value("G06"));
}

TEST_F(CsRetrieveGroupsOnAccountSet, CurrenciesAreFoundByNumberAndByIdentifier) {
  EXPECT_EQ(ask("GetCurrencyID", {{"sCurrencyNum", "RMB"}}), Value(std::int32_t{1}));
  EXPECT_EQ(ask("GetCurrencyID", {{"sCurrencyNum", "ZZZ"}}), zero);
  EXPECT_EQ(ask("GetCurrencyNum", {{"lCurrencyID", std::int32_t{1}}}), Value("RMB"));
  EXPECT_EQ(ask("GetCurrencyNum", {{"lCurrencyID", std::int32_t{9}}}), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, AllCurrenciesStandInOneText) {
  set.sql("insert into t_CsCurrency (FCurrencyID, FNumber) values (2, 'USD')");
  EXPECT_EQ(ask("GetNewCurrencyInfo"), Value("1,RMB||2,USD"));
}

TEST_F(CsRetrieveGroupsOnAccountSet, OneCurrencyHasNoSeparatorAndNoneIsAnEmptyText) {
  EXPECT_EQ(ask("GetNewCurrencyInfo"), Value("1,RMB"));
  set.sql("delete from t_CsCurrency");
  EXPECT_EQ(ask("GetNewCurrencyInfo"), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, TheOwnCompanyIsASetting) {
  EXPECT_EQ(ask("GetCurCompanyNum"), Value("001"));
  EXPECT_EQ(ask("ReadProfileValue", {{"sKey", "CompanyNum"}}), Value("001"));
}

TEST_F(CsRetrieveGroupsOnAccountSet, WithoutTheKeyTheOwnCompanyIsAnEmptyTextAndNothingIsRaised) {
  set.sql("delete from t_CsSysParam");
  EXPECT_EQ(ask("GetCurCompanyNum"), Value(""));
  EXPECT_EQ(ask("ReadProfileValue", {{"sKey", "CompanyNum"}}), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, ANullSettingIsAnEmptyText) {
  set.sql("update t_CsSysParam set FValue=null");
  EXPECT_EQ(ask("GetCurCompanyNum"), Value(""));
  EXPECT_EQ(ask("ReadProfileValue", {{"sKey", "CompanyNum"}}), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, EveryLookUpAnswersItsDefaultWhenItsTableIsMissing) {
  set.sql("drop table t_CsRptGroup drop table t_CsRptContentDel drop table t_CsCurrency drop table t_CsSysParam");
  EXPECT_EQ(ask("GetRptGroupID", {{"sRptGroupNum", "G"}}), zero);
  EXPECT_EQ(ask("GetCsRptGroupID", {{"sCsRptNum", "G"}}), zero);
  EXPECT_EQ(ask("GetCsRptGroupNum", {{"lCsRptID", std::int32_t{1}}}), Value(""));
  EXPECT_EQ(ask("GetCurrencyID", {{"sCurrencyNum", "RMB"}}), zero);
  EXPECT_EQ(ask("GetCurrencyNum", {{"lCurrencyID", std::int32_t{1}}}), Value(""));
  EXPECT_EQ(ask("ReadProfileValue", {{"sKey", "K"}}), Value(""));
  EXPECT_EQ(ask("GetCurCompanyNum"), Value(""));
}

TEST_F(CsRetrieveGroupsOnAccountSet, TheOtherReadsRaiseWhatTheDatabaseRaises) {
  set.sql("drop table t_CsRptGroup drop table t_CsCurrency");
  EXPECT_EQ(set.error("CsRetrieve.GetRptGroupListNew").number(), oledb::noTable);
  EXPECT_EQ(set.error("CsRetrieve.GetNewCurrencyInfo").number(), oledb::noTable);
}

TEST_F(CsRetrieveGroupsOnAccountSet, ConversionIsNeededExactlyWhenTheOldGroupTableExists) {
  EXPECT_EQ(ask("IsNeedUpGrade"), zero);
  addOlderTables(set);
  EXPECT_EQ(ask("IsNeedUpGrade"), Value(std::int32_t{1}));
}

TEST_F(CsRetrieveGroupsOnAccountSet, ConversionIsStillNeededWhenEveryOldGroupIsConverted) {
  addOlderTables(set);
  set.sql("insert into t_Rpt_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID) values (1,'P','p',10000)");
  EXPECT_EQ(ask("IsNeedUpGrade"), Value(std::int32_t{1}));
}

}  // namespace
}  // namespace tolvane::test
