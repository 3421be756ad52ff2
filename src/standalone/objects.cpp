#include "standalone/objects.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/names.h"

namespace tolvane::standalone {
namespace {

// As many as a row of the report lists has columns: most bags are made once and never grow.
constexpr std::size_t usualEntries = 12;

template <typename Items>
const auto& at(const Items& items, std::int32_t index) {
  if (index < 1 || static_cast<std::size_t>(index) > items.size()) raise(RuntimeError::subscriptOutOfRange);
  return items[static_cast<std::size_t>(index) - 1];
}

}  // namespace

std::int32_t Dictionary::count() const {
  return static_cast<std::int32_t>(entries_.size());
}

std::string Dictionary::name(std::int32_t index) const {
  return at(entries_, index).first;
}

const Value* Dictionary::find(std::string_view key) const {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const auto& entry) { return sameName(entry.first, key); });
  return found == entries_.end() ? nullptr : &found->second;
}

Value Dictionary::item(std::string_view key) const {
  return getValue(key);
}

Value Dictionary::getValue(std::string_view key, const Value& fallback) const {
  const Value* value = find(key);
  return value ? *value : fallback;
}

void Dictionary::set(std::string_view key, Value value) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const auto& entry) { return sameName(entry.first, key); });
  if (found != entries_.end()) {
    found->second = std::move(value);
  } else {
    if (entries_.empty()) entries_.reserve(usualEntries);
    entries_.emplace_back(std::string(key), std::move(value));
  }
}

std::int32_t List::count() const {
  return static_cast<std::int32_t>(items_.size());
}

Value List::item(std::int32_t index) const {
  return at(items_, index);
}

void List::add(Value value) {
  items_.push_back(std::move(value));
}

}  // namespace tolvane::standalone
