// Conversions, those of CAST and those that an assignment makes.
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

Typed Writer::convert(Typed value, const Type& to, When when) {
  if (value.type.kind == TypeKind::Null) {
    value.type = to.orNull();
    return value;
  }
  const Type& from = value.type;
  const bool nullable = from.nullable;
  const bool sameText =
      from.isText() && to.isText() && to.kind != TypeKind::Char && to.kind != TypeKind::NChar &&
      (to.length == maxLength || to.isLongText() || (from.length != maxLength && from.length <= to.length));
  const bool wider = from.isInteger() && to.isInteger() && to.kind >= from.kind;
  const bool moneyWider = from.isMoney() && to.kind == TypeKind::Money;
  const bool floatWider = from.kind == TypeKind::Real && to.kind == TypeKind::Float;
  const bool dateWider = from.kind == TypeKind::SmallDateTime && to.kind == TypeKind::DateTime;
  if (from.orNull() == to.orNull() || sameText || wider || moneyWider || floatWider || dateWider) {
    value.type = to.orNull(nullable);
    return value;
  }
  if (conversionBetween(from, to) == Conversion::None) {
    throw SqlError(Message::OperandClash, {from.baseName(), to.baseName()});
  }
  if (conversionBetween(from, to) == Conversion::Explicit) {
    throw SqlError(Message::ImplicitConversion, {from.baseName(), to.baseName()});
  }
  Typed result;
  result.type = to.orNull(nullable);
  result.subquery = value.subquery;
  if (value.parameter >= 0 && when == When::Early) {
    Parameter parameter = parameters_[static_cast<std::size_t>(value.parameter)];
    // A parameter that is converted already cannot be converted once more when it is bound.
    if (parameter.from == parameter.to) {
      parameter.to = to;
      result.sql = addParameter(parameter);
      result.parameter = std::stoi(result.sql.substr(1)) - 1;
      return result;
    }
  }
  if (from.isInteger() && to.isFloat()) {
    result.sql = "CAST(" + value.sql + " AS REAL)";
    return result;
  }
  result.sql = "ts_convert(" + value.sql + "," + std::to_string(from.pack()) + "," + std::to_string(to.pack()) + ")";
  return result;
}

Typed Writer::convertExplicitly(Typed value, const Type& to, const std::string& style, bool tries) {
  if (conversionBetween(value.type, to) == Conversion::None) {
    throw SqlError(Message::ExplicitConversion, {value.type.baseName(), to.baseName()});
  }
  const Type from = value.type.kind == TypeKind::Null ? Type::of(TypeKind::Int) : value.type;
  Typed result;
  result.type = to.orNull();
  result.subquery = value.subquery;
  result.sql = (tries ? "ts_try_convert(" : "ts_convert(") + value.sql + "," + std::to_string(from.pack()) + "," +
               std::to_string(to.pack()) + style + ")";
  return result;
}

std::string Writer::assignTo(const Typed& value, const Type& to, const std::string& name, std::string_view verb) {
  if (value.type.kind != TypeKind::Null && value.type.orNull() == to.orNull() &&
      (to.nullable || !value.type.nullable) && !typeRow(to.kind).takesLength) {
    return value.sql;
  }
  if (conversionBetween(value.type, to) == Conversion::None) {
    throw SqlError(Message::OperandClash, {value.type.baseName(), to.baseName()});
  }
  if (conversionBetween(value.type, to) == Conversion::Explicit) {
    throw SqlError(Message::ImplicitConversion, {value.type.baseName(), to.baseName()});
  }
  const Type from = value.type.kind == TypeKind::Null ? to.orNull() : value.type;
  return "ts_assign(" + value.sql + "," + std::to_string(from.pack()) + "," + std::to_string(to.pack()) + "," +
         quotedText(name) + (verb.empty() ? "" : "," + quotedText(verb)) + ")";
}

std::string Writer::fullName(const Table& table) const {
  if (table.name.starts_with("@")) return table.name;
  const std::string database = table.temporary ? "tempdb" : options_.database;
  return (database.empty() ? "" : database + ".") + "dbo." + table.name;
}

std::string Writer::assign(const Typed& value, const Table& table, const Column& column, std::string_view verb) {
  return assignTo(value, column.type, fullName(table) + "." + column.name, verb);
}

std::string Writer::assignInserted(const Typed& value, const Table& table, const Column& column) {
  std::string sql = assign(value, table, column);
  if (value.literal < 0 || value.parameter < 0 || sql == value.sql) return sql;
  Parameter parameter = parameters_[static_cast<std::size_t>(value.parameter)];
  parameter.to = column.type;
  parameter.column = fullName(table) + "." + column.name;
  return addParameter(parameter);
}

}  // namespace tolvane::tsql
