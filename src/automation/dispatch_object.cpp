#include "automation/dispatch_object.h"

#include <cwchar>

#include "automation/error_translation.h"

namespace tolvane::automation {
namespace {

/// Made anew each time the module is loaded, so that no other module answers to it.
const IID& moduleIdentity() {
  static const IID identity = [] {
    IID fresh{};
    CoCreateGuid(&fresh);
    return fresh;
  }();
  return identity;
}

}  // namespace

MemberCall::MemberCall(WORD flags, DISPPARAMS& parameters) : flags_(flags), parameters_(parameters) {
  const UINT unnamed = isPut() ? 1 : 0;  // the new value always comes under a name of its own
  if (parameters.cNamedArgs > unnamed) raise(RuntimeError::namedArgumentNotFound);
  if (isPut() && parameters.cArgs == 0) raise(RuntimeError::wrongArgumentCount);
}

bool MemberCall::given(std::size_t index) const {
  if (index >= count()) return false;
  const VARIANT& content = parameters_.rgvarg[count() - 1 - index];
  return content.vt != VT_ERROR || content.scode != DISP_E_PARAMNOTFOUND;
}

const VARIANT& MemberCall::argument(std::size_t index) const {
  if (!given(index)) raise(RuntimeError::argumentNotOptional);
  return parameters_.rgvarg[count() - 1 - index];
}

void MemberCall::giveBack(std::size_t index, Value&& value) const {
  if (given(index)) WriteBack(argument(index), std::move(value)).commit();
}

DispatchObject::DispatchObject() noexcept : thread_(GetCurrentThreadId()) {
  ModuleUse::enter();
}

DispatchObject::~DispatchObject() {
  ModuleUse::leave();
}

STDMETHODIMP DispatchObject::QueryInterface(REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch && iid != moduleIdentity()) return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) DispatchObject::AddRef() noexcept {
  return ++references_;
}

STDMETHODIMP_(ULONG) DispatchObject::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP DispatchObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

STDMETHODIMP DispatchObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids) return E_POINTER;
  if (count == 0) return S_OK;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  for (const Member& member : members()) {
    if (_wcsicmp(member.name, names[0]) != 0) continue;
    ids[0] = member.id;
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP DispatchObject::Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                    VARIANT* result, EXCEPINFO* error, UINT* argument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_POINTER;
  if (GetCurrentThreadId() != thread_) return RPC_E_WRONG_THREAD;
  // A member may let go of the last reference to its own object.
  const ComPtr<DispatchObject> alive(this);
  try {
    Variant answer = call(member, MemberCall(flags, *parameters));
    if (result) *result = answer.detach();
    return S_OK;
  } catch (...) {
    return reportException(error, argument);
  }
}

ComPtr<DispatchObject> DispatchObject::ofThisModule(IDispatch* object) {
  const auto own = ComPtr<IDispatch>(object).as<IDispatch>(moduleIdentity());
  return ComPtr<DispatchObject>(static_cast<DispatchObject*>(own.get()));
}

void raiseNoSuchMember() {
  raise(RuntimeError::memberNotFound);
}

}  // namespace tolvane::automation
