// The exact statements, cursors and order of operations behind groups, currencies and settings.
#include <gmock/gmock.h>

#include <functional>

#include "csreports/cs_retrieve.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

const AutomationError databaseError(oledb::noTable, "provider", "Invalid object name");

struct CsRetrieveGroups : testing::Test {
  RecordingPlatform platform;
  CsRetrieve service{platform};
  ObjectRef list;
  std::string number = "USD";
  std::int32_t id = 2;
};

TEST_F(CsRetrieveGroups, GetRptGroupListAsksForUnconvertedGroupsForwardOnlyAndReadOnly) {
  platform.answer("Select", {{"FRptGroupID", "FRptGroupName"}, {{1, "a"}, {2, Null{}}}});
  EXPECT_EQ(service.GetRptGroupList("x", list), 1);
  EXPECT_THAT(platform.work(), ElementsAre("Open 0 1 Select *  From t_Rpt_CsRptGroup Where  FCycleID<>10000 Order By "
                                           "FRptGroupName"));
  EXPECT_THAT(rowsOf(list), ElementsAre("1|a", "2|NULL"));
}

TEST_F(CsRetrieveGroups, GetRptGroupListNewAsksForAllGroupsForwardOnlyAndReadOnly) {
  EXPECT_EQ(service.GetRptGroupListNew("x", list), 1);
  EXPECT_THAT(platform.work(), ElementsAre("Open 0 1 Select * From t_CsRptGroup Order By FRptGroupName"));
  EXPECT_THAT(rowsOf(list), ElementsAre());
}

TEST_F(CsRetrieveGroups, TheGroupListsRaiseWhatTheDatabaseRaises) {
  platform.fail("Open", databaseError);
  EXPECT_THROW(service.GetRptGroupList("x", list), AutomationError);
  platform.fail("Open", databaseError);
  EXPECT_THROW(service.GetRptGroupListNew("x", list), AutomationError);
}

TEST_F(CsRetrieveGroups, GetRptGroupIDExecutesAndReadsTheLiveTable) {
  platform.answer("Select", {{"FRptGroupID"}, {{std::int32_t{12}}}});
  EXPECT_EQ(service.GetRptGroupID("x", "G'1"), 12);
  EXPECT_THAT(platform.work(), ElementsAre("Execute Select FRptGroupID From t_CsRptGroup Where FRptGroupNum='G'1'"));
}

TEST_F(CsRetrieveGroups, GetCsRptGroupIDReadsAWithdrawnStatementsIdentifier) {
  platform.answer("Select", {{"FRptID"}, {{std::int32_t{12}}}});
  EXPECT_EQ(service.GetCsRptGroupID("x", "G1"), 12);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select FRptID From t_CsRptContentDel Where FRptGroupNum='G1'", "Close"));
}

TEST_F(CsRetrieveGroups, GetCsRptGroupNumReadsAWithdrawnStatementsGroupNumber) {
  platform.answer("Select", {{"FRptGroupNum"}, {{"G1"}}});
  EXPECT_EQ(service.GetCsRptGroupNum("x", -7), "G1");
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select FRptGroupNum From t_CsRptContentDel Where FRptID=-7", "Close"));
}

TEST_F(CsRetrieveGroups, GetCurrencyIDExecutesAndLeavesTheNumberAlone) {
  platform.answer("Select", {{"FCurrencyID"}, {{std::int32_t{2}}}});
  EXPECT_EQ(service.GetCurrencyID("x", number), 2);
  EXPECT_EQ(number, "USD");
  EXPECT_THAT(platform.work(), ElementsAre("Execute Select FCurrencyID From t_CsCurrency Where FNumber='USD'"));
}

TEST_F(CsRetrieveGroups, GetCurrencyNumExecutesAndLeavesTheIdentifierAlone) {
  platform.answer("Select", {{"FNumber"}, {{"USD"}}});
  EXPECT_EQ(service.GetCurrencyNum("x", id), "USD");
  EXPECT_EQ(id, 2);
  EXPECT_THAT(platform.work(), ElementsAre("Execute Select FNumber From t_CsCurrency Where FCurrencyID=2"));
}

TEST_F(CsRetrieveGroups, ReadProfileValueOpensAReadOnlyKeyset) {
  platform.answer("Select", {{"FValue"}, {{"on"}}});
  EXPECT_EQ(service.ReadProfileValue("x", "Mode"), "on");
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 1 Select FValue From t_CsSysParam Where FKey='Mode'", "Close"));
}

TEST_F(CsRetrieveGroups, GetCurCompanyNumReadsTheFirstRowForwardOnlyAndReadOnly) {
  platform.answer("Select", {{"FValue"}, {{"001"}}});
  EXPECT_EQ(service.GetCurCompanyNum("x"), "001");
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 0 1 Select FValue From t_CsSysParam where FKey='CompanyNum'", "Close"));
}

TEST_F(CsRetrieveGroups, GetCurCompanyNumWithoutTheKeyFailsInsideAndAnswersAnEmptyText) {
  EXPECT_EQ(service.GetCurCompanyNum("x"), "");
  EXPECT_THAT(platform.work(), ElementsAre("Open 0 1 Select FValue From t_CsSysParam where FKey='CompanyNum'"));
}

TEST_F(CsRetrieveGroups, EveryLookUpAnswersItsDefaultWithoutARowAndOnAnyFailure) {
  const std::vector<std::function<void()>> lookUps = {
      [&] { EXPECT_EQ(service.GetRptGroupID("x", "G"), 0); },
      [&] { EXPECT_EQ(service.GetCsRptGroupID("x", "G"), 0); },
      [&] { EXPECT_EQ(service.GetCsRptGroupNum("x", 1), ""); },
      [&] { EXPECT_EQ(service.GetCurrencyID("x", number), 0); },
      [&] { EXPECT_EQ(service.GetCurrencyNum("x", id), ""); },
      [&] { EXPECT_EQ(service.ReadProfileValue("x", "K"), ""); },
      [&] { EXPECT_EQ(service.GetCurCompanyNum("x"), ""); },
  };
  for (const auto& lookUp : lookUps) {
    lookUp();
    platform.fail("OpenDataSource", databaseError);
    lookUp();
    platform.log.clear();
    platform.fail("Execute", databaseError);
    platform.fail("Open ", databaseError);
    lookUp();
  }
}

TEST_F(CsRetrieveGroups, GetNewCurrencyInfoJoinsAllCurrencies) {
  platform.answer("Select", {{"FCurrencyID", "FNumber"}, {{std::int32_t{1}, "RMB"}, {std::int32_t{2}, "USD"}}});
  EXPECT_EQ(service.GetNewCurrencyInfo("x"), "1,RMB||2,USD");
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select DISTINCT FCurrencyID,FNumber From t_CsCurrency", "Close"));
}

TEST_F(CsRetrieveGroups, GetNewCurrencyInfoOfOneCurrencyHasNoSeparatorAndOfNoneIsEmpty) {
  platform.answer("Select", {{"FCurrencyID", "FNumber"}, {{std::int32_t{1}, "RMB"}}});
  EXPECT_EQ(service.GetNewCurrencyInfo("x"), "1,RMB");
  EXPECT_EQ(service.GetNewCurrencyInfo("x"), "");
}

TEST_F(CsRetrieveGroups, GetNewCurrencyInfoRaisesWhatTheDatabaseRaises) {
  platform.fail("Open ", databaseError);
  EXPECT_THROW(service.GetNewCurrencyInfo("x"), AutomationError);
}

TEST_F(CsRetrieveGroups, IsNeedUpGradeAsksForTheOldTableInOneBatch) {
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{1}}}});
  EXPECT_EQ(service.IsNeedUpGrade("x"), 1);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 If Exists (select * from sysobjects where name = 't_Rpt_CsRptGroup' )"
                          "Select 1 as Result  Else Select 0 as Result ",
                          "Close"));
}

TEST_F(CsRetrieveGroups, IsNeedUpGradeAnswersZeroForAnythingButOne) {
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{0}}}});
  EXPECT_EQ(service.IsNeedUpGrade("x"), 0);
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{2}}}});
  EXPECT_EQ(service.IsNeedUpGrade("x"), 0);
}

TEST_F(CsRetrieveGroups, IsNeedUpGradeRaisesWhatTheDatabaseRaises) {
  platform.fail("Open ", databaseError);
  EXPECT_THROW(service.IsNeedUpGrade("x"), AutomationError);
}

}  // namespace
}  // namespace tolvane::test
