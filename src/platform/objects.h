// The suite's foundation objects: keyed bags and ordered lists, as callers pass them in and get them back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane {

/// A keyed bag in the order in which its entries were added; keys are found without regard to letter case.
/// A caller's bag may be anything that answers these questions, and may raise errors of its own.
class PropertyBag : public Object {
 public:
  [[nodiscard]] virtual std::int32_t count() const = 0;
  /// The key of entry `index`, counted from 1; error 9 outside.
  [[nodiscard]] virtual std::string name(std::int32_t index) const = 0;
  /// The default member: the value under `key`, Empty when there is none.
  [[nodiscard]] virtual Value item(std::string_view key) const = 0;
  /// The value under `key`, `fallback` when there is none.
  [[nodiscard]] virtual Value getValue(std::string_view key, const Value& fallback = {}) const = 0;
  /// Adds an entry at the end, or replaces the value of one that is there.
  virtual void set(std::string_view key, Value value) = 0;
};

/// An ordered list (the suite's collection and vector alike); its items are counted from 1.
class ItemList : public Object {
 public:
  [[nodiscard]] virtual std::int32_t count() const = 0;
  /// Error 9 outside 1 to count().
  [[nodiscard]] virtual Value item(std::int32_t index) const = 0;
  virtual void add(Value value) = 0;
};

}  // namespace tolvane
