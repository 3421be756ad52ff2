#include "com/argument_binder.h"

#include <array>
#include <cstring>

#include "automation_server.h"

namespace tolvane::com {
namespace {

using automation::Bstr;
using automation::Variant;

class ArgumentForms : public AutomationServer {
 protected:
  void SetUp() override {
    AutomationServer::SetUp();
    retrieve_ = service(L"SrvRptRetrieve");
    update_ = service(L"SrvRptUpdate");
    name_ = Variant(dsn());
  }
  void TearDown() override {
    retrieve_ = {};
    update_ = {};
    AutomationServer::TearDown();
  }
  [[nodiscard]] const VARIANT& name() const { return name_.get(); }

  automation::ComPtr<IDispatch> retrieve_;
  automation::ComPtr<IDispatch> update_;
  Variant name_;
};

SAFEARRAY* longs(LONG lower, std::initializer_list<LONG> values) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, lower, static_cast<ULONG>(values.size()));
  std::memcpy(array->pvData, values.begin(), values.size() * sizeof(LONG));
  return array;
}

LONG upperBound(SAFEARRAY* array) {
  LONG bound = 0;
  SafeArrayGetUBound(array, 1, &bound);
  return bound;
}

TEST_F(ArgumentForms, AVariantByReferenceIsGivenTheDocument) {
  Variant document;
  const auto answer = call(*retrieve_, L"GetRptPlx", {name(), number(2), byReference(*document.receive())});
  ASSERT_EQ(answer.code, S_OK);
  EXPECT_EQ(document.get().vt, VT_ARRAY | VT_UI1);
  EXPECT_EQ(SafeArrayGetDim(document.get().parray), 1U);
}

TEST_F(ArgumentForms, ATypedArrayByReferenceIsReplacedByTheDocument) {
  SAFEARRAY* document = SafeArrayCreateVector(VT_UI1, 5, 3);
  const auto answer = call(*retrieve_, L"GetRptPlx", {name(), number(2), byReference(VT_ARRAY | VT_UI1, &document)});
  ASSERT_EQ(answer.code, S_OK);
  EXPECT_GT(upperBound(document), 100);
  SafeArrayDestroy(document);
}

TEST_F(ArgumentForms, ATypedNumberByReferenceIsWrittenInItsOwnType) {
  const Variant owner(dsn() + ";UserID=101");
  LONG wideRight = 0;
  SHORT narrowRight = 0;
  EXPECT_EQ(call(*retrieve_, L"GetRptRight", {owner.get(), number(2), byReference(VT_I4, &wideRight)}).code, S_OK);
  EXPECT_EQ(call(*retrieve_, L"GetRptRight", {owner.get(), number(2), byReference(VT_I2, &narrowRight)}).code, S_OK);
  EXPECT_EQ(wideRight, 4);
  EXPECT_EQ(narrowRight, 4);
}

TEST_F(ArgumentForms, AnUndimensionedArrayOfNumbersComesBackDimensioned) {
  SAFEARRAY* users = nullptr;
  SAFEARRAY* rights = nullptr;
  const auto answer =
      call(*retrieve_, L"GetRptAuthorize",
           {name(), number(1), byReference(VT_ARRAY | VT_I4, &users), byReference(VT_ARRAY | VT_I4, &rights)});
  ASSERT_EQ(answer.code, S_OK);
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(users, &type);
  EXPECT_EQ(type, VT_I4);
  EXPECT_EQ(upperBound(users), upperBound(rights));
  SafeArrayDestroy(users);
  SafeArrayDestroy(rights);
}

TEST_F(ArgumentForms, AnArrayMayHaveAnyLowerBound) {
  SAFEARRAY* users = longs(10, {101, 102});
  SAFEARRAY* rights = longs(10, {4, 1});
  const auto answer =
      call(*update_, L"SetRptRight",
           {name(), number(1), byReference(VT_ARRAY | VT_I4, &users), byReference(VT_ARRAY | VT_I4, &rights)});
  EXPECT_EQ(answer.code, S_OK);
  EXPECT_EQ(selected("select count(*) from t_Rpt_Right where FRptID = 1 and FUserID in (101, 102)"), 2);
  SafeArrayDestroy(users);
  SafeArrayDestroy(rights);
}

TEST_F(ArgumentForms, AScriptsEmptyVariableIsGivenAnArrayOfVariants) {
  Variant users;
  Variant rights;
  const auto answer = call(*retrieve_, L"GetRptAuthorize",
                           {name(), number(1), byReference(*users.receive()), byReference(*rights.receive())});
  ASSERT_EQ(answer.code, S_OK);
  EXPECT_EQ(users.get().vt, VT_ARRAY | VT_VARIANT);
}

TEST_F(ArgumentForms, ATextByReferenceGoesInAndComesBack) {
  Bstr data(dsn());
  Bstr number(std::string_view("1001"));
  const auto info = service(L"MultiAccountInfo");
  const auto answer = call(*info, L"CheckAccountRight",
                           {byReference(VT_BSTR, data.reference()), byReference(VT_BSTR, number.reference())});
  EXPECT_EQ(answer.code, S_OK);
  EXPECT_EQ(number.toUtf8(), "1001");
}

TEST_F(ArgumentForms, AnObjectReferenceIsGivenTheList) {
  IDispatch* list = nullptr;
  const auto answer = call(*retrieve_, L"GetRptlist", {name(), byReference(VT_DISPATCH, &list)});
  ASSERT_EQ(answer.code, S_OK);
  ASSERT_NE(list, nullptr);
  EXPECT_GT(call(*list, L"Count", {}).result.get().lVal, 0);
  list->Release();
}

TEST_F(ArgumentForms, AnInOutArgumentMayComeByValue) {
  EXPECT_EQ(call(*retrieve_, L"GetRptRight", {name(), number(1), number(0)}).code, S_OK);
}

TEST_F(ArgumentForms, OptionalOnesMayBeLeftOutOrMarkedAsMissing) {
  EXPECT_EQ(call(*retrieve_, L"IsValidRpt", {name(), name()}).code, S_OK);
  EXPECT_EQ(call(*retrieve_, L"IsValidRpt", {name(), name(), missing()}).code, S_OK);
}

TEST_F(ArgumentForms, ATextThatIsANumberIsTakenForOne) {
  const Variant two("2");
  Variant document;
  EXPECT_EQ(call(*retrieve_, L"GetRptPlx", {name(), two.get(), byReference(*document.receive())}).code, S_OK);
}

TEST_F(ArgumentForms, AFieldOfARecordSetIsTakenForItsValue) {
  const auto info = service(L"RptPropItemClassInfo");
  const auto list = call(*info, L"GetList", {name()});
  ASSERT_EQ(list.code, S_OK);
  const auto rows = list.result.object();
  const auto fields = call(*rows, L"Fields", {}).result.object();
  const Variant column("FPropClsID");
  const Variant field = Variant(call(*fields, L"Item", {column.get()}).result.object());
  EXPECT_EQ(call(*info, L"GetDetail", {name(), field.get()}).code, S_OK);
}

TEST_F(ArgumentForms, TooManyAreRefused) {
  const auto answer = call(*retrieve_, L"GetCurUserID", {name(), name()});
  EXPECT_EQ(answer.code, DISP_E_BADPARAMCOUNT);
}

TEST_F(ArgumentForms, AMissingOneThatIsNotOptionalIsRefused) {
  EXPECT_EQ(call(*retrieve_, L"GetRptRight", {name()}).code, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(ArgumentForms, AWrongTypeIsRefusedWithItsPlaceCountedFromTheLast) {
  const Variant word("not a number");
  LONG right = 0;
  const auto answer = call(*retrieve_, L"GetRptRight", {name(), word.get(), byReference(VT_I4, &right)});
  EXPECT_EQ(answer.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(answer.argument, 1U);
}

TEST_F(ArgumentForms, ANumberThatDoesNotFitIsRefusedAsOverflow) {
  const Variant much(3e9);
  LONG right = 0;
  const auto answer = call(*retrieve_, L"GetRptRight", {name(), much.get(), byReference(VT_I4, &right)});
  EXPECT_EQ(answer.code, DISP_E_OVERFLOW);
  EXPECT_EQ(answer.argument, 1U);
}

TEST_F(ArgumentForms, AnArrayOfTheWrongRankIsRefused) {
  std::array<SAFEARRAYBOUND, 2> bounds{{{2, 0}, {2, 0}}};
  SAFEARRAY* table = SafeArrayCreate(VT_I4, 2, bounds.data());
  SAFEARRAY* rights = longs(0, {1});
  const auto answer =
      call(*update_, L"SetRptRight",
           {name(), number(1), byReference(VT_ARRAY | VT_I4, &table), byReference(VT_ARRAY | VT_I4, &rights)});
  EXPECT_EQ(answer.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(answer.argument, 1U);
  SafeArrayDestroy(table);
  SafeArrayDestroy(rights);
}

TEST_F(ArgumentForms, AnArrayOfTheWrongTypeIsRefused) {
  SAFEARRAY* dates = SafeArrayCreateVector(VT_BSTR, 0, 1);
  LONG place = 0;
  SafeArrayPutElement(dates, &place, Bstr(std::string_view("x")).get());
  SAFEARRAY* rights = longs(0, {1});
  const auto answer =
      call(*update_, L"SetRptRight",
           {name(), number(1), byReference(VT_ARRAY | VT_BSTR, &dates), byReference(VT_ARRAY | VT_I4, &rights)});
  EXPECT_EQ(answer.code, DISP_E_TYPEMISMATCH);
  SafeArrayDestroy(dates);
  SafeArrayDestroy(rights);
}

TEST_F(ArgumentForms, ANullReferenceIsRefused) {
  const auto answer = call(*retrieve_, L"GetRptRight", {name(), number(1), byReference(VT_I4, nullptr)});
  EXPECT_EQ(answer.code, E_INVALIDARG);
}

TEST_F(ArgumentForms, AnArgumentByAnUnknownNameIsRefused) {
  VARIANT given[] = {number(1)};
  DISPID names[] = {77};
  DISPPARAMS parameters{given, names, 1, 1};
  UINT argument = 9;
  EXPECT_EQ(retrieve_->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, &argument),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(argument, 0U);
}

}  // namespace
}  // namespace tolvane::com
