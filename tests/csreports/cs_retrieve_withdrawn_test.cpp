// Withdrawn statements, on a real account set.
#include <gmock/gmock.h>

#include "csreports/statements.h"
#include "platform/data_access.h"

namespace tolvane::test {
namespace {

using testing::UnorderedElementsAre;

struct CsRetrieveWithdrawnOnAccountSet : testing::Test {
  AccountSet set;
  std::int32_t nextID = 1;

  void withdraw(std::int32_t type, std::int32_t year, std::int32_t period, const std::string& day,
                const std::string& group = "G1") {
    set.sql(
        "insert into t_CsRptContentDel (FRptID, FRptGroupNum, FRptGroupName, FCurrencyNum, FCompanyNum, FRptType, "
        "FYear, FPeriod, FDay, FRptContent) values (" +
        std::to_string(nextID++) + ",'" + group + "','n','RMB','001'," + std::to_string(type) + "," +
        std::to_string(year) + "," + std::to_string(period) + ",'" + day + "',0x3" + std::to_string(type) + ")");
  }
  Outcome fetch(std::int32_t year, std::int32_t period, std::int32_t type, const std::string& group = "G1") {
    return set.call("CsRetrieve.GetDeleteCsRpt", {{"sRptGroupNum", group},
                                                  {"lYear", year},
                                                  {"lPeriod", period},
                                                  {"dDay", dateOf(2012, 3, 15)},
                                                  {"sCurrencyNum", "RMB"},
                                                  {"sCompanyNum", "001"},
                                                  {"vPlx", "before"},
                                                  {"lRptType", type}});
  }
};

TEST_F(CsRetrieveWithdrawnOnAccountSet, AWithdrawnStatementIsFoundWithoutGroupAndCurrency) {
  withdraw(1, 2012, 3, "19000101");
  set.sql("delete from t_CsCurrency");
  EXPECT_EQ(fetch(2012, 3, 1).out.at("vPlx"), bytes("1"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, TypeZeroSearchesForTypeZeroAndNotForTypeOne) {
  withdraw(1, 2012, 3, "19000101");
  EXPECT_EQ(fetch(2012, 3, 0).result, Value(false));
  withdraw(0, 2012, 3, "19000101");
  EXPECT_EQ(fetch(2012, 3, 0).out.at("vPlx"), bytes("0"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, TypeFiveIsFoundByDayWhateverYearAndPeriodAreGiven) {
  withdraw(5, -100, -100, "20120315");
  EXPECT_EQ(fetch(2012, 3, 5).out.at("vPlx"), bytes("5"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, AStatementThatIsNotThereIsFalseAndKeepsTheDocument) {
  const auto outcome = fetch(2012, 3, 1);
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("vPlx"), Value("before"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, AFailureIsFalseAndKeepsTheDocument) {
  withdraw(1, 2012, 3, "19000101");
  const auto outcome = fetch(2012, 3, 1, "G'1");
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("vPlx"), Value("before"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, EveryGroupOfWithdrawnStatementsIsListedOnce) {
  withdraw(1, 2012, 1, "19000101", "G1");
  withdraw(1, 2012, 2, "19000101", "G1");
  withdraw(1, 2012, 1, "19000101", "G2");
  EXPECT_THAT(rowsOf(set.result("CsRetrieve.GetDelCsSample")), UnorderedElementsAre("G1|n|1|0", "G2|n|1|0"));
}

TEST_F(CsRetrieveWithdrawnOnAccountSet, TheListOfGroupsIsNothingOnFailure) {
  set.sql("drop table t_CsRptContentDel");
  EXPECT_TRUE(set.result("CsRetrieve.GetDelCsSample").isNothing());
}

}  // namespace
}  // namespace tolvane::test
