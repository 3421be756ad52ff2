// The call frame, on a class that has nothing but the frame.
#include "frame/service.h"

#include <gmock/gmock.h>

#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

class Plain : public Service {
 public:
  explicit Plain(Platform& platform) : Service(platform) {}
  using Service::beginCall;
  using Service::beginWork;
  using Service::currentUserID16;
  using Service::nameColumn;
  using Service::openConnection;
  using Service::translate;
};

struct CallFrame : testing::Test {
  RecordingPlatform platform;
  Plain service{platform};
};

TEST_F(CallFrame, CreationTakesContextThenLogin) {
  EXPECT_THAT(platform.log, ElementsAre("GetContext", "GetLoginInfo"));
}

TEST_F(CallFrame, ACallCompletesOpensAndTakesTheConnection) {
  platform.log.clear();
  (void)service.beginCall("x");
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection"));
}

TEST_F(CallFrame, WorkIsAnnouncedInPlaceOfTheCompletionCallAndCompletedAtTheEnd) {
  platform.log.clear();
  auto call = service.beginWork("x");
  call.complete();
  EXPECT_THAT(platform.log, ElementsAre("BeginWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                                        "CompleteWork"));
}

TEST_F(CallFrame, OpeningTheConnectionNeitherCompletesNorTakesIt) {
  platform.log.clear();
  service.openConnection("x");
  EXPECT_THAT(platform.log, ElementsAre("GetContext", "OpenDataSource x", "GetLoginInfo"));
}

TEST_F(CallFrame, EveryCallOpensTheDataSourceItNames) {
  (void)service.beginCall("first");
  (void)service.beginCall("second");
  EXPECT_THAT(platform.log, testing::IsSupersetOf({"OpenDataSource first", "OpenDataSource second"}));
  EXPECT_EQ(std::count(platform.log.begin(), platform.log.end(), "GetContext"), 3);
}

TEST_F(CallFrame, ACallThatFailsLeavesTheObjectUsable) {
  platform.fail("OpenDataSource bad", AutomationError(oledb::unspecified, "Context", "no such data source"));
  EXPECT_THROW((void)service.beginCall("bad"), AutomationError);
  EXPECT_NO_THROW((void)service.beginCall("good"));
}

TEST_F(CallFrame, ExecuteSendsTheTextAsItStands) {
  auto call = service.beginCall("x");
  call.execute(" Select  1 ");
  EXPECT_THAT(platform.work(), ElementsAre("Execute  Select  1 "));
}

TEST_F(CallFrame, RecordSetsOpenWithTheAskedCursors) {
  auto call = service.beginCall("x");
  (void)call.openKeyset("a");
  (void)call.open("b", CursorType::forwardOnly, LockType::readOnly);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 a", "Open 0 1 b"));
}

TEST_F(CallFrame, TextCommandsWaitForEver) {
  auto call = service.beginCall("x");
  const auto command = call.newTextCommand();
  command->setCommandText("Select 1");
  (void)command->execute();
  EXPECT_THAT(platform.work(), ElementsAre("Command 1 0 Select 1"));
}

TEST_F(CallFrame, ARecordSetIsEmptyWithoutRows) {
  auto call = service.beginCall("x");
  platform.answer("full", {{"F"}, {{std::int32_t{1}}}});
  EXPECT_TRUE(isEmpty(*call.execute("none")));
  EXPECT_FALSE(isEmpty(*call.execute("full")));
}

TEST_F(CallFrame, NameColumnsFollowTheCallersLanguage) {
  const std::pair<const char*, const char*> table[] = {
      {"chs", "FRptName"}, {"cht", "FRptName_cht"}, {"en", "FRptName_en"}};
  for (const auto& [language, column] : table) {
    platform.language = language;
    EXPECT_EQ(service.nameColumn("FRptName"), column);
  }
}

TEST_F(CallFrame, TextsAreTranslatedForTheCallersLanguage) {
  platform.language = "en";
  platform.translations["查看"] = "View";
  EXPECT_EQ(service.translate("查看"), "View");
}

TEST_F(CallFrame, TheNarrowUserIdentifierEndsAt32767) {
  platform.userID = 32767;
  EXPECT_EQ(service.currentUserID16(), 32767);
  platform.userID = 32768;
  try {
    (void)service.currentUserID16();
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), errorNumber(RuntimeError::overflow));
  }
}

}  // namespace
}  // namespace tolvane::test
