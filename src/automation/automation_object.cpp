#include "automation/automation_object.h"

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

AutomationObject::AutomationObject() noexcept : thread_(GetCurrentThreadId()) {
  ModuleUse::enter();
}

AutomationObject::~AutomationObject() {
  ModuleUse::leave();
}

STDMETHODIMP AutomationObject::QueryInterface(REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch && iid != moduleIdentity() && !isOwnInterface(iid)) {
    return E_NOINTERFACE;
  }
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) AutomationObject::AddRef() noexcept {
  return ++references_;
}

STDMETHODIMP_(ULONG) AutomationObject::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP AutomationObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

ComPtr<AutomationObject> AutomationObject::ofThisModule(IDispatch* object) {
  const auto own = ComPtr<IDispatch>(object).as<IDispatch>(moduleIdentity());
  return ComPtr<AutomationObject>(static_cast<AutomationObject*>(own.get()));
}

}  // namespace tolvane::automation
