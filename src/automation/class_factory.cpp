#include "automation/class_factory.h"

#include <atomic>
#include <utility>

#include "automation/dispatch_object.h"
#include "automation/error_translation.h"

namespace tolvane::automation {
namespace {

/// Free-threaded: it keeps nothing but the function.
class ClassFactory : public IClassFactory {
 public:
  explicit ClassFactory(ObjectMaker make) : make_(std::move(make)) { ModuleUse::enter(); }
  virtual ~ClassFactory() { ModuleUse::leave(); }
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      return make_()->QueryInterface(iid, object);
    } catch (...) {
      return currentCode();
    }
  }
  STDMETHODIMP LockServer(BOOL lock) noexcept override {
    if (lock) {
      ModuleUse::enter();
    } else {
      ModuleUse::leave();
    }
    return S_OK;
  }

 private:
  ObjectMaker make_;
  std::atomic<ULONG> references_{0};
};

}  // namespace

HRESULT giveClassFactory(ObjectMaker make, REFIID iid, void** factory) noexcept {
  if (!factory) return E_POINTER;
  *factory = nullptr;
  try {
    return ComPtr<ClassFactory>(new ClassFactory(std::move(make)))->QueryInterface(iid, factory);
  } catch (...) {
    return currentCode();
  }
}

HRESULT canUnloadNow() noexcept {
  return ModuleUse::count() == 0 ? S_OK : S_FALSE;
}

}  // namespace tolvane::automation
