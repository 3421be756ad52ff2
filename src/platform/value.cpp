#include "platform/value.h"

#include <array>

namespace tolvane {
namespace {

// In the order of Value::Storage.
constexpr std::array<ValueType, std::variant_size_v<Value::Storage>> kinds{
    ValueType::empty, ValueType::null,    ValueType::boolean, ValueType::byte,    ValueType::int16,
    ValueType::int32, ValueType::int64,   ValueType::single,  ValueType::real,    ValueType::currency,
    ValueType::date,  ValueType::decimal, ValueType::string,  ValueType::variant, ValueType::variant,
    ValueType::error, ValueType::object};

}  // namespace

Value::Value(Array v) : storage_(std::make_shared<const Array>(std::move(v))) {}

std::uint16_t Value::typeNumber() const {
  if (get<Bytes>()) return arrayFlag | static_cast<std::uint16_t>(ValueType::byte);
  if (const Array* a = array()) return arrayFlag | static_cast<std::uint16_t>(a->elementType);
  return static_cast<std::uint16_t>(type());
}

ValueType Value::type() const {
  return kinds[storage_.index()];
}

bool Value::isMissing() const noexcept {
  const auto* code = get<ErrorCode>();
  return code && *code == missingArgument;
}

bool Value::isArray() const noexcept {
  return get<Bytes>() || array();
}

bool Value::isNothing() const noexcept {
  const auto* object = get<ObjectRef>();
  return object && !*object;
}

const Array* Value::array() const noexcept {
  const auto* shared = get<std::shared_ptr<const Array>>();
  return shared ? shared->get() : nullptr;
}

bool operator==(const Value& a, const Value& b) {
  if (a.array() && b.array()) return *a.array() == *b.array();
  return a.storage_ == b.storage_;
}

Array Array::of(ValueType elementType, std::vector<Value> elements, std::int32_t lower) {
  Array array{elementType, {{lower, static_cast<std::uint32_t>(elements.size())}}, std::move(elements)};
  return array;
}

}  // namespace tolvane
