#include "host/value_codec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>

#include "host/base64.h"
#include "host/usage_error.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/data_access.h"
#include "platform/error.h"
#include "platform/objects.h"
#include "standalone/objects.h"
#include "tracing/secrets.h"

namespace tolvane::host {
namespace {

// Deeper values are nobody's values; the bound keeps a crafted text from exhausting the stack.
constexpr int deepest = 64;

[[noreturn]] void refuse(const std::string& why) {
  throw UsageError(why);
}

// ---- reading --------------------------------------------------------------------------------------------------------

Value decode(const Json& json, ParameterType type, int depth);

struct ElementType {
  std::string_view name;
  ValueType type;
};
constexpr std::array elementTypes{
    ElementType{"variant", ValueType::variant}, ElementType{"string", ValueType::string},
    ElementType{"int16", ValueType::int16},     ElementType{"int32", ValueType::int32},
    ElementType{"double", ValueType::real},     ElementType{"boolean", ValueType::boolean},
    ElementType{"date", ValueType::date},       ElementType{"currency", ValueType::currency},
};

ValueType elementTypeOf(const Json& name) {
  for (const auto& row : elementTypes) {
    if (name.is_string() && name.get<std::string>() == row.name) return row.type;
  }
  std::string known;
  for (const auto& row : elementTypes) known += (known.empty() ? "" : ", ") + std::string(row.name);
  refuse("An array's \"type\" is one of " + known + "; " + name.dump() + " is none.");
}

template <typename Integer>
Integer integerIn(const Json& json, const std::string& what) {
  const bool whole = json.is_number_integer() && !(json.is_number_unsigned() && json.get<std::uint64_t>() > INT64_MAX);
  const std::int64_t number = whole ? json.get<std::int64_t>() : 0;
  if (!whole || number < std::numeric_limits<Integer>::min() || number > std::numeric_limits<Integer>::max()) {
    refuse(what + " holds a whole number from " + std::to_string(std::numeric_limits<Integer>::min()) + " to " +
           std::to_string(std::numeric_limits<Integer>::max()) + "; " + json.dump() + " is none.");
  }
  return static_cast<Integer>(number);
}

std::string textIn(const Json& json, const std::string& what, const char* example) {
  if (!json.is_string()) refuse(what + " holds a text, such as " + example + "; " + json.dump() + " is none.");
  return json.get<std::string>();
}

double realIn(const Json& json, const std::string& what) {
  if (!json.is_number()) refuse(what + " holds a number; " + json.dump() + " is none.");
  return json.get<double>();
}

void requireTrue(const Json& json, const std::string& what) {
  if (json != Json(true)) refuse(what + " is written {\"" + what + "\":true}.");
}

/// Refuses keys beside the tag that its form does not have.
void allowOnly(const Json& json, std::initializer_list<std::string_view> keys) {
  for (const auto& [key, value] : json.items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      refuse("A value with \"" + std::string(*keys.begin()) + "\" has no \"" + key + "\".");
    }
  }
}

Value decodeBytes(const Json& json) {
  allowOnly(json, {"$bytes", "lower"});
  auto bytes = readBase64(textIn(json["$bytes"], "$bytes", "\"AAEC\""));
  if (!bytes) refuse("$bytes holds base64; the text given is not base64.");
  const auto lower = json.contains("lower") ? integerIn<std::int32_t>(json["lower"], "lower") : 0;
  return Bytes(std::move(*bytes), lower);
}

Value elementOf(const Json& json, ValueType type, int depth) {
  Value element = decode(json, ParameterType::variant, depth);
  try {
    return changeType(element, type);
  } catch (const AutomationError&) {
    refuse("The array's element " + json.dump() + " is not of the array's type.");
  }
}

std::vector<Value> elementsOf(const Json& json, ValueType type, int depth) {
  if (!json.is_array()) refuse("$array holds a JSON array; " + json.dump() + " is none.");
  std::vector<Value> elements;
  elements.reserve(json.size());
  for (const auto& element : json) elements.push_back(elementOf(element, type, depth + 1));
  return elements;
}

std::vector<Bound> boundsIn(const Json& json) {
  const std::string form = "\"bounds\" holds a pair [lower, upper] for each dimension; " + json.dump() + " does not.";
  if (!json.is_array() || json.empty()) refuse(form);
  std::vector<Bound> bounds;
  for (const auto& pair : json) {
    if (!pair.is_array() || pair.size() != 2) refuse(form);
    const auto lower = integerIn<std::int32_t>(pair[0], "bounds");
    const auto upper = integerIn<std::int32_t>(pair[1], "bounds");
    const std::int64_t count = static_cast<std::int64_t>(upper) - lower + 1;
    if (count < 0) refuse(form);
    bounds.push_back({lower, static_cast<std::uint32_t>(count)});
  }
  return bounds;
}

Value decodeArray(const Json& json, int depth) {
  allowOnly(json, {"$array", "type", "lower", "bounds"});
  const ValueType type = json.contains("type") ? elementTypeOf(json["type"]) : ValueType::variant;
  auto elements = elementsOf(json["$array"], type, depth);
  if (!json.contains("bounds")) {
    const auto lower = json.contains("lower") ? integerIn<std::int32_t>(json["lower"], "lower") : 0;
    return Array::of(type, std::move(elements), lower);
  }
  if (json.contains("lower")) refuse("An array has \"lower\" or \"bounds\", not both.");
  Array array{type, boundsIn(json["bounds"]), std::move(elements)};
  double count = 1;
  for (const auto& bound : array.bounds) count *= bound.count;
  if (count != static_cast<double>(array.elements.size())) {
    refuse("The array has " + std::to_string(array.elements.size()) +
           " elements, and its bounds ask for another number.");
  }
  return array;
}

Value decodeList(const Json& json, int depth) {
  allowOnly(json, {"$list"});
  if (!json["$list"].is_array()) refuse("$list holds a JSON array; " + json["$list"].dump() + " is none.");
  auto list = std::make_shared<standalone::List>();
  for (const auto& item : json["$list"]) list->add(decode(item, ParameterType::variant, depth + 1));
  return list;
}

Value decodeBag(const Json& json, int depth) {
  auto bag = std::make_shared<standalone::Dictionary>();
  for (const auto& [key, value] : json.items()) {
    if (key.starts_with('$')) refuse("No key of a property bag begins with \"$\"; \"" + key + "\" does.");
    bag->set(key, decode(value, ParameterType::variant, depth + 1));
  }
  return bag;
}

Value decodeCurrency(const Json& json) {
  const auto value = parseCurrency(textIn(json, "$currency", "\"12.3400\""));
  if (!value) refuse("$currency holds a decimal number with four decimals at most; " + json.dump() + " is none.");
  return *value;
}

Value decodeDecimal(const Json& json) {
  const auto value = parseDecimal(textIn(json, "$decimal", "\"0.1\""));
  if (!value) refuse("$decimal holds a decimal number of 28 digits at most; " + json.dump() + " is none.");
  return *value;
}

Value decodeDate(const Json& json) {
  const auto value = parseDate(textIn(json, "$date", "\"2012-03-15T00:00:00\""));
  if (!value) refuse("$date holds a day and a time, such as \"2012-03-15T00:00:00\"; " + json.dump() + " is none.");
  return *value;
}

Value decodeSingle(const Json& json) {
  const double value = realIn(json, "$single");
  if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
    refuse("$single holds a number that fits a single; " + json.dump() + " does not.");
  }
  return static_cast<float>(value);
}

Value decodeErrorCode(const Json& json) {
  const std::string text = textIn(json, "$error", "\"0x80020004\"");
  std::uint32_t code = 0;
  const char* first = text.data() + (text.starts_with("0x") ? 2 : 0);
  const auto [end, error] = std::from_chars(first, text.data() + text.size(), code, 16);
  if (error != std::errc() || end != text.data() + text.size()) {
    refuse("$error holds a hexadecimal number, such as \"0x80020004\"; " + json.dump() + " is none.");
  }
  return ErrorCode{code};
}

Value decodeTagged(const Json& json, int depth) {
  const std::string tag = json.begin().key();
  const Json& content = json.begin().value();
  if (tag == "$bytes") return decodeBytes(json);
  if (tag == "$array") return decodeArray(json, depth);
  if (tag == "$list") return decodeList(json, depth);
  if (json.size() != 1) refuse("A value with \"" + tag + "\" has no other key.");
  if (tag == "$empty") return requireTrue(content, tag), Value();
  if (tag == "$nothing") return requireTrue(content, tag), Value(ObjectRef());
  if (tag == "$int16") return integerIn<std::int16_t>(content, tag);
  if (tag == "$byte") return integerIn<std::uint8_t>(content, tag);
  if (tag == "$double") return realIn(content, tag);
  if (tag == "$single") return decodeSingle(content);
  if (tag == "$currency") return decodeCurrency(content);
  if (tag == "$decimal") return decodeDecimal(content);
  if (tag == "$date") return decodeDate(content);
  if (tag == "$error") return decodeErrorCode(content);
  if (tag == "$recordset") refuse("A record set is a result only; no method is given one.");
  refuse("\"" + tag +
         "\" is no kind of value. The kinds are $empty, $nothing, $int16, $byte, $double, $single, "
         "$currency, $decimal, $date, $bytes, $array and $list.");
}

Value decodeNumber(const Json& json) {
  if (json.is_number_float()) return json.get<double>();
  const bool fits = json.is_number_unsigned()
                        ? json.get<std::uint64_t>() <= INT32_MAX
                        : json.get<std::int64_t>() >= INT32_MIN && json.get<std::int64_t>() <= INT32_MAX;
  if (fits) return json.get<std::int32_t>();
  return json.get<double>();
}

Value decode(const Json& json, ParameterType type, int depth) {
  if (depth > deepest) refuse("The value is nested too deeply.");
  switch (json.type()) {
    case Json::value_t::null:
      return Null{};
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float:
      return decodeNumber(json);
    case Json::value_t::array: {
      const auto element = type == ParameterType::int32Array ? ValueType::int32 : ValueType::variant;
      return Array::of(element, elementsOf(json, element, depth));
    }
    case Json::value_t::object:
      if (!json.empty() && json.begin().key().starts_with('$')) return decodeTagged(json, depth);
      return decodeBag(json, depth);
    case Json::value_t::binary:
    case Json::value_t::discarded:
      break;
  }
  refuse("The text is not JSON.");
}

// ---- writing --------------------------------------------------------------------------------------------------------

class Writer {
 public:
  Writer(std::ostream& out, bool showSecrets) : out_(out), showSecrets_(showSecrets) {}

  void write(const Value& value) {
    if (const auto* bytes = value.get<Bytes>()) return writeBytes(*bytes);
    if (const auto* array = value.array()) return writeArray(*array);
    if (value.isObject() && !value.isNothing()) return writeObject(value);
    out_ << tracing::scalarToJson(showSecrets_ ? value : tracing::maskValue(value))
                .dump(-1, ' ', false, Json::error_handler_t::replace);
  }

 private:
  void writeNamed(std::string_view name, const Value& value) {
    const bool hide = !showSecrets_ && tracing::isSecretName(name) && !value.isNull() && value != Value("");
    write(hide ? Value(tracing::hidden) : value);
  }

  void writeBytes(const Bytes& bytes) {
    out_ << "{\"$bytes\":\"";
    writeBase64(out_, bytes.view());
    out_ << '"';
    if (bytes.lower() != 0) out_ << ",\"lower\":" << bytes.lower();
    out_ << '}';
  }

  void writeArray(const Array& array) {
    out_ << "{\"$array\":[";
    for (std::size_t i = 0; i < array.elements.size(); ++i) {
      if (i > 0) out_ << ',';
      write(array.elements[i]);
    }
    out_ << "],\"type\":\"" << tracing::elementTypeName(array.elementType) << '"';
    if (array.bounds.size() <= 1) {
      out_ << ",\"lower\":" << (array.bounds.empty() ? 0 : array.bounds.front().lower);
    } else {
      writeBounds(array.bounds);
    }
    out_ << '}';
  }

  void writeBounds(const std::vector<Bound>& bounds) {
    out_ << ",\"bounds\":[";
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      const std::int64_t upper = static_cast<std::int64_t>(bounds[i].lower) + bounds[i].count - 1;
      out_ << (i > 0 ? "," : "") << '[' << bounds[i].lower << ',' << upper << ']';
    }
    out_ << ']';
  }

  void writeObject(const Value& value) {
    if (const auto bag = value.objectAs<PropertyBag>()) return writeBag(*bag);
    if (const auto list = value.objectAs<ItemList>()) return writeList(*list);
    if (const auto rows = value.objectAs<Recordset>()) return writeRecordset(*rows);
    raise(RuntimeError::typeNotSupported);
  }

  void writeBag(const PropertyBag& bag) {
    out_ << '{';
    for (std::int32_t i = 1; i <= bag.count(); ++i) {
      const std::string name = bag.name(i);
      out_ << (i > 1 ? "," : "") << quoted(name) << ':';
      writeNamed(name, bag.item(name));
    }
    out_ << '}';
  }

  void writeList(const ItemList& list) {
    out_ << "{\"$list\":[";
    for (std::int32_t i = 1; i <= list.count(); ++i) {
      if (i > 1) out_ << ',';
      write(list.item(i));
    }
    out_ << "]}";
  }

  void writeRecordset(Recordset& rows) {
    out_ << "{\"$recordset\":{\"fields\":[";
    const bool open = rows.state() == ObjectState::open;
    const std::vector<FieldInfo> fields = open ? rows.fields() : std::vector<FieldInfo>{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
      out_ << (i > 0 ? "," : "") << "{\"name\":" << quoted(fields[i].name)
           << ",\"type\":" << static_cast<std::int32_t>(fields[i].type) << '}';
    }
    out_ << "],\"rows\":[";
    if (open && !(rows.bof() && rows.eof())) writeRows(rows, fields);
    out_ << "]}}";
  }

  void writeRows(Recordset& rows, const std::vector<FieldInfo>& fields) {
    bool first = true;
    for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
      out_ << (first ? "[" : ",[");
      first = false;
      for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) out_ << ',';
        writeNamed(fields[i].name, rows.value(i));
      }
      out_ << ']';
    }
  }

  std::ostream& out_;
  bool showSecrets_;
};

}  // namespace

Json parseJson(const std::string& text) {
  try {
    return Json::parse(text);
  } catch (const nlohmann::json::exception& error) {
    throw UsageError(error.what());
  }
}

Value decodeValue(const Json& json, ParameterType type) {
  return decode(json, type, 0);
}

void writeValue(std::ostream& out, const Value& value, bool showSecrets) {
  Writer(out, showSecrets).write(value);
}

std::string quoted(const std::string& text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace tolvane::host
