#include "fake_object.h"

#include <cwchar>

#include "automation/class_factory.h"
#include "automation/error_translation.h"
#include "automation/registry.h"
#include "automation/text.h"

namespace tolvane::suite {

using automation::ComPtr;
using automation::utf8;
using automation::Variant;

namespace {

std::string describeObject(IDispatch* object) {
  if (!object) return "Nothing";
  const auto own = automation::DispatchObject::ofThisModule(object);
  const auto* known = dynamic_cast<FakeObject*>(own.get());
  return known ? known->name() : "object";
}

std::string describeReference(const VARIANT& content) {
  switch (content.vt & ~VT_BYREF) {
    case VT_VARIANT:
      return "VARIANT " + describe(*content.pvarVal);
    case VT_I4:
      return "I4 " + std::to_string(*content.plVal);
    case VT_BSTR:
      return '"' + utf8(automation::viewOf(*content.pbstrVal)) + '"';
    case VT_DISPATCH:
      return describeObject(*content.ppdispVal);
    default:
      return "type " + std::to_string(content.vt);
  }
}

std::string describeUse(WORD flags) {
  if (flags == DISPATCH_METHOD) return "call";
  if (flags == (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) return "ask";
  if (flags == DISPATCH_PROPERTYPUT) return "let";
  if (flags == DISPATCH_PROPERTYPUTREF) return "set";
  return "flags " + std::to_string(flags);
}

std::string describeCall(const std::string& object, const std::wstring& member, WORD flags, const DISPPARAMS& given) {
  const std::string head = describeUse(flags) + ' ' + object + '.' + utf8(member);
  if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) return head + " = " + describe(given.rgvarg[0]);
  std::string arguments;
  for (UINT i = given.cArgs; i > 0; --i) {
    arguments += describe(given.rgvarg[i - 1]);
    if (i > 1) arguments += ", ";
  }
  return given.cArgs == 0 ? head : head + '(' + arguments + ')';
}

unsigned useOf(WORD flags) {
  if ((flags & DISPATCH_PROPERTYPUT) != 0) return writes;
  if ((flags & DISPATCH_PROPERTYPUTREF) != 0) return writesObject;
  return (flags & DISPATCH_PROPERTYGET) != 0 ? reads : calls;
}

}  // namespace

std::string describe(const VARIANT& content) {
  if ((content.vt & VT_BYREF) != 0) return "ref " + describeReference(content);
  switch (content.vt) {
    case VT_EMPTY:
      return "Empty";
    case VT_NULL:
      return "Null";
    case VT_I2:
      return "I2 " + std::to_string(content.iVal);
    case VT_I4:
      return "I4 " + std::to_string(content.lVal);
    case VT_BOOL:
      return content.boolVal == VARIANT_TRUE ? "True" : content.boolVal == VARIANT_FALSE ? "False" : "neither";
    case VT_BSTR:
      return '"' + utf8(automation::viewOf(content.bstrVal)) + '"';
    case VT_DISPATCH:
      return describeObject(content.pdispVal);
    case VT_ERROR:
      return content.scode == DISP_E_PARAMNOTFOUND ? "missing" : "error";
    case VT_ARRAY | VT_UI1:
      return "bytes " + std::to_string(content.parray->rgsabound[0].cElements);
    default:
      return "type " + std::to_string(content.vt);
  }
}

int FakeObject::lookUps(const std::wstring& member) const {
  const auto found = lookUps_.find(member);
  return found == lookUps_.end() ? 0 : found->second;
}

void FakeObject::gives(const std::wstring& member, Value value) {
  answer(member, [value = std::move(value)](DISPPARAMS&) { return Variant::of(Value(value)); });
}

void FakeObject::gives(const std::wstring& member, const ComPtr<FakeObject>& object) {
  answer(member, [object](DISPPARAMS&) { return Variant(object); });
}

void FakeObject::fails(const std::wstring& member, const AutomationError& error) {
  answer(member, [error](DISPPARAMS&) -> Variant { throw error; });
}

STDMETHODIMP FakeObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  EXPECT_EQ(count, 1U);
  const auto& known = table_.members();
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (std::wcscmp(known[i]->name(), names[0]) != 0) continue;
    ++lookUps_[names[0]];
    ids[0] = static_cast<DISPID>(i + 1);
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP FakeObject::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                EXCEPINFO* error, UINT* argument) noexcept {
  const auto& known = *table_.members().at(static_cast<std::size_t>(member) - 1);
  checkUse(known, flags, parameters->cArgs);
  conversation_->push_back(describeCall(name_, known.name(), flags, *parameters));
  if (flags == DISPATCH_PROPERTYPUTREF && refusesSet_ == known.name()) return DISP_E_MEMBERNOTFOUND;
  const auto found = answers_.find(known.name());
  if (found == answers_.end()) return S_OK;
  try {
    Variant answered = found->second(*parameters);
    if (result) *result = answered.detach();
    return S_OK;
  } catch (...) {
    return automation::reportException(error, argument);
  }
}

void FakeObject::checkUse(const MemberTable::TableMember& member, WORD flags, UINT arguments) const {
  const unsigned use = useOf(flags);
  const std::size_t newValue = (use & (writes | writesObject)) != 0 ? 1 : 0;
  EXPECT_NE(member.uses() & use, 0U) << name_ << '.' << utf8(member.name()) << " is not in the table in this use";
  EXPECT_EQ(arguments, member.arguments() + newValue) << name_ << '.' << utf8(member.name());
}

FakeClass::FakeClass(std::function<ComPtr<IDispatch>()> make) {
  CLSID identifier{};
  automation::check(CoCreateGuid(&identifier));
  name_ = automation::textOf(identifier);
  ComPtr<IUnknown> factory;
  automation::check(automation::giveClassFactory(std::move(make), IID_IUnknown, factory.receiveAny()));
  automation::check(
      CoRegisterClassObject(identifier, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_));
}

FakeClass::~FakeClass() {
  CoRevokeClassObject(registration_);
}

SuiteTest::SuiteTest() {
  automation::check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
}

SuiteTest::~SuiteTest() {
  CoUninitialize();
}

}  // namespace tolvane::suite
