#include "automation/dispatch_object.h"

#include <cwchar>

#include "automation/error_translation.h"

namespace tolvane::automation {
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
  if (!parameters || (parameters->cArgs > 0 && !parameters->rgvarg)) return E_POINTER;
  if (!isOwnThread()) return RPC_E_WRONG_THREAD;
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

void raiseNoSuchMember() {
  raise(RuntimeError::memberNotFound);
}

}  // namespace tolvane::automation
