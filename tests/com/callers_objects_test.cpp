// Objects that callers pass, and those that they are handed.
#include "automation/dispatch_object.h"
#include "automation_server.h"
#include "platform/conversions.h"

namespace tolvane::com {
namespace {

using automation::ComPtr;
using automation::DispatchObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;

enum : DISPID { memberGetValue = 11, memberCount, memberName, memberItem };

/// A bag with other numbers than ours, as a client's own class would have them.
class ClientBag : public DispatchObject {
 public:
  explicit ClientBag(bool fails) : fails_(fails) {}

 protected:
  Members members() const override {
    static constexpr Member all[] = {
        {L"getvalue", memberGetValue}, {L"count", memberCount}, {L"name", memberName}, {L"item", memberItem}};
    return all;
  }
  Variant call(DISPID member, const MemberCall& call) override {
    if (fails_) throw AutomationError(0x80045678, "Client.Bag", "the bag is broken");
    if (member == memberCount) return std::int32_t{1};
    if (member == memberName) return Variant("FName");
    return toText(call.value(0)) == "FName" ? Variant("周期二") : Variant::of(call.value(1, Value()));
  }

 private:
  bool fails_;
};

/// Has none of a bag's members.
class OtherObject : public DispatchObject {
 protected:
  Members members() const override { return {}; }
  Variant call(DISPID, const MemberCall&) override { automation::raiseNoSuchMember(); }
};

class CallersObjects : public AutomationServer {};

TEST_F(CallersObjects, ABagOfTheCallersOwnIsAskedByItsMembersNames) {
  const auto writer = service(L"RptPropItemClassUpdate");
  const Variant name(dsn());
  const Variant bag(automation::makeObject<ClientBag>(false));
  ASSERT_EQ(call(*writer, L"Create", {name.get(), bag.get()}).code, S_OK);
  EXPECT_EQ(selected("select count(*) from t_Rpt_PropClass where FName = N'周期二'"), 1);
}

TEST_F(CallersObjects, ABagThatFailsWhenItIsAskedFailsTheMethodWithItsOwnError) {
  const auto writer = service(L"RptPropItemClassUpdate");
  const Variant name(dsn());
  const Variant bag(automation::makeObject<ClientBag>(true));
  const std::int32_t before = selected("select count(*) from t_Rpt_PropClass");
  const auto answer = call(*writer, L"Create", {name.get(), bag.get()});
  ASSERT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x80045678U);
  EXPECT_EQ(answer.source(), "Client.Bag");
  EXPECT_EQ(answer.description(), "the bag is broken");
  EXPECT_EQ(selected("select count(*) from t_Rpt_PropClass"), before);
}

TEST_F(CallersObjects, AnObjectThatIsNoBagIsAnError) {
  const auto writer = service(L"RptPropItemClassUpdate");
  const Variant name(dsn());
  const Variant bag(automation::makeObject<OtherObject>());
  const auto answer = call(*writer, L"Create", {name.get(), bag.get()});
  ASSERT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x800A01B6U);
}

TEST_F(CallersObjects, NothingInTheBagsPlaceIsTheErrorOfAnObjectThatIsNotSet) {
  const auto writer = service(L"RptPropItemClassUpdate");
  const Variant name(dsn());
  const Variant nothing(static_cast<IDispatch*>(nullptr));
  const auto answer = call(*writer, L"Create", {name.get(), nothing.get()});
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x800A005BU);
}

TEST_F(CallersObjects, ATextInTheBagsPlaceIsATypeMismatch) {
  const auto writer = service(L"RptPropItemClassUpdate");
  const Variant name(dsn());
  const auto answer = call(*writer, L"Create", {name.get(), name.get()});
  EXPECT_EQ(answer.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(answer.argument, 0U);
}

TEST_F(CallersObjects, ABagThatIsHandedOutHasTheFieldsInTheirOrder) {
  const Variant name(dsn());
  const auto answer = call(*service(L"SrvRptRetrieve"), L"GetDetailByID", {name.get(), number(2)});
  ASSERT_EQ(answer.code, S_OK);
  const auto bag = answer.result.object();
  EXPECT_EQ(automation::utf8(automation::viewOf(call(*bag, L"Name", {number(1)}).result.get().bstrVal)), "FRptID");
  const Variant key("frptid");
  EXPECT_EQ(call(*bag, L"Item", {key.get()}).result.get().lVal, 2);
  const Variant unknown("Nobody");
  EXPECT_EQ(call(*bag, L"GetValue", {unknown.get(), number(7)}).result.get().lVal, 7);
}

TEST_F(CallersObjects, ARecordSetThatIsHandedOutIsDetachedAndStaysReadable) {
  const Variant name(dsn());
  auto info = service(L"RptPropItemClassInfo");
  auto answer = call(*info, L"GetList", {name.get()});
  ASSERT_EQ(answer.code, S_OK);
  const auto rows = answer.result.object();
  info = {};
  EXPECT_GT(call(*rows, L"RecordCount", {}).result.get().lVal, 0);
  const auto connection = call(*rows, L"ActiveConnection", {});
  EXPECT_EQ(connection.result.get().vt, VT_DISPATCH);
  EXPECT_EQ(connection.result.get().pdispVal, nullptr);
}

}  // namespace
}  // namespace tolvane::com
