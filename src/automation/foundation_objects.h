// Bags and lists as automation objects.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "automation/dispatch_object.h"
#include "platform/objects.h"

namespace tolvane::automation {

/// A property bag: `Item(key)` (default, can be set), `Count`, `Name(index)`, `GetValue(key[, default])`,
/// `Add(key, value)`; "for each" gives the keys in order.
class BagObject : public DispatchObject {
 public:
  explicit BagObject(std::shared_ptr<PropertyBag> bag) : bag_(std::move(bag)) {}
  [[nodiscard]] ObjectRef shown() const override { return bag_; }

 protected:
  [[nodiscard]] Members members() const override;
  [[nodiscard]] Variant call(DISPID member, const MemberCall& call) override;

 private:
  std::shared_ptr<PropertyBag> bag_;
};

/// A row list, collection or vector: `Item(index)` (default, from 1), `Count`, `Add(value)`; "for each" gives the
/// items.
class ListObject : public DispatchObject {
 public:
  explicit ListObject(std::shared_ptr<ItemList> list) : list_(std::move(list)) {}
  [[nodiscard]] ObjectRef shown() const override { return list_; }

 protected:
  [[nodiscard]] Members members() const override;
  [[nodiscard]] Variant call(DISPID member, const MemberCall& call) override;

 private:
  std::shared_ptr<ItemList> list_;
};

/// The answer to "for each": walks over `count()` items that `item(index)`, from 1, gives when they are asked for. The
/// functions keep alive what they ask.
[[nodiscard]] Variant enumerationResult(std::function<std::int32_t()> count, std::function<Variant(std::int32_t)> item);

}  // namespace tolvane::automation
