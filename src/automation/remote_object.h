// Objects that callers pass: bags and lists of theirs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/late_bound.h"
#include "automation/object_border.h"
#include "platform/objects.h"

namespace tolvane::automation {

/// Asks a caller's object by its members' names: `GetValue`, `Name`, `Count`, `Add` and the default member. It serves
/// as a bag and as a list, whichever a method takes; a member that the object does not have is error 438, and an object
/// that fails when it is asked fails the method with its own error.
class RemoteObject : public PropertyBag, public ItemList, public RemoteReference {
 public:
  explicit RemoteObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  [[nodiscard]] IDispatch* dispatch() const override { return object_.get(); }

  [[nodiscard]] std::int32_t count() const override;
  // As a bag.
  [[nodiscard]] std::string name(std::int32_t index) const override;
  [[nodiscard]] Value item(std::string_view key) const override;
  [[nodiscard]] Value getValue(std::string_view key, const Value& fallback) const override;
  void set(std::string_view key, Value value) override;
  // As a list.
  [[nodiscard]] Value item(std::int32_t index) const override;
  void add(Value value) override;

 private:
  LateBound object_;
  mutable RemoteMember count_{L"Count"};
  mutable RemoteMember name_{L"Name"};
  mutable RemoteMember item_{L"Item"};
  mutable RemoteMember getValue_{L"GetValue"};
  mutable RemoteMember add_{L"Add"};
};

}  // namespace tolvane::automation
