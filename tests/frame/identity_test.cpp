#include "frame/identity.h"

#include <gmock/gmock.h>

#include <optional>

#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct IdentityHelpers : testing::Test {
  RecordingPlatform platform;
  std::shared_ptr<Context> context = platform.application()->getContext();

  IdentityHelpers() {
    platform.userID = 17;
    platform.log.clear();
  }
};

TEST_F(IdentityHelpers, EveryQuestionMakesASecurityComponentAndAsksForTheKey) {
  EXPECT_EQ(getCurrentUserID(platform, *context), 17);
  EXPECT_TRUE(isAdministrator(platform, *context));
  EXPECT_TRUE(accessCheck(platform, *context, 50, 0, 0x8000000, "Tolvane.SrvRptRetrieve"));
  EXPECT_THAT(platform.log,
              ElementsAre("CreateSecurity", "GetLoginInfo", "UserKey", "Security.GetCurrentUserID", "CreateSecurity",
                          "GetLoginInfo", "UserKey", "IsAdministrator", "CreateSecurity", "GetLoginInfo", "UserKey",
                          "AccessCheck 50 0 134217728 Tolvane.SrvRptRetrieve"));
}

TEST_F(IdentityHelpers, IdentifiersAbove32767DoNotSurvive) {
  platform.userID = 32768;
  EXPECT_THROW((void)getCurrentUserID(platform, *context), AutomationError);
}

TEST_F(IdentityHelpers, AComponentThatCannotBeCreatedIsTheCallersError) {
  for (int question = 0; question < 3; ++question) {
    platform.fail("CreateSecurity", AutomationError(RuntimeError::cannotCreateObject, "x"));
    EXPECT_THROW(
        {
          if (question == 0) (void)getCurrentUserID(platform, *context);
          if (question == 1) (void)isAdministrator(platform, *context);
          if (question == 2) (void)accessCheck(platform, *context, 50, 0, 1, "x");
        },
        AutomationError);
  }
}

TEST_F(IdentityHelpers, AUserWithoutARowHasNoRightOnAnItemClass) {
  EXPECT_EQ(checkParentItemRight(platform, *context, 17, 105), 0);
  EXPECT_THAT(platform.log, ElementsAre("GetConnection",
                                        "Execute Select FUserItemClassRight From t_UserItemClassRight  Where FUserID "
                                        "=17 and FItemClassID=105"));
}

TEST_F(IdentityHelpers, TheRightOnAnItemClassIsTheFirstRows) {
  platform.answer("Select FUserItemClassRight", {{"FUserItemClassRight"}, {{std::int16_t{6}}, {std::int16_t{1}}}});
  EXPECT_EQ(checkParentItemRight(platform, *context, 17, 105), 6);
}

TEST_F(IdentityHelpers, AMissingItemClassIsAnInvalidArgumentInTheCallersLanguage) {
  platform.language = "en";
  platform.translations["缺少Item Class 参数。"] = "No item class.";
  try {
    (void)checkParentItemRight(platform, *context, 17);
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x800A0005U);
    EXPECT_EQ(error.source(), "Tolvane.Globals.CheckParentItemRight");
    EXPECT_EQ(error.description(), "No item class.");
  }
  EXPECT_THAT(platform.statements(), testing::IsEmpty());
}

struct DataView {
  std::optional<std::int16_t> user;
  std::optional<std::int16_t> group;
  std::int32_t unrestricted;
};
class DataViewTest : public IdentityHelpers, public testing::WithParamInterface<DataView> {};

TEST_P(DataViewTest, LooksAtBitZeroOfUserAndPrimaryGroup) {
  const auto& [user, group, unrestricted] = GetParam();
  if (user) {
    platform.answer("Select FDataVokeType,FPrimaryGroup",
                    {{"FDataVokeType", "FPrimaryGroup"}, {{*user, std::int32_t{70000}}}});
  }
  if (group) platform.answer("Select FDataVokeType From", {{"FDataVokeType"}, {{*group}}});
  EXPECT_EQ(isDataViewUnrestricted(platform, *context, *context->getConnection()), unrestricted);
}
INSTANTIATE_TEST_SUITE_P(
    Table, DataViewTest,
    testing::Values(DataView{std::nullopt, std::nullopt, 1}, DataView{std::nullopt, std::int16_t{1}, 1},
                    DataView{std::int16_t{0}, std::nullopt, 1}, DataView{std::int16_t{0}, std::int16_t{0}, 1},
                    DataView{std::int16_t{0}, std::int16_t{1}, 0}, DataView{std::int16_t{1}, std::nullopt, 0},
                    DataView{std::int16_t{1}, std::int16_t{0}, 0}, DataView{std::int16_t{1}, std::int16_t{1}, 0},
                    DataView{std::int16_t{2}, std::int16_t{6}, 1}, DataView{std::int16_t{2}, std::int16_t{3}, 0},
                    DataView{std::int16_t{-1}, std::int16_t{0}, 0}));

TEST_F(IdentityHelpers, TheDataViewTestReusesOneCommandForUserAndGroup) {
  platform.answer("Select FDataVokeType,FPrimaryGroup",
                  {{"FDataVokeType", "FPrimaryGroup"}, {{std::int16_t{1}, std::int32_t{70000}}}});
  (void)isDataViewUnrestricted(platform, *context, *context->getConnection());
  EXPECT_THAT(platform.statements(),
              ElementsAre("Command 1 0 Select FDataVokeType,FPrimaryGroup From t_user Where FUserID =17",
                          "Command 1 0 Select FDataVokeType From t_user Where FUserID =70000"));
}

TEST_F(IdentityHelpers, TheDataViewTestAsksForNoGroupOfAUserWithoutARow) {
  EXPECT_EQ(isDataViewUnrestricted(platform, *context, *context->getConnection()), 1);
  EXPECT_EQ(platform.statements().size(), 1U);
}

TEST_F(IdentityHelpers, TheDataViewTestHasNoHandlerOfItsOwn) {
  platform.fail("Command", AutomationError(oledb::noTable, "Provider", "no table"));
  EXPECT_THROW((void)isDataViewUnrestricted(platform, *context, *context->getConnection()), AutomationError);
}

}  // namespace
}  // namespace tolvane::test
