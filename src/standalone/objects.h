// The suite's foundation objects: keyed bags and ordered lists.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/objects.h"

namespace tolvane::standalone {

/// A bag in insertion order. Keys are found without regard to (ASCII) letter case and kept as they were first written.
class Dictionary : public PropertyBag {
 public:
  [[nodiscard]] std::int32_t count() const override;
  [[nodiscard]] std::string name(std::int32_t index) const override;
  [[nodiscard]] Value item(std::string_view key) const override;
  [[nodiscard]] Value getValue(std::string_view key, const Value& fallback = {}) const override;
  void set(std::string_view key, Value value) override;

 private:
  [[nodiscard]] const Value* find(std::string_view key) const;

  std::vector<std::pair<std::string, Value>> entries_;
};

/// Collection and vector alike.
class List : public ItemList {
 public:
  [[nodiscard]] std::int32_t count() const override;
  [[nodiscard]] Value item(std::int32_t index) const override;
  void add(Value value) override;

 private:
  std::vector<Value> items_;
};

}  // namespace tolvane::standalone
