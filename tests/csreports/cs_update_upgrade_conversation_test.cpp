// The exact statements, cursors and order of operations behind the conversion of the older layout.
#include <gmock/gmock.h>

#include "csreports/cs_update.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const AutomationError databaseError(oledb::errorsInCommand, "provider", "Incorrect syntax");
const std::string company = "Open 1 3 Select FValue From t_CsSysParam where FKey='CompanyNum'";
const std::string group = "Open 1 3 Select * from t_Rpt_CsRptGroup Where FRptGroupID=3";
const std::string mark = "Execute Update t_Rpt_CsRptGroup Set FCycleID=10000 Where FRptGroupID=3";

struct CsUpdateUpgrade : testing::Test {
  RecordingPlatform platform;
  CsUpdate service{platform};

  void thereIsAGroup(const std::string& name = "Old") {
    platform.answer("Select FValue", {{"FValue"}, {{"001"}}});
    platform.answer("Select * from t_Rpt_CsRptGroup", {{"FRptGroupID", "FRptGroupName"}, {{std::int32_t{3}, name}}});
  }
  void thereIsAStatement(std::int32_t year, const Value& day) {
    platform.answer("Select * from t_Rpt_CsRptContent",
                    {{"FYear", "FPeriod", "FDay", "FIsChecked", "FIsAccepted", "FRptContent"},
                     {{year, std::int32_t{2}, day, true, Null{}, bytes("abc")}}});
  }
  void thereIsAValue(const Value& year, const Value& day, const Value& amount, const Value& isNew) {
    platform.answer("Select FItemNum", {{"FItemNum"}, {{"I'1"}}});
    platform.answer("Select * From t_Rpt_CsRptItemData",
                    {{"FItemNum", "FYear", "FPeriod", "FDay", "FAmount", "FAccuAmount", "FIsNew"},
                     {{"I'1", year, std::int32_t{2}, day, amount, Null{}, isNew}}});
  }
  std::int32_t convert() { return service.UpGradeOneCsRpt("x", 3, 30, 2, "USD"); }
  std::string insertedValues() {
    for (const std::string& line : platform.log) {
      const auto values = line.find("VALUES ");
      if (values != std::string::npos) return line.substr(values);
    }
    return "none";
  }
};

TEST_F(CsUpdateUpgrade, AnOldGroupThatDoesNotExistIsAnsweredWithOneAndMarkedNowhere) {
  platform.log.clear();
  EXPECT_EQ(convert(), 1);
  EXPECT_THAT(platform.log, ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo",
                                        "GetConnection", company, "Close", group));
}

TEST_F(CsUpdateUpgrade, AGroupWithoutStatementsAndItemsIsOnlyMarked) {
  thereIsAGroup();
  EXPECT_EQ(convert(), 1);
  EXPECT_THAT(platform.work(), ElementsAre(company, "Close", group,
                                           "Open 1 3 Select * from t_Rpt_CsRptContent where FRptGroupName='Old'",
                                           "Open 1 3 Select FItemNum From t_Rpt_CsRptItem Where FRptGroupID=3", mark));
}

TEST_F(CsUpdateUpgrade, AStatementIsAddedFieldByFieldInOrder) {
  thereIsAGroup();
  thereIsAStatement(2011, dateOf(2011, 4, 5));
  EXPECT_EQ(convert(), 1);
  EXPECT_THAT(
      platform.work(),
      ElementsAre(company, "Close", group, "Open 1 3 Select * from t_Rpt_CsRptContent where FRptGroupName='Old'",
                  "Open 1 3 Select * from t_CsRptContent", "AddNew", "Set FRptGroupID=30", "Set frpttype=1",
                  "Set FCurrencyID=2", "Set FCompanyNum='001'", "Set FYear=2011", "Set FPeriod=2", "Set FDay=1900-1-1",
                  "Set FIsChecked=True", "Set FIsAccepted=Null", "Set FRptContent=bytes(3)", "Update",
                  "Open 1 3 Select FItemNum From t_Rpt_CsRptItem Where FRptGroupID=3", mark));
}

TEST_F(CsUpdateUpgrade, AStatementOfNoYearKeepsItsDay) {
  for (const std::int32_t year : {0, -1}) {
    thereIsAGroup();
    thereIsAStatement(year, dateOf(2011, 4, 5));
    EXPECT_EQ(convert(), 1);
    EXPECT_THAT(platform.work(), Contains("Set FDay=2011-4-5"));
  }
}

TEST_F(CsUpdateUpgrade, AnItemsValueIsOneStatementWithItsOwnExistenceTest) {
  thereIsAGroup();
  thereIsAValue(std::int32_t{2011}, dateOf(2011, 4, 5), parseDecimal("12.34").value(), true);
  EXPECT_EQ(convert(), 1);
  EXPECT_THAT(
      platform.work(),
      ElementsAre(company, "Close", group, "Open 1 3 Select * from t_Rpt_CsRptContent where FRptGroupName='Old'",
                  "Open 1 3 Select FItemNum From t_Rpt_CsRptItem Where FRptGroupID=3",
                  "Open 1 3 Select * From t_CsRptItemData",
                  "Open 1 3 Select * From t_Rpt_CsRptItemData Where FItemNum='I'1'",
                  "Execute  IF Not Exists(Select FCompanyNum From t_CsRptItemData Where FCompanyNum='001' And "
                  "FItemNum='I'1' And FCurrencyNum='USD' And FDataClass=0 And FYear=2011 And FPeriod=2 And "
                  "FDay='19000101') INSERT INTO t_CsRptItemData  VALUES "
                  "('001','I'1','USD',0,2011,2,'19000101',12.34,0,1)",
                  "Close", mark));
}

TEST_F(CsUpdateUpgrade, AValueOfNoYearKeepsItsDay) {
  thereIsAGroup();
  thereIsAValue(std::int32_t{0}, dateOf(2011, 4, 5), Null{}, false);
  EXPECT_EQ(convert(), 1);
  EXPECT_EQ(insertedValues(), "VALUES ('001','I'1','USD',0,0,2,'20110405',0,0,0)");
}

TEST_F(CsUpdateUpgrade, AmountsKeepAllTheirDigits) {
  const std::vector<std::pair<Value, std::string>> cases = {
      {Currency{-9223372036854775807}, "-922337203685477.5807"},
      {parseDecimal("1234567890123456.7891").value(), "1234567890123456.7891"},
      {0.1 + 0.2, "0.30000000000000004"},
      {0.1F, "0.1"},
      {std::int32_t{-5}, "-5"}};
  for (const auto& [amount, text] : cases) {
    platform.log.clear();
    thereIsAGroup();
    thereIsAValue(std::int32_t{2011}, Null{}, amount, Null{});
    EXPECT_EQ(convert(), 1);
    EXPECT_EQ(insertedValues(), "VALUES ('001','I'1','USD',0,2011,2,'19000101'," + text + ",0,0)");
  }
}

TEST_F(CsUpdateUpgrade, ANewFlagIsOneWhetherItComesAsABooleanOrANumber) {
  for (const Value& isNew : {Value(true), Value(std::int32_t{1}), Value(std::int16_t{-1})}) {
    platform.log.clear();
    thereIsAGroup();
    thereIsAValue(std::int32_t{2011}, Null{}, Null{}, isNew);
    EXPECT_EQ(convert(), 1);
    EXPECT_THAT(insertedValues(), HasSubstr(",0,0,1)"));
  }
}

TEST_F(CsUpdateUpgrade, WithoutACompanyNumberTheCompanyIsAnEmptyText) {
  platform.answer("Select * from t_Rpt_CsRptGroup", {{"FRptGroupName"}, {{"Old"}}});
  thereIsAStatement(2011, Null{});
  EXPECT_EQ(convert(), 1);
  EXPECT_THAT(platform.work(), Contains("Set FCompanyNum=''"));
}

TEST_F(CsUpdateUpgrade, AnyFailureAnswersZeroAndMarksNothing) {
  for (const char* step :
       {"OpenDataSource", "Open 1 3 Select FValue", "Open 1 3 Select * from t_Rpt_CsRptGroup",
        "Open 1 3 Select * from t_Rpt_CsRptContent", "Open 1 3 Select * from t_CsRptContent", "AddNew", "Set FDay",
        "Update", "Open 1 3 Select FItemNum", "Open 1 3 Select * From t_CsRptItemData",
        "Open 1 3 Select * From t_Rpt_CsRptItemData", "Execute  IF", "Execute Update"}) {
    RecordingPlatform fresh;
    CsUpdate update(fresh);
    fresh.answer("Select * from t_Rpt_CsRptGroup", {{"FRptGroupName"}, {{"Old"}}});
    fresh.answer("Select * from t_Rpt_CsRptContent",
                 {{"FYear", "FPeriod", "FDay", "FIsChecked", "FIsAccepted", "FRptContent"},
                  {{std::int32_t{1}, std::int32_t{1}, Null{}, Null{}, Null{}, Null{}}}});
    fresh.answer("Select FItemNum", {{"FItemNum"}, {{"I1"}}});
    fresh.answer("Select * From t_Rpt_CsRptItemData",
                 {{"FYear", "FPeriod", "FDay", "FAmount", "FAccuAmount", "FIsNew"},
                  {{std::int32_t{1}, std::int32_t{1}, Null{}, Null{}, Null{}, Null{}}}});
    fresh.fail(step, databaseError);
    EXPECT_EQ(update.UpGradeOneCsRpt("x", 3, 30, 2, "USD"), 0) << step;
    EXPECT_THAT(fresh.log.back(), StartsWith(step)) << "something was done after the failure";
  }
}

TEST_F(CsUpdateUpgrade, AValueOfNoYearWithoutADayIsAFailure) {
  thereIsAGroup();
  thereIsAValue(std::int32_t{0}, Null{}, Null{}, Null{});
  EXPECT_EQ(convert(), 0);
}

}  // namespace
}  // namespace tolvane::test
