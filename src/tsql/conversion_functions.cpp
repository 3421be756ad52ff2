// Conversion, assignment and LIKE: the functions that the compiler writes on its own account.
#include <algorithm>
#include <array>
#include <compare>
#include <limits>
#include <optional>

#include "tsql/convert.h"
#include "tsql/function_groups.h"
#include "tsql/like.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"
#include "tsql/unique_identifier_order.h"

namespace tolvane::tsql {
namespace {

// value, packed from, packed to[, style]: -1 or no style is the default of the pair; a null style gives null.
Result convertCall(Call& call) {
  if (call.args.size() > 3 && call.args[3].isNull()) return {};
  std::optional<int> style;
  if (call.args.size() > 3 && wholeNumber(call.args[3]) >= 0) {
    constexpr std::int64_t beyondAllStyles = 1000;
    style = static_cast<int>(std::min(wholeNumber(call.args[3]), beyondAllStyles));
  }
  return convert(call.args[0], Type::unpack(call.args[1].integer()), Type::unpack(call.args[2].integer()), style,
                 call.collation);
}

// The same, where a value that does not convert gives null. A style that there is not, here or at all, is an error all
// the same.
Result tryConvertCall(Call& call) {
  constexpr int invalidStyle = 281;
  try {
    return convertCall(call);
  } catch (const SqlError& error) {
    if (error.number() == invalidStyle || error.number() == notSupportedNumber) throw;
    return {};
  }
}

std::strong_ordering ordered(int order) {
  return order <=> 0;
}

// How two values of a type compare, of which none is null.
std::strong_ordering compareValues(const Datum& left, const Datum& right, const Type& type,
                                   const Collation& collation) {
  if (type.isInteger()) return wholeNumber(left) <=> wholeNumber(right);
  if (type.isExactText()) return exactNumber(left).compare(exactNumber(right));
  if (type.isFloat()) {
    const double a = approximateNumber(left);
    const double b = approximateNumber(right);
    return ordered(a < b ? -1 : a > b ? 1 : 0);
  }
  if (left.kind() == Kind::Blob && right.kind() == Kind::Blob) {
    const BytesView a = left.blob();
    const BytesView b = right.blob();
    return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
  }
  if (type.kind == TypeKind::UniqueIdentifier) return ordered(compareUniqueIdentifiers(left.text(), right.text()));
  if (type.isText()) return ordered(collation.compare(left.text(), right.text()));
  return left.text() <=> right.text();
}

// packed type, values: nulls do not count.
template <bool greatest>
Result extreme(Call& call) {
  const Type type = Type::unpack(call.args[0].integer());
  const Datum* found = nullptr;
  for (const Datum& value : call.args.subspan(1)) {
    if (value.isNull()) continue;
    const bool better = found == nullptr || (greatest ? compareValues(value, *found, type, call.collation) > 0
                                                      : compareValues(value, *found, type, call.collation) < 0);
    if (better) found = &value;
  }
  return found == nullptr ? Result() : Result(*found);
}

// value, packed from, packed to, 'table.column'.
Result assignCall(Call& call) {
  return assign(call.args[0], Type::unpack(call.args[1].integer()), Type::unpack(call.args[2].integer()),
                call.args[3].text(), call.collation, call.args.size() > 4 ? call.args[4].text() : "INSERT");
}

Result bytes(Call& call) {
  if (call.args[0].isNull()) return {};
  const BytesView all = call.args[0].blob();
  std::size_t size = all.size();
  while (size > 0 && all[size - 1] == std::byte{0}) --size;
  return Bytes(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(size));
}

// text, pattern, escape or null, 1 for unicode text.
Result like(Call& call) {
  if (call.args[0].isNull() || call.args[1].isNull()) return {};
  std::optional<char16_t> escape;
  if (!call.args[2].isNull()) {
    const std::u16string units = toUtf16(call.args[2].text());
    if (units.size() != 1) throw SqlError(Message::InvalidEscape, {call.args[2].text(), "LIKE"});
    escape = units[0];
  }
  const LikePattern pattern(call.args[1].text(), escape, call.collation);
  return pattern.matches(call.args[0].text(), call.args[3].integer() != 0) ? 1 : 0;
}

// The xprec of syscolumns: how many digits a number or a date has.
int precisionOf(const Type& type) {
  switch (type.kind) {
    case TypeKind::Decimal:
      return type.precision;
    case TypeKind::Bit:
      return 1;
    case TypeKind::TinyInt:
      return 3;
    case TypeKind::SmallInt:
      return 5;
    case TypeKind::Int:
    case TypeKind::SmallMoney:
    case TypeKind::Date:
      return 10;
    case TypeKind::BigInt:
    case TypeKind::Money:
      return 19;
    case TypeKind::Real:
      return 24;
    case TypeKind::Float:
      return 53;
    case TypeKind::SmallDateTime:
      return 16;
    case TypeKind::DateTime:
      return 23;
    default:
      return 0;
  }
}

int scaleOf(const Type& type) {
  return type.kind == TypeKind::Decimal ? type.scale : type.isMoney() ? 4 : type.kind == TypeKind::DateTime ? 3 : 0;
}

// CHARACTER_MAXIMUM_LENGTH of INFORMATION_SCHEMA.COLUMNS: -1 for `max`, null for what is neither text nor bytes.
Result charactersOf(const Type& type) {
  constexpr std::int64_t longestBytes = std::numeric_limits<std::int32_t>::max();
  if (type.kind == TypeKind::NText) return longestBytes / 2;
  if (type.kind == TypeKind::Text || type.kind == TypeKind::Image) return longestBytes;
  return typeRow(type.kind).takesLength ? Result(type.length) : Result();
}

// NUMERIC_PRECISION and NUMERIC_SCALE there: null for what is no number, and no scale for floating point and bit.
Result numericPrecisionOf(const Type& type) {
  return type.isNumber() && type.kind != TypeKind::Bit ? Result(precisionOf(type)) : Result();
}
Result numericScaleOf(const Type& type) {
  const bool scaled = type.isNumber() && !type.isFloat() && type.kind != TypeKind::Bit;
  return scaled ? Result(scaleOf(type)) : Result();
}

// CHARACTER_OCTET_LENGTH.
Result octetsOf(const Type& type) {
  if (type.kind == TypeKind::NText) return static_cast<std::int64_t>(std::numeric_limits<std::int32_t>::max()) - 1;
  if (typeRow(type.kind).takesLength) return type.storageLength();
  return charactersOf(type);
}

Result radixOf(const Type& type) {
  if (!type.isNumber() || type.kind == TypeKind::Bit) return {};
  constexpr int binary = 2;
  constexpr int decimal = 10;
  return type.isFloat() ? binary : decimal;
}

Result datePrecisionOf(const Type& type) {
  return type.isDate() ? Result(type.kind == TypeKind::DateTime ? 3 : 0) : Result();
}

Result characterSetOf(const Type& type) {
  if (!type.isText()) return {};
  return Result(std::string(type.isUnicode() ? "UNICODE" : "cp936"));
}

Result collationOf(const Type& type) {
  return type.isText() ? Result(std::string("Chinese_PRC_CI_AS")) : Result();
}

// prec and scale of syscolumns: characters of texts, bytes of binaries.
Result columnPrecisionOf(const Type& type) {
  if (type.isLongText() || type.kind == TypeKind::Image) return {};
  return typeRow(type.kind).takesLength ? Result(type.length) : Result(precisionOf(type));
}
Result columnScaleOf(const Type& type) {
  const bool scaled = type.isDate() || (type.isNumber() && !type.isFloat() && type.kind != TypeKind::Bit);
  return scaled ? Result(scaleOf(type)) : Result();
}

constexpr int numericType = 108;  // in the systypes that tells decimal and numeric apart

// What the system tables tell of a column's type.
struct TypeProperty {
  std::string_view name;
  Result (*of)(const Type& type);
};
constexpr std::array properties{
    TypeProperty{"name", [](const Type& type) { return Result(std::string(type.baseName())); }},
    TypeProperty{"xtype",
                 [](const Type& type) { return Result(type.numeric ? numericType : typeRow(type.kind).systemType); }},
    TypeProperty{"length", [](const Type& type) { return Result(type.storageLength()); }},
    TypeProperty{"xprec", [](const Type& type) { return Result(precisionOf(type)); }},
    TypeProperty{"xscale", [](const Type& type) { return Result(scaleOf(type)); }},
    TypeProperty{"characters", charactersOf},
    TypeProperty{"precision", numericPrecisionOf},
    TypeProperty{"scale", numericScaleOf},
    TypeProperty{"octets", octetsOf},
    TypeProperty{"radix", radixOf},
    TypeProperty{"fraction", datePrecisionOf},
    TypeProperty{"characterset", characterSetOf},
    TypeProperty{"collation", collationOf},
    TypeProperty{"prec", columnPrecisionOf},
    TypeProperty{"columnscale", columnScaleOf},
};

// Declared column type of SQLite, then the name of one of the properties; null for a type that is none of T-SQL's.
Result declaredType(Call& call) {
  if (anyNull(call)) return {};
  const auto type = Type::fromDeclared(call.args[0].text());
  const auto property = std::find_if(properties.begin(), properties.end(),
                                     [&](const TypeProperty& each) { return each.name == call.args[1].text(); });
  return type && property != properties.end() ? property->of(*type) : Result();
}

constexpr std::array functions{
    Function{"ts_try_convert", 3, 4, true, tryConvertCall},
    Function{"ts_greatest", 2, -1, true, extreme<true>},
    Function{"ts_least", 2, -1, true, extreme<false>},
    Function{"ts_convert", 3, 4, true, convertCall},
    Function{"ts_bytes", 1, 1, true, bytes},
    Function{"ts_assign", 4, 5, true, assignCall},
    Function{"ts_like", 4, 4, true, like},
    Function{"ts_declared_type", 2, 2, true, declaredType},
};

}  // namespace

std::span<const Function> conversionFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
