#include "host/value_view.h"

#include <algorithm>

#include "host/text_table.h"
#include "host/utf8.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/objects.h"
#include "tracing/json_values.h"
#include "tracing/secrets.h"

namespace tolvane::host {
namespace {

TextTable::Cell cellOf(std::string_view name, const Value& value, bool showSecrets) {
  if (!showSecrets && tracing::isSecretName(name) && !value.isNull() && value != Value("")) {
    return {std::string(tracing::hidden), false, false};
  }
  const bool number = isNumeric(value) && value.type() != ValueType::string && !value.isEmpty() && !value.get<bool>();
  return {shortText(showSecrets ? value : tracing::maskValue(value)), number, value.isNull()};
}

std::vector<std::string> keysOf(const ItemList& list) {
  std::vector<std::string> keys;
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    const auto bag = list.item(i).objectAs<PropertyBag>();
    for (std::int32_t k = 1; bag && k <= bag->count(); ++k) {
      if (std::find(keys.begin(), keys.end(), bag->name(k)) == keys.end()) keys.push_back(bag->name(k));
    }
  }
  return keys;
}

bool holdsBags(const ItemList& list) {
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    if (!list.item(i).objectAs<PropertyBag>()) return false;
  }
  return true;
}

void printList(std::ostream& out, const ItemList& list, bool showSecrets) {
  const bool bags = holdsBags(list);
  const std::vector<std::string> keys = bags ? keysOf(list) : std::vector<std::string>{"item"};
  TextTable table(keys);
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    const Value item = list.item(i);
    std::vector<TextTable::Cell> cells;
    for (const auto& key : keys) {
      cells.push_back(cellOf(key, bags ? item.objectAs<PropertyBag>()->item(key) : item, showSecrets));
    }
    table.addRow(std::move(cells));
  }
  table.print(out);
}

void printBag(std::ostream& out, const PropertyBag& bag, bool showSecrets) {
  TextTable table({"key", "value"});
  for (std::int32_t i = 1; i <= bag.count(); ++i) {
    const std::string name = bag.name(i);
    table.addRow({{name, false, false}, cellOf(name, bag.item(name), showSecrets)});
  }
  table.print(out);
}

void printArray(std::ostream& out, const Array& array) {
  TextTable table({"index", "value"});
  const std::int32_t lower = array.bounds.size() == 1 ? array.bounds.front().lower : 0;
  for (std::size_t i = 0; i < array.elements.size(); ++i) {
    table.addRow(
        {{std::to_string(lower + static_cast<std::int64_t>(i)), true, false}, cellOf("", array.elements[i], true)});
  }
  table.print(out);
}

}  // namespace

std::string shortText(const Value& value) {
  if (value.isNull()) return "NULL";
  if (value.isNothing()) return "nothing";
  if (const auto* bytes = value.get<Bytes>()) return "<" + std::to_string(bytes->size()) + " bytes>";
  if (const auto* date = value.get<Date>()) {
    std::string text = isoText(*date);
    text[text.find('T')] = ' ';
    return text.ends_with(" 00:00:00") ? text.substr(0, text.size() - 9) : text;
  }
  if (value.isArray() || value.isObject() || value.get<ErrorCode>()) {
    return tracing::traceToJson(value).dump(-1, ' ', false, tracing::Json::error_handler_t::replace);
  }
  return toText(value);
}

void printRecordset(std::ostream& out, Recordset& rows, bool showSecrets) {
  const auto fields = rows.fields();
  std::vector<std::string> names;
  for (const auto& field : fields) names.push_back(field.name);
  TextTable table(names);
  if (!(rows.bof() && rows.eof())) {
    for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
      std::vector<TextTable::Cell> cells;
      for (std::size_t i = 0; i < fields.size(); ++i) cells.push_back(cellOf(names[i], rows.value(i), showSecrets));
      table.addRow(std::move(cells));
    }
  }
  table.print(out);
}

void printValue(std::ostream& out, const std::string& name, const Value& value, bool showSecrets) {
  const auto bag = value.objectAs<PropertyBag>();
  const auto list = value.objectAs<ItemList>();
  const auto rows = value.objectAs<Recordset>();
  const bool openRows = rows && rows->state() == ObjectState::open;
  if (!bag && !list && !openRows && !value.array()) {
    const auto shown = showSecrets ? value : tracing::maskValue(value);
    out << name << ": " << (value.isEmpty() ? "(empty)" : rows ? "(no rows)" : oneLine(shortText(shown))) << '\n';
    return;
  }
  out << name << ":\n";
  if (bag) {
    printBag(out, *bag, showSecrets);
  } else if (list) {
    printList(out, *list, showSecrets);
  } else if (openRows) {
    printRecordset(out, *rows, showSecrets);
  } else {
    printArray(out, *value.array());
  }
}

}  // namespace tolvane::host
