#include "tsql/type.h"

#include <array>

#include "tsql/names.h"

namespace tolvane::tsql {
namespace {

constexpr std::array<TypeRow, kindCount> rows{{
    {TypeKind::Null, "null", 0, 0, false},
    {TypeKind::Binary, "binary", 173, 0, true},
    {TypeKind::VarBinary, "varbinary", 165, 0, true},
    {TypeKind::Char, "char", 175, 0, true},
    {TypeKind::VarChar, "varchar", 167, 0, true},
    {TypeKind::NChar, "nchar", 239, 0, true},
    {TypeKind::NVarChar, "nvarchar", 231, 0, true},
    {TypeKind::UniqueIdentifier, "uniqueidentifier", 36, 16, false},
    {TypeKind::Timestamp, "timestamp", 189, 8, false},
    {TypeKind::Image, "image", 34, 16, false},
    {TypeKind::Text, "text", 35, 16, false},
    {TypeKind::NText, "ntext", 99, 16, false},
    {TypeKind::Bit, "bit", 104, 1, false},
    {TypeKind::TinyInt, "tinyint", 48, 1, false},
    {TypeKind::SmallInt, "smallint", 52, 2, false},
    {TypeKind::Int, "int", 56, 4, false},
    {TypeKind::BigInt, "bigint", 127, 8, false},
    {TypeKind::SmallMoney, "smallmoney", 122, 4, false},
    {TypeKind::Money, "money", 60, 8, false},
    {TypeKind::Decimal, "decimal", 106, 0, false},
    {TypeKind::Real, "real", 59, 4, false},
    {TypeKind::Float, "float", 62, 8, false},
    {TypeKind::Date, "date", 40, 3, false},
    {TypeKind::SmallDateTime, "smalldatetime", 58, 4, false},
    {TypeKind::DateTime, "datetime", 61, 8, false},
}};

constexpr bool rowsFollowKinds() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (static_cast<std::size_t>(rows[i].kind) != i) return false;
  }
  return true;
}
static_assert(rowsFollowKinds());

int decimalBytes(int precision) {
  return precision <= 9 ? 5 : precision <= 19 ? 9 : precision <= 28 ? 13 : 17;
}

// The numbers between the brackets of `name(a,b)`; `max` reads as maxLength. False where they are not numbers.
bool readArguments(std::string_view text, int& first, int& second, int& count) {
  count = 0;
  std::string word;
  const auto take = [&] {
    if (word.empty() || count == 2) return false;
    int value = 0;
    if (word == "max") {
      value = maxLength;
    } else {
      for (const char c : word) {
        if (c < '0' || c > '9' || value > 100000) return false;
        value = value * 10 + (c - '0');
      }
    }
    (count == 0 ? first : second) = value;
    ++count;
    word.clear();
    return true;
  };
  for (const char c : text) {
    if (c == ' ') continue;
    if (c == ',') {
      if (!take()) return false;
    } else {
      word += c;
    }
  }
  return take();
}

}  // namespace

const TypeRow& typeRow(TypeKind kind) {
  return rows[static_cast<std::size_t>(kind)];
}

std::int64_t Type::pack() const {
  return static_cast<std::int64_t>(kind) | (static_cast<std::int64_t>(precision) << 8) |
         (static_cast<std::int64_t>(scale) << 16) | (static_cast<std::int64_t>(nullable ? 1 : 0) << 24) |
         ((static_cast<std::int64_t>(length) + 1) << 25);
}

Type Type::unpack(std::int64_t packed) {
  Type type;
  const auto kindNumber = packed & 0xFF;
  type.kind = kindNumber < kindCount ? static_cast<TypeKind>(kindNumber) : TypeKind::Null;
  type.precision = static_cast<std::uint8_t>((packed >> 8) & 0xFF);
  type.scale = static_cast<std::uint8_t>((packed >> 16) & 0xFF);
  type.nullable = ((packed >> 24) & 1) != 0;
  type.length = static_cast<std::int32_t>((packed >> 25) - 1);
  return type;
}

std::string_view Type::baseName() const {
  return kind == TypeKind::Decimal && numeric ? "numeric" : typeRow(kind).name;
}

std::string Type::name() const {
  std::string result(baseName());
  if (kind == TypeKind::Decimal) {
    result += "(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
  } else if (typeRow(kind).takesLength) {
    result += "(" + (length == maxLength ? std::string("max") : std::to_string(length)) + ")";
  }
  return result;
}

std::string Type::declared() const {
  if (kind == TypeKind::Decimal) {
    return std::string(baseName()) + " text(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
  }
  if (isMoney()) return std::string(baseName()) + " text";
  // SQLite takes numbers only between the brackets of a type.
  if (length == maxLength) return std::string(baseName()) + " max";
  return name();
}

std::optional<Type> Type::fromDeclared(std::string_view declaredType) {
  std::string text = lowered(declaredType);
  int first = 0;
  int second = 0;
  int count = 0;
  if (const auto open = text.find('('); open != std::string::npos) {
    const auto close = text.find(')', open);
    if (close == std::string::npos) return std::nullopt;
    if (!readArguments(std::string_view(text).substr(open + 1, close - open - 1), first, second, count)) {
      return std::nullopt;
    }
    text.resize(open);
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  if (const auto blank = text.rfind(" text"); blank != std::string::npos && blank + 5 == text.size())
    text.resize(blank);
  if (text.ends_with(" max")) {
    text.resize(text.size() - 4);
    first = maxLength;
    count = 1;
  }
  auto type = typeNamed(text);
  if (!type || count == 0) return type;
  if (type->kind == TypeKind::Decimal) {
    if (first < 1 || first > 38 || second > first) return std::nullopt;
    type->precision = static_cast<std::uint8_t>(first);
    type->scale = static_cast<std::uint8_t>(count == 2 ? second : 0);
    return type;
  }
  if (type->kind == TypeKind::Float) return Type::of(first <= 24 ? TypeKind::Real : TypeKind::Float);
  if (!typeRow(type->kind).takesLength || count != 1) return std::nullopt;
  type->length = first;
  return type;
}

int Type::storageLength() const {
  if (kind == TypeKind::Decimal) return decimalBytes(precision);
  if (!typeRow(kind).takesLength) return typeRow(kind).bytes;
  if (length == maxLength) return -1;
  return isUnicode() ? length * 2 : length;
}

std::optional<Type> typeNamed(std::string_view name) {
  const std::string key = lowered(name);
  struct Alias {
    std::string_view name;
    Type type;
  };
  static const std::array<Alias, 16> aliases{{
      {"integer", Type::of(TypeKind::Int)},
      {"dec", Type::decimal(18, 0)},
      {"decimal", Type::decimal(18, 0)},
      {"numeric", Type::numericOf(18, 0)},
      {"sysname", Type::text(TypeKind::NVarChar, 128).orNull(false)},
      {"double precision", Type::of(TypeKind::Float)},
      {"character", Type::text(TypeKind::Char, 1)},
      {"character varying", Type::text(TypeKind::VarChar, 1)},
      {"char varying", Type::text(TypeKind::VarChar, 1)},
      {"national char", Type::text(TypeKind::NChar, 1)},
      {"national character", Type::text(TypeKind::NChar, 1)},
      {"national char varying", Type::text(TypeKind::NVarChar, 1)},
      {"national character varying", Type::text(TypeKind::NVarChar, 1)},
      {"national text", Type::of(TypeKind::NText)},
      {"binary varying", Type::text(TypeKind::VarBinary, 1)},
      {"rowversion", Type::of(TypeKind::Timestamp)},
  }};
  for (const Alias& alias : aliases) {
    if (alias.name == key) return alias.type;
  }
  for (const TypeRow& row : rows) {
    if (row.name == key && row.kind != TypeKind::Null) return Type::text(row.kind, row.takesLength ? 1 : 0);
  }
  return std::nullopt;
}

}  // namespace tolvane::tsql
