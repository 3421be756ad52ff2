// The exact statements, cursors and order of operations behind reading classification items and cash-flow items.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_info.h"
#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

const Value missing = missingArgument;

struct RptPropItemInfoConversation : testing::Test {
  RecordingPlatform platform;
  RptPropItemInfo service{platform};

  void found(const std::string& start) { platform.answer(start, {{"FItemID"}, {{std::int32_t{9}}}}); }
};

TEST_F(RptPropItemInfoConversation, ExistenceCheckRunsTheFrameOfAReadMethod) {
  platform.log.clear();
  service.ExistenceCheck("x", missing, missing, missing);
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection"));
}

TEST_F(RptPropItemInfoConversation, ExistenceCheckByIdentifierTakesPrecedence) {
  platform.answer("SELECT FPropItemID", {{"FPropItemID"}, {{std::int32_t{105}}}});
  EXPECT_EQ(service.ExistenceCheck("x", std::int32_t{105}, std::int32_t{1001}, "01"), 105);
  EXPECT_THAT(platform.work(),
              ElementsAre("Command 1 0 SELECT FPropItemID FROM t_Rpt_PropItem WHERE FPropItemID = 105"));
}

TEST_F(RptPropItemInfoConversation, ExistenceCheckByNumberHasNoBlankBeforeAnd) {
  EXPECT_EQ(service.ExistenceCheck("x", missing, "1001", std::int32_t{7}), 0);
  EXPECT_THAT(platform.work(), ElementsAre("Command 1 0 SELECT FPropItemID FROM t_Rpt_PropItem WHERE FPropClsID = "
                                           "1001And FNumber = ? [202 80 '7']"));
}

TEST_F(RptPropItemInfoConversation, ExistenceCheckWithHalfAQuestionSendsNothing) {
  EXPECT_EQ(service.ExistenceCheck("x", missing, std::int32_t{1001}, missing), 0);
  EXPECT_EQ(service.ExistenceCheck("x", missing, missing, "01"), 0);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemInfoConversation, GetDetailSelectsTheNameOfTheCallersLanguage) {
  platform.language = "en";
  found("select");
  EXPECT_NE(service.GetDetail("x", 105), nullptr);
  EXPECT_THAT(platform.work(), ElementsAre("LanguageCode",
                                           "Open 1 3 select FPropClsID,FPropItemID,FNumber,FName_en as FName from "
                                           "t_Rpt_PropItem where FPropItemID = 105",
                                           "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetDetailByNumberIgnoresTheStandardAndDoublesNothing) {
  found("select");
  EXPECT_NE(service.GetDetailByNumber("x", 1001, "0'1"), nullptr);
  EXPECT_THAT(platform.work(), ElementsAre("LanguageCode",
                                           "Open 1 3 select FPropClsID,FPropItemID,FNumber,FName as FName from "
                                           "t_Rpt_PropItem where FNumber ='0'1'",
                                           "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetListOrdersByNumberAndIgnoresStandardAndOptions) {
  service.GetList("x", 1001, 7, "", "");
  EXPECT_THAT(platform.work(), ElementsAre("LanguageCode",
                                           "Open 0 1 SELECT FPropItemID,FPropClsID, FNumber, FName as FName  FROM "
                                           "t_Rpt_PropItem WHERE FPropItemID <> 0 ORDER BY  FNumber ",
                                           "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetListTakesFilterAndSortAsTheyStand) {
  service.GetList("x", 0, 0, "FPropClsID=1001", "FName desc");
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 SELECT FPropItemID,FPropClsID, FNumber, FName as FName  FROM t_Rpt_PropItem WHERE "
                          "FPropItemID <> 0 AND (FPropClsID=1001) ORDER BY FName desc"));
}

TEST_F(RptPropItemInfoConversation, GetSubItemReopensTheSameSetOnTheChildren) {
  found("Select FItemID");
  EXPECT_NE(service.GetSubItem("x", "1", "经营"), nullptr);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Open 1 3 Select FItemID From t_Item where FDetail=0 and FNumber='1' and FName='经营'", "Close",
                  "Open 1 3 Select FNumber,FName,FLevel From t_Item where FParentID=9 Order by FNumber", "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetSubItemOfTwoItemsGivesTheItemsThemselves) {
  platform.answer("Select FItemID", {{"FItemID"}, {{std::int32_t{9}}, {std::int32_t{10}}}});
  EXPECT_EQ(service.GetSubItem("x", "1", "n")->recordCount(), 2);
  EXPECT_THAT(platform.work(), ElementsAre(_, "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetCashItemLeavesTheRootsOut) {
  service.GetCashItem("x");
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * from t_Item where FItemClassID=9 and FParentID>0", "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetCashSubItemHasTwoBlanksAndTakesAnyClass) {
  std::string filter;
  service.GetCashSubItem("x", filter);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 SELECT  * FROM t_Item", "Detach"));
}

TEST_F(RptPropItemInfoConversation, GetCashSubItemReturnsTheFilterUnchanged) {
  std::string filter = "FItemClassID=9";
  service.GetCashSubItem("x", filter);
  EXPECT_THAT(platform.statements(), ElementsAre("Open 1 3 SELECT  * FROM t_Item Where FItemClassID=9"));
  EXPECT_EQ(filter, "FItemClassID=9");
}

TEST_F(RptPropItemInfoConversation, GetCashDetailByNumberHasTwoBlanksBeforeTheNumber) {
  found("select * from t_Item");
  service.GetCashDetailByNumber("x", "CI1");
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 select * from t_Item where FItemClassID=9 and  FNumber = 'CI1'", "Detach"));
}

TEST_F(RptPropItemInfoConversation, UpdateHiddenItemWritesInAReadClass) {
  EXPECT_EQ(service.UpdateHiddenItem("x", 7, "1"), Value(true));
  EXPECT_THAT(platform.work(), ElementsAre("Execute  Update t_Rpt_Content set FVisibleInList = '1' Where FRptID =7"));
}

}  // namespace
}  // namespace tolvane::test
