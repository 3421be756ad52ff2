#include "tsql/type_rules.h"

#include <algorithm>

namespace tolvane::tsql {
namespace {

int decimalDigits(TypeKind kind) {
  switch (kind) {
    case TypeKind::Bit:
      return 1;
    case TypeKind::TinyInt:
      return 3;
    case TypeKind::SmallInt:
      return 5;
    case TypeKind::Int:
      return 10;
    default:
      return 19;
  }
}

Conversion fromText(const Type& from, const Type& to) {
  if (from.isLongText()) {
    if (to.isText()) return Conversion::Implicit;
    return Conversion::None;
  }
  if (to.isBinary()) return to.kind == TypeKind::Image && from.isUnicode() ? Conversion::None : Conversion::Explicit;
  return Conversion::Implicit;
}

Conversion fromNumber(const Type& from, const Type& to) {
  if (to.isNumber()) return Conversion::Implicit;
  if (to.isLongText() || to.kind == TypeKind::Image || to.kind == TypeKind::UniqueIdentifier) return Conversion::None;
  if (to.isText()) return from.isMoney() ? Conversion::Explicit : Conversion::Implicit;
  if (to.isBinary()) return from.isFloat() ? Conversion::Explicit : Conversion::Implicit;
  return to.kind == TypeKind::Date ? Conversion::None : Conversion::Implicit;
}

Conversion fromDate(const Type& from, const Type& to) {
  if (to.isDate()) return Conversion::Implicit;
  if (to.isLongText() || to.kind == TypeKind::Image || to.kind == TypeKind::UniqueIdentifier) return Conversion::None;
  if (to.isText()) return Conversion::Implicit;
  return from.kind == TypeKind::Date && to.isNumber() ? Conversion::None : Conversion::Explicit;
}

Conversion fromBinary(const Type& from, const Type& to) {
  if (to.isBinary()) return Conversion::Implicit;
  if (from.kind == TypeKind::Image) return Conversion::None;
  if (to.isLongText() || to.isFloat()) return Conversion::None;
  return Conversion::Implicit;
}

}  // namespace

Conversion conversionBetween(const Type& from, const Type& to) {
  if (from.kind == TypeKind::Null || to.kind == TypeKind::Null || from.kind == to.kind) return Conversion::Implicit;
  if (from.isText()) return fromText(from, to);
  if (from.isNumber()) return fromNumber(from, to);
  if (from.isDate()) return fromDate(from, to);
  if (from.isBinary()) return fromBinary(from, to);
  // uniqueidentifier
  const bool short_ = (to.isText() && !to.isLongText()) || (to.isBinary() && to.kind != TypeKind::Image);
  return short_ ? Conversion::Implicit : Conversion::None;
}

Type asDecimal(const Type& type) {
  if (type.kind == TypeKind::Decimal) return type;
  if (type.kind == TypeKind::Money) return Type::decimal(19, 4).orNull(type.nullable);
  if (type.kind == TypeKind::SmallMoney) return Type::decimal(10, 4).orNull(type.nullable);
  return Type::decimal(decimalDigits(type.kind), 0).orNull(type.nullable);
}

Type concatenation(const Type& a, const Type& b) {
  const bool unicode = a.isUnicode() || b.isUnicode();
  const int limit = unicode ? 4000 : 8000;
  Type result = Type::text(unicode ? TypeKind::NVarChar : TypeKind::VarChar, 0);
  result.length = a.length == maxLength || b.length == maxLength ? maxLength : std::min(a.length + b.length, limit);
  result.nullable = a.nullable || b.nullable;
  return result;
}

Type commonType(const Type& a, const Type& b) {
  const bool nullable = a.nullable || b.nullable;
  if (a.kind == TypeKind::Null) return b.orNull(nullable);
  if (b.kind == TypeKind::Null) return a.orNull(nullable);
  Type result = a.kind >= b.kind ? a : b;
  if (result.kind == TypeKind::Decimal) {
    const Type left = asDecimal(a.isNumber() ? a : result);
    const Type right = asDecimal(b.isNumber() ? b : result);
    const int scale = std::max(left.scale, right.scale);
    const int whole = std::max(left.precision - left.scale, right.precision - right.scale);
    result = Type::decimal(std::min(38, whole + scale), std::min(scale, 38 - std::min(whole, 38)));
    result.numeric = left.numeric || right.numeric;
  } else if (typeRow(result.kind).takesLength && typeRow(a.kind).takesLength && typeRow(b.kind).takesLength) {
    result.length = a.length == maxLength || b.length == maxLength ? maxLength : std::max(a.length, b.length);
    if (result.kind == TypeKind::NChar && (a.kind != TypeKind::NChar || b.kind != TypeKind::NChar) &&
        (a.kind == TypeKind::VarChar || b.kind == TypeKind::VarChar)) {
      result.kind = TypeKind::NVarChar;
    }
    if (result.length > 4000 && result.isUnicode()) result.length = 4000;
  }
  result.nullable = nullable;
  return result;
}

Type decimalResult(char op, const Type& a, const Type& b) {
  const int p1 = a.precision;
  const int s1 = a.scale;
  const int p2 = b.precision;
  const int s2 = b.scale;
  const int whole = std::max(p1 - s1, p2 - s2);
  int precision = 0;
  int scale = 0;
  switch (op) {
    case '*':
      precision = p1 + p2 + 1;
      scale = s1 + s2;
      break;
    case '/':
      scale = std::max(6, s1 + p2 + 1);
      precision = p1 - s1 + s2 + scale;
      break;
    case '%':
      scale = std::max(s1, s2);
      precision = std::min(p1 - s1, p2 - s2) + scale;
      break;
    default:
      scale = std::max(s1, s2);
      precision = whole + scale + 1;
      break;
  }
  if (precision > 38) {
    // A sum gives up its carry digit first, then digits of the fraction, all of them if need be; a product or quotient
    // keeps six.
    const bool sum = op == '+' || op == '-';
    scale = sum ? std::min(scale, 38 - whole) : std::max(std::min(scale, 6), scale - (precision - 38));
    precision = 38;
  }
  Type result = Type::decimal(precision, scale);
  result.numeric = a.numeric || b.numeric;
  result.nullable = a.nullable || b.nullable;
  return result;
}

}  // namespace tolvane::tsql
