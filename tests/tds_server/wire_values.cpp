#include "tds_server/wire_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>

#include "tds_server/code_page.h"
#include "tds_server/protocol.h"
#include "tds_server/token_writer.h"

namespace tolvane::tds {
namespace {

using embedded::Cell;
using tsql::Type;
using tsql::TypeKind;

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using)

struct WireForm {
  WireType type;
  std::uint8_t size = 0;  // of a number or a time
};

WireForm formOf(const Type& type) {
  switch (type.kind) {
    case TypeKind::Null:
    case TypeKind::Int:
      return {WireType::integer, 4};
    case TypeKind::TinyInt:
      return {WireType::integer, 1};
    case TypeKind::SmallInt:
      return {WireType::integer, 2};
    case TypeKind::BigInt:
      return {WireType::integer, 8};
    case TypeKind::Bit:
      return {WireType::bit, 1};
    case TypeKind::Real:
      return {WireType::real, 4};
    case TypeKind::Float:
      return {WireType::real, 8};
    case TypeKind::SmallMoney:
      return {WireType::money, 4};
    case TypeKind::Money:
      return {WireType::money, 8};
    case TypeKind::Decimal:
      return {WireType::numeric};
    case TypeKind::Date:
      return {WireType::date};
    case TypeKind::SmallDateTime:
      return {WireType::dateTime, 4};
    case TypeKind::DateTime:
      return {WireType::dateTime, 8};
    case TypeKind::UniqueIdentifier:
      return {WireType::uniqueIdentifier, 16};
    case TypeKind::Image:
      return {WireType::image};
    case TypeKind::Text:
      return {WireType::text};
    case TypeKind::NText:
      return {WireType::nText};
    case TypeKind::Binary:
    case TypeKind::Timestamp:
      return {WireType::binary};
    case TypeKind::VarBinary:
      return {WireType::varBinary};
    case TypeKind::Char:
      return {WireType::character};
    case TypeKind::VarChar:
      return {WireType::varChar};
    case TypeKind::NChar:
      return {WireType::nChar};
    case TypeKind::NVarChar:
      return {WireType::nVarChar};
  }
  return {WireType::nVarChar};
}

// Bytes of a decimal's digits.
std::size_t digitBytes(int precision) {
  return precision <= 9 ? 4 : precision <= 19 ? 8 : precision <= 28 ? 12 : 16;
}

void putLength(Buffer& to, const Type& type) {
  if (type.length == tsql::maxLength) return put(to, maxLengthMark);
  const auto length = type.kind == TypeKind::Timestamp ? 8 : std::max(type.length, 1);
  put(to, static_cast<std::uint16_t>(type.isUnicode() ? length * 2 : length));
}

void putType(Buffer& to, const WireColumn& column) {
  const auto form = formOf(column.type);
  put(to, form.type);
  switch (form.type) {
    case WireType::date:
      return;
    case WireType::numeric:
      put(to, static_cast<std::uint8_t>(digitBytes(column.type.precision) + 1));
      put(to, column.type.precision);
      return put(to, column.type.scale);
    case WireType::image:
    case WireType::text:
    case WireType::nText:
      put(to, std::uint32_t{0x7FFFFFFF});
      if (form.type != WireType::image) putBytes(to, collationBytes);
      put(to, std::uint8_t{1});
      return putText<std::uint16_t>(to, column.table);
    case WireType::binary:
    case WireType::varBinary:
      return putLength(to, column.type);
    case WireType::character:
    case WireType::varChar:
    case WireType::nChar:
    case WireType::nVarChar:
      putLength(to, column.type);
      return putBytes(to, collationBytes);
    default:
      return put(to, form.size);
  }
}

// "-12.3400" is minus and 123400.
struct Digits {
  bool negative = false;
  Wide value = 0;
};

Digits digitsOf(std::string_view text) {
  Digits digits;
  for (const char c : text) {
    if (c == '-') digits.negative = true;
    if (c >= '0' && c <= '9') digits.value = digits.value * 10 + static_cast<unsigned>(c - '0');
  }
  return digits;
}

void putDecimal(Buffer& to, const Type& type, std::string_view text) {
  const auto digits = digitsOf(text);
  const auto size = digitBytes(type.precision);
  put(to, static_cast<std::uint8_t>(size + 1));
  put(to, static_cast<std::uint8_t>(digits.negative ? 0 : 1));
  for (std::size_t i = 0; i < size; ++i) to.push_back(static_cast<std::uint8_t>(digits.value >> (8 * i)));
}

void putMoney(Buffer& to, std::uint8_t size, std::string_view text) {
  const auto digits = digitsOf(text);
  const auto magnitude = static_cast<std::int64_t>(digits.value);
  const auto amount = digits.negative ? -magnitude : magnitude;
  if (size == 8) put(to, static_cast<std::int32_t>(amount >> 32));
  put(to, static_cast<std::uint32_t>(amount));
}

int numberAt(std::string_view text, std::size_t at, std::size_t count) {
  int number = 0;
  if (at + count <= text.size()) std::from_chars(text.data() + at, text.data() + at + count, number);
  return number;
}

// Days since 1900-01-01 of 'yyyy-mm-dd...'.
int daysOf(std::string_view text) {
  using namespace std::chrono;
  const year_month_day date{year(numberAt(text, 0, 4)), month(static_cast<unsigned>(numberAt(text, 5, 2))),
                            day(static_cast<unsigned>(numberAt(text, 8, 2)))};
  return static_cast<int>((sys_days(date) - sys_days(year(1900) / 1 / 1)).count());
}

void putDate(Buffer& to, std::string_view text) {
  constexpr int daysBefore1900 = 693595;
  const auto days = static_cast<std::uint32_t>(daysOf(text) + daysBefore1900);
  put(to, std::uint8_t{3});
  for (unsigned i = 0; i < 3; ++i) to.push_back(static_cast<std::uint8_t>(days >> (8 * i)));
}

void putDateTime(Buffer& to, std::uint8_t size, std::string_view text) {
  const int minutes = numberAt(text, 11, 2) * 60 + numberAt(text, 14, 2);
  if (size == 4) {
    put(to, static_cast<std::uint16_t>(daysOf(text)));
    return put(to, static_cast<std::uint16_t>(minutes));
  }
  const int milliseconds = (minutes * 60 + numberAt(text, 17, 2)) * 1000 + numberAt(text, 20, 3);
  put(to, static_cast<std::int32_t>(daysOf(text)));
  // Three hundredths of a second.
  put(to, static_cast<std::uint32_t>((static_cast<std::int64_t>(milliseconds) * 3 + 5) / 10));
}

void putGuid(Buffer& to, std::string_view text) {
  std::array<std::uint8_t, 16> bytes{};
  std::size_t at = 0;
  for (std::size_t i = 0; i + 1 < text.size() && at < bytes.size();) {
    if (text[i] == '-' || text[i] == '{') {
      ++i;
      continue;
    }
    std::from_chars(text.data() + i, text.data() + i + 2, bytes[at++], 16);
    i += 2;
  }
  std::reverse(bytes.begin(), bytes.begin() + 4);
  std::reverse(bytes.begin() + 4, bytes.begin() + 6);
  std::reverse(bytes.begin() + 6, bytes.begin() + 8);
  putBytes(to, bytes);
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// The value's bytes as they stand on the wire.
Buffer contentOf(const Type& type, const Cell& cell) {
  Buffer content;
  if (type.isUnicode()) {
    putWide(content, tsql::toUtf16(cell.text()));
  } else if (type.isText()) {
    putBytes(content, bytesOf(toCodePage(cell.text())));
  } else {
    putBytes(content, cell.bytes());
  }
  return content;
}

void putLong(Buffer& to, const Type& type, const Cell& cell) {
  constexpr std::uint8_t pointerSize = 16;
  constexpr std::uint8_t stampSize = 8;
  put(to, pointerSize);
  to.insert(to.end(), pointerSize + stampSize, std::uint8_t{0xAB});
  const auto content = contentOf(type, cell);
  put(to, static_cast<std::uint32_t>(content.size()));
  putBytes(to, content);
}

void putVariable(Buffer& to, const Type& type, const Cell& cell) {
  const auto content = contentOf(type, cell);
  if (type.length != tsql::maxLength) {
    put(to, static_cast<std::uint16_t>(content.size()));
    return putBytes(to, content);
  }
  put(to, static_cast<std::uint64_t>(content.size()));
  if (!content.empty()) put(to, static_cast<std::uint32_t>(content.size()));
  putBytes(to, content);
  put(to, std::uint32_t{0});
}

void putNull(Buffer& to, const Type& type, WireType wire) {
  const bool variable = wire >= WireType::varBinary;
  if (variable && type.length == tsql::maxLength) return put(to, partsNull);
  if (variable) return put(to, maxLengthMark);
  put(to, std::uint8_t{0});
}

void putNumber(Buffer& to, const WireForm& form, const Cell& cell) {
  put(to, form.size);
  if (form.type == WireType::real) {
    const double value = cell.kind == Cell::Kind::integer ? static_cast<double>(cell.integer) : cell.real;
    if (form.size == 4) return put(to, static_cast<float>(value));
    return put(to, value);
  }
  for (unsigned i = 0; i < form.size; ++i) to.push_back(static_cast<std::uint8_t>(cell.integer >> (8 * i)));
}

}  // namespace

void putColumn(Buffer& to, const WireColumn& column) {
  put(to, std::uint32_t{0});
  std::uint16_t flags = column.table.empty() || column.identity ? 0 : columnUpdatable;
  if (column.type.nullable) flags |= columnNullable;
  if (column.identity) flags |= columnIdentity;
  put(to, flags);
  putType(to, column);
  putText<std::uint8_t>(to, column.name);
}

void putValue(Buffer& to, const Type& type, const Cell& cell) {
  const auto form = formOf(type);
  if (cell.isNull()) return putNull(to, type, form.type);
  switch (form.type) {
    case WireType::image:
    case WireType::text:
    case WireType::nText:
      return putLong(to, type, cell);
    case WireType::numeric:
      return putDecimal(to, type, cell.text());
    case WireType::money:
      put(to, form.size);
      return putMoney(to, form.size, cell.text());
    case WireType::date:
      return putDate(to, cell.text());
    case WireType::dateTime:
      put(to, form.size);
      return putDateTime(to, form.size, cell.text());
    case WireType::uniqueIdentifier:
      put(to, form.size);
      return putGuid(to, cell.text());
    case WireType::integer:
    case WireType::bit:
    case WireType::real:
      return putNumber(to, form, cell);
    default:
      return putVariable(to, type, cell);
  }
}

}  // namespace tolvane::tds
