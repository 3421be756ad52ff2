#include "tsql/convert.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

#include "tsql/convert_binary.h"
#include "tsql/convert_text.h"
#include "tsql/date_text.h"
#include "tsql/number_text.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

constexpr int moneyScale = 4;
constexpr std::string_view expression = "expression";

SqlError conversionError(const Type& from, const Type& to) {
  return SqlError(Message::ConversionError, {messageName(from), messageName(to)});
}

std::string_view shortIntegerName(TypeKind kind) {
  return kind == TypeKind::TinyInt ? "INT1" : "INT2";
}

struct IntegerBounds {
  std::int64_t least;
  std::int64_t greatest;
};
IntegerBounds boundsOf(TypeKind kind) {
  switch (kind) {
    case TypeKind::TinyInt:
      return {0, 255};
    case TypeKind::SmallInt:
      return {-32768, 32767};
    case TypeKind::Int:
      return {INT32_MIN, INT32_MAX};
    default:
      return {INT64_MIN, INT64_MAX};
  }
}
std::int64_t textToBit(std::string_view text, const Type& from, const Type& to) {
  const std::string_view word = withoutTrailingBlanks(text);
  const auto is = [word](std::string_view name) {
    if (word.size() != name.size()) return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
      if ((word[i] | 0x20) != name[i]) return false;
    }
    return true;
  };
  if (is("true")) return 1;
  if (is("false")) return 0;
  const IntegerText number = parseInteger(text);
  if (number.outcome == IntegerText::Outcome::Syntax) {
    throw SqlError(Message::ConversionFailed, {messageName(from), text, messageName(to)});
  }
  return number.outcome == IntegerText::Outcome::Overflow || number.value != 0 ? 1 : 0;
}

std::int64_t textToInteger(std::string_view text, const Type& from, const Type& to) {
  if (to.kind == TypeKind::Bit) return textToBit(text, from, to);
  const IntegerText number = parseInteger(text);
  if (number.outcome == IntegerText::Outcome::Syntax) {
    if (to.kind == TypeKind::BigInt) throw conversionError(from, to);
    throw SqlError(Message::ConversionFailed, {messageName(from), text, messageName(to)});
  }
  if (number.outcome == IntegerText::Outcome::Read && fitsInteger(number.value, to.kind)) return number.value;
  if (to.kind == TypeKind::BigInt) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
  if (to.kind == TypeKind::Int) throw SqlError(Message::TextOverflowInteger, {messageName(from), text});
  throw SqlError(Message::TextOverflowShortInteger, {messageName(from), text, shortIntegerName(to.kind)});
}

std::int64_t floatToInteger(double value, const Type& to) {
  const double whole = std::trunc(value);
  constexpr double tooGreat = 9223372036854775808.0;  // 2^63
  if (!(whole >= -tooGreat && whole < tooGreat) || !fitsInteger(static_cast<std::int64_t>(whole), to.kind)) {
    if (to.kind == TypeKind::BigInt) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
    throw SqlError(Message::FloatOverflow, {messageName(to), floatMessageText(value)});
  }
  return static_cast<std::int64_t>(whole);
}

std::int64_t exactToInteger(const Decimal& value, const Type& from, const Type& to) {
  const auto whole = value.toInteger(from.isMoney() ? Rounding::HalfAway : Rounding::Cut);
  if (whole && fitsInteger(*whole, to.kind)) return *whole;
  if (!from.isMoney()) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
  if (to.kind == TypeKind::TinyInt) {
    throw SqlError(Message::FloatOverflow, {messageName(to), floatMessageText(value.toDouble())});
  }
  throw SqlError(Message::MoneyIntegerSpace, {messageName(from), messageName(to)});
}

// Half a day counts as a day.
std::int64_t dateToInteger(DateTime value) {
  return value.days + (value.ticks >= DateTime::ticksPerDay / 2 ? 1 : 0);
}

Result toInteger(const Datum& value, const Type& from, const Type& to) {
  if (from.isText()) return textToInteger(value.text(), from, to);
  if (from.isBinary()) return integerOfBytes(value.blob(), to);
  if (to.kind == TypeKind::Bit) {
    if (from.isFloat()) return approximateNumber(value) != 0 ? 1 : 0;
    if (from.isDate()) return dateTimeOf(value) != DateTime{} ? 1 : 0;
    return exactNumber(value).isZero() ? 0 : 1;
  }
  if (from.isFloat()) return floatToInteger(approximateNumber(value), to);
  if (from.isExactText()) return exactToInteger(exactNumber(value), from, to);
  if (from.isInteger())
    return withinInteger(exactToInteger(exactNumber(value), from, Type::of(TypeKind::BigInt)), to.kind, from.kind);
  if (from.isDate()) return withinInteger(dateToInteger(dateTimeOf(value)), to.kind, TypeKind::BigInt);
  throw conversionError(from, to);
}

double floatOf(const Datum& value, const Type& from, const Type& to) {
  if (from.isText()) {
    const auto number = parseFloat(value.text());
    if (!number) throw conversionError(from, to);
    return *number;
  }
  if (from.isDate()) return toNumber(dateTimeOf(value));
  if (from.isNumber()) return approximateNumber(value);
  throw conversionError(from, to);
}

Result toFloat(const Datum& value, const Type& from, const Type& to) {
  double number = floatOf(value, from, to);
  if (to.kind == TypeKind::Real) {
    if (std::isfinite(number) && std::abs(number) > std::numeric_limits<float>::max()) {
      throw SqlError(Message::FloatOverflow, {messageName(to), floatMessageText(number)});
    }
    number = static_cast<float>(number);
  }
  if (!std::isfinite(number)) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
  return number == 0 ? 0.0 : number;
}

// Days and their fraction, to the last digit that the type asks for.
Decimal exactDays(DateTime value, int scale) {
  const std::int64_t ticks = std::int64_t{value.days} * DateTime::ticksPerDay + value.ticks;
  const int digits = std::min(scale + 2, 20);
  return Decimal::quotient(Decimal(ticks), Decimal(DateTime::ticksPerDay), digits).value_or(Decimal(value.days));
}

Decimal textToExact(std::string_view text, const Type& from, const Type& to) {
  if (to.isMoney()) {
    const auto amount = parseMoney(text);
    if (!amount) throw SqlError(to.kind == TypeKind::Money ? Message::MoneySyntax : Message::SmallMoneySyntax);
    return *amount;
  }
  const auto number = Decimal::parse(text);
  if (!number) throw conversionError(from, to);
  return *number;
}

Result toExact(const Datum& value, const Type& from, const Type& to) {
  const int scale = to.isMoney() ? moneyScale : to.scale;
  if (from.isText())
    return exactText(textToExact(value.text(), from, to), to, to.isMoney() ? expression : messageName(from));
  if (from.isFloat()) {
    const auto number = Decimal::fromDouble(approximateNumber(value), scale);
    const std::string_view source = to.isMoney() ? expression : messageName(from);
    if (!number) throw SqlError(Message::ArithmeticOverflow, {source, messageName(to)});
    return exactText(*number, to, source);
  }
  if (from.isDate()) return exactText(exactDays(dateTimeOf(value), scale), to, expression);
  if (from.isBinary() && to.isMoney()) return exactText(moneyOfBytes(value.blob(), to), to, expression);
  if (from.isBinary()) {
    const auto number = decimalOfBytes(value.blob());
    if (!number) throw conversionError(from, to);
    return exactText(*number, to, messageName(from));
  }
  if (from.isNumber()) {
    const bool named = !to.isMoney() || from.kind == TypeKind::Decimal;
    return exactText(exactNumber(value), to, named ? messageName(from) : expression);
  }
  throw conversionError(from, to);
}

const DateBounds& boundsOfDate(TypeKind kind) {
  return kind == TypeKind::Date ? dateBounds : kind == TypeKind::SmallDateTime ? smallDateTimeBounds : dateTimeBounds;
}

DateTime textToDate(std::string_view text, const Type& from, const Type& to, std::optional<int> style) {
  const DateStyle* form = findDateStyle(style.value_or(0));
  if (form == nullptr) throw SqlError(Message::DateSyntax);
  const DateText read = parseDateText(text, form->order, boundsOfDate(to.kind));
  if (read.outcome == DateTextOutcome::Read) return read.value;
  if (read.outcome == DateTextOutcome::Syntax || to.kind == TypeKind::Date) {
    throw SqlError(to.kind == TypeKind::SmallDateTime ? Message::SmallDateSyntax : Message::DateSyntax);
  }
  throw SqlError(Message::DateRange, {messageName(from), messageName(to)});
}

DateTime dateValue(const Datum& value, const Type& from, const Type& to, std::optional<int> style) {
  if (from.isText()) return textToDate(value.text(), from, to, style);
  if (from.isDate()) return dateTimeOf(value);
  if (from.isBinary() && to.kind == TypeKind::Date) return dateOfBytes(value.blob());
  if (to.kind == TypeKind::Date) throw SqlError(Message::OperandClash, {messageName(from), messageName(to)});
  if (from.isBinary() && to.kind == TypeKind::SmallDateTime) return smallDateTimeOfBytes(value.blob());
  if (from.isBinary()) return dateTimeOfBytes(value.blob());
  if (!from.isNumber()) throw conversionError(from, to);
  const auto date = fromNumber(approximateNumber(value));
  if (!date) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
  return *date;
}

Result toDate(const Datum& value, const Type& from, const Type& to, std::optional<int> style) {
  DateTime date = dateValue(value, from, to, style);
  if (to.kind == TypeKind::SmallDateTime) date = roundedToMinute(date);
  const bool holds = boundsOfDate(to.kind).hold(date.days);
  if (!holds && from.isNumber()) throw SqlError(Message::ArithmeticOverflow, {expression, messageName(to)});
  if (!holds) throw SqlError(Message::DateRange, {messageName(from), messageName(to)});
  return to.kind == TypeKind::Date ? storedDate(date.days) : storedDateTime(date);
}

// What is too long for a column, and is not padding, must not be lost.
void refuseTruncation(const Datum& value, const Type& from, const Type& to, const Collation& collation) {
  if (to.length == maxLength || to.isLong()) return;
  const bool textToText = from.isText() && to.isText();
  const bool bytesToBytes = from.isBinary() && to.isBinary();
  if (textToText && lengthIn(to, withoutTrailingBlanks(value.text()), collation) > to.length) {
    throw SqlError(Message::Truncated);
  }
  if (bytesToBytes && std::cmp_greater(value.blob().size(), to.length)) {
    for (const std::byte b : value.blob().subspan(static_cast<std::size_t>(to.length))) {
      if (b != std::byte{0}) throw SqlError(Message::Truncated);
    }
  }
}

}  // namespace

std::string_view messageName(const Type& type) {
  return type.kind == TypeKind::Decimal ? std::string_view("numeric") : type.baseName();
}

bool fitsInteger(std::int64_t value, TypeKind kind) {
  const IntegerBounds bounds = boundsOf(kind);
  return value >= bounds.least && value <= bounds.greatest;
}

std::int64_t withinInteger(std::int64_t value, TypeKind kind, TypeKind from) {
  if (kind == TypeKind::Bit) return value != 0 ? 1 : 0;
  if (fitsInteger(value, kind)) return value;
  if (kind == TypeKind::Int || from == TypeKind::BigInt) {
    throw SqlError(Message::ArithmeticOverflow, {expression, typeRow(kind).name});
  }
  throw SqlError(Message::OverflowValue, {typeRow(kind).name, std::to_string(value)});
}

std::string exactText(const Decimal& value, const Type& to, std::string_view source) {
  const bool isMoney = to.isMoney();
  const auto rounded = value.rescaled(isMoney ? moneyScale : to.scale);
  bool fits = rounded && (isMoney || rounded->fits(to.precision));
  if (fits && isMoney) {
    const auto units = Decimal::product(*rounded, Decimal(10000), 0);
    const auto whole = units ? units->toInteger(Rounding::Cut) : std::nullopt;
    fits = whole && (to.kind == TypeKind::Money || fitsInteger(*whole, TypeKind::Int));
  }
  if (!fits) throw SqlError(Message::ArithmeticOverflow, {source, messageName(to)});
  return rounded->toText();
}

Decimal exactNumber(const Datum& value) {
  if (value.kind() == Kind::Integer) return Decimal(value.integer());
  if (value.kind() == Kind::Text) {
    if (const auto number = Decimal::parse(value.text())) return *number;
  }
  if (value.kind() == Kind::Real) {
    if (const auto number = Decimal::fromDouble(value.real(), 15)) return *number;
  }
  throw SqlError(Message::ConversionError, {value.kind() == Kind::Blob ? "varbinary" : "varchar", "numeric"});
}

double approximateNumber(const Datum& value) {
  if (value.kind() == Kind::Real) return value.real();
  if (value.kind() == Kind::Integer) return static_cast<double>(value.integer());
  if (value.kind() == Kind::Text) {
    if (const auto number = parseFloat(value.text())) return *number;
  }
  throw SqlError(Message::ConversionError, {value.kind() == Kind::Blob ? "varbinary" : "varchar", "float"});
}

DateTime dateTimeOf(const Datum& value) {
  if (value.kind() == Kind::Integer || value.kind() == Kind::Real) {
    const auto date = fromNumber(approximateNumber(value));
    if (!date) throw SqlError(Message::ArithmeticOverflow, {expression, "datetime"});
    return *date;
  }
  if (value.kind() != Kind::Text) throw SqlError(Message::DateSyntax);
  if (const auto stored = parseStored(value.text())) return *stored;
  return textToDate(value.text(), Type::of(TypeKind::VarChar), Type::of(TypeKind::DateTime), std::nullopt);
}

std::int64_t wholeNumber(const Datum& value) {
  if (value.kind() == Kind::Integer) return value.integer();
  const auto whole = exactNumber(value).toInteger(Rounding::Cut);
  if (!whole) throw SqlError(Message::ArithmeticOverflow, {expression, "bigint"});
  return *whole;
}

Result convert(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
               const Collation& collation) {
  if (value.isNull()) return {};
  // A value in another storage than its type's has come past the compiler's typing; its storage decides then.
  const bool stored = from.isText() || from.isDate() || from.isExactText() || from.kind == TypeKind::UniqueIdentifier;
  Type actual = from;
  if (value.kind() == Kind::Blob && !from.isBinary()) actual = Type::text(TypeKind::VarBinary, maxLength);
  if (value.kind() == Kind::Text && !stored) actual = Type::text(TypeKind::VarChar, maxLength);
  if (value.kind() == Kind::Integer && !from.isNumber()) actual = Type::of(TypeKind::BigInt);
  if (value.kind() == Kind::Real && !from.isNumber()) actual = Type::of(TypeKind::Float);

  if (to.isInteger()) return toInteger(value, actual, to);
  if (to.isFloat()) return toFloat(value, actual, to);
  if (to.isExactText()) return toExact(value, actual, to);
  if (to.isDate()) return toDate(value, actual, to, style);
  if (to.isText()) return toText(value, actual, to, style, collation);
  if (to.isBinary()) return toBinary(value, actual, to, style, collation);
  if (to.kind == TypeKind::UniqueIdentifier) return toUniqueIdentifier(value, actual);
  return Result(value);
}

Result assign(const Datum& value, const Type& from, const Type& to, std::string_view column, const Collation& collation,
              std::string_view verb) {
  if (value.isNull()) {
    if (to.nullable) return {};
    const auto point = column.rfind('.');
    const bool qualified = point != std::string_view::npos;
    throw SqlError(Message::NullColumn,
                   {qualified ? column.substr(point + 1) : column, qualified ? column.substr(0, point) : "", verb});
  }
  if ((from.isText() && value.kind() == Kind::Text) || (from.isBinary() && value.kind() == Kind::Blob)) {
    refuseTruncation(value, from, to, collation);
  }
  return convert(value, from, to, std::nullopt, collation);
}

std::int64_t dataLength(const Datum& value, const Type& type, const Collation& collation) {
  switch (value.kind()) {
    case Kind::Blob:
      return static_cast<std::int64_t>(value.blob().size());
    case Kind::Text:
      if (type.isText()) return lengthIn(type, value.text(), collation) * (type.isUnicode() ? 2 : 1);
      break;
    case Kind::Null:
    case Kind::Integer:
    case Kind::Real:
      break;
  }
  if (type.kind != TypeKind::Decimal) return typeRow(type.kind).bytes;
  return 5 + 4 * (static_cast<std::int64_t>(exactNumber(value).magnitudeBytes().size()) / 4 - 1);
}

}  // namespace tolvane::tsql
