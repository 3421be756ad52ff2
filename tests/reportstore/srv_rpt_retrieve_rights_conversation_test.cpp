// The exact statements and cursors behind reading rights and views.
#include <gmock/gmock.h>

#include "reportstore/srv_rpt_retrieve.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct SrvRptRetrieveRights : testing::Test {
  RecordingPlatform platform;
  SrvRptRetrieve service{platform};

  SrvRptRetrieveRights() { platform.userID = 17; }
  void viewIs(const Value& code) { platform.answer("Select", {{"FUserID", "FViewCode"}, {{std::int32_t{17}, code}}}); }
};

TEST_F(SrvRptRetrieveRights, GetRptRightAsksForTheCallersRowAlone) {
  std::int32_t code = 9;
  EXPECT_FALSE(service.GetRptRight("x", 7, code));
  EXPECT_EQ(code, 9);
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID",
                          "Open 1 3 Select FRightCode From T_Rpt_Right Where FUserID=17 and FRptID = 7", "Close"));
}

TEST_F(SrvRptRetrieveRights, GetRptAuthorizeHasTwoBlanksAndAnswersAtOnceWithoutRows) {
  Int32Array users{5, {1, 2}, true};
  Int32Array codes;
  EXPECT_FALSE(service.GetRptAuthorize("x", 7, users, codes));
  EXPECT_THAT(users.elements, ElementsAre(1, 2));
  EXPECT_EQ(users.lower, 5);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select FUserID, FRightCode From T_Rpt_Right Where  FRptID =7"));
}

TEST_F(SrvRptRetrieveRights, GetRptAuthorizeRedimensionsBothArraysFromOne) {
  platform.answer(
      "Select", {{"FUserID", "FRightCode"}, {{std::int32_t{20}, std::int32_t{4}}, {std::int32_t{3}, std::int32_t{1}}}});
  Int32Array users{5, {1, 2, 3}, true};
  Int32Array codes;
  EXPECT_TRUE(service.GetRptAuthorize("x", 7, users, codes));
  EXPECT_EQ(users.lower, 1);
  EXPECT_EQ(codes.lower, 1);
  EXPECT_THAT(users.elements, ElementsAre(20, 3));
  EXPECT_THAT(codes.elements, ElementsAre(4, 1));
}

TEST_F(SrvRptRetrieveRights, GetViewCodeWithoutARowIsTheOldDefault) {
  std::string order = "before";
  EXPECT_TRUE(service.GetViewCode("x", order));
  EXPECT_EQ(order, "0001");
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID", "Open 1 3 Select FViewCode From T_Rpt_View Where FUserID=17", "Close"));
}

TEST_F(SrvRptRetrieveRights, GetViewCodeGivesTheTextAsItIsStored) {
  viewIs("abc\\1001");
  std::string order;
  EXPECT_TRUE(service.GetViewCode("x", order));
  EXPECT_EQ(order, "abc\\1001");
}

TEST_F(SrvRptRetrieveRights, GetUserRptViewWithoutARowIsTheNewDefault) {
  EXPECT_EQ(service.GetUserRptView("x"), "1\\1001");
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID", "Open 1 3 Select * From t_Rpt_View Where FUserID=17", "Close"));
}

TEST_F(SrvRptRetrieveRights, GetUserRptViewKeepsATextThatBeginsWithANumber) {
  for (const char* view : {"2\\1001", "2", "-1.5\\abc", " 7 \\x", "1e3"}) {
    viewIs(view);
    EXPECT_EQ(service.GetUserRptView("x"), view);
  }
}

TEST_F(SrvRptRetrieveRights, GetUserRptViewReplacesATextThatDoesNotBeginWithANumber) {
  for (const char* view : {"abc\\1001", "\\1001", "1a", " "}) {
    viewIs(view);
    EXPECT_EQ(service.GetUserRptView("x"), "1\\1001") << view;
  }
}

TEST_F(SrvRptRetrieveRights, GetUserRptViewOfAnEmptyTextIsEmpty) {
  viewIs("");
  EXPECT_EQ(service.GetUserRptView("x"), "");
}

TEST_F(SrvRptRetrieveRights, GetSqlExecResultSendsTheTextAsItStands) {
  ObjectRef result;
  EXPECT_TRUE(service.GetSqlExecResult("x", " select 'a''b' ", result));
  EXPECT_EQ(std::dynamic_pointer_cast<ItemList>(result)->count(), 0);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3  select 'a''b' ", "Close"));
}

}  // namespace
}  // namespace tolvane::test
