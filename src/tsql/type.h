#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane::tsql {

// The types of T-SQL, in the order of SQL Server's type precedence, lowest first: of two operands, the one of the lower
// kind is converted to the higher one. `Null` is the type of the bare word NULL. The numbers are part of pack().
enum class TypeKind : std::uint8_t {
  Null,
  Binary,
  VarBinary,
  Char,
  VarChar,
  NChar,
  NVarChar,
  UniqueIdentifier,
  Timestamp,
  Image,
  Text,
  NText,
  Bit,
  TinyInt,
  SmallInt,
  Int,
  BigInt,
  SmallMoney,
  Money,
  Decimal,
  Real,
  Float,
  Date,
  SmallDateTime,
  DateTime,
};
inline constexpr int kindCount = 25;

// The length of varchar(max), nvarchar(max) and varbinary(max).
inline constexpr std::int32_t maxLength = -1;

// A T-SQL type. `length` counts characters (nchar, nvarchar), bytes (char, varchar, binary, varbinary) and is maxLength
// for `max`; `precision` and `scale` belong to decimal alone. A value object without invariants of its own.
struct Type {
  TypeKind kind = TypeKind::Null;
  std::int32_t length = 0;
  std::uint8_t precision = 0;
  std::uint8_t scale = 0;
  bool nullable = true;
  bool numeric = false;  // a decimal that messages and catalogues call by its other name

  bool operator==(const Type& other) const {
    return kind == other.kind && length == other.length && precision == other.precision && scale == other.scale &&
           nullable == other.nullable;
  }

  static constexpr Type of(TypeKind kind) { return {kind, 0, 0, 0, true, false}; }
  static constexpr Type text(TypeKind kind, std::int32_t length) { return {kind, length, 0, 0, true, false}; }
  static constexpr Type decimal(int precision, int scale) {
    return {TypeKind::Decimal, 0, static_cast<std::uint8_t>(precision), static_cast<std::uint8_t>(scale), true, false};
  }
  // As literals and what is computed with them are named.
  static constexpr Type numericOf(int precision, int scale) {
    Type type = decimal(precision, scale);
    type.numeric = true;
    return type;
  }
  constexpr Type orNull(bool canBeNull = true) const {
    Type copy = *this;
    copy.nullable = canBeNull;
    return copy;
  }

  // bit, tinyint, smallint, int, bigint: stored as SQLite integers.
  constexpr bool isInteger() const { return kind >= TypeKind::Bit && kind <= TypeKind::BigInt; }
  constexpr bool isMoney() const { return kind == TypeKind::Money || kind == TypeKind::SmallMoney; }
  // money and decimal: stored as canonical text, compared with COLLATE TSQL_DECIMAL.
  constexpr bool isExactText() const { return isMoney() || kind == TypeKind::Decimal; }
  constexpr bool isFloat() const { return kind == TypeKind::Real || kind == TypeKind::Float; }
  constexpr bool isNumber() const { return kind >= TypeKind::Bit && kind <= TypeKind::Float; }
  constexpr bool isDate() const { return kind >= TypeKind::Date; }
  // char .. nvarchar, text, ntext: compared with COLLATE TSQL.
  constexpr bool isText() const { return (kind >= TypeKind::Char && kind <= TypeKind::NVarChar) || isLongText(); }
  constexpr bool isLongText() const { return kind == TypeKind::Text || kind == TypeKind::NText; }
  // nchar, nvarchar, ntext: two bytes a character for DATALENGTH, trailing blanks count in LIKE.
  constexpr bool isUnicode() const {
    return kind == TypeKind::NChar || kind == TypeKind::NVarChar || kind == TypeKind::NText;
  }
  constexpr bool isBinary() const {
    return kind == TypeKind::Binary || kind == TypeKind::VarBinary || kind == TypeKind::Image ||
           kind == TypeKind::Timestamp;
  }
  // text, ntext, image: the old long types (ADO marks their fields as long; so it does the `max` types).
  constexpr bool isLong() const { return isLongText() || kind == TypeKind::Image || length == maxLength; }

  // The whole type as one number that fits SQLite's integers, so that SQLite text can hand it to a run-time function.
  // Bits 0..7 kind, 8..15 precision, 16..23 scale, 24 nullable, 25..57 length + 1.
  std::int64_t pack() const;
  static Type unpack(std::int64_t packed);

  // As one writes it in T-SQL: `nvarchar(80)`, `decimal(18, 4)` without the blank, `varchar(max)`, `int`. Nullability
  // is not part of it. Type Null gives "null".
  std::string name() const;
  // The name alone, without length: `nvarchar`, `decimal`.
  std::string_view baseName() const;
  // The same in messages about operands: `NULL` for the bare word.
  std::string_view messageName() const { return kind == TypeKind::Null ? std::string_view("NULL") : baseName(); }

  // The column type that a table in SQLite is declared with; fromDeclared() reads it back. Equal to name() except that
  // decimals and money get text affinity: `decimal text(18,4)`, `money text`; a length of max is written `nvarchar
  // max`.
  // A length of max is written as a word: `nvarchar max`.
  std::string declared() const;
  // The T-SQL type of a declared column type; nothing where the text is not one that declared() writes. `INTEGER` (the
  // form of an identity column that is SQLite's row number) reads as int. Letter case and blanks do not matter.
  static std::optional<Type> fromDeclared(std::string_view declaredType);

  // Bytes a value takes at most, as syscolumns.length tells it (nvarchar(80): 160; text: 16).
  int storageLength() const;
};

// The row of the table of types with that T-SQL name (`int`, `nvarchar`, `numeric`, `sysname`, ...), any letter case.
// Aliases give their base type with its default length: `integer` int, `dec`/`numeric` decimal(18,0), `sysname`
// nvarchar(128), `double precision` as float. Length 1 for text and binary kinds without a length.
std::optional<Type> typeNamed(std::string_view name);

// One row of the table of types; the table is what the documentation and the tests walk.
struct TypeRow {
  TypeKind kind;
  std::string_view name;
  int systemType;    // systypes.xtype and syscolumns.xtype
  int bytes;         // of a fixed-size type, else 0
  bool takesLength;  // (n) or (max)
};
const TypeRow& typeRow(TypeKind kind);

}  // namespace tolvane::tsql
