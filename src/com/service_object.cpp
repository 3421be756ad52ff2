#include "com/service_object.h"

#include <algorithm>
#include <utility>

#include "automation/error_translation.h"
#include "automation/text.h"
#include "com/argument_binder.h"
#include "com/host_call.h"
#include "com/type_library.h"
#include "frame/dispatcher.h"

namespace tolvane::com {
namespace {

DISPID positionOf(const MethodDescription& method, std::string_view name) {
  const auto& parameters = method.parameters;
  const auto found = std::find_if(parameters.begin(), parameters.end(), [&](const ParameterDescription& parameter) {
    return sameName(parameter.name, name);
  });
  return found == parameters.end() ? DISPID_UNKNOWN : static_cast<DISPID>(found - parameters.begin());
}

/// Whether a member may be asked for in this way: a property read, a method called, or what clients ask that do not
/// know which it is.
bool answers(const MethodDescription& method, WORD flags) {
  const WORD either = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  return (flags & either) != 0 && (!method.isProperty || (flags & DISPATCH_PROPERTYGET) != 0);
}

}  // namespace

ServiceObject::ServiceObject(const ClassDescription& description, std::shared_ptr<suite::SuitePlatform> platform)
    : class_(description), platform_(std::move(platform)), service_(description.create(*platform_)) {}

STDMETHODIMP ServiceObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP ServiceObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  return index == 0 ? interfaceInformation(class_.name, info) : DISP_E_BADINDEX;
}

STDMETHODIMP ServiceObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids) return E_POINTER;
  try {
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (count == 0) return S_OK;
    const MethodDescription* method = names[0] ? class_.find(automation::utf8(names[0])) : nullptr;
    if (!method) return DISP_E_UNKNOWNNAME;
    ids[0] = method->id;
    HRESULT code = S_OK;
    for (UINT i = 1; i < count; ++i) {
      if (names[i]) ids[i] = positionOf(*method, automation::utf8(names[i]));
      if (ids[i] == DISPID_UNKNOWN) code = DISP_E_UNKNOWNNAME;
    }
    return code;
  } catch (...) {
    return automation::currentCode();
  }
}

STDMETHODIMP ServiceObject::Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* error, UINT* argument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters || (parameters->cArgs > 0 && !parameters->rgvarg)) return E_INVALIDARG;
  if (parameters->cNamedArgs > 0 && !parameters->rgdispidNamedArgs) return E_INVALIDARG;
  if (!isOwnThread()) return RPC_E_WRONG_THREAD;
  const MethodDescription* method = methodOf(member);
  if (!method || !answers(*method, flags)) return DISP_E_MEMBERNOTFOUND;
  // The method may call the client, and the client may let the object go meanwhile.
  const automation::ComPtr<ServiceObject> alive(this);
  try {
    automation::Variant answer = run(*method, *parameters);
    if (result) *result = answer.detach();
    return S_OK;
  } catch (...) {
    return automation::reportException(error, argument);
  }
}

bool ServiceObject::isOwnInterface(REFIID iid) const noexcept {
  return iid == nativeIdentifier(typelib::interfaceIdentifier(class_.name));
}

const MethodDescription* ServiceObject::methodOf(DISPID member) const {
  const auto& methods = class_.methods;
  const auto found = std::find_if(methods.begin(), methods.end(),
                                  [&](const MethodDescription& method) { return method.id == member; });
  return found == methods.end() ? nullptr : &*found;
}

automation::Variant ServiceObject::run(const MethodDescription& method, const DISPPARAMS& parameters) {
  ArgumentBinder arguments(method, parameters);
  if (method.isProperty) return automation::Variant::of(invoke(*service_, method, arguments.bound()));
  HostCall call(*platform_, class_.transMode);
  auto answer = automation::Variant::of(invoke(*service_, method, arguments.bound()));
  arguments.prepareResults();
  call.finish();
  arguments.writeResults();
  return answer;
}

}  // namespace tolvane::com
