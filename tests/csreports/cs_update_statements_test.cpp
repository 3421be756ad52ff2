// Saving and deleting statements, on a real account set.
#include <gmock/gmock.h>

#include "csreports/statements.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string allStatements =
    "select FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, convert(varchar(8), FDay, 112), "
    "FRptContent "
    "from t_CsRptContent order by FRptID";

struct CsUpdateStatementsOnAccountSet : testing::Test {
  AccountSet set;

  void save(const StatementName& name, const std::string& document = "doc") {
    EXPECT_EQ(set.result("CsUpdate.SaveCsData", name.with("varRptContent", bytes(document))), Value(true));
  }
  Value fetch(const StatementName& name) { return set.call("CsRetrieve.GetCsData", name.arguments()).out.at("vPlx"); }
  Value remove(const StatementName& name) {
    return set.result("CsUpdate.DelOneCsRpt", name.arguments("lngCurrencyID"));
  }
  Value mark(const std::string& filter, const std::string& field, const Value& value) {
    return set.result("CsUpdate.CsDataStatusUpdate",
                      {{"sFilterStr", filter}, {"sFieldName", field}, {"varValue", value}});
  }
};

TEST_F(CsUpdateStatementsOnAccountSet, ANewStatementIsOneRowOfTypeOne) {
  save({});
  EXPECT_THAT(set.rows(allStatements), ElementsAre("3|1|1|001|2012|1|20120315|<3 bytes>"));
}

TEST_F(CsUpdateStatementsOnAccountSet, SavingTwiceLeavesOneRowWithTheSecondDocument) {
  save({}, "first");
  save({}, "second one");
  EXPECT_EQ(fetch({}), bytes("second one"));
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{1}));
}

TEST_F(CsUpdateStatementsOnAccountSet, ADayStatementAndAPeriodStatementNeverOverwriteEachOther) {
  const StatementName ofDay{.year = -1, .period = -1};
  save(ofDay, "day");
  save({}, "period");
  save(ofDay, "day again");
  EXPECT_EQ(fetch(ofDay), bytes("day again"));
  EXPECT_EQ(fetch({}), bytes("period"));
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{2}));
}

TEST_F(CsUpdateStatementsOnAccountSet, ASecondSaveKeepsTheDayOfThePeriodStatementThatIsThere) {
  save({.day = dateOf(2012, 3, 15)});
  save({.day = dateOf(2012, 3, 31)}, "later");
  EXPECT_THAT(set.rows(allStatements), ElementsAre("3|1|1|001|2012|1|20120315|<5 bytes>"));
}

TEST_F(CsUpdateStatementsOnAccountSet, StatusMarksSurviveASecondSave) {
  save({});
  EXPECT_EQ(mark("FYear=2012", "FIsAccepted", true), Value(true));
  save({}, "later");
  EXPECT_THAT(set.rows("select FIsChecked, FIsAccepted from t_CsRptContent"), ElementsAre("NULL|True"));
}

TEST_F(CsUpdateStatementsOnAccountSet, ADocumentOfNoBytesIsStoredAsSuch) {
  save({}, "");
  EXPECT_EQ(fetch({}), bytes(""));
}

TEST_F(CsUpdateStatementsOnAccountSet, ALargeDocumentComesBackByteForByte) {
  std::string large(300000, 'x');
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * 31 % 251);
  save({}, large);
  EXPECT_EQ(fetch({}), bytes(large));
}

TEST_F(CsUpdateStatementsOnAccountSet, DaysAtBothEndsOfTheServersRangeAreSavedAndFound) {
  for (const Date day : {dateOf(1753, 1, 1), dateOf(9999, 12, 31)}) {
    const StatementName name{.year = -1, .period = -1, .day = day};
    save(name, isoText(day));
    EXPECT_EQ(fetch(name), bytes(isoText(day)));
  }
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{2}));
}

TEST_F(CsUpdateStatementsOnAccountSet, ADayBeforeTheServersRangeIsTheDatabasesErrorAndLeavesNothing) {
  const Named arguments = StatementName{.day = dateOf(100, 1, 1)}.with("varRptContent", bytes("doc"));
  (void)set.error("CsUpdate.SaveCsData", arguments);
  EXPECT_THAT(set.rows(allStatements), IsEmpty());
}

TEST_F(CsUpdateStatementsOnAccountSet, ACompanysNumberWithAnApostropheIsTheDatabasesErrorAndLeavesNothing) {
  StatementName name;
  name.company = "O'Brien";
  const auto error = set.error("CsUpdate.SaveCsData", name.with("varRptContent", bytes("doc")));
  EXPECT_EQ(error.number(), oledb::errorsInCommand);
  EXPECT_THAT(set.rows(allStatements), IsEmpty());
}

TEST_F(CsUpdateStatementsOnAccountSet, ASampleIsStoredOnceForEachGroup) {
  const auto saveSample = [&](std::int32_t group, const std::string& document) {
    return set.result("CsUpdate.SaveCsSample", {{"lRptGroupID", group}, {"varRptContent", bytes(document)}});
  };
  EXPECT_EQ(saveSample(3, "first"), Value(true));
  EXPECT_EQ(saveSample(3, "second one"), Value(true));
  EXPECT_EQ(saveSample(4, ""), Value(true));
  EXPECT_THAT(set.rows("select FRptGroupID, FRptType, FRptContent from t_CsRptSample order by 1"),
              ElementsAre("3|1|<10 bytes>", "4|1|<0 bytes>"));
}

TEST_F(CsUpdateStatementsOnAccountSet, ADeletedStatementIsGoneAndCopiedNowhere) {
  save({});
  save({.period = 2});
  EXPECT_EQ(remove({}), Value(true));
  EXPECT_THAT(set.rows("select FPeriod from t_CsRptContent"), ElementsAre("2"));
  EXPECT_THAT(set.rows("select FRptID from t_CsRptContentDel"), IsEmpty());
}

TEST_F(CsUpdateStatementsOnAccountSet, DeletingAStatementThatIsNotThereIsTrue) {
  EXPECT_EQ(remove({}), Value(true));
}

TEST_F(CsUpdateStatementsOnAccountSet, AStatementOfTypeFiveIsNeitherReplacedNorDeleted) {
  set.sql(
      "insert into t_CsRptContent (FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, FDay) values "
      "(3, 5, 1, '001', -100, -100, '20120315')");
  const StatementName name{.year = -100, .period = -100};
  save(name);
  EXPECT_EQ(remove(name), Value(true));
  EXPECT_THAT(set.rows("select FRptType from t_CsRptContent"), ElementsAre("5"));
}

TEST_F(CsUpdateStatementsOnAccountSet, AFailedDeleteIsFalse) {
  save({});
  StatementName name;
  name.company = "0'01";
  EXPECT_EQ(remove(name), Value(false));
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{1}));
}

TEST_F(CsUpdateStatementsOnAccountSet, AStatusIsSetOnTheFirstOfThreeStatementsOnly) {
  for (std::int32_t period = 1; period <= 3; ++period) save({.period = period});
  EXPECT_EQ(mark("FYear=2012", "FIsChecked", true), Value(true));
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent where FIsChecked=1"), Value(std::int32_t{1}));
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent where FIsChecked is null"), Value(std::int32_t{2}));
}

TEST_F(CsUpdateStatementsOnAccountSet, SettingAStatusOfNoStatementIsTrue) {
  EXPECT_EQ(mark("FYear=2012", "FIsChecked", true), Value(true));
}

TEST_F(CsUpdateStatementsOnAccountSet, AStatusThatCannotBeSetIsFalseAndChangesNothing) {
  save({});
  EXPECT_EQ(mark("no sql", "FIsChecked", true), Value(false));
  EXPECT_EQ(mark("", "FIsChecked", true), Value(false));
  EXPECT_EQ(mark("1=1", "FNoSuchField", true), Value(false));
  EXPECT_EQ(mark("1=1", "FIsChecked; drop table t_CsRptContent --", true), Value(false));
  EXPECT_EQ(mark("1=1", "FYear", "word"), Value(false));
  EXPECT_THAT(set.rows("select FYear, FIsChecked from t_CsRptContent"), ElementsAre("2012|NULL"));
}

}  // namespace
}  // namespace tolvane::test
