#include "automation/foundation_objects.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "automation/late_bound.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "standalone/objects.h"

namespace tolvane::automation {
namespace {

class FoundationObjectsTest : public ::testing::Test {
 protected:
  LateBound bag_{ComPtr<IDispatch>(makeObject<BagObject>(std::make_shared<standalone::Dictionary>()).get())};
  LateBound list_{ComPtr<IDispatch>(makeObject<ListObject>(std::make_shared<standalone::List>()).get())};
  RemoteMember item_{L"item"};
  RemoteMember add_{L"ADD"};
  RemoteMember listItem_{L"Item"};
  RemoteMember listAdd_{L"Add"};
  RemoteMember count_{L"Count"};
};

TEST_F(FoundationObjectsTest, ABagGivesWhatItWasGiven) {
  bag_.call(add_, "FName", "资产");
  bag_.put(item_, "fname", "负债");
  RemoteMember name(L"Name");
  RemoteMember getValue(L"GetValue");
  EXPECT_EQ(bag_.read(item_, "FNAME").take(), Value("负债"));
  EXPECT_EQ(bag_.read(name, 1).take(), Value("FName"));
  EXPECT_EQ(bag_.read(getValue, "FNothing", 5).take(), Value(5));
  EXPECT_EQ(bag_.read(item_, "FNothing").take(), Value());
}

TEST_F(FoundationObjectsTest, AListCountsFromOne) {
  list_.call(listAdd_, "a");
  EXPECT_EQ(list_.read(listItem_, 1).take(), Value("a"));
  for (const std::int32_t outside : {0, 2}) {
    EXPECT_THROW((void)list_.read(listItem_, outside), AutomationError);
  }
}

TEST_F(FoundationObjectsTest, ADocumentThatWasPutInMayBeFreedByItsOwner) {
  Variant document = Variant::of(Bytes(std::vector<std::uint8_t>{1, 2, 3}));
  VARIANT borrowed = document.get();
  DISPPARAMS parameters{&borrowed, nullptr, 1, 0};
  ASSERT_EQ(list_.get()->Invoke(listAdd_.in(*list_.get()), IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                nullptr),
            S_OK);
  VARIANT content = document.detach();
  EXPECT_EQ(VariantClear(&content), S_OK);
  EXPECT_EQ(list_.read(listItem_, 1).take(), Value(Bytes(std::vector<std::uint8_t>{1, 2, 3})));
}

}  // namespace
}  // namespace tolvane::automation
