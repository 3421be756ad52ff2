// A client of NorvStandalone.dll: objects of its classes, asked by the names of their members.
#pragma once

#include <string>
#include <type_traits>
#include <utility>

#include "automation/com_ptr.h"
#include "automation/late_bound.h"
#include "automation/variant.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "platform/value.h"

namespace tolvane::standalone_com::testing {

/// An automation object in a test's few words.
class Client {
 public:
  Client() = default;
  explicit Client(automation::ComPtr<IDispatch> object) : object_(std::move(object)) {}
  explicit Client(const automation::Variant& result) : object_(result.object()) {}
  /// A new object of a class ("Recordset") of the DLL, which need not be registered.
  [[nodiscard]] static Client create(const std::string& className);

  /// Whether the DLL says that it may be unloaded.
  [[nodiscard]] static bool canUnload();

  template <typename... Arguments>
  Value get(const wchar_t* name, Arguments&&... arguments) const {
    automation::RemoteMember member(name);
    return object_.read(member, toVariant(std::forward<Arguments>(arguments))...).take();
  }
  template <typename... Arguments>
  [[nodiscard]] Client object(const wchar_t* name, Arguments&&... arguments) const {
    automation::RemoteMember member(name);
    return Client(object_.read(member, toVariant(std::forward<Arguments>(arguments))...));
  }
  template <typename... Arguments>
  void put(const wchar_t* name, Arguments&&... arguments) const {
    automation::RemoteMember member(name);
    object_.put(member, toVariant(std::forward<Arguments>(arguments))...);
  }
  /// `set object.name = other`; a client without object stands for nothing.
  void putObject(const wchar_t* name, const Client& other) const {
    automation::RemoteMember member(name);
    object_.putObject(member, other.dispatch());
  }

  [[nodiscard]] IDispatch* dispatch() const { return object_.get(); }
  explicit operator bool() const { return static_cast<bool>(object_); }

 private:
  [[nodiscard]] static automation::Variant toVariant(automation::Variant&& value) { return std::move(value); }
  [[nodiscard]] static automation::Variant toVariant(const Client& value) { return value.dispatch(); }
  [[nodiscard]] static automation::Variant toVariant(Value value) { return automation::Variant::of(std::move(value)); }
  template <typename T>
  [[nodiscard]] static automation::Variant toVariant(const T& value) {
    if constexpr (std::is_constructible_v<automation::Variant, const T&>) {
      return automation::Variant(value);
    } else {
      return automation::Variant::of(Value(value));
    }
  }

  automation::LateBound object_;
};

[[nodiscard]] std::string textOf(const AutomationError& error);
/// "80040E37 Source: Description" of the error that `work` ends with; "none" when it ends without.
template <typename Work>
[[nodiscard]] std::string errorOf(Work&& work) {
  try {
    work();
    return "none";
  } catch (const AutomationError& error) {
    return textOf(error);
  }
}

/// An account set in a file of its own, and a connection to it. The file is removed again.
class TryOut {
 public:
  TryOut();
  ~TryOut();
  TryOut(const TryOut&) = delete;
  TryOut& operator=(const TryOut&) = delete;

  [[nodiscard]] const std::string& dsn() const { return dsn_; }
  [[nodiscard]] const Client& application() const { return application_; }
  [[nodiscard]] const Client& connection() const { return connection_; }
  void run(const std::string& sql) const { (void)connection_.get(L"Execute", sql); }
  /// The first value of the first row.
  [[nodiscard]] Value asked(const std::string& sql) const;

 private:
  std::string dsn_;
  Client application_;
  Client connection_;
};

}  // namespace tolvane::standalone_com::testing
