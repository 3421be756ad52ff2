#include "tds_server/wire_parameters.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "tds_server/code_page.h"
#include "tds_server/protocol.h"
#include "tds_server/token_writer.h"

namespace tolvane::tds {
namespace {

using embedded::PlaceholderValue;
using tsql::Type;
using tsql::TypeKind;

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using)

struct WireParameter {
  WireType type;
  std::uint32_t size = 0;
  std::uint8_t precision = 0;
  std::uint8_t scale = 0;

  [[nodiscard]] bool inParts() const { return size == maxLengthMark && type >= WireType::varBinary; }
};

WireParameter readType(WireReader& reader) {
  WireParameter parameter{reader.number<WireType>()};
  switch (parameter.type) {
    case WireType::date:
      return parameter;
    case WireType::dateTime2:
      parameter.scale = reader.number<std::uint8_t>();
      return parameter;
    case WireType::decimal:
    case WireType::numeric:
      parameter.size = reader.number<std::uint8_t>();
      parameter.precision = reader.number<std::uint8_t>();
      parameter.scale = reader.number<std::uint8_t>();
      return parameter;
    case WireType::image:
      parameter.size = reader.number<std::uint32_t>();
      return parameter;
    case WireType::text:
    case WireType::nText:
      parameter.size = reader.number<std::uint32_t>();
      (void)reader.take(sizeof collationBytes);
      return parameter;
    case WireType::varBinary:
    case WireType::binary:
      parameter.size = reader.number<std::uint16_t>();
      return parameter;
    case WireType::varChar:
    case WireType::character:
    case WireType::nVarChar:
    case WireType::nChar:
      parameter.size = reader.number<std::uint16_t>();
      (void)reader.take(sizeof collationBytes);
      return parameter;
    case WireType::integer:
    case WireType::bit:
    case WireType::real:
    case WireType::money:
    case WireType::dateTime:
    case WireType::uniqueIdentifier:
      parameter.size = reader.number<std::uint8_t>();
      return parameter;
    case WireType::sqlVariant:
      break;
  }
  throw ProtocolError("a parameter of the type " + std::to_string(static_cast<int>(parameter.type)));
}

// The value's bytes; nothing for null.
std::optional<Buffer> readContent(WireReader& reader, const WireParameter& parameter) {
  const auto copied = [&](std::size_t size) {
    const auto bytes = reader.take(size);
    return Buffer(bytes.begin(), bytes.end());
  };
  if (parameter.inParts()) {
    if (reader.number<std::uint64_t>() == partsNull) return std::nullopt;
    Buffer content;
    for (auto part = reader.number<std::uint32_t>(); part != 0; part = reader.number<std::uint32_t>()) {
      putBytes(content, reader.take(part));
    }
    return content;
  }
  if (parameter.type >= WireType::varBinary) {
    const auto size = reader.number<std::uint16_t>();
    if (size == maxLengthMark) return std::nullopt;
    return copied(size);
  }
  const bool isLong =
      parameter.type == WireType::image || parameter.type == WireType::text || parameter.type == WireType::nText;
  if (isLong) {
    const auto size = reader.number<std::uint32_t>();
    if (size == longNull) return std::nullopt;
    return copied(size);
  }
  const auto size = reader.number<std::uint8_t>();
  if (size == 0) return std::nullopt;
  return copied(size);
}

std::int64_t integerOf(const Buffer& content) {
  WireReader reader(content);
  switch (content.size()) {
    case 1:
      return reader.number<std::uint8_t>();
    case 2:
      return reader.number<std::int16_t>();
    case 4:
      return reader.number<std::int32_t>();
    default:
      return reader.number<std::int64_t>();
  }
}

std::string withPoint(Wide digits, bool negative, int scale) {
  std::string text;
  for (int i = 0; digits != 0 || i <= scale; ++i) {
    if (i == scale && scale > 0) text += '.';
    text += static_cast<char>('0' + static_cast<int>(digits % 10));
    digits /= 10;
  }
  if (negative) text += '-';
  std::reverse(text.begin(), text.end());
  return text;
}

std::string decimalText(const Buffer& content, int scale) {
  Wide digits = 0;
  for (std::size_t i = content.size() - 1; i > 0; --i) digits = digits << 8U | content[i];
  return withPoint(digits, content[0] == 0 && digits != 0, scale);
}

std::string moneyText(const Buffer& content) {
  WireReader reader(content);
  std::int64_t amount = 0;
  if (content.size() == 8) amount = static_cast<std::int64_t>(reader.number<std::int32_t>()) << 32;
  amount |= reader.number<std::uint32_t>();
  if (content.size() == 4) amount = static_cast<std::int32_t>(amount);
  const auto magnitude = static_cast<Wide>(amount < 0 ? -amount : amount);
  return withPoint(magnitude, amount < 0, 4);
}

std::string dateText(int daysSince1900) {
  using namespace std::chrono;
  const year_month_day date(sys_days(year(1900) / 1 / 1) + days(daysSince1900));
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()));
  return text;
}

std::string timeText(std::int64_t milliseconds) {
  char text[32];
  const auto part = [&](std::int64_t unit, std::int64_t of) { return static_cast<int>(milliseconds / unit % of); };
  std::snprintf(text, sizeof text, " %02d:%02d:%02d.%03d", part(3600000, 24), part(60000, 60), part(1000, 60),
                part(1, 1000));
  return text;
}

std::string dateTimeText(const Buffer& content) {
  WireReader reader(content);
  if (content.size() == 4) {
    const auto days = reader.number<std::uint16_t>();
    return dateText(days) + timeText(reader.number<std::uint16_t>() * 60000LL);
  }
  const auto days = reader.number<std::int32_t>();
  return dateText(days) + timeText((reader.number<std::uint32_t>() * 10LL + 1) / 3);
}

// The date stands in the last three bytes, the time before it in units of 10^-scale seconds.
std::string dateTime2Text(const Buffer& content, int scale) {
  constexpr int daysBefore1900 = 693595;
  std::int64_t units = 0;
  for (std::size_t i = content.size() - 3; i > 0; --i) units = units << 8 | content[i - 1];
  int days = 0;
  for (std::size_t i = content.size(); i > content.size() - 3; --i) days = days << 8 | content[i - 1];
  for (int i = scale; i < 3; ++i) units *= 10;
  for (int i = scale; i > 3; --i) units /= 10;
  // A datetime keeps three hundredths of a second.
  const auto ticks = (units * 3 + 5) / 10;
  return dateText(days - daysBefore1900) + timeText((ticks * 10 + 1) / 3);
}

std::string guidText(const Buffer& content) {
  constexpr int order[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::string text;
  for (const int i : order) {
    if (text.size() == 8 || text.size() == 13 || text.size() == 18 || text.size() == 23) text += '-';
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02X", content[static_cast<std::size_t>(i)]);
    text += pair;
  }
  return text;
}

Type lengthType(TypeKind kind, const WireParameter& parameter, std::uint32_t unit) {
  const auto length = parameter.inParts() ? tsql::maxLength : static_cast<std::int32_t>(parameter.size / unit);
  return Type::text(kind, length == 0 ? 1 : length);
}

PlaceholderValue ofText(Type type, std::string text) {
  return {type, std::move(text), std::nullopt};
}

PlaceholderValue ofBytes(Type type, Buffer content) {
  return {type, {}, Bytes(std::move(content))};
}

Type typeOf(const WireParameter& parameter) {
  switch (parameter.type) {
    case WireType::integer:
      return Type::of(parameter.size == 1   ? TypeKind::TinyInt
                      : parameter.size == 2 ? TypeKind::SmallInt
                      : parameter.size == 4 ? TypeKind::Int
                                            : TypeKind::BigInt);
    case WireType::bit:
      return Type::of(TypeKind::Bit);
    case WireType::real:
      return Type::of(parameter.size == 4 ? TypeKind::Real : TypeKind::Float);
    case WireType::money:
      return Type::of(TypeKind::Money);
    case WireType::decimal:
    case WireType::numeric:
      return Type::decimal(parameter.precision, parameter.scale);
    case WireType::date:
    case WireType::dateTime:
    case WireType::dateTime2:
      return Type::of(TypeKind::DateTime);
    case WireType::uniqueIdentifier:
      return Type::of(TypeKind::UniqueIdentifier);
    case WireType::image:
      return Type::of(TypeKind::Image);
    case WireType::text:
    case WireType::nText:
      return Type::of(TypeKind::NText);
    case WireType::binary:
    case WireType::varBinary:
      return lengthType(TypeKind::VarBinary, parameter, 1);
    case WireType::character:
    case WireType::varChar:
      return lengthType(TypeKind::VarChar, parameter, 1);
    default:
      return lengthType(TypeKind::NVarChar, parameter, 2);
  }
}

PlaceholderValue valueOf(const WireParameter& parameter, std::optional<Buffer> content) {
  const auto type = typeOf(parameter);
  if (!content) return {type, {}, std::nullopt};
  switch (parameter.type) {
    case WireType::integer:
    case WireType::bit:
      return {type, integerOf(*content), std::nullopt};
    case WireType::real: {
      WireReader reader(*content);
      const double value = content->size() == 4 ? reader.number<float>() : reader.number<double>();
      return {type, value, std::nullopt};
    }
    case WireType::money:
      return ofText(type, moneyText(*content));
    case WireType::decimal:
    case WireType::numeric:
      return ofText(type, decimalText(*content, parameter.scale));
    case WireType::date:
    case WireType::dateTime2:
      return ofText(type, dateTime2Text(*content, parameter.scale));
    case WireType::dateTime:
      return ofText(type, dateTimeText(*content));
    case WireType::uniqueIdentifier:
      return ofText(type, guidText(*content));
    case WireType::image:
    case WireType::binary:
    case WireType::varBinary:
      return ofBytes(type, std::move(*content));
    case WireType::text:
    case WireType::character:
    case WireType::varChar:
      return ofText(type, fromCodePage({reinterpret_cast<const char*>(content->data()), content->size()}));
    default:
      return ofText(type, WireReader::textOf(*content));
  }
}

}  // namespace

PlaceholderValue readParameter(WireReader& reader) {
  const auto type = readType(reader);
  return valueOf(type, readContent(reader, type));
}

}  // namespace tolvane::tds
