// Reading statements, on a real account set.
#include <gmock/gmock.h>

#include "csreports/statements.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CsRetrieveStatementsOnAccountSet : testing::Test {
  AccountSet set;

  CsRetrieveStatementsOnAccountSet() { addGroups(set); }

  void add(std::int32_t group, std::int32_t type, std::int32_t year, std::int32_t period, const std::string& day,
           const std::string& content = "0x41") {
    set.sql(
        "insert into t_CsRptContent (FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, FDay, "
        "FRptContent) values (" +
        std::to_string(group) + "," + std::to_string(type) + ",1,'001'," + std::to_string(year) + "," +
        std::to_string(period) + ",'" + day + "'," + content + ")");
  }
  Outcome fetch(const StatementName& name, std::int32_t type = 1) {
    return set.call("CsRetrieve.GetCsData", name.with("lRptType", type));
  }
  std::vector<std::string> groupsAt(std::int32_t year, std::int32_t month, Date day) {
    const auto outcome =
        set.call("CsRetrieve.GetExistRpt",
                 {{"lYear", year}, {"lMonth", month}, {"dDay", day}, {"lCurrencyID", std::int32_t{1}}});
    EXPECT_EQ(outcome.result, Value(true));
    return column(outcome.out.at("oExistRptList"), "FRptGroupNum");
  }
  Outcome status(const std::string& filter, const std::string& field = "FIsChecked") {
    return set.call("CsRetrieve.CsDataStatusInfo",
                    {{"sFilterStr", filter}, {"sFieldName", field}, {"vValue", "before"}});
  }
};

TEST_F(CsRetrieveStatementsOnAccountSet, ADocumentComesBackByteForByte) {
  add(3, 1, 2012, 1, "20120315", "0x00FF4100");
  const auto outcome = fetch({});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("vPlx"), bytes(std::string_view("\x00\xFF\x41\x00", 4)));
}

TEST_F(CsRetrieveStatementsOnAccountSet, AMissingStatementLeavesTheDocumentAsItCame) {
  const auto outcome = set.call("CsRetrieve.GetCsData", StatementName{}.with("vPlx", "before"));
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("vPlx"), Value("before"));
}

TEST_F(CsRetrieveStatementsOnAccountSet, TheTypeIsOneWhenItIsNotGiven) {
  add(3, 5, 2012, 1, "20120315");
  EXPECT_EQ(set.result("CsRetrieve.GetCsData", StatementName{}.arguments()), Value(false));
  add(3, 1, 2012, 1, "20120315");
  EXPECT_EQ(set.result("CsRetrieve.GetCsData", StatementName{}.arguments()), Value(true));
}

TEST_F(CsRetrieveStatementsOnAccountSet, TypeFiveIsFoundByDayWhateverYearAndPeriodAreGiven) {
  add(3, 5, -100, -100, "20120215", "0x35");
  EXPECT_EQ(fetch({.day = dateOf(2012, 2, 15)}, 5).out.at("vPlx"), bytes("5"));
  EXPECT_EQ(fetch({.year = -1, .period = -1, .day = dateOf(2012, 2, 15)}, 5).result, Value(true));
  EXPECT_EQ(fetch({.day = dateOf(2012, 2, 16)}, 5).result, Value(false));
}

TEST_F(CsRetrieveStatementsOnAccountSet, TypeZeroMeansTypeOne) {
  add(3, 0, 2012, 1, "20120315", "0x30");
  add(3, 1, 2012, 1, "20120315", "0x31");
  EXPECT_EQ(fetch({}, 0).out.at("vPlx"), bytes("1"));
}

TEST_F(CsRetrieveStatementsOnAccountSet, ANegativePeriodWithAYearIsStillFoundByYearAndPeriod) {
  add(3, 1, 2012, -1, "20110101");
  EXPECT_EQ(fetch({.period = -1}).result, Value(true));
  EXPECT_EQ(fetch({.period = -2}).result, Value(false));
}

TEST_F(CsRetrieveStatementsOnAccountSet, ADayStatementIsFoundByItsDayAlone) {
  add(1, 1, -1, -1, "20120315");
  EXPECT_EQ(fetch({.group = 1, .year = -7, .period = -9}).result, Value(true));
  EXPECT_EQ(fetch({.group = 1, .year = -1, .period = -1, .day = dateOf(2012, 3, 14)}).result, Value(false));
}

TEST_F(CsRetrieveStatementsOnAccountSet, ACompanysNumberWithAnApostropheIsTheDatabasesError) {
  StatementName name;
  name.company = "O'Brien";
  EXPECT_EQ(set.error("CsRetrieve.GetCsData", name.arguments()).number(), oledb::errorsInCommand);
}

TEST_F(CsRetrieveStatementsOnAccountSet, TheSameDayIsReadInEveryLanguage) {
  add(1, 1, -1, -1, "20120304");
  for (const char* language : {"chs", "cht", "en"}) {
    EXPECT_EQ(set.in(language).result(
                  "CsRetrieve.GetCsData",
                  StatementName{.group = 1, .year = -1, .period = -1, .day = dateOf(2012, 3, 4)}.arguments()),
              Value(true));
  }
}

TEST_F(CsRetrieveStatementsOnAccountSet, AQuarterlyGroupInMarchHasPeriodOneAndTheFebruaryDayButNotTheAprilDay) {
  add(3, 1, 2012, 1, "19000101");
  add(3, 5, -100, -100, "20120215");
  add(3, 5, -100, -100, "20120415");
  EXPECT_THAT(groupsAt(2012, 3, dateOf(2012, 3, 10)), ElementsAre("G03", "G03"));
  EXPECT_THAT(groupsAt(2012, 4, dateOf(2012, 4, 10)), ElementsAre("G03"));
}

TEST_F(CsRetrieveStatementsOnAccountSet, ADailyGroupIsNeverFoundThroughAPeriod) {
  for (std::int32_t period = -1; period <= 13; ++period) add(1, 1, 2012, period, "20000101");
  for (std::int32_t month = 0; month <= 13; ++month) {
    EXPECT_THAT(groupsAt(2012, month, dateOf(2012, 1, 1)), IsEmpty());
  }
}

TEST_F(CsRetrieveStatementsOnAccountSet, GetExistRptGivesTheGroupsColumnsAndTheTypeOrderedByNumber) {
  add(5, 1, 2012, 1, "19000101");
  add(2, 1, 2012, 3, "19000101");
  const auto outcome = set.call("CsRetrieve.GetExistRpt", {{"lYear", std::int32_t{2012}},
                                                           {"lMonth", std::int32_t{3}},
                                                           {"dDay", dateOf(2012, 3, 1)},
                                                           {"lCurrencyID", std::int32_t{1}}});
  EXPECT_THAT(rowsOf(outcome.out.at("oExistRptList")), ElementsAre("2|G01|月报|1|0|1", "5|G12|年报|12|0|1"));
}

TEST_F(CsRetrieveStatementsOnAccountSet, GetExistRptAnswersFalseWhenTheDatabaseFailsAndKeepsTheList) {
  set.sql("drop table t_CsRptGroup");
  const Value before = list({bag({{"a", "b"}})});
  const auto outcome = set.call("CsRetrieve.GetExistRpt", {{"lYear", std::int32_t{2012}},
                                                           {"lMonth", std::int32_t{3}},
                                                           {"dDay", dateOf(2012, 3, 1)},
                                                           {"lCurrencyID", std::int32_t{1}},
                                                           {"oExistRptList", before}});
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("oExistRptList"), before);
}

TEST_F(CsRetrieveStatementsOnAccountSet, IsExistsGivesTheIdentifierOrZero) {
  add(3, 1, 2012, 1, "19000101");
  const Value id = set.value("select FRptID from t_CsRptContent");
  EXPECT_EQ(set.result("CsRetrieve.IsExists", {{"vFilter", "FYear=2012 and FCompanyNum='001'"}}), id);
  EXPECT_EQ(set.result("CsRetrieve.IsExists", {{"vFilter", "FYear=2013"}}), Value(std::int32_t{0}));
}

TEST_F(CsRetrieveStatementsOnAccountSet, IsExistsOfAnEmptyConditionIsZeroThoughThereAreStatements) {
  add(3, 1, 2012, 1, "19000101");
  EXPECT_EQ(set.result("CsRetrieve.IsExists", {{"vFilter", ""}}), Value(std::int32_t{0}));
}

TEST_F(CsRetrieveStatementsOnAccountSet, IsExistsOfWhatIsNoConditionIsZero) {
  add(3, 1, 2012, 1, "19000101");
  for (const char* filter : {"no sql at all", "FNoSuchColumn=1", "FYear=", "'", "FCompanyNum='O'Brien'", "FYear='x'"}) {
    EXPECT_EQ(set.result("CsRetrieve.IsExists", {{"vFilter", filter}}), Value(std::int32_t{0})) << filter;
  }
}

TEST_F(CsRetrieveStatementsOnAccountSet, TheStatusIsOneWhenSetThreeWhenNotOrNullTwoWithoutAStatement) {
  add(3, 1, 2012, 1, "19000101");
  const auto statusAfter = [&](const std::string& value) {
    set.sql("update t_CsRptContent set FIsChecked=" + value);
    return status("FYear=2012").out.at("vValue");
  };
  EXPECT_EQ(statusAfter("1"), Value(std::int16_t{1}));
  EXPECT_EQ(statusAfter("0"), Value(std::int16_t{3}));
  EXPECT_EQ(statusAfter("null"), Value(std::int16_t{3}));
  EXPECT_EQ(status("FYear=2013").out.at("vValue"), Value(std::int16_t{2}));
}

TEST_F(CsRetrieveStatementsOnAccountSet, TheStatusOfAnyNumberFieldIsWhetherItIsZero) {
  add(3, 1, 2012, 0, "19000101");
  EXPECT_EQ(status("1=1", "FYear").out.at("vValue"), Value(std::int16_t{1}));
  EXPECT_EQ(status("1=1", "FPeriod").out.at("vValue"), Value(std::int16_t{3}));
}

TEST_F(CsRetrieveStatementsOnAccountSet, AStatusThatCannotBeAskedForIsFalseAndKeepsTheValue) {
  add(3, 1, 2012, 1, "19000101");
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"no sql", "FIsChecked"}, {"1=1", "FNoSuchField"}, {"1=1", "no sql;"}, {"", "FIsChecked"}, {"'", "FIsChecked"}};
  for (const auto& [filter, field] : cases) {
    const auto outcome = status(filter, field);
    EXPECT_EQ(outcome.result, Value(false)) << filter << " " << field;
    EXPECT_EQ(outcome.out.at("vValue"), Value("before")) << filter << " " << field;
  }
}

}  // namespace
}  // namespace tolvane::test
