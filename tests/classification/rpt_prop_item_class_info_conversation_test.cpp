// The exact statements, cursors and order of operations behind reading classification standards.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_class_info.h"
#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

const Value missing = missingArgument;

struct RptPropItemClassInfoConversation : testing::Test {
  RecordingPlatform platform;
  RptPropItemClassInfo service{platform};

  RptPropItemClassInfoConversation() { platform.userID = 17; }
  void found(const std::string& start) { platform.answer(start, {{"FPropClsID"}, {{std::int32_t{1001}}}}); }
  void itemIs(std::int32_t standard, const char* number, std::int32_t item) {
    platform.answer("Select a.FPropClsId", {{"FPropClsId", "FNumber", "FPropItemID"}, {{standard, number, item}}});
  }
};

TEST_F(RptPropItemClassInfoConversation, ExistenceCheckOfNothingRunsTheFrameAlone) {
  platform.log.clear();
  EXPECT_EQ(service.ExistenceCheck("x", missing, missing), 0);
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection"));
}

TEST_F(RptPropItemClassInfoConversation, ExistenceCheckUsesTheIdentifierAloneWhenBothAreGiven) {
  found("SELECT FPropClsID");
  EXPECT_EQ(service.ExistenceCheck("x", "1001", "77"), 1001);
  EXPECT_THAT(platform.work(),
              ElementsAre("Command 1 0 SELECT FPropClsID FROM t_Rpt_PropClass WHERE FPropClsID = 1001"));
}

TEST_F(RptPropItemClassInfoConversation, ExistenceCheckBindsTheNumber) {
  EXPECT_EQ(service.ExistenceCheck("x", missing, std::int32_t{1001}), 0);
  EXPECT_THAT(platform.work(),
              ElementsAre("Command 1 0 SELECT FPropClsID FROM t_Rpt_PropClass WHERE FNumber = ? [202 20 '1001']"));
}

TEST_F(RptPropItemClassInfoConversation, GetAllPropNameJoinsStandardsAndItems) {
  platform.language = "en";
  found("select '('");
  EXPECT_NE(service.GetAllPropName("x"), nullptr);
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode",
                          "Open 1 3 select '('+a.FName_en+')'+'-'+b.FName_en as FName,b.FPropItemID from "
                          "t_Rpt_PropClass a,t_Rpt_PropItem b Where a.FPropClsID=b.FPropClsID order by b.FPropItemID",
                          "Detach"));
}

TEST_F(RptPropItemClassInfoConversation, GetAllPropNameWithoutItemsIsNothing) {
  EXPECT_EQ(service.GetAllPropName("x"), nullptr);
}

TEST_F(RptPropItemClassInfoConversation, GetDetailSelectsTheNameOfTheCallersLanguage) {
  platform.language = "cht";
  found("select FPropClsID");
  service.GetDetail("x", -5);
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode",
                          "Open 1 3 select FPropClsID,FNumber,FName_cht as FName from t_Rpt_PropClass where "
                          "FPropClsID = -5",
                          "Detach"));
}

TEST_F(RptPropItemClassInfoConversation, GetDetailByNumberDoublesNothing) {
  found("select *");
  service.GetDetailByNumber("x", "1'2");
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 select * from t_Rpt_PropClass where FNumber = '1'2'", "Detach"));
}

TEST_F(RptPropItemClassInfoConversation, GetListOrdersByNumberWhateverTheOptions) {
  service.GetList("x", 99, "", "", 3);
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode", "CursorLocation 3",
                          "Open 0 1 SELECT FPropClsID, FNumber,FName as FName  FROM t_Rpt_PropClass WHERE FPropClsID "
                          "<> 0 ORDER BY  FNumber ",
                          "Detach"));
}

TEST_F(RptPropItemClassInfoConversation, GetListTakesFilterSortAndCursorLocationAsTheyCome) {
  service.GetList("x", 0, "FPropClsID>1", "FName", 2);
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode", "CursorLocation 2",
                          "Open 0 1 SELECT FPropClsID, FNumber,FName as FName  FROM t_Rpt_PropClass WHERE FPropClsID "
                          "<> 0 AND (FPropClsID>1) ORDER BY FName",
                          "Detach"));
}

TEST_F(RptPropItemClassInfoConversation, IsExistRptForPropClsHasTwoBlanksAfterWhere) {
  EXPECT_EQ(service.IsExistRptForPropCls("x", 1001), 0);
  EXPECT_THAT(platform.work(), ElementsAre("Execute SELECT FRptID FROM t_Rpt_Content WHERE  F1001 >0 "));
}

TEST_F(RptPropItemClassInfoConversation, IsExistRptForPropClsAnswersOneAndNotTrue) {
  platform.answer("SELECT FRptID", {{"FRptID"}, {{std::int32_t{7}}, {std::int32_t{8}}}});
  EXPECT_EQ(service.IsExistRptForPropCls("x", 1001), 1);
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropAsksForTheRightsBeforeItLooksAtTheName) {
  EXPECT_EQ(service.GetRptByProp("x", "no item"), nullptr);
  EXPECT_THAT(platform.work(),
              ElementsAre("CreateSecurity", "GetLoginInfo", "UserKey",
                          "AccessCheck 50 0 67108864 Tolvane.RptPropItemClassInfo", "CreateSecurity", "GetLoginInfo",
                          "UserKey", "AccessCheck 50 0 134217728 Tolvane.RptPropItemClassInfo", "CreateSecurity",
                          "GetLoginInfo", "UserKey", "IsAdministrator", "CurrentUserID"));
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropLooksTheItemUpByBothNames) {
  platform.language = "en";
  EXPECT_EQ(service.GetRptByProp("x", "(a-b)-c)-d"), nullptr);
  EXPECT_THAT(platform.statements(),
              ElementsAre("Execute Select a.FPropClsId,a.FNumber,b.FPropItemID From t_Rpt_PropClass a ,t_Rpt_PropItem "
                          "b Where a.FName_en='a-b' And b.FName_en='c)-d' And a.FPropClsID=b.FPropClsID"));
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropOfAUsersStandardAsksTheColumnOfItsNumber) {
  itemIs(1005, "1001", 126);
  platform.answer("Select FRptName As FRptName", {{"FRptName"}, {{"a"}}});
  EXPECT_NE(service.GetRptByProp("x", "(s)-i"), nullptr);
  EXPECT_THAT(platform.work().back(), "Detach");
  EXPECT_THAT(platform.statements(),
              ElementsAre(_,
                          "Execute Select FRptName As FRptName From t_Rpt_Content Where FRptType=3 And F1001=126 "
                          "UNION ALL Select FRptName As FRptName From t_Rpt_Content a Where a.FRptType=1  And "
                          "a.F1001=126"));
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropOfTheNatureStandardReadsTheOtherStandardsFirst) {
  itemIs(1, "1", 3);
  platform.answer("Select FNumber", {{"FNumber"}, {{"1001"}, {"1002"}}});
  EXPECT_EQ(service.GetRptByProp("x", "(s)-i"), nullptr);
  EXPECT_THAT(platform.statements(),
              ElementsAre(_, "Execute Select FNumber From t_Rpt_PropClass Where FPropClsID>1",
                          "Execute Select FRptName As FRptName From t_Rpt_Content a Where a.FRptType=3 And a.F1001=0 "
                          "And a.F1002=0"));
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropCountsASharedRightThatCannotBeToldAsNotHeld) {
  platform.fail("AccessCheck 50 0 67108864", AutomationError(RuntimeError::cannotCreateObject, "x"));
  itemIs(1005, "1005", 126);
  service.GetRptByProp("x", "(s)-i");
  EXPECT_THAT(
      platform.statements().back(),
      testing::StartsWith("Execute Select FRptName As FRptName From t_Rpt_Content Where FRptType=8  UNION ALL"));
}

TEST_F(RptPropItemClassInfoConversation, GetRptByPropFailsWhenTheOtherRightCannotBeTold) {
  platform.fail("AccessCheck 50 0 134217728", AutomationError(RuntimeError::cannotCreateObject, "x"));
  EXPECT_THROW((void)service.GetRptByProp("x", "(s)-i"), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

}  // namespace
}  // namespace tolvane::test
