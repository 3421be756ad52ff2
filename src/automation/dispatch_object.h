// Automation objects written in C++: what they have in common, and what a call of one of their members brings.
#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "automation/com_ptr.h"
#include "automation/variant.h"
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

/// A member as automation knows it.
struct Member {
  const wchar_t* name;
  DISPID id;
};
/// A class's members. Their identifiers are part of what clients compile into themselves: never changed, never reused.
using Members = std::span<const Member>;

/// A call of one member. Arguments are counted from 0 in the order in which they are written; named ones are not taken
/// by the objects of this module (448), but for the value of a property that is set, which is the last.
class MemberCall {
 public:
  /// Error 450 for more arguments than automation can pass, 448 for named ones.
  MemberCall(WORD flags, DISPPARAMS& parameters);

  /// The member is a property that is given a value; `set ... = object` counts too.
  [[nodiscard]] bool isPut() const { return (flags_ & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
  [[nodiscard]] std::size_t count() const { return parameters_.cArgs; }
  [[nodiscard]] bool given(std::size_t index) const;
  /// Error 449 when the argument is not given.
  [[nodiscard]] const VARIANT& argument(std::size_t index) const;
  [[nodiscard]] Value value(std::size_t index) const { return borrowVariant(argument(index)); }
  [[nodiscard]] Value value(std::size_t index, const Value& otherwise) const {
    return given(index) ? value(index) : otherwise;
  }
  /// For a value that outlives the call.
  [[nodiscard]] Value keptValue(std::size_t index) const { return copyVariant(argument(index)); }
  /// The value that the property is given.
  [[nodiscard]] const VARIANT& newValue() const { return argument(count() - 1); }
  /// Puts an out argument back where the caller can see it; an argument that cannot take it stays as it is.
  void giveBack(std::size_t index, Value&& value) const;

 private:
  WORD flags_;
  DISPPARAMS& parameters_;
};

/// Base of the module's automation objects. Made by makeObject() with no references; the last Release() ends it.
/// Calls from another thread than the one that made it are refused with RPC_E_WRONG_THREAD.
class DispatchObject : public IDispatch {
 public:
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID language, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID language, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID language, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* error, UINT* argument) noexcept override;

  /// The portable object that this one shows; nothing where it shows none.
  [[nodiscard]] virtual ObjectRef shown() const { return {}; }

  /// The object if it is one of this very module's, else null. Modules built alike do not take each other's for their
  /// own.
  [[nodiscard]] static ComPtr<DispatchObject> ofThisModule(IDispatch* object);

 protected:
  DispatchObject() noexcept;
  virtual ~DispatchObject();

  /// The names of members and their identifiers.
  [[nodiscard]] virtual Members members() const = 0;
  /// Runs a member; error 438 for an identifier that there is not.
  [[nodiscard]] virtual Variant call(DISPID member, const MemberCall& call) = 0;

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
  const auto own = DispatchObject::ofThisModule(object);
  if (auto* found = dynamic_cast<T*>(own.get())) return ComPtr<T>(found);
  raise(RuntimeError::typeMismatch);
}

/// For `call` at the end of a switch over its members.
[[noreturn]] void raiseNoSuchMember();

}  // namespace tolvane::automation
