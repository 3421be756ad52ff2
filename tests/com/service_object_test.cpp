#include "automation_server.h"
#include "catalogue/catalogue.h"
#include "com/type_library.h"

namespace tolvane::com {
namespace {

using automation::Bstr;
using automation::ComPtr;
using automation::Variant;
using automation::wide;

class ServiceObject : public AutomationServer {};

TEST_F(ServiceObject, OfEveryClassTellsItsTransModeBeforeAnyOtherCall) {
  for (const ClassDescription& description : classes()) {
    const auto object = service(wide(description.name));
    const auto answer = call(*object, L"TransMode", {});
    ASSERT_EQ(answer.code, S_OK) << description.name;
    EXPECT_EQ(answer.result.get().lVal, static_cast<LONG>(description.transMode)) << description.name;
  }
}

TEST_F(ServiceObject, FindsNamesWithoutRegardToLetterCase) {
  const auto object = service(L"SrvRptRetrieve");
  EXPECT_EQ(idOf(*object, L"getrptPLX"), idOf(*object, L"GetRptPlx"));
}

TEST_F(ServiceObject, NumbersTheParametersOfAMethod) {
  const auto object = service(L"SrvRptRetrieve");
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"GetRptPlx"), const_cast<LPOLESTR>(L"VPLX"), const_cast<LPOLESTR>(L"sDsn"),
                      const_cast<LPOLESTR>(L"nobody")};
  DISPID ids[4]{};
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 2);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(ids[2], 0);
  EXPECT_EQ(ids[3], DISPID_UNKNOWN);
}

TEST_F(ServiceObject, DoesNotKnowMembersThatTheMethodTableDoesNotHave) {
  const auto object = service(L"SrvRptRetrieve");
  LPOLESTR name = const_cast<LPOLESTR>(L"FormatDisk");
  DISPID id = 0;
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), DISP_E_UNKNOWNNAME);
  DISPPARAMS none{};
  EXPECT_EQ(object->Invoke(9999, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
}

TEST_F(ServiceObject, DoesNotLetTransModeBeSet) {
  const auto object = service(L"CsUpdate");
  VARIANT value = number(3);
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&value, &put, 1, 1};
  EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
}

TEST_F(ServiceObject, TakesNamedArguments) {
  const auto object = service(L"SrvRptRetrieve");
  const Variant name(dsn());
  Variant document;
  VARIANT given[] = {byReference(*document.receive()), number(2), name.get()};
  DISPID names[] = {2, 1, 0};
  DISPPARAMS parameters{given, names, 3, 3};
  Variant found;
  ASSERT_EQ(object->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &parameters, found.receive(), nullptr, nullptr), S_OK);
  EXPECT_EQ(found.get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(document.get().vt, VT_ARRAY | VT_UI1);
}

TEST_F(ServiceObject, RaisesTheMethodsOwnErrorWithNumberSourceAndDescription) {
  const auto object = service(L"RptPropItemClassInfo");
  const Variant name(dsn());
  const auto answer = call(*object, L"GetDetail", {name.get(), number(424242)});
  ASSERT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x80044041U);
  EXPECT_EQ(answer.error.wCode, 0);
  EXPECT_EQ(answer.source(), "Tolvane.RptPropItemClassInfo.GetDetail");
  EXPECT_EQ(answer.description(), "PropClsID");
}

TEST_F(ServiceObject, IsUsableAfterAnErrorOfTheDatabase) {
  const auto object = service(L"SrvRptRetrieve");
  const Variant name(dsn());
  const Variant wrong("select nothing from nowhere");
  Variant rows;
  auto answer = call(*object, L"GetSqlExecResult", {name.get(), wrong.get(), byReference(*rows.receive())});
  ASSERT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x80040E37U);
  EXPECT_EQ(answer.description(), "Invalid object name 'nowhere'.");
  EXPECT_EQ(call(*object, L"GetCurUserID", {name.get()}).code, S_OK);
}

TEST_F(ServiceObject, WritesNothingWhenItsMethodFails) {
  const auto object = service(L"SrvRptUpdate");
  const Variant name(dsn());
  const Variant text("x");
  const std::int32_t before = selected("select count(*) from t_Rpt_Content");
  // An empty name is refused after the work has begun.
  const Variant empty("  ");
  const auto answer = call(*object, L"SavePlxToSrv", {name.get(), text.get(), empty.get(), text.get(), number(1)});
  EXPECT_EQ(static_cast<std::uint32_t>(answer.error.scode), 0x80044047U);
  EXPECT_EQ(selected("select count(*) from t_Rpt_Content"), before);
}

TEST_F(ServiceObject, AnswersToItsPublishedInterface) {
  const auto object = service(L"CsRetrieve");
  const GUID published = nativeIdentifier(typelib::interfaceIdentifier("CsRetrieve"));
  const GUID other = nativeIdentifier(typelib::interfaceIdentifier("CsUpdate"));
  EXPECT_TRUE(object.as<IDispatch>(published));
  EXPECT_FALSE(object.as<IDispatch>(other));
}

TEST_F(ServiceObject, GivesTypeInformationOfEveryMemberOfTheMethodTable) {
  for (const ClassDescription& description : classes()) {
    const auto object = service(wide(description.name));
    UINT count = 0;
    ASSERT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    ComPtr<ITypeInfo> information;
    ASSERT_EQ(object->GetTypeInfo(0, 0, information.receive()), S_OK) << description.name;
    for (const MethodDescription& method : description.methods) {
      std::wstring name = wide(method.name);
      LPOLESTR pointer = name.data();
      MEMBERID id = 0;
      EXPECT_EQ(information->GetIDsOfNames(&pointer, 1, &id), S_OK) << description.name << '.' << method.name;
      EXPECT_EQ(id, method.id) << description.name << '.' << method.name;
    }
  }
}

TEST_F(ServiceObject, HasNoTypeInformationBeyondItsFirst) {
  ITypeInfo* information = nullptr;
  EXPECT_EQ(service(L"CsRetrieve")->GetTypeInfo(1, 0, &information), DISP_E_BADINDEX);
  EXPECT_EQ(information, nullptr);
}

TEST_F(ServiceObject, RefusesNullPointersWhereAutomationDoesNotAllowThem) {
  const auto object = service(L"CsRetrieve");
  EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
  DISPPARAMS broken{nullptr, nullptr, 2, 0};
  EXPECT_EQ(object->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &broken, nullptr, nullptr, nullptr), E_INVALIDARG);
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr), E_POINTER);
  EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);
  EXPECT_EQ(object->QueryInterface(IID_IDispatch, nullptr), E_POINTER);
}

TEST_F(ServiceObject, RunsWithoutPlacesForResultAndError) {
  const auto object = service(L"SrvRptRetrieve");
  DISPPARAMS none{};
  EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(object->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), DISP_E_PARAMNOTOPTIONAL);
}

}  // namespace
}  // namespace tolvane::com
