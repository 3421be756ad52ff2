#include "suite/first_property.h"

#include "fake_object.h"
#include "suite/suite_library.h"

namespace tolvane::suite {
namespace {

using automation::LateBound;
using automation::RemoteClass;

using FirstPropertyTest = SuiteTest;

TEST_F(FirstPropertyTest, PropertiesWithArgumentsAndMethodsAreNotMeant) {
  // `Item(key)` and `Add` come before `Count` in this interface.
  EXPECT_EQ(firstPropertyOf(*RemoteClass(L"Scripting.Dictionary").create().get()), L"Count");
}

TEST_F(FirstPropertyTest, APropertyThatGivesAnObjectIsOneToo) {
  EXPECT_EQ(firstPropertyOf(*RemoteClass(L"Scripting.FileSystemObject").create().get()), L"Drives");
}

TEST_F(FirstPropertyTest, AnObjectThatTellsNothingAboutItselfHasNone) {
  const ContextMembers members;
  const auto silent = fake("context", members);
  EXPECT_EQ(errorOf([&] { (void)firstPropertyOf(*silent); }).number(), errorNumber(RuntimeError::memberNotFound));
}

}  // namespace
}  // namespace tolvane::suite
