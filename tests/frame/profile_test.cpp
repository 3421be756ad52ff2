#include "frame/profile.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

struct Profile : testing::Test {
  RecordingPlatform platform;
  std::shared_ptr<Connection> connection = platform.application()->getContext()->getConnection();
};

TEST_F(Profile, TheCategoryIsTheFirstParameterAndTheKeyTheSecond) {
  (void)readProfile(*connection, "GL", "Check'Table");
  EXPECT_THAT(platform.work(),
              testing::ElementsAre("Command 1 30 Select FValue From t_SystemProfile Where FCategory = ? And FKey = ? "
                                   "[202 80 'GL'] [202 80 'Check'Table']"));
}

TEST_F(Profile, TheValueIsGivenAsItIsStored) {
  platform.answer("Select FValue", {{"FValue"}, {{"1"}}});
  EXPECT_EQ(readProfile(*connection, "GL", "Key", Value("0")), Value("1"));
}

TEST_F(Profile, AStoredNullIsNotReplacedByTheDefault) {
  platform.answer("Select FValue", {{"FValue"}, {{Null{}}}});
  EXPECT_EQ(readProfile(*connection, "GL", "Key", Value("0")), Value(Null{}));
}

TEST_F(Profile, AMissingKeyIsTheDefaultOrEmpty) {
  EXPECT_EQ(readProfile(*connection, "GL", "Key", Value("0")), Value("0"));
  EXPECT_EQ(readProfile(*connection, "GL", "Key"), Value());
}

TEST_F(Profile, AFailureIsTheCallers) {
  platform.fail("Command", AutomationError(oledb::noTable, "Provider", "no table"));
  EXPECT_THROW((void)readProfile(*connection, "GL", "Key", Value("0")), AutomationError);
}

}  // namespace
}  // namespace tolvane::test
