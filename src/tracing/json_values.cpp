#include "tracing/json_values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/data_access.h"
#include "platform/objects.h"

namespace tolvane::tracing {
namespace {

struct ElementName {
  ValueType type;
  std::string_view name;
};
constexpr std::array elementNames{
    ElementName{ValueType::variant, "variant"}, ElementName{ValueType::string, "string"},
    ElementName{ValueType::int16, "int16"},     ElementName{ValueType::int32, "int32"},
    ElementName{ValueType::real, "double"},     ElementName{ValueType::boolean, "boolean"},
    ElementName{ValueType::date, "date"},       ElementName{ValueType::currency, "currency"},
    ElementName{ValueType::single, "single"},   ElementName{ValueType::byte, "byte"},
    ElementName{ValueType::decimal, "decimal"}, ElementName{ValueType::object, "object"},
};

Json tagged(const char* tag, Json content) {
  Json result = Json::object();
  result[tag] = std::move(content);
  return result;
}

Json doubleToJson(double value) {
  if (std::isfinite(value)) return value;
  return tagged("$double", toText(value));
}

Json singleToJson(float value) {
  if (!std::isfinite(value)) return tagged("$single", toText(value));
  // The shortest text of the single, not the longer one of the double that equals it.
  std::array<char, 32> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  double shortest = 0;
  std::from_chars(buffer.data(), end, shortest);
  return tagged("$single", shortest);
}

Json bagToJson(const PropertyBag& bag) {
  Json result = Json::object();
  for (std::int32_t i = 1; i <= bag.count(); ++i) {
    const std::string name = bag.name(i);
    result[name] = traceToJson(bag.item(name));
  }
  return result;
}

Json listToJson(const ItemList& list) {
  Json items = Json::array();
  for (std::int32_t i = 1; i <= list.count(); ++i) items.push_back(traceToJson(list.item(i)));
  return items;
}

Json arrayToJson(const Array& array) {
  Json elements = Json::array();
  for (const auto& element : array.elements) elements.push_back(traceToJson(element));
  Json result = tagged("$array", std::move(elements));
  result["type"] = elementTypeName(array.elementType);
  return result;
}

}  // namespace

std::string_view elementTypeName(ValueType type) {
  for (const auto& row : elementNames) {
    if (row.type == type) return row.name;
  }
  return "variant";
}

std::string hexNumber(std::uint32_t number) {
  std::array<char, 16> buffer;
  const int length = std::snprintf(buffer.data(), buffer.size(), "0x%08X", number);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

Json scalarToJson(const Value& value) {
  switch (value.type()) {
    case ValueType::empty:
      return tagged("$empty", true);
    case ValueType::null:
      return nullptr;
    case ValueType::boolean:
      return *value.get<bool>();
    case ValueType::byte:
      return tagged("$byte", *value.get<std::uint8_t>());
    case ValueType::int16:
      return tagged("$int16", *value.get<std::int16_t>());
    case ValueType::int32:
      return *value.get<std::int32_t>();
    case ValueType::int64:
      return tagged("$decimal", std::to_string(*value.get<std::int64_t>()));
    case ValueType::single:
      return singleToJson(*value.get<float>());
    case ValueType::real:
      return doubleToJson(*value.get<double>());
    case ValueType::currency:
      return tagged("$currency", exactText(*value.get<Currency>()));
    case ValueType::decimal:
      return tagged("$decimal", exactText(*value.get<Decimal>()));
    case ValueType::date:
      return tagged("$date", isoText(*value.get<Date>()));
    case ValueType::string:
      return *value.get<std::string>();
    case ValueType::error:
      return tagged("$error", hexNumber(value.get<ErrorCode>()->code));
    case ValueType::object:
      return value.isNothing() ? tagged("$nothing", true) : Json();
    case ValueType::variant:
      break;
  }
  return {};
}

Json traceToJson(const Value& value) {
  if (const auto* bytes = value.get<Bytes>()) return tagged("$bytes", bytes->size());
  if (const auto* array = value.array()) return arrayToJson(*array);
  if (const auto bag = value.objectAs<PropertyBag>()) return bagToJson(*bag);
  if (const auto list = value.objectAs<ItemList>()) return tagged("$list", listToJson(*list));
  if (value.objectAs<Recordset>()) return tagged("$recordset", Json::object());
  return scalarToJson(value);
}

}  // namespace tolvane::tracing
