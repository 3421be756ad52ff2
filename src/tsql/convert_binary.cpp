#include "tsql/convert_binary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "tsql/convert.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
// Where the bytes of a uniqueidentifier stand in its text, two digits each.
constexpr std::array<std::size_t, 16> identifierPlaces{6, 4, 2, 0, 11, 9, 16, 14, 19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::string_view identifierForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::size_t identifierBytes = 16;

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string hexText(BytesView bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::byte b : bytes) {
    text += hexDigits[std::to_integer<std::size_t>(b >> 4)];
    text += hexDigits[std::to_integer<std::size_t>(b & std::byte{15})];
  }
  return text;
}

std::optional<Bytes> bytesOfHex(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = hexValue(digits[i]);
    const int low = hexValue(digits[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(high * 16 + low));
  }
  return bytes;
}

std::uint64_t lastBytes(BytesView bytes, std::size_t count) {
  std::uint64_t value = 0;
  for (const std::byte b : bytes.last(std::min(count, bytes.size())))
    value = (value << 8) | std::to_integer<std::uint64_t>(b);
  return value;
}

Bytes bigEndian(std::uint64_t value, int count) {
  Bytes bytes(static_cast<std::size_t>(count));
  for (std::size_t i = bytes.size(); i-- > 0; value >>= 8) bytes[i] = static_cast<std::byte>(value & 0xFF);
  return bytes;
}

Bytes bytesOf(std::string_view text) {
  Bytes bytes(text.size());
  std::transform(text.begin(), text.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
  return bytes;
}

Bytes utf16Bytes(std::string_view text) {
  Bytes bytes;
  for (const char16_t unit : toUtf16(text)) {
    bytes.push_back(static_cast<std::byte>(unit & 0xFF));
    bytes.push_back(static_cast<std::byte>(unit >> 8));
  }
  return bytes;
}

std::string textOfUtf16(BytesView bytes) {
  std::u16string units;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    const auto high = i + 1 < bytes.size() ? std::to_integer<unsigned>(bytes[i + 1]) : 0U;
    units += static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) | (high << 8));
  }
  return fromUtf16(units);
}

Bytes textBytes(std::string_view text, const Type& from, const Type& to, int style, const Collation& collation) {
  if (style == 0) {
    if (from.isUnicode()) return utf16Bytes(text);
    return bytesOf(isAscii(text) ? std::string(text) : collation.toCodePage(text));
  }
  const bool prefixed = text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const auto bytes = (style == 1) == prefixed ? bytesOfHex(text.substr(prefixed ? 2 : 0)) : std::nullopt;
  if (!bytes || style > 2) throw SqlError(Message::ConversionError, {messageName(from), messageName(to)});
  return *bytes;
}

Bytes identifierToBytes(std::string_view text) {
  Bytes bytes(identifierBytes);
  for (std::size_t i = 0; i < identifierBytes; ++i) {
    const std::size_t place = identifierPlaces[i];
    bytes[i] = static_cast<std::byte>(hexValue(text[place]) * 16 + hexValue(text[place + 1]));
  }
  return bytes;
}

Bytes numberBytes(const Datum& value, const Type& from, const Type& to) {
  if (from.isInteger()) {
    const int count = from.kind == TypeKind::Bit ? 1 : typeRow(from.kind).bytes;
    return bigEndian(static_cast<std::uint64_t>(exactNumber(value).toInteger(Rounding::Cut).value_or(0)), count);
  }
  if (from.isMoney()) {
    const auto units = Decimal::product(exactNumber(value), Decimal(10000), 0);
    const std::int64_t whole = units ? units->toInteger(Rounding::Cut).value_or(0) : 0;
    return bigEndian(static_cast<std::uint64_t>(whole), typeRow(from.kind).bytes);
  }
  if (from.kind == TypeKind::Decimal) {
    const Decimal number = exactNumber(value);
    Bytes bytes{static_cast<std::byte>(from.precision), static_cast<std::byte>(from.scale), std::byte{0},
                number.isNegative() ? std::byte{0} : std::byte{1}};
    for (const std::byte b : number.magnitudeBytes()) bytes.push_back(b);
    return bytes;
  }
  if (from.kind == TypeKind::Float) return bigEndian(std::bit_cast<std::uint64_t>(approximateNumber(value)), 8);
  if (from.kind == TypeKind::Real) {
    return bigEndian(std::bit_cast<std::uint32_t>(static_cast<float>(approximateNumber(value))), 4);
  }
  if (from.kind == TypeKind::DateTime) {
    const DateTime date = dateTimeOf(value);
    return bigEndian(
        (std::uint64_t{static_cast<std::uint32_t>(date.days)} << 32) | static_cast<std::uint32_t>(date.ticks), 8);
  }
  if (from.kind == TypeKind::SmallDateTime) {
    const DateTime date = dateTimeOf(value);
    return bigEndian((static_cast<std::uint64_t>(date.days) << 16) |
                         static_cast<std::uint64_t>(date.ticks / DateTime::ticksPerMinute),
                     4);
  }
  throw SqlError(Message::ConversionError, {messageName(from), messageName(to)});
}

[[noreturn]] void refuse(std::string_view what) {
  throw SqlError(notSupportedNumber, 16, std::string(what) + " is not supported.");
}

// A date is its days since 0001-01-01, the least byte first.
constexpr std::size_t dateLength = 3;

Bytes dateBytes(const Datum& value, const Type& to) {
  const bool fits = to.kind == TypeKind::VarBinary
                        ? to.length == maxLength || std::cmp_greater_equal(to.length, dateLength)
                        : std::cmp_equal(to.length, dateLength);
  if (!fits) refuse("A date as a binary of another length than its own");
  Bytes bytes = bigEndian(static_cast<std::uint64_t>(dateTimeOf(value).days - dateBounds.first), dateLength);
  std::ranges::reverse(bytes);
  return bytes;
}

}  // namespace

std::int64_t integerOfBytes(BytesView bytes, const Type& to) {
  switch (to.kind) {
    case TypeKind::Bit:
      return std::any_of(bytes.begin(), bytes.end(), [](std::byte b) { return b != std::byte{0}; }) ? 1 : 0;
    case TypeKind::TinyInt:
      return static_cast<std::int64_t>(lastBytes(bytes, 1));
    case TypeKind::SmallInt:
      return static_cast<std::int16_t>(lastBytes(bytes, 2));
    case TypeKind::Int:
      return static_cast<std::int32_t>(lastBytes(bytes, 4));
    default:
      return static_cast<std::int64_t>(lastBytes(bytes, 8));
  }
}

Decimal moneyOfBytes(BytesView bytes, const Type& to) {
  const bool small = to.kind == TypeKind::SmallMoney;
  const Decimal units(integerOfBytes(bytes, Type::of(small ? TypeKind::Int : TypeKind::BigInt)));
  return Decimal::quotient(units, Decimal(10000), 4).value_or(Decimal());
}

std::optional<Decimal> decimalOfBytes(BytesView bytes) {
  constexpr std::size_t header = 4;
  if (bytes.size() <= header) return std::nullopt;
  const auto precision = std::to_integer<int>(bytes[0]);
  const auto scale = std::to_integer<int>(bytes[1]);
  const std::size_t storage = static_cast<std::size_t>(Type::decimal(precision, scale).storageLength()) - 1;
  const bool positive = bytes[3] != std::byte{0};
  const bool known = precision >= 1 && precision <= Decimal::maxPrecision && scale <= precision;
  if (!known || bytes.size() < header + storage) return std::nullopt;
  WideNumber magnitude;
  for (std::size_t i = bytes.size(); i-- > header;) {
    if (!magnitude.multiplyAdd(256, std::to_integer<std::uint32_t>(bytes[i]))) return std::nullopt;
  }
  return Decimal(!positive, magnitude, scale);
}

DateTime dateTimeOfBytes(BytesView bytes) {
  const std::uint64_t value = lastBytes(bytes, 8);
  const auto days = static_cast<std::int32_t>(value >> 32);
  const auto ticks = static_cast<std::uint32_t>(value);
  if (!dateTimeBounds.hold(days) || ticks >= static_cast<std::uint32_t>(DateTime::ticksPerDay)) {
    throw SqlError(Message::DateSyntax);
  }
  return {days, static_cast<std::int32_t>(ticks)};
}

DateTime smallDateTimeOfBytes(BytesView bytes) {
  const std::uint64_t value = lastBytes(bytes, 4);
  const auto ticks = static_cast<std::int32_t>(value & 0xFFFF) * DateTime::ticksPerMinute;
  if (ticks >= DateTime::ticksPerDay) refuse("A smalldatetime of such a binary");
  return {static_cast<std::int32_t>(value >> 16), ticks};
}

DateTime dateOfBytes(BytesView bytes) {
  if (bytes.size() != dateLength) refuse("A date of such a binary");
  Bytes swapped(bytes.begin(), bytes.end());
  std::ranges::reverse(swapped);
  const auto days = static_cast<std::int32_t>(lastBytes(swapped, dateLength)) + dateBounds.first;
  if (!dateBounds.hold(days)) refuse("A date of such a binary");
  return {days, 0};
}

std::string textOfBytes(BytesView bytes, const Type& from, const Type& to, int style, const Collation& collation) {
  if (style == 1 || style == 2) {
    // Only whole bytes are shown.
    const std::string prefix = style == 1 ? "0x" : "";
    const auto room = static_cast<std::size_t>(std::max(to.length, 0));
    const std::size_t shown = to.length == maxLength || to.isLongText() ? bytes.size()
                              : room < prefix.size()                    ? 0
                                                                        : (room - prefix.size()) / 2;
    return prefix + hexText(bytes.first(std::min(shown, bytes.size())));
  }
  if (style != 0) throw SqlError(Message::InvalidStyle, {std::to_string(style), messageName(from)});
  if (to.isUnicode()) return textOfUtf16(bytes);
  std::string raw(bytes.size(), '\0');
  std::transform(bytes.begin(), bytes.end(), raw.begin(), [](std::byte b) { return static_cast<char>(b); });
  return isAscii(raw) ? raw : collation.fromCodePage(raw);
}

Result toBinary(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
                const Collation& collation) {
  Bytes bytes;
  bool fillLeft = false;
  bool cutLeft = false;
  if (from.isText()) {
    bytes = textBytes(value.text(), from, to, style.value_or(0), collation);
  } else if (from.isBinary()) {
    bytes.assign(value.blob().begin(), value.blob().end());
  } else if (from.kind == TypeKind::UniqueIdentifier) {
    bytes = identifierToBytes(toUniqueIdentifier(value, Type::text(TypeKind::VarChar, maxLength)).text());
  } else if (from.kind == TypeKind::Date) {
    return dateBytes(value, to);
  } else {
    bytes = numberBytes(value, from, to);
    fillLeft = true;
    cutLeft = from.kind != TypeKind::Decimal;
  }
  if (to.length == maxLength || to.kind == TypeKind::Image) return bytes;
  const std::size_t length = to.kind == TypeKind::Timestamp ? 8 : static_cast<std::size_t>(to.length);
  const bool fixed = to.kind == TypeKind::Binary || to.kind == TypeKind::Timestamp;
  if (bytes.size() > length) {
    if (cutLeft) {
      bytes.erase(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(length));
    } else {
      bytes.resize(length);
    }
  } else if (fixed) {
    bytes.insert(fillLeft ? bytes.begin() : bytes.end(), length - bytes.size(), std::byte{0});
  }
  return bytes;
}

Result toUniqueIdentifier(const Datum& value, const Type& from) {
  if (from.isBinary()) {
    Bytes bytes(value.blob().begin(), value.blob().end());
    bytes.resize(identifierBytes);
    return uniqueIdentifierText(bytes);
  }
  if (value.kind() != Kind::Text) throw SqlError(Message::UniqueidentifierSyntax);
  std::string_view text = value.text();
  if (!text.empty() && text[0] == '{') {
    text.remove_prefix(1);
    if (text.size() <= identifierForm.size() || text[identifierForm.size()] != '}') {
      throw SqlError(Message::UniqueidentifierSyntax);
    }
  }
  if (text.size() < identifierForm.size()) throw SqlError(Message::UniqueidentifierSyntax);
  std::string identifier;
  for (std::size_t i = 0; i < identifierForm.size(); ++i) {
    const int digit = hexValue(text[i]);
    const bool hyphen = identifierForm[i] == '-';
    if (hyphen ? text[i] != '-' : digit < 0) throw SqlError(Message::UniqueidentifierSyntax);
    identifier += hyphen ? '-' : hexDigits[static_cast<std::size_t>(digit)];
  }
  return identifier;
}

std::string uniqueIdentifierText(BytesView bytes) {
  std::string text(identifierForm);
  const std::string digits = hexText(bytes);
  for (std::size_t i = 0; i < identifierBytes; ++i) text.replace(identifierPlaces[i], 2, digits, i * 2, 2);
  return text;
}

}  // namespace tolvane::tsql
