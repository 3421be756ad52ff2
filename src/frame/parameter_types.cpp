#include "frame/parameter_types.h"

#include <array>
#include <string_view>

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

constexpr std::array<std::string_view, parameterTypeCount> typeNames{
    "none",   "boolean",      "int32",     "string",     "date",        "variant",
    "object", "property bag", "item list", "record set", "int32 array", "variant array"};

template <typename T>
Value convertObject(const Value& value) {
  if (value.isNothing() || value.objectAs<T>()) return value;
  raise(RuntimeError::typeMismatch);
}

Value convertArray(const Value& value, ValueType elementType) {
  const Array* given = value.array();
  if (!given || given->bounds.size() > 1) raise(RuntimeError::typeMismatch);
  if (given->elementType == elementType) return value;
  Array converted = *given;
  converted.elementType = elementType;
  if (elementType != ValueType::variant) {
    for (Value& element : converted.elements) element = convertArgument(element, ParameterType::int32);
  }
  return converted;
}

Value convertScalar(const Value& value, ValueType type) {
  if (value.isNull() || value.isArray()) raise(RuntimeError::typeMismatch);
  return changeType(value, type);
}

template <typename Element>
BoundedArray<Element> unpack(const Value& value) {
  BoundedArray<Element> result;
  const Array* array = value.array();
  if (!array || array->bounds.empty()) return result;
  result.redimension(array->bounds.front().lower, 0);
  result.elements.reserve(array->elements.size());
  for (const Value& element : array->elements) {
    if constexpr (std::is_same_v<Element, Value>) {
      result.elements.push_back(element);
    } else {
      result.elements.push_back(*element.get<Element>());
    }
  }
  return result;
}

template <typename Element>
Value pack(BoundedArray<Element> array, ValueType type) {
  if (!array.dimensioned) return Array{type, {}, {}};
  std::vector<Value> elements(std::make_move_iterator(array.elements.begin()),
                              std::make_move_iterator(array.elements.end()));
  return Array::of(type, std::move(elements), array.lower);
}

}  // namespace

std::string_view typeName(ParameterType type) {
  return typeNames[static_cast<std::size_t>(type)];
}

Value convertArgument(const Value& value, ParameterType type) {
  switch (type) {
    case ParameterType::none:
    case ParameterType::variant:
      return value;
    case ParameterType::boolean:
      return convertScalar(value, ValueType::boolean);
    case ParameterType::int32:
      return convertScalar(value, ValueType::int32);
    case ParameterType::string:
      return convertScalar(value, ValueType::string);
    case ParameterType::date:
      return convertScalar(value, ValueType::date);
    case ParameterType::object:
      return convertObject<Object>(value);
    case ParameterType::propertyBag:
      return convertObject<PropertyBag>(value);
    case ParameterType::itemList:
      return convertObject<ItemList>(value);
    case ParameterType::recordset:
      return convertObject<Recordset>(value);
    case ParameterType::int32Array:
      return convertArray(value, ValueType::int32);
    case ParameterType::variantArray:
      return convertArray(value, ValueType::variant);
  }
  raise(RuntimeError::typeMismatch);
}

Value emptyValue(ParameterType type) {
  switch (type) {
    case ParameterType::none:
    case ParameterType::variant:
      return {};
    case ParameterType::boolean:
      return false;
    case ParameterType::int32:
      return std::int32_t{0};
    case ParameterType::string:
      return std::string();
    case ParameterType::date:
      return Date{};
    case ParameterType::object:
    case ParameterType::propertyBag:
    case ParameterType::itemList:
    case ParameterType::recordset:
      return ObjectRef();
    case ParameterType::int32Array:
      return Array{ValueType::int32, {}, {}};
    case ParameterType::variantArray:
      return Array{ValueType::variant, {}, {}};
  }
  return {};
}

template <typename Element>
Element& BoundedArray<Element>::at(std::int32_t index) {
  const auto offset = static_cast<std::int64_t>(index) - lower;
  if (offset < 0 || offset >= static_cast<std::int64_t>(elements.size())) raise(RuntimeError::subscriptOutOfRange);
  return elements[static_cast<std::size_t>(offset)];
}
template struct BoundedArray<std::int32_t>;
template struct BoundedArray<Value>;

Int32Array toInt32Array(const Value& value) {
  return unpack<std::int32_t>(value);
}
VariantArray toVariantArray(const Value& value) {
  return unpack<Value>(value);
}
Value fromArray(Int32Array array) {
  return pack(std::move(array), ValueType::int32);
}
Value fromArray(VariantArray array) {
  return pack(std::move(array), ValueType::variant);
}

}  // namespace tolvane
