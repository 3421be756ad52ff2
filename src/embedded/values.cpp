#include "embedded/values.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <optional>

#include "embedded/account_set_collation.h"
#include "embedded/errors.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "tsql/datetime.h"
#include "tsql/decimal.h"
#include "tsql/unicode.h"

namespace tolvane::embedded {
namespace {

using tsql::Type;
using tsql::TypeKind;

struct TypeInfo {
  TypeKind kind;
  DataType data;
  std::int32_t size;  // of a type without a length of its own
};

// ADO's number for each type of T-SQL, in the order of TypeKind.
constexpr std::array<TypeInfo, tsql::kindCount> typeInfos{{
    {TypeKind::Null, DataType::integer, 4},        {TypeKind::Binary, DataType::binary, 0},
    {TypeKind::VarBinary, DataType::varBinary, 0}, {TypeKind::Char, DataType::character, 0},
    {TypeKind::VarChar, DataType::varChar, 0},     {TypeKind::NChar, DataType::wideChar, 0},
    {TypeKind::NVarChar, DataType::varWChar, 0},   {TypeKind::UniqueIdentifier, DataType::guid, 16},
    {TypeKind::Timestamp, DataType::binary, 8},    {TypeKind::Image, DataType::longVarBinary, -1},
    {TypeKind::Text, DataType::longVarChar, -1},   {TypeKind::NText, DataType::longVarWChar, -1},
    {TypeKind::Bit, DataType::boolean, 2},         {TypeKind::TinyInt, DataType::unsignedTinyInt, 1},
    {TypeKind::SmallInt, DataType::smallInt, 2},   {TypeKind::Int, DataType::integer, 4},
    {TypeKind::BigInt, DataType::bigInt, 8},       {TypeKind::SmallMoney, DataType::currency, 8},
    {TypeKind::Money, DataType::currency, 8},      {TypeKind::Decimal, DataType::numeric, 19},
    {TypeKind::Real, DataType::single, 4},         {TypeKind::Float, DataType::real, 8},
    {TypeKind::Date, DataType::date, 10},          {TypeKind::SmallDateTime, DataType::timestamp, 16},
    {TypeKind::DateTime, DataType::timestamp, 16},
}};

constexpr bool inOrder() {
  for (std::size_t i = 0; i < typeInfos.size(); ++i) {
    if (static_cast<std::size_t>(typeInfos[i].kind) != i) return false;
  }
  return true;
}
static_assert(inOrder(), "one row for each type, in the order of the enumeration");

const TypeInfo& infoOf(TypeKind kind) {
  return typeInfos.at(static_cast<std::size_t>(kind));
}

Value dateValue(std::string_view stored) {
  const auto parsed = tsql::parseStored(stored);
  if (!parsed) return Value(stored);
  const auto day = tsql::calendarDate(parsed->days);
  const auto time = tsql::timeOfDay(parsed->ticks);
  const auto date =
      toDate(CalendarTime{day.year, day.month, day.day, time.hour, time.minute, time.second, time.millisecond});
  return date ? Value(*date) : Value(dateOf(day.year, day.month, day.day));
}

Value wholeAsDecimal(std::int64_t number) {
  Decimal decimal;
  decimal.negative = number < 0;
  decimal.low = number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
  return decimal;
}

Value integerValue(std::int64_t number, TypeKind kind) {
  switch (kind) {
    case TypeKind::Bit:
      return number != 0;
    case TypeKind::TinyInt:
      return static_cast<std::uint8_t>(number);
    case TypeKind::SmallInt:
      return static_cast<std::int16_t>(number);
    case TypeKind::BigInt:
      return wholeAsDecimal(number);
    case TypeKind::Real:
      return static_cast<float>(number);
    case TypeKind::Float:
      return static_cast<double>(number);
    default:
      return static_cast<std::int32_t>(number);
  }
}

// Numbers of more digits than automation's decimals hold are handed out as their text, so that no digit is lost.
Value textValue(std::string_view text, const Type& type) {
  if (type.isMoney()) {
    if (const auto amount = parseCurrency(text)) return *amount;
  } else if (type.kind == TypeKind::Decimal) {
    if (const auto number = parseDecimal(text)) return *number;
  } else if (type.isDate()) {
    return dateValue(text);
  } else if (type.kind == TypeKind::UniqueIdentifier) {
    return Value("{" + std::string(text) + "}");
  }
  return Value(text);
}

[[noreturn]] void cannotConvert() {
  throw AutomationError(AdoError::dataConversion, std::string(recordsetSource));
}

std::string storedText(const Value& value, const Type& type) {
  auto text = toText(value);
  if (type.length == tsql::maxLength || type.isLongText()) return text;
  const auto limit = static_cast<std::size_t>(type.length);
  std::size_t size = 0;
  if (type.isUnicode()) {
    size = tsql::utf16Length(text);
  } else if (tsql::isAscii(text)) {
    size = text.size();
  } else {
    // What the code page lacks is lost on the way into a varchar column, as on the server.
    const auto bytes = accountSetCollation().toCodePage(text);
    size = bytes.size();
    text = accountSetCollation().fromCodePage(bytes);
  }
  if (size > limit) throw doesNotFit();
  const bool padded = type.kind == TypeKind::Char || type.kind == TypeKind::NChar;
  if (padded) text.append(limit - size, ' ');
  return text;
}

std::string storedDecimal(const Value& value, const Type& type) {
  const auto exact = tsql::Decimal::parse(exactText(toDecimal(value)));
  if (!exact) cannotConvert();
  const auto fitted = exact->rescaled(type.scale);
  if (!fitted || !fitted->fits(type.precision)) throw doesNotFit();
  return fitted->toText();
}

std::string storedMoney(const Value& value, const Type& type) {
  const auto amount = toCurrency(value);
  constexpr std::int64_t smallLimit = 2147483648;
  if (type.kind == TypeKind::SmallMoney && (amount.scaled >= smallLimit || amount.scaled < -smallLimit))
    throw doesNotFit();
  return exactText(amount);
}

std::string storedDateOf(const Value& value, const Type& type) {
  const auto time = toCalendar(toDate(value));
  const auto ticks = tsql::ticksOf({time.hour, time.minute, time.second, time.millisecond});
  auto moment = tsql::carried(tsql::daysOf({time.year, time.month, time.day}), ticks);
  if (!moment) throw doesNotFit();
  if (type.kind == TypeKind::SmallDateTime) moment = tsql::roundedToMinute(*moment);
  const auto& bounds = type.kind == TypeKind::Date            ? tsql::dateBounds
                       : type.kind == TypeKind::SmallDateTime ? tsql::smallDateTimeBounds
                                                              : tsql::dateTimeBounds;
  if (!bounds.hold(moment->days)) throw doesNotFit();
  return type.kind == TypeKind::Date ? tsql::storedDate(moment->days) : tsql::storedDateTime(*moment);
}

std::string storedGuid(const Value& value) {
  auto text = toText(value);
  if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
  if (text.size() != 36) cannotConvert();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    const auto c = static_cast<unsigned char>(text[i]);
    if (dash ? c != '-' : std::isxdigit(c) == 0) cannotConvert();
    text[i] = static_cast<char>(std::toupper(c));
  }
  return text;
}

tsql::Result stored(const Value& value, const Type& type) {
  switch (type.kind) {
    case TypeKind::Bit:
      return {static_cast<std::int64_t>(toBoolean(value))};
    case TypeKind::TinyInt:
      return {toByte(value)};
    case TypeKind::SmallInt:
      return {toInt16(value)};
    case TypeKind::Int:
    case TypeKind::Null:
      return {toInt32(value)};
    case TypeKind::BigInt:
      return {toInt64(value)};
    case TypeKind::Real:
      return {static_cast<double>(toSingle(value))};
    case TypeKind::Float:
      return {toDouble(value)};
    case TypeKind::SmallMoney:
    case TypeKind::Money:
      return {storedMoney(value, type)};
    case TypeKind::Decimal:
      return {storedDecimal(value, type)};
    case TypeKind::Date:
    case TypeKind::SmallDateTime:
    case TypeKind::DateTime:
      return {storedDateOf(value, type)};
    case TypeKind::UniqueIdentifier:
      return {storedGuid(value)};
    case TypeKind::Char:
    case TypeKind::VarChar:
    case TypeKind::NChar:
    case TypeKind::NVarChar:
    case TypeKind::Text:
    case TypeKind::NText:
      return {storedText(value, type)};
    case TypeKind::Binary:
    case TypeKind::VarBinary:
    case TypeKind::Image:
    case TypeKind::Timestamp:
      cannotConvert();
  }
  cannotConvert();
}

Type textParameter(TypeKind kind, std::int32_t size, std::int32_t most) {
  return Type::text(kind, size <= 0 || size > most ? tsql::maxLength : size);
}

}  // namespace

FieldInfo fieldInfo(std::string name, const Type& type) {
  const auto& info = infoOf(type.kind);
  auto data = info.data;
  auto size = info.size;
  if (size == 0) size = type.length;
  if (type.length == tsql::maxLength) {
    if (type.kind == TypeKind::VarChar) data = DataType::longVarChar;
    if (type.kind == TypeKind::NVarChar) data = DataType::longVarWChar;
    if (type.kind == TypeKind::VarBinary) data = DataType::longVarBinary;
  }
  return {std::move(name), data, size, type.nullable};
}

Value toValue(const Cell& cell, const Type& type) {
  switch (cell.kind) {
    case Cell::Kind::null:
    case Cell::Kind::unread:
      return Null{};
    case Cell::Kind::integer:
      return integerValue(cell.integer, type.kind);
    case Cell::Kind::real:
      return type.kind == TypeKind::Real ? Value(static_cast<float>(cell.real)) : Value(cell.real);
    case Cell::Kind::text:
      return textValue(cell.text(), type);
    case Cell::Kind::bytes:
      return Bytes::filled(cell.bytes().size(),
                           [&](std::span<std::uint8_t> to) { std::ranges::copy(cell.bytes(), to.begin()); });
  }
  return Null{};
}

tsql::Result toStored(const Value& value, const Type& type) {
  if (value.isNull()) return {};
  if (value.isMissing() || value.isObject() || value.isArray() || value.get<Bytes>() || value.get<ErrorCode>())
    cannotConvert();
  try {
    return stored(value, type);
  } catch (const AutomationError& error) {
    if (error.number() == errorNumber(RuntimeError::typeMismatch)) cannotConvert();
    if (error.number() == errorNumber(RuntimeError::overflow)) throw doesNotFit();
    throw;
  }
}

Type parameterType(const Parameter& parameter) {
  constexpr std::int32_t longestText = 8000;
  constexpr std::int32_t longestWideText = 4000;
  switch (parameter.type) {
    case DataType::smallInt:
      return Type::of(TypeKind::SmallInt);
    case DataType::integer:
      return Type::of(TypeKind::Int);
    case DataType::single:
      return Type::of(TypeKind::Real);
    case DataType::real:
      return Type::of(TypeKind::Float);
    case DataType::currency:
      return Type::of(TypeKind::Money);
    case DataType::boolean:
      return Type::of(TypeKind::Bit);
    case DataType::unsignedTinyInt:
      return Type::of(TypeKind::TinyInt);
    case DataType::bigInt:
      return Type::of(TypeKind::BigInt);
    case DataType::guid:
      return Type::of(TypeKind::UniqueIdentifier);
    case DataType::numeric: {
      // As many decimals as the value has; ADO's own parameters say so in properties that this one has not.
      const bool has = !parameter.value.isNull() && !parameter.value.isEmpty();
      return Type::decimal(tsql::Decimal::maxPrecision, has ? toDecimal(parameter.value).scale : 0);
    }
    case DataType::date:
      return Type::of(TypeKind::Date);
    case DataType::timestamp:
      return Type::of(TypeKind::DateTime);
    case DataType::character:
    case DataType::varChar:
      return textParameter(TypeKind::VarChar, parameter.size, longestText);
    case DataType::wideChar:
    case DataType::varWChar:
    case DataType::empty:
    case DataType::variant:
      return textParameter(TypeKind::NVarChar, parameter.size, longestWideText);
    case DataType::longVarChar:
      return Type::of(TypeKind::Text);
    case DataType::longVarWChar:
      return Type::of(TypeKind::NText);
    case DataType::binary:
    case DataType::varBinary:
      return textParameter(TypeKind::VarBinary, parameter.size, longestText);
    case DataType::longVarBinary:
      return Type::of(TypeKind::Image);
  }
  throw AutomationError(AdoError::badParameter, std::string(commandSource));
}

tsql::Result columnResult(sqlite3_stmt* statement, int column) {
  const auto cell = Cell::of(statement, column);
  switch (cell.kind) {
    case Cell::Kind::integer:
      return {cell.integer};
    case Cell::Kind::real:
      return {cell.real};
    case Cell::Kind::text:
      return {std::string(cell.text())};
    case Cell::Kind::bytes: {
      const auto* bytes = reinterpret_cast<const std::byte*>(cell.data);
      return {tsql::Bytes(bytes, bytes + cell.size)};
    }
    case Cell::Kind::null:
    case Cell::Kind::unread:
      break;
  }
  return {};
}

}  // namespace tolvane::embedded
