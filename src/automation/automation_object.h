// What all automation objects written in C++ have in common: references, their module, their thread.
#pragma once

#include <atomic>
#include <utility>

#include "automation/com_ptr.h"
#include "platform/error.h"
#include "platform/objects.h"

namespace tolvane::automation {

/// Objects of this module that are in use, with locks counted in; a DLL may go when it is 0.
class ModuleUse {
 public:
  static void enter() noexcept { ++count_; }
  static void leave() noexcept { --count_; }
  [[nodiscard]] static long count() noexcept { return count_; }

 private:
  static inline std::atomic<long> count_{0};
};

/// Base of the module's automation objects. Made by makeObject(); the last Release() ends it. It has no type
/// information unless a class says otherwise.
class AutomationObject : public IDispatch {
 public:
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID language, ITypeInfo** info) noexcept override;

  /// The portable object that this one shows; nothing where it shows none.
  [[nodiscard]] virtual ObjectRef shown() const { return {}; }

  /// The object if it is one of this very module's, else null. Modules built alike do not take each other's for their
  /// own.
  [[nodiscard]] static ComPtr<AutomationObject> ofThisModule(IDispatch* object);

 protected:
  AutomationObject() noexcept;
  virtual ~AutomationObject();

  /// A class's own interface, besides those that all have: a dispatch interface under its published identifier.
  [[nodiscard]] virtual bool isOwnInterface(REFIID) const noexcept { return false; }
  /// Whether the calling thread is the one that made the object. Calls from others are refused with RPC_E_WRONG_THREAD.
  [[nodiscard]] bool isOwnThread() const noexcept { return GetCurrentThreadId() == thread_; }

 private:
  std::atomic<ULONG> references_{0};
  DWORD thread_;
};

/// The one maker of automation objects.
template <typename T, typename... Arguments>
[[nodiscard]] ComPtr<T> makeObject(Arguments&&... arguments) {
  return ComPtr<T>(new T(std::forward<Arguments>(arguments)...));
}

/// The object of class `T` of this module behind a caller's reference; error 13 when it is something else, 91 for
/// nothing.
template <typename T>
[[nodiscard]] ComPtr<T> required(IDispatch* object) {
  if (!object) raise(RuntimeError::objectNotSet);
  const auto own = AutomationObject::ofThisModule(object);
  if (auto* found = dynamic_cast<T*>(own.get())) return ComPtr<T>(found);
  raise(RuntimeError::typeMismatch);
}

}  // namespace tolvane::automation
