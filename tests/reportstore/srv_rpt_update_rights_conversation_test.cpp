// The exact statements, cursors and order of operations behind writing rights and views.
#include <gmock/gmock.h>

#include <limits>

#include "platform/error.h"
#include "reportstore/srv_rpt_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;

Int32Array array(std::int32_t lower, std::vector<std::int32_t> elements) {
  return {lower, std::move(elements), true};
}

std::uint32_t numberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

struct SrvRptUpdateRights : testing::Test {
  RecordingPlatform platform;
  SrvRptUpdate service{platform};
};

TEST_F(SrvRptUpdateRights, SetRptRightAnnouncesWorkAndCompletesIt) {
  platform.log.clear();
  Int32Array users;
  Int32Array codes;
  service.SetRptRight("x", 7, users, codes);
  EXPECT_THAT(platform.log,
              ElementsAre("BeginWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Execute Delete From T_Rpt_Right Where FRptID = 7", "Open 1 3 T_Rpt_Right", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetRptRightWritesEachRowAsSoonAsItIsComplete) {
  auto users = array(1, {16, 16});
  auto codes = array(1, {4, 1});
  EXPECT_TRUE(service.SetRptRight("x", 7, users, codes));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Delete From T_Rpt_Right Where FRptID = 7", "Open 1 3 T_Rpt_Right", "AddNew",
                          "Set FRptID=7", "Set FUserID=16", "Set FRightCode=4", "Update", "AddNew", "Set FRptID=7",
                          "Set FUserID=16", "Set FRightCode=1", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetRptRightPairsEqualIndicesOfDifferentBounds) {
  auto users = array(-1, {16, 17});
  auto codes = array(-3, {9, 8, 4, 1, 7});
  service.SetRptRight("x", 7, users, codes);
  EXPECT_THAT(platform.work(), ElementsAre(_, _, "AddNew", _, "Set FUserID=16", "Set FRightCode=4", "Update", "AddNew",
                                           _, "Set FUserID=17", "Set FRightCode=1", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetRptRightFailsAtTheFirstIndexThatTheCodesDoNotHave) {
  auto users = array(1, {16, 17});
  auto codes = array(1, {4});
  EXPECT_EQ(numberOf([&] { service.SetRptRight("x", 7, users, codes); }), 0x800A0009);
  EXPECT_THAT(platform.work(),
              ElementsAre(_, _, "AddNew", _, _, _, "Update", "AddNew", "Set FRptID=7", "Set FUserID=17"));
}

TEST_F(SrvRptUpdateRights, SetRptRightFailsWhenTheIndexCannotPassTheLastOne) {
  constexpr auto last = std::numeric_limits<std::int32_t>::max();
  auto users = array(last, {16});
  auto codes = array(last, {4});
  EXPECT_EQ(numberOf([&] { service.SetRptRight("x", 7, users, codes); }), 0x800A0006);
  EXPECT_EQ(platform.log.back(), "Update");
}

TEST_F(SrvRptUpdateRights, SetRptRightOfAnArrayWithoutElementsAtTheLowestIndexWritesNoRow) {
  auto users = array(std::numeric_limits<std::int32_t>::min(), {});
  Int32Array codes;
  EXPECT_TRUE(service.SetRptRight("x", 7, users, codes));
  EXPECT_THAT(platform.work(), ElementsAre(_, "Open 1 3 T_Rpt_Right", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetViewOrderComparesTheUserAsQuotedTextAndAddsAMissingRow) {
  platform.userID = 17;
  service.SetViewOrder("x", "1\\1001");
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID", "Open 1 3 Select * From T_Rpt_View Where FUserID='17'", "AddNew",
                          "Set FUserID=17", "Set FViewCode='1\\1001'", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetViewOrderOverwritesTheFirstRow) {
  platform.answer("Select * From T_Rpt_View", {{"FUserID", "FViewCode"}, {{std::int32_t{1}, "0001"}}});
  service.SetViewOrder("x", "2");
  EXPECT_THAT(platform.work(), ElementsAre("CurrentUserID", _, "Set FViewCode='2'", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateRights, SetViewOrderRefusesAUserBeyondSixteenBits) {
  platform.userID = 32768;
  EXPECT_EQ(numberOf([&] { service.SetViewOrder("x", "2"); }), 0x800A0006);
  EXPECT_THAT(platform.statements(), testing::IsEmpty());
}

}  // namespace
}  // namespace tolvane::test
