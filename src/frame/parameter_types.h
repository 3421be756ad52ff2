// The types that cross a method's border, and how a C++ signature states them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/objects.h"
#include "platform/platform.h"
#include "platform/value.h"

namespace tolvane {

/// What a parameter takes or a method gives. `none` is the result of a method without one.
enum class ParameterType : std::uint8_t {
  none,
  boolean,
  int32,
  string,
  date,
  variant,
  object,
  propertyBag,
  itemList,
  recordset,
  int32Array,
  variantArray,
};
inline constexpr std::size_t parameterTypeCount = 12;

/// The type's name in listings and reference pages ("int32", "property bag", ...).
[[nodiscard]] std::string_view typeName(ParameterType type);

enum class Direction : std::uint8_t { in, inOut };

/// `value` as a parameter of `type` takes it: converted by automation's rules. Error 13 for what cannot be converted
/// (Null included), 6 for what does not fit.
[[nodiscard]] Value convertArgument(const Value& value, ParameterType type);

/// What a parameter of `type` holds before anyone has given it a value: 0, "", Empty, nothing, an array without
/// dimensions.
[[nodiscard]] Value emptyValue(ParameterType type);

/// A one-dimensional array with any lower bound, as methods receive and re-dimension it. Before it is dimensioned it
/// has neither bounds nor elements.
template <typename Element>
struct BoundedArray {
  std::int32_t lower = 0;
  std::vector<Element> elements;
  bool dimensioned = false;

  /// Discards what was there.
  void redimension(std::int32_t newLower, std::size_t count) {
    lower = newLower;
    elements.assign(count, Element{});
    dimensioned = true;
  }
  /// The last index; one below `lower` without elements, hence the wider type.
  [[nodiscard]] std::int64_t upper() const {
    return std::int64_t{lower} + static_cast<std::int64_t>(elements.size()) - 1;
  }
  /// Error 9 outside the bounds.
  [[nodiscard]] Element& at(std::int32_t index);
  [[nodiscard]] const Element& at(std::int32_t index) const { return const_cast<BoundedArray*>(this)->at(index); }
};
using Int32Array = BoundedArray<std::int32_t>;
using VariantArray = BoundedArray<Value>;

extern template struct BoundedArray<std::int32_t>;
extern template struct BoundedArray<Value>;

/// C++ object <-> Value, for arguments that convertArgument() has passed.
[[nodiscard]] Int32Array toInt32Array(const Value& value);
[[nodiscard]] VariantArray toVariantArray(const Value& value);
[[nodiscard]] Value fromArray(Int32Array array);
[[nodiscard]] Value fromArray(VariantArray array);

namespace detail {

template <typename T>
struct Crossing;  // no definition: a method has a parameter or result of a type that no door knows

template <>
struct Crossing<bool> {
  static constexpr ParameterType type = ParameterType::boolean;
  static bool take(Value& v) { return *v.get<bool>(); }
  static Value give(bool v) { return v; }
};
template <>
struct Crossing<std::int32_t> {
  static constexpr ParameterType type = ParameterType::int32;
  static std::int32_t take(Value& v) { return *v.get<std::int32_t>(); }
  static Value give(std::int32_t v) { return v; }
};
template <>
struct Crossing<std::string> {
  static constexpr ParameterType type = ParameterType::string;
  static std::string take(Value& v) { return *v.get<std::string>(); }
  static Value give(std::string v) { return v; }
};
template <>
struct Crossing<Date> {
  static constexpr ParameterType type = ParameterType::date;
  static Date take(Value& v) { return *v.get<Date>(); }
  static Value give(Date v) { return v; }
};
template <>
struct Crossing<Value> {
  static constexpr ParameterType type = ParameterType::variant;
  static Value take(Value& v) { return v; }
  static Value give(Value v) { return v; }
};
template <>
struct Crossing<Int32Array> {
  static constexpr ParameterType type = ParameterType::int32Array;
  static Int32Array take(Value& v) { return toInt32Array(v); }
  static Value give(Int32Array v) { return fromArray(std::move(v)); }
};
template <>
struct Crossing<VariantArray> {
  static constexpr ParameterType type = ParameterType::variantArray;
  static VariantArray take(Value& v) { return toVariantArray(v); }
  static Value give(VariantArray v) { return fromArray(std::move(v)); }
};
template <typename T, ParameterType kind>
struct ObjectCrossing {
  static constexpr ParameterType type = kind;
  static std::shared_ptr<T> take(Value& v) { return v.objectAs<T>(); }
  static Value give(std::shared_ptr<T> v) { return ObjectRef(std::move(v)); }
};
template <>
struct Crossing<ObjectRef> : ObjectCrossing<Object, ParameterType::object> {};
template <>
struct Crossing<std::shared_ptr<PropertyBag>> : ObjectCrossing<PropertyBag, ParameterType::propertyBag> {};
template <>
struct Crossing<std::shared_ptr<ItemList>> : ObjectCrossing<ItemList, ParameterType::itemList> {};
template <>
struct Crossing<std::shared_ptr<Recordset>> : ObjectCrossing<Recordset, ParameterType::recordset> {};

}  // namespace detail
}  // namespace tolvane
