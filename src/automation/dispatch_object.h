// Automation objects whose members are called by number: their table, and what a call brings.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "automation/automation_object.h"
#include "automation/variant.h"

namespace tolvane::automation {

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

/// An automation object whose members stand in a table of names and run in a switch over identifiers.
class DispatchObject : public AutomationObject {
 public:
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID language, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID language, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* error, UINT* argument) noexcept override;

 protected:
  /// The names of members and their identifiers.
  [[nodiscard]] virtual Members members() const = 0;
  /// Runs a member; error 438 for an identifier that there is not.
  [[nodiscard]] virtual Variant call(DISPID member, const MemberCall& call) = 0;
};

/// For `call` at the end of a switch over its members.
[[noreturn]] void raiseNoSuchMember();

}  // namespace tolvane::automation
