#include "frame/object_argument.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

TEST(ObjectArgument, AnObjectIsGivenAsItIs) {
  const auto object = std::make_shared<int>(7);
  EXPECT_EQ(&required(object), object.get());
}

TEST(ObjectArgument, NothingIsAnObjectThatIsNotSet) {
  try {
    (void)required(std::shared_ptr<int>());
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), errorNumber(RuntimeError::objectNotSet));
  }
}

}  // namespace
}  // namespace tolvane::test
