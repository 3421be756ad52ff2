// Print schemes from the first row to the last, on a real account set.
#include <gmock/gmock.h>

#include "support/account_set.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct RptBatchPrnOnAccountSet : testing::Test {
  AccountSet set;

  static Value report(std::int32_t id, const std::string& name) { return bag({{"lRptID", id}, {"sRptName", name}}); }
  void add(const std::string& name, const std::vector<Value>& reports) {
    EXPECT_EQ(set.result("RptBatchPrnUpdate.Add", {{"sSchemeName", name}, {"sAuthor", "Li"}, {"vect", list(reports)}}),
              Value(true));
  }
  AutomationError addError(const std::string& name, const Value& reports) {
    return set.error("RptBatchPrnUpdate.Add", {{"sSchemeName", name}, {"sAuthor", "Li"}, {"vect", reports}});
  }
  std::vector<std::string> schemes() { return rowsOf(set.result("RptBatchPrnInfo.GetList")); }
  std::vector<std::string> detail(std::int32_t id) {
    return rowsOf(set.result("RptBatchPrnInfo.GetDetail", {{"FID", id}}));
  }
  Value exists(const std::string& name) { return set.result("RptBatchPrnInfo.IsExists", {{"sSchemeName", name}}); }
};

TEST_F(RptBatchPrnOnAccountSet, ASchemeIsAddedWithItsReportsInOrder) {
  add("Month", {report(7, "Cash"), report(5, "Balance")});
  EXPECT_THAT(schemes(), ElementsAre("1|Month|Li"));
  EXPECT_THAT(detail(1), ElementsAre("1|Month|Li|1|7|Cash", "1|Month|Li|1|5|Balance"));
}

TEST_F(RptBatchPrnOnAccountSet, TheRecordSetsCarryTheTablesColumns) {
  add("Month", {report(7, "Cash")});
  const auto rows = set.result("RptBatchPrnInfo.GetDetail", {{"FID", std::int32_t{1}}}).objectAs<Recordset>();
  std::vector<std::string> names;
  for (const FieldInfo& field : rows->fields()) names.push_back(field.name);
  EXPECT_THAT(names, ElementsAre("FSchemeID", "FSchemeName", "FAuthor", "FSchemeID", "FRptID", "FRptName"));
}

TEST_F(RptBatchPrnOnAccountSet, AnAccountSetBeginsWithoutSchemes) {
  EXPECT_THAT(schemes(), IsEmpty());
  EXPECT_THAT(detail(1), IsEmpty());
}

TEST_F(RptBatchPrnOnAccountSet, IsExistsComparesAsTheDatabaseDoes) {
  add("Month", {report(7, "Cash")});
  EXPECT_EQ(exists("Month"), Value(true));
  EXPECT_EQ(exists("MONTH  "), Value(true));
  EXPECT_EQ(exists("Year"), Value(false));
  EXPECT_EQ(exists(""), Value(false));
}

TEST_F(RptBatchPrnOnAccountSet, TheSecondSchemeOfANameGivesItsReportsToTheFirst) {
  add("Month", {report(7, "Cash")});
  add("Month", {report(5, "Balance")});
  EXPECT_THAT(schemes(), ElementsAre("1|Month|Li", "2|Month|Li"));
  EXPECT_THAT(detail(1), ElementsAre("1|Month|Li|1|7|Cash", "1|Month|Li|1|5|Balance"));
  EXPECT_THAT(detail(2), IsEmpty());
}

TEST_F(RptBatchPrnOnAccountSet, ModifyReplacesNameAndReportsAndKeepsTheAuthor) {
  add("Month", {report(7, "Cash"), report(5, "Balance")});
  EXPECT_EQ(
      set.result("RptBatchPrnUpdate.Modify", {{"lSchemeID", std::int32_t{1}},
                                              {"sSchemeName", "Quarter"},
                                              {"vect", list({report(9, "Tax"), report(8, "Bank"), report(9, "Tax")})}}),
      Value(true));
  EXPECT_THAT(detail(1), ElementsAre("1|Quarter|Li|1|9|Tax", "1|Quarter|Li|1|8|Bank", "1|Quarter|Li|1|9|Tax"));
}

TEST_F(RptBatchPrnOnAccountSet, ModifyOfNoSchemeStoresTheReportsAllTheSame) {
  set.call("RptBatchPrnUpdate.Modify",
           {{"lSchemeID", std::int32_t{77}}, {"sSchemeName", "x"}, {"vect", list({report(9, "Tax")})}});
  EXPECT_THAT(schemes(), IsEmpty());
  EXPECT_THAT(set.rows("Select * From t_Rpt_PrintSchemeDetail"), ElementsAre("77|9|Tax"));
}

TEST_F(RptBatchPrnOnAccountSet, DeleteLeavesTheReportsRowsBehind) {
  add("Month", {report(7, "Cash")});
  EXPECT_EQ(set.result("RptBatchPrnUpdate.Delete", {{"lngSchemeID", std::int32_t{1}}}), Value(true));
  EXPECT_THAT(detail(1), IsEmpty());
  EXPECT_THAT(set.rows("Select * From t_Rpt_PrintSchemeDetail"), ElementsAre("1|7|Cash"));
}

TEST_F(RptBatchPrnOnAccountSet, DeleteOfNoSchemeIsTrue) {
  EXPECT_EQ(set.result("RptBatchPrnUpdate.Delete", {{"lngSchemeID", std::int32_t{77}}}), Value(true));
}

TEST_F(RptBatchPrnOnAccountSet, AddOfNoReportsIsRefusedByTheDataAccessAndTakenBack) {
  EXPECT_EQ(addError("Month", list({})).number(), oledb::noCommand);
  EXPECT_THAT(schemes(), IsEmpty());
}

TEST_F(RptBatchPrnOnAccountSet, ModifyToNoReportsIsRefusedAndTakenBack) {
  add("Month", {report(7, "Cash")});
  EXPECT_EQ(set.error("RptBatchPrnUpdate.Modify",
                      {{"lSchemeID", std::int32_t{1}}, {"sSchemeName", "Quarter"}, {"vect", list({})}})
                .number(),
            oledb::noCommand);
  EXPECT_THAT(detail(1), ElementsAre("1|Month|Li|1|7|Cash"));
}

TEST_F(RptBatchPrnOnAccountSet, AnApostropheIsTheDatabasesErrorAndNothingIsLeft) {
  EXPECT_EQ(addError("O'Brien", list({report(7, "Cash")})).number(), oledb::errorsInCommand);
  EXPECT_EQ(addError("Month", list({report(7, "O'Brien")})).number(), oledb::errorsInCommand);
  EXPECT_EQ(set.error("RptBatchPrnInfo.IsExists", {{"sSchemeName", "O'Brien"}}).number(), oledb::errorsInCommand);
  EXPECT_THAT(schemes(), IsEmpty());
}

TEST_F(RptBatchPrnOnAccountSet, ElementsThatAreNoReportsAreRefusedAndNothingIsLeft) {
  EXPECT_EQ(addError("Month", list({report(7, "Cash"), Value("text")})).number(),
            errorNumber(RuntimeError::objectRequired));
  EXPECT_EQ(addError("Month", list({bag({{"lRptID", "seven"}, {"sRptName", "x"}})})).number(),
            errorNumber(RuntimeError::typeMismatch));
  EXPECT_EQ(addError("Month", Value(ObjectRef())).number(), errorNumber(RuntimeError::objectNotSet));
  EXPECT_THAT(schemes(), IsEmpty());
}

TEST_F(RptBatchPrnOnAccountSet, ASchemeMayHoldAHundredThousandReports) {
  std::vector<Value> reports;
  for (std::int32_t i = 1; i <= 100000; ++i) reports.push_back(report(i, "报表"));
  add("Everything", reports);
  EXPECT_EQ(set.value("Select Count(*) From t_Rpt_PrintSchemeDetail Where FSchemeID=1"), Value(std::int32_t{100000}));
  EXPECT_EQ(set.value("Select Max(FRptID) From t_Rpt_PrintSchemeDetail"), Value(std::int32_t{100000}));
}

TEST_F(RptBatchPrnOnAccountSet, TransModesAreThreeAndTwo) {
  EXPECT_EQ(set.result("RptBatchPrnInfo.TransMode"), Value(std::int32_t{3}));
  EXPECT_EQ(set.result("RptBatchPrnUpdate.TransMode"), Value(std::int32_t{2}));
}

}  // namespace
}  // namespace tolvane::test
