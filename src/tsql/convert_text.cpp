#include "tsql/convert_text.h"

#include <array>
#include <cstdio>
#include <utility>

#include "tsql/convert.h"
#include "tsql/convert_binary.h"
#include "tsql/date_text.h"
#include "tsql/number_text.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

constexpr int odbcStyle = 121;  // how a `date` is written where no style is given
constexpr std::size_t uniqueIdentifierLength = 36;

SqlError invalidStyle(int style, const Type& from) {
  return SqlError(Message::InvalidStyle, {std::to_string(style), messageName(from)});
}

std::string dateToText(const Datum& value, const Type& from, const Type& to, std::optional<int> style) {
  const bool dateAlone = from.kind == TypeKind::Date;
  const int number = style.value_or(dateAlone ? odbcStyle : 0);
  const DateStyle* form = findDateStyle(number);
  if (form == nullptr) throw invalidStyle(number, from);
  if (dateAlone && form->date.empty()) throw SqlError(Message::ConversionError, {messageName(from), messageName(to)});
  return formatted(dateTimeOf(value), *form, dateAlone);
}

std::string numberToText(const Datum& value, const Type& from, std::optional<int> style) {
  if (from.isInteger()) return exactNumber(value).toText();
  if (from.kind == TypeKind::Decimal) return exactNumber(value).toText();
  const int number = style.value_or(0);
  return from.isFloat() ? floatText(approximateNumber(value), number) : moneyText(exactNumber(value), number);
}

// A number must not lose digits; small integers show a star instead in char and varchar.
std::string fittedNumber(std::string text, const Type& from, const Type& to) {
  if (to.length == maxLength || to.isLongText() || std::cmp_less_equal(text.size(), to.length)) return text;
  const bool small = from.isInteger() && from.kind != TypeKind::BigInt;
  if (small && !to.isUnicode()) return "*";
  if (from.isMoney()) throw SqlError(Message::MoneyTextSpace, {messageName(from), messageName(to)});
  throw SqlError(Message::ArithmeticOverflow, {from.isInteger() ? "expression" : messageName(from), messageName(to)});
}

std::string cutToCodePageBytes(const std::string& text, std::int32_t length, const Collation& collation) {
  std::int64_t used = 0;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    (void)nextCharacter(text, position);
    used +=
        static_cast<std::int64_t>(collation.toCodePage(std::string_view(text).substr(start, position - start)).size());
    if (used > length) return text.substr(0, start);
  }
  return text;
}

// Cut to the type's length, and filled up with blanks where the length is fixed.
std::string fitted(std::string text, const Type& to, const Collation& collation) {
  if (to.length == maxLength || to.isLongText()) return text;
  const bool fixed = to.kind == TypeKind::Char || to.kind == TypeKind::NChar;
  if (!fixed && std::cmp_less_equal(text.size(), to.length) && (to.isUnicode() || isAscii(text))) return text;
  std::int64_t length = lengthIn(to, text, collation);
  if (length > to.length) {
    const bool units = to.isUnicode() || isAscii(text);
    text =
        units ? utf16Prefix(text, static_cast<std::size_t>(to.length)) : cutToCodePageBytes(text, to.length, collation);
    length = lengthIn(to, text, collation);
  }
  if (fixed && length < to.length) text.append(static_cast<std::size_t>(to.length - length), ' ');
  return text;
}

}  // namespace

std::int64_t lengthIn(const Type& type, std::string_view text, const Collation& collation) {
  if (isAscii(text)) return static_cast<std::int64_t>(text.size());
  if (type.isUnicode()) return static_cast<std::int64_t>(utf16Length(text));
  return static_cast<std::int64_t>(collation.toCodePage(text).size());
}

Result toText(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
              const Collation& collation) {
  std::string text;
  if (from.isText()) {
    text = value.text();
    // What the code page does not have is lost on the way into varchar.
    if (from.isUnicode() && !to.isUnicode() && !isAscii(text))
      text = collation.fromCodePage(collation.toCodePage(text));
  } else if (from.isBinary()) {
    text = textOfBytes(value.blob(), from, to, style.value_or(0), collation);
  } else if (from.isDate()) {
    text = dateToText(value, from, to, style);
  } else if (from.kind == TypeKind::UniqueIdentifier) {
    text = value.text();
    const bool space = to.length == maxLength || std::cmp_greater_equal(to.length, uniqueIdentifierLength);
    if (!space) throw SqlError(Message::UniqueidentifierSpace);
  } else if (from.isNumber()) {
    text = numberToText(value, from, style);
    const bool space = to.length == maxLength || to.isLongText() || std::cmp_less_equal(text.size(), to.length);
    if (from.isFloat() && !space) {
      throw SqlError(Message::FloatOverflow, {messageName(to), floatMessageText(approximateNumber(value))});
    }
    text = fittedNumber(std::move(text), from, to);
  } else {
    throw SqlError(Message::ConversionError, {messageName(from), messageName(to)});
  }
  return fitted(std::move(text), to, collation);
}

}  // namespace tolvane::tsql
