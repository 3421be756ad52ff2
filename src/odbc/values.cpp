#include "odbc/values.h"

#include <cctype>

#include "odbc/errors.h"
#include "odbc/wide_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "rowset/documents.h"
#include "rowset/utf8.h"

namespace tolvane::odbc {
namespace {

// unsigned of twice a Decimal's digits is not needed: scaling down comes before scaling up.
__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using)

[[noreturn]] void cannotConvert() {
  throw AutomationError(AdoError::dataConversion, std::string(rowset::recordsetSource));
}

Wide digitsOf(const Decimal& value) {
  return static_cast<Wide>(value.high) << 64U | value.low;
}

Wide powerOfTen(std::int32_t exponent) {
  Wide power = 1;
  for (std::int32_t i = 0; i < exponent; ++i) power *= 10;
  return power;
}

// As many decimals as the column has, halves away from zero as the server rounds; refused when there are too many
// digits before the point.
Decimal atScale(const Decimal& value, const Column& column) {
  constexpr std::int32_t mostDigits = 28;
  auto digits = digitsOf(value);
  if (value.scale > column.scale) {
    const auto divisor = powerOfTen(value.scale - column.scale);
    const auto rest = digits % divisor;
    digits /= divisor;
    if (rest * 2 >= divisor) ++digits;
  } else if (digits != 0) {
    const auto shift = column.scale - value.scale;
    if (shift > mostDigits || digits > (Wide{1} << 96U) / powerOfTen(shift)) throw rowset::doesNotFit();
    digits *= powerOfTen(shift);
  }
  const auto precision = column.precision <= 0 || column.precision > mostDigits ? mostDigits : column.precision;
  if (digits >= powerOfTen(precision)) throw rowset::doesNotFit();
  Decimal result;
  result.high = static_cast<std::uint32_t>(digits >> 64U);
  result.low = static_cast<std::uint64_t>(digits);
  result.scale = static_cast<std::uint8_t>(column.scale);
  result.negative = value.negative && digits != 0;
  return result;
}

std::size_t wideLength(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80U) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

std::string assignedText(const Value& value, const Column& column) {
  auto text = toText(value);
  if (rowset::invalidUtf8(text) != std::string::npos) cannotConvert();
  if (!column.isLong() && column.size > 0 && wideLength(text) > static_cast<std::size_t>(column.size)) {
    throw rowset::doesNotFit();
  }
  return text;
}

std::string guidText(const Value& value) {
  auto text = toText(value);
  if (text.size() == 36) text = "{" + text + "}";
  if (text.size() != 38 || text.front() != '{' || text.back() != '}') cannotConvert();
  for (std::size_t i = 1; i < 37; ++i) {
    const bool dash = i == 9 || i == 14 || i == 19 || i == 24;
    const auto c = static_cast<unsigned char>(text[i]);
    if (dash ? c != '-' : std::isxdigit(c) == 0) cannotConvert();
    text[i] = static_cast<char>(std::toupper(c));
  }
  return text;
}

Value convertedTo(const Value& value, const Column& column) {
  switch (column.type) {
    case DataType::boolean:
      return toBoolean(value);
    case DataType::unsignedTinyInt:
      return toByte(value);
    case DataType::smallInt:
      return toInt16(value);
    case DataType::integer:
      return toInt32(value);
    case DataType::bigInt:
      return toInt64(value);
    case DataType::single:
      return toSingle(value);
    case DataType::real:
      return toDouble(value);
    case DataType::currency:
      return toCurrency(value);
    case DataType::numeric:
      return atScale(toDecimal(value), column);
    case DataType::date:
    case DataType::timestamp: {
      const auto date = toDate(value);
      (void)toCalendar(date);
      return date;
    }
    case DataType::guid:
      return guidText(value);
    case DataType::character:
    case DataType::wideChar:
    case DataType::varChar:
    case DataType::varWChar:
    case DataType::longVarChar:
    case DataType::longVarWChar:
      return assignedText(value, column);
    case DataType::binary:
    case DataType::varBinary:
    case DataType::longVarBinary:
    case DataType::empty:
    case DataType::variant:
      break;
  }
  cannotConvert();
}

Value decimalValue(std::string_view text, const Column& column) {
  auto number = parseDecimal(text);
  // More digits than automation's decimals hold (28 of the server's 38): a text keeps them all.
  if (!number) return Value(text);
  if (column.scale < number->scale) return *number;
  const auto shift = column.scale - number->scale;
  if (shift == 0 || digitsOf(*number) > (Wide{1} << 96U) / powerOfTen(shift)) return *number;
  const auto digits = digitsOf(*number) * powerOfTen(shift);
  number->high = static_cast<std::uint32_t>(digits >> 64U);
  number->low = static_cast<std::uint64_t>(digits);
  number->scale = static_cast<std::uint8_t>(column.scale);
  return *number;
}

Value integerValue(std::int64_t value, DataType type) {
  switch (type) {
    case DataType::boolean:
      return value != 0;
    case DataType::unsignedTinyInt:
      return static_cast<std::uint8_t>(value);
    case DataType::smallInt:
      return static_cast<std::int16_t>(value);
    case DataType::currency:
      return Currency{value};
    case DataType::bigInt: {
      Decimal number;
      number.negative = value < 0;
      number.low = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
      return number;
    }
    default:
      return static_cast<std::int32_t>(value);
  }
}

Value realValue(double value, DataType type) {
  if (type == DataType::single) return static_cast<float>(value);
  if (type == DataType::date || type == DataType::timestamp) return Date{value};
  return value;
}

}  // namespace

Value toValue(const Cell& cell, const Column& column) {
  switch (cell.kind) {
    case Cell::Kind::null:
    case Cell::Kind::document:
      return Null{};
    case Cell::Kind::integer:
      return integerValue(cell.integer, column.type);
    case Cell::Kind::real:
      return realValue(cell.real, column.type);
    case Cell::Kind::text:
      if (column.type == DataType::numeric) return decimalValue(cell.text(), column);
      return Value(cell.text());
  }
  return Null{};
}

Value toValue(RowBuffer& rows, std::size_t row, std::size_t index, const Column& column) {
  const auto& cell = rows.cell(row, index);
  if (cell.kind == Cell::Kind::document) return rows.document(row, index);
  return toValue(cell, column);
}

Value assigned(const Value& value, const Column& column) {
  if (value.isNull() || value.isEmpty()) return Null{};
  if (column.isBinary()) {
    auto bytes = rowset::bytesOf(value);
    if (!bytes) cannotConvert();
    if (!column.isLong() && bytes->size() > static_cast<std::size_t>(column.size)) throw rowset::doesNotFit();
    return *bytes;
  }
  if (value.isMissing() || value.isObject() || value.isArray() || value.get<Bytes>() || value.get<ErrorCode>())
    cannotConvert();
  try {
    return convertedTo(value, column);
  } catch (const AutomationError& error) {
    if (error.number() == errorNumber(RuntimeError::typeMismatch)) cannotConvert();
    if (error.number() == errorNumber(RuntimeError::overflow)) throw rowset::doesNotFit();
    throw;
  }
}

void store(RowBuffer& rows, std::size_t row, std::size_t index, const Value& value) {
  Cell cell;
  if (const auto* text = value.get<std::string>()) {
    cell = Cell::ofText(*text);
  } else if (const auto* bytes = value.get<Bytes>()) {
    rows.set(row, index, *bytes);
    return;
  } else if (const auto* flag = value.get<bool>()) {
    cell = Cell::ofInteger(*flag ? 1 : 0);
  } else if (const auto* number = value.get<Currency>()) {
    cell = Cell::ofInteger(number->scaled);
  } else if (const auto* decimal = value.get<Decimal>()) {
    const auto digits = exactText(*decimal);
    rows.set(row, index, Cell::ofText(digits));
    return;
  } else if (const auto* date = value.get<Date>()) {
    cell = Cell::ofReal(date->days);
  } else if (value.get<float>() || value.get<double>()) {
    cell = Cell::ofReal(toDouble(value));
  } else if (!value.isNull()) {
    cell = Cell::ofInteger(toInt64(value));
  }
  rows.set(row, index, cell);
}

}  // namespace tolvane::odbc
