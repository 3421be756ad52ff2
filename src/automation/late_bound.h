// Automation objects of others, asked by the names of their members.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "automation/com_ptr.h"
#include "automation/variant.h"

namespace tolvane::automation {

/// The name of a member and, from its first use on, its identifier. One RemoteMember serves all objects of one class;
/// it is used from one thread.
class RemoteMember {
 public:
  explicit RemoteMember(const wchar_t* name) : name_(name) {}
  [[nodiscard]] const wchar_t* name() const { return name_; }
  /// Asks the object when nothing was asked before. Error 438 when it has no such member.
  [[nodiscard]] DISPID in(IDispatch& object);

 private:
  const wchar_t* name_;
  DISPID id_ = DISPID_UNKNOWN;
};

/// One of someone else's objects. Errors of a member are raised with the number, Source and Description that it gives.
class LateBound {
 public:
  LateBound() = default;
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  [[nodiscard]] IDispatch* get() const { return object_.get(); }
  [[nodiscard]] const ComPtr<IDispatch>& reference() const { return object_; }
  explicit operator bool() const { return static_cast<bool>(object_); }

  /// Calls a method. Arguments are given in the order in which they are written.
  template <typename... Arguments>
  Variant call(RemoteMember& member, Arguments&&... arguments) const {
    return invoke(member, DISPATCH_METHOD, std::forward<Arguments>(arguments)...);
  }
  /// Reads a property, or calls a method that gives a value: clients that do not know which ask for both.
  template <typename... Arguments>
  [[nodiscard]] Variant read(RemoteMember& member, Arguments&&... arguments) const {
    return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::forward<Arguments>(arguments)...);
  }
  /// Sets a property; the new value is the last argument.
  template <typename... Arguments>
  void put(RemoteMember& member, Arguments&&... arguments) const {
    invoke(member, DISPATCH_PROPERTYPUT, std::forward<Arguments>(arguments)...);
  }
  /// Sets a property that holds an object.
  void putObject(RemoteMember& member, IDispatch* object) const {
    invoke(member, DISPATCH_PROPERTYPUTREF, Variant(object));
  }

 private:
  template <typename... Arguments>
  Variant invoke(RemoteMember& member, WORD flags, Arguments&&... arguments) const {
    if constexpr (sizeof...(Arguments) == 0) {
      return run(member, flags, {});
    } else {
      std::array<Variant, sizeof...(Arguments)> given{Variant(std::forward<Arguments>(arguments))...};
      return run(member, flags, given);
    }
  }
  Variant run(RemoteMember& member, WORD flags, std::span<const Variant> arguments) const;

  ComPtr<IDispatch> object_;
};

/// A registered class, known by its programmatic identifier (or its identifier in braces), which is looked up once.
class RemoteClass {
 public:
  explicit RemoteClass(std::wstring name) : name_(std::move(name)) {}
  [[nodiscard]] const std::wstring& name() const { return name_; }
  /// A new object; error 429 with the class's name when there is none.
  [[nodiscard]] LateBound create();

 private:
  std::wstring name_;
  std::optional<CLSID> identifier_;
};

}  // namespace tolvane::automation
