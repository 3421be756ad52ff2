// Calls with any number of arguments of any type: the texts joined, the one chosen, the greatest and the least.
#include <algorithm>

#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;

namespace {

// How many characters a value of a type that is no text may have as one.
int shownLength(const Type& type) {
  switch (type.kind) {
    case TypeKind::Null:
    case TypeKind::Bit:
      return 1;
    case TypeKind::TinyInt:
      return 4;
    case TypeKind::SmallInt:
      return 6;
    case TypeKind::Int:
      return 12;
    case TypeKind::BigInt:
      return 24;
    case TypeKind::Decimal:
      return 41;
    case TypeKind::Real:
    case TypeKind::Float:
      return 32;
    case TypeKind::UniqueIdentifier:
      return 36;
    case TypeKind::Date:
      return 10;
    case TypeKind::Binary:
    case TypeKind::VarBinary:
      return type.length == maxLength ? maxLength : type.length;
    default:
      return 30;
  }
}

}  // namespace

// Each value as text; long ones are refused as SQL Server does.
std::vector<Typed> Writer::asTexts(const Expression& call, std::vector<Typed> values) {
  const bool unicode = std::ranges::any_of(values, [](const Typed& value) { return value.type.isUnicode(); });
  for (std::size_t i = 0; i < values.size(); ++i) {
    Typed& value = values[i];
    if (value.type.isLongText() || value.type.kind == TypeKind::Image) invalidArgument(call, i, value.type);
    if (value.type.kind == TypeKind::Null) value.type = Type::text(TypeKind::VarChar, 1);
    if (value.type.isText()) continue;
    const TypeKind kind = unicode && !value.type.isBinary() ? TypeKind::NVarChar : TypeKind::VarChar;
    const Type to = Type::text(kind, shownLength(value.type));
    const bool nullable = value.type.nullable;
    value = convertExplicitly(std::move(value), to, {});
    value.type.nullable = nullable;
  }
  return values;
}

// CONCAT and CONCAT_WS: nulls count as nothing, so that the result is never null.
Typed Writer::joined(const Expression& call, std::vector<Typed> given) {
  constexpr std::size_t mostOfSqlite = 100;
  const bool separated = call.name == "CONCAT_WS";
  if (separated && given.size() > mostOfSqlite) refuse(call.token, "a call with more than 100 arguments");
  const std::vector<Typed> values = asTexts(call, std::move(given));
  const bool unicode = std::ranges::any_of(values, [](const Typed& value) { return value.type.isUnicode(); });
  const std::int64_t longest = unicode ? 4000 : 8000;
  std::int64_t length = 0;
  bool unlimited = false;
  Typed result;
  result.sql = separated ? "ts_concat_ws(" : "(";
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Typed& value = values[i];
    const bool separator = separated && i == 0;
    unlimited = unlimited || value.type.length == maxLength;
    // Between n texts stand n - 1 separators.
    length += std::int64_t{value.type.length} * (separator ? static_cast<std::int64_t>(values.size()) - 2 : 1);
    result.subquery = result.subquery || value.subquery;
    if (i > 0) result.sql += separated ? "," : "||";
    result.sql += separated || !value.type.nullable ? value.sql : "ifnull(" + value.sql + ",'')";
  }
  result.sql += ")";
  const TypeKind kind = unicode ? TypeKind::NVarChar : TypeKind::VarChar;
  result.type = Type::text(kind, maxLength).orNull(false);
  if (unlimited) return result;
  const Type type = Type::text(kind, static_cast<std::int32_t>(std::min(length, longest))).orNull(false);
  if (length > longest) return convert(std::move(result), type);
  result.type = type;
  return result;
}

// CHOOSE is the CASE that it is written out as.
Typed Writer::chosen(const Expression& call, std::vector<Typed> values) {
  const Typed index = convert(std::move(values[0]), Type::of(TypeKind::Int));
  std::vector<std::pair<std::string, Typed>> branches;
  bool allNull = true;
  for (std::size_t i = 1; i < values.size(); ++i) {
    allNull = allNull && values[i].type.kind == TypeKind::Null;
    branches.emplace_back(index.sql + "=" + std::to_string(i), std::move(values[i]));
  }
  if (allNull) {
    fail(call.token, 8133,
         "At least one of the result expressions in a CASE specification must be an expression other than the NULL "
         "constant.");
  }
  Typed otherwise;
  otherwise.sql = "NULL";
  Typed result = conditional(std::move(branches), std::move(otherwise));
  result.subquery = result.subquery || index.subquery;
  return result;
}

// GREATEST and LEAST, in the type of highest precedence; nulls do not count.
Typed Writer::extreme(const Expression& call, std::vector<Typed> values) {
  constexpr std::size_t mostOfSqlite = 99;
  if (values.size() > mostOfSqlite) refuse(call.token, "a call with more than 99 arguments");
  std::vector<const Typed*> all;
  bool nullable = true;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i].type.isLong()) invalidArgument(call, i, values[i].type);
    nullable = nullable && values[i].type.nullable;
    all.push_back(&values[i]);
  }
  const Type type = commonTypeOf(all);
  Typed result;
  result.type = type.orNull(nullable);
  result.sql = (call.name == "LEAST" ? "ts_least(" : "ts_greatest(") + std::to_string(type.pack());
  for (Typed& value : values) {
    result.subquery = result.subquery || value.subquery;
    result.sql += "," + convert(std::move(value), type, When::Late).sql;
  }
  result.sql += ")";
  return result;
}

}  // namespace tolvane::tsql
