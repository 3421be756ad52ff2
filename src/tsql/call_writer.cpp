#include <algorithm>

#include "tsql/date_part.h"
#include "tsql/function_table.h"
#include "tsql/names.h"
#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

namespace {

Type longest(const Type& text) {
  return Type::text(text.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar,
                    text.length == maxLength || text.isLongText() ? maxLength
                    : text.isUnicode()                            ? 4000
                                                                  : 8000);
}

Type variable(const Type& text) {
  if (text.isLongText()) return longest(text);
  return Type::text(text.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar, text.length);
}

// Numbers below int are int to the functions of mathematics; bit, text and null are float.
Type numberType(const Type& type) {
  if (type.kind == TypeKind::Bit) return Type::of(TypeKind::Float);
  if (type.kind == TypeKind::Real) return Type::of(TypeKind::Float);
  if (type.kind == TypeKind::SmallMoney) return Type::of(TypeKind::Money);
  if (type.isInteger() && type.kind < TypeKind::Int) return Type::of(TypeKind::Int);
  return type.isNumber() ? type : Type::of(TypeKind::Float);
}

constexpr int digitsOfAngle = 18;

// A decimal with all the digits that there may be, and this many of them behind the point; any other type as it is.
Type widened(const Type& type, int scale) {
  if (type.kind != TypeKind::Decimal) return type;
  Type result = Type::decimal(38, scale);
  result.numeric = type.numeric;
  return result;
}

Type resultType(const FunctionRow& row, const std::vector<Typed>& values) {
  switch (row.result) {
    case ResultRule::Int:
      return Type::of(TypeKind::Int);
    case ResultRule::BigInt:
      return Type::of(TypeKind::BigInt);
    case ResultRule::Float:
      return Type::of(TypeKind::Float);
    case ResultRule::DateTime:
      return Type::of(TypeKind::DateTime);
    case ResultRule::VarChar:
      return Type::text(TypeKind::VarChar, row.length);
    case ResultRule::NVarChar:
      return Type::text(TypeKind::NVarChar, row.length);
    case ResultRule::Char:
      return Type::text(TypeKind::Char, row.length);
    case ResultRule::NChar:
      return Type::text(TypeKind::NChar, row.length);
    case ResultRule::Guid:
      return Type::of(TypeKind::UniqueIdentifier);
    case ResultRule::FirstText:
      return variable(values[0].type);
    case ResultRule::FirstTextLong:
      return longest(values[0].type);
    case ResultRule::LastTextLong: {
      const bool unicode = std::ranges::any_of(values, [](const Typed& value) { return value.type.isUnicode(); });
      const bool unlimited =
          std::ranges::any_of(values, [](const Typed& value) { return value.type.length == maxLength; });
      return Type::text(unicode ? TypeKind::NVarChar : TypeKind::VarChar, unlimited ? maxLength
                                                                          : unicode ? 4000
                                                                                    : 8000);
    }
    case ResultRule::FirstBytes:
      if (values[0].type.kind == TypeKind::Image) return Type::text(TypeKind::VarBinary, 8000);
      return values[0].type.isBinary() ? Type::text(TypeKind::VarBinary, values[0].type.length)
                                       : variable(values[0].type);
    case ResultRule::FirstNumber:
      return numberType(values[0].type);
    case ResultRule::FirstWidened:
      return widened(numberType(values[0].type), values[0].type.scale);
    case ResultRule::FirstRounded:
      return widened(numberType(values[0].type), 0);
    case ResultRule::FirstAngle:
      return widened(numberType(values[0].type), std::max<int>(values[0].type.scale, digitsOfAngle));
    case ResultRule::FirstScaled:
      return numberType(values[0].type);
    case ResultRule::DateOfArgument:
      return values[2].type.isDate() ? values[2].type : Type::of(TypeKind::DateTime);
    case ResultRule::Date:
      return Type::of(TypeKind::Date);
    case ResultRule::SmallDateTime:
      return Type::of(TypeKind::SmallDateTime);
    case ResultRule::Count: {
      // The last text is the one that is counted in.
      const auto isMax = [](const Typed& value) { return value.type.isLong() && value.type.length == maxLength; };
      return Type::of(isMax(values[values.size() == 1 ? 0 : 1]) ? TypeKind::BigInt : TypeKind::Int);
    }
    case ResultRule::Numeric:
      return Type::numericOf(38, 0);
    case ResultRule::SmallInt:
      return Type::of(TypeKind::SmallInt);
  }
  return {};
}

Argument argumentRule(const FunctionRow& row, std::size_t index) {
  std::size_t last = std::size(row.arguments) - 1;
  while (last > 0 && row.arguments[last] == Argument::None) --last;
  return row.arguments[std::min(index, last)];
}

}  // namespace

// There are no functions of users; those of the schema sys are SQL Server's.
void Writer::failOfUnknownFunction(const Expression& call) const {
  if (sameName(call.qualifier, "sys") || call.name.starts_with("fn_")) refuse(call.token, "the function");
  fail(call.token, 4121,
       "Cannot find either column \"" + call.qualifier + "\" or the user-defined function or aggregate \"" +
           call.qualifier + "." + call.name + "\", or the name is ambiguous.");
}

Typed Writer::call(const Expression& expression, Scope* scope) {
  if (!expression.qualifier.empty()) failOfUnknownFunction(expression);
  if (expression.over) return windowed(expression, scope);
  if (expression.name == "GROUPING" || expression.name == "GROUPING_ID") return grouping(expression, scope);
  if (expression.name == "STRING_AGG") return joinedText(expression, scope);
  if (findAggregateRow(expression.name) != nullptr) return aggregate(expression, scope);
  const FunctionRow* row = findFunctionRow(expression.name);
  if (row == nullptr) {
    const Token& token = batch_.tokens[static_cast<std::size_t>(expression.token)];
    fail(expression.token, Message::NotFunction, {batch_.text.substr(token.begin, token.end - token.begin)});
  }
  const auto count = static_cast<int>(expression.arguments.size());
  if (count < row->minArguments || count > row->maxArguments || expression.star || expression.distinct) {
    const std::string name = lowered(row->name);
    if (row->minArguments != row->maxArguments) {
      fail(expression.token, Message::FunctionArgumentRange,
           {name, std::to_string(row->minArguments), std::to_string(row->maxArguments)});
    }
    fail(expression.token, Message::FunctionArgumentCount, {name, std::to_string(row->minArguments)});
  }
  if (row->runtime.empty()) return writtenOut(expression, scope);
  refuseNegativeLength(expression);
  std::vector<Typed> values;
  Typed result;
  bool nullable = row->nullable;
  std::string text(row->runtime);
  text += '(';
  for (std::size_t i = 0; i < expression.arguments.size(); ++i) {
    Typed value;
    if (i > 0) text += ',';
    text += argument(expression, i, static_cast<int>(argumentRule(*row, i)), scope, value);
    nullable = nullable || value.type.nullable;
    result.subquery = result.subquery || value.subquery;
    values.push_back(std::move(value));
  }
  result.type = resultType(*row, values).orNull(nullable);
  narrow(expression, values, result.type);
  if (row->extra != Extra::Nothing) {
    if (!values.empty()) text += ',';
    text += std::to_string((row->extra == Extra::FirstType ? values[0].type : result.type).pack());
  }
  result.sql = text + ')';
  return result;
}

void Writer::invalidArgument(const Expression& call, std::size_t index, const Type& type) const {
  const std::string name = lowered(call.name);
  fail(call.token, 8116,
       "Argument data type " + std::string(type.messageName()) + " is invalid for argument " +
           std::to_string(index + 1) + " of " + name + " function.");
}

// A length that is written as a number bounds the text.
void Writer::narrow(const Expression& call, const std::vector<Typed>& values, Type& type) {
  const bool cuts = call.name == "LEFT" || call.name == "RIGHT" || call.name == "SUBSTRING";
  const bool makes = call.name == "SPACE" || (call.name == "STR" && values.size() > 1);
  if (call.name == "STR" && values.size() == 1) type.length = 10;
  if (!cuts && !makes) return;
  const Typed& count = call.name == "STR" ? values[1] : values.back();
  if (count.literal < 0 || count.type.kind != TypeKind::Int) return;
  structural(count.literal);
  const std::int64_t given = batch_.literals[static_cast<std::size_t>(count.literal)].integer;
  const std::int64_t most = type.length == maxLength ? 8000 : type.length;
  type.length = static_cast<std::int32_t>(std::clamp<std::int64_t>(given, 1, std::max<std::int64_t>(most, 1)));
}

// A length that can be seen to be negative is refused before anything runs.
void Writer::refuseNegativeLength(const Expression& call) {
  const bool takesLength = call.name == "LEFT" || call.name == "RIGHT" || call.name == "SUBSTRING";
  if (!takesLength) return;
  const Expression& length = *call.arguments.back();
  const bool minus = length.kind == ExpressionKind::Unary && length.name == "-" &&
                     length.arguments[0]->kind == ExpressionKind::Literal;
  if (!minus) return;
  const int index = length.arguments[0]->literal;
  const Literal& literal = batch_.literals[static_cast<std::size_t>(index)];
  structural(index);
  if (literal.type.kind != TypeKind::Int || literal.integer == 0) return;
  fail(length.token, Message::InvalidRightLength, {lowered(call.name)});
}

std::string Writer::argument(const Expression& call, std::size_t index, int code, Scope* scope, Typed& value) {
  const Expression& argument = *call.arguments[index];
  const auto rule = static_cast<Argument>(code);
  if (rule == Argument::DatePart) {
    const auto part = argument.kind == ExpressionKind::Column && argument.qualifier.empty()
                          ? findDatePart(argument.name)
                          : std::nullopt;
    if (argument.kind != ExpressionKind::Column) {
      throw SqlError(1023, 15, "Invalid parameter 1 specified for " + lowered(call.name) + ".")
          .at(lineOf(batch_, argument.token));
    }
    if (!part && (sameName(argument.name, "tzoffset") || sameName(argument.name, "tz"))) {
      refuse(argument.token, "the part of a date");
    }
    if (!part) {
      const Token& token = batch_.tokens[static_cast<std::size_t>(argument.token)];
      fail(argument.token, Message::NotDatepart,
           {batch_.text.substr(token.begin, token.end - token.begin), lowered(call.name)});
    }
    value.type = Type::text(TypeKind::VarChar, 11).orNull(false);
    return quotedText(nameOf(*part));
  }
  value = expression(argument, scope);
  if (index == 0) measure(value);
  const Type& type = value.type;
  switch (rule) {
    case Argument::Text:
      if (type.isLongText() && call.name != "CHARINDEX" && call.name != "PATINDEX") invalidArgument(call, index, type);
      if (!type.isText()) value = convert(std::move(value), Type::text(TypeKind::VarChar, type.isBinary() ? 8000 : 53));
      break;
    case Argument::Unicode:
      if (!type.isUnicode()) value = convert(std::move(value), Type::text(TypeKind::NVarChar, 4000));
      break;
    case Argument::Integer:
      value = convert(std::move(value), Type::of(type.kind == TypeKind::BigInt ? TypeKind::BigInt : TypeKind::Int));
      break;
    case Argument::Int:
      value = convert(std::move(value), Type::of(TypeKind::Int));
      break;
    case Argument::Float:
      if (type.isDate()) invalidArgument(call, index, type);
      value = convert(std::move(value), Type::of(TypeKind::Float));
      break;
    case Argument::Number: {
      if (type.isDate() || type.isBinary() || type.isLongText() || type.kind == TypeKind::UniqueIdentifier) {
        invalidArgument(call, index, type);
      }
      const Type number = numberType(type);
      value = convert(std::move(value), number);
      break;
    }
    case Argument::DateTime:
      if (type.isText() && !type.isLongText()) {
        value.sql = "ts_moment(" + value.sql + ")";
        value.literal = -1;
        value.parameter = -1;
      } else if (!type.isDate()) {
        value = convert(std::move(value), Type::of(TypeKind::DateTime));
      }
      break;
    case Argument::Date:
      if (type.isNumber() || type.isBinary() || type.kind == TypeKind::UniqueIdentifier) {
        invalidArgument(call, index, type);
      }
      value = convert(std::move(value), Type::of(TypeKind::Date));
      break;
    case Argument::Refused:
      refuse(argument.token, "this argument");
    case Argument::TextOrBytes:
      if (!type.isText() && !type.isBinary() && type.kind != TypeKind::Null) invalidArgument(call, index, type);
      if (type.kind == TypeKind::Null) value = convert(std::move(value), Type::text(TypeKind::VarChar, 1));
      break;
    case Argument::Any:
    case Argument::None:
    case Argument::DatePart:
      if (call.name == "DATEADD" && !type.isDate()) value = convert(std::move(value), Type::of(TypeKind::DateTime));
      break;
  }
  return value.sql;
}

// What the interpreter knows of the batch: the error that is handled, the state of the transaction.
std::optional<Typed> Writer::toldByInterpreter(const Expression& expression) {
  using From = Parameter::Source;
  struct Told {
    std::string_view name;
    From source;
    Type type;
  };
  static const Told rows[] = {
      {"ERROR_NUMBER", From::CaughtNumber, Type::of(TypeKind::Int)},
      {"ERROR_MESSAGE", From::CaughtMessage, Type::text(TypeKind::NVarChar, 4000)},
      {"ERROR_SEVERITY", From::CaughtSeverity, Type::of(TypeKind::Int)},
      {"ERROR_STATE", From::CaughtState, Type::of(TypeKind::Int)},
      {"ERROR_LINE", From::CaughtLine, Type::of(TypeKind::Int)},
      {"ERROR_PROCEDURE", From::CaughtProcedure, Type::text(TypeKind::NVarChar, 128)},
      {"XACT_STATE", From::XactState, Type::of(TypeKind::SmallInt)},
  };
  const auto* row = std::ranges::find_if(rows, [&](const Told& told) { return told.name == expression.name; });
  if (row == std::end(rows)) return std::nullopt;
  if (inline_) refuse(expression.token, "the function in a definition");
  Typed result;
  result.type = row->type;
  result.sql = addParameter({row->source, 0, row->type, row->type});
  result.parameter = std::stoi(result.sql.substr(1)) - 1;
  return result;
}

Typed Writer::writtenOut(const Expression& expression, Scope* scope) {
  Typed result;
  if (expression.name == "SCOPE_IDENTITY") {
    if (inline_) refuse(expression.token, "the function in a definition");
    result.type = Type::numericOf(38, 0);
    result.sql = addParameter({Parameter::Source::ScopeIdentity, 0, result.type, result.type});
    return result;
  }
  if (auto told = toldByInterpreter(expression)) return *told;
  if (isWindowFunction(expression.name)) {
    fail(expression.token, 10753, "The function '" + written(expression.token) + "' must have an OVER clause.");
  }
  std::vector<Typed> values;
  for (const auto& argument : expression.arguments) {
    values.push_back(this->expression(*argument, scope));
    measure(values.back());
    result.subquery = result.subquery || values.back().subquery;
  }
  if (expression.name == "ISNULL") {
    const Type type = values[0].type.kind == TypeKind::Null ? values[1].type : values[0].type;
    result.type = type.orNull(values[0].type.nullable && values[1].type.nullable);
    // The second value is cut to the width of the first.
    const bool same = values[1].type.orNull() == type.orNull() || values[1].type.kind == TypeKind::Null;
    const std::string other = same ? values[1].sql : convert(values[1], type, When::Late).sql;
    result.sql = "ifnull(" + values[0].sql + "," + other + ")";
    return result;
  }
  if (expression.name == "CONCAT" || expression.name == "CONCAT_WS") return joined(expression, std::move(values));
  if (expression.name == "CHOOSE") return chosen(expression, std::move(values));
  if (expression.name == "GREATEST" || expression.name == "LEAST") return extreme(expression, std::move(values));
  if (expression.name == "NULLIF") {
    if (values[0].type.kind == TypeKind::Null) {
      fail(expression.token, 4151,
           "The type of the first argument to NULLIF cannot be the NULL constant because the type of the first "
           "argument has to be known.");
    }
    result.type = values[0].type.orNull();
    result.sql = "(CASE WHEN " + compare("=", values[0], values[1], expression.token) + " THEN NULL ELSE " +
                 values[0].sql + " END)";
    return result;
  }
  constexpr std::size_t mostOfSqlite = 100;
  if (values.size() > mostOfSqlite) refuse(expression.token, "a call with more than 100 arguments");
  // Unlike ISNULL it is the CASE that it is written out as: any of its values makes it nullable.
  bool nullable = false;
  std::vector<const Typed*> all;
  for (const Typed& value : values) {
    nullable = nullable || value.type.nullable;
    all.push_back(&value);
  }
  const Type type = commonTypeOf(all);
  if (type.kind == TypeKind::Null) {
    fail(expression.token, 4127,
         "At least one of the arguments to COALESCE must be an expression that is not the NULL constant.");
  }
  result.type = type.orNull(nullable);
  result.sql = "coalesce(";
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) result.sql += ',';
    result.sql += convert(values[i], type, When::Late).sql;
  }
  result.sql += ')';
  return result;
}

Typed Writer::aggregate(const Expression& expression, Scope* scope) {
  Scope* owner = beginAggregate(expression, scope);
  if (owner == scope) return aggregateOf(expression, scope);
  scope->aggregatesOutside = true;
  if (!scope->aggregatesAllowed) refuse(expression.token, "an aggregate of a query around it, in a condition,");
  ++owner->insideAggregate;
  Typed result = aggregateOf(expression, scope);
  --owner->insideAggregate;
  return result;
}

// The query whose rows are added up.
Scope* Writer::beginAggregate(const Expression& expression, Scope* scope) {
  Scope* owner = scope == nullptr ? nullptr : ownerOf(expression, scope);
  if (owner != nullptr && owner->clause == Scope::Clause::GroupBy) failInGroupKey(expression.token);
  if (owner != nullptr && owner->clause == Scope::Clause::Set) {
    fail(expression.token, 157, "An aggregate may not appear in the set list of an UPDATE statement.");
  }
  if (owner != nullptr && owner->clause == Scope::Clause::On) {
    fail(expression.token, 1015,
         "An aggregate cannot appear in an ON clause unless it is in a subquery contained in a HAVING clause or a "
         "select list, and the column being aggregated is an outer reference.");
  }
  if (owner == nullptr || !owner->aggregatesAllowed) {
    fail(expression.token, 147,
         "An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a HAVING clause or a "
         "select list, and the column being aggregated is an outer reference.");
  }
  if (owner->insideAggregate > 0) {
    fail(expression.token, 130,
         "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.");
  }
  owner->aggregated = true;
  return owner;
}

// An aggregate of a column of a query around the sub-query that it stands in belongs to that query.
Scope* Writer::ownerOf(const Expression& aggregate, Scope* scope) const {
  if (scope->parent == nullptr) return scope;
  std::vector<const Expression*> columns;
  const auto collect = [&](const Expression& part, const auto& again) -> void {
    if (part.kind == ExpressionKind::Column) columns.push_back(&part);
    for (const auto& argument : part.arguments) again(*argument, again);
    if (part.operand) again(*part.operand, again);
    if (part.otherwise) again(*part.otherwise, again);
  };
  for (const auto& argument : aggregate.arguments) collect(*argument, collect);
  Scope* owner = scope;
  for (const Expression* column : columns) {
    Scope* home = scopeOf(*column, scope);
    if (home != scope) owner = home;
  }
  if (owner == scope) return scope;
  const Expression& first = *columns.front();
  const bool alone =
      std::ranges::all_of(columns, [&](const Expression* other) { return sameExpression(first, *other); });
  if (!alone) {
    fail(aggregate.token, 8124,
         "Multiple columns are specified in an aggregated expression containing an outer reference. If an expression "
         "being aggregated contains an outer reference, then that outer reference must be the only column referenced "
         "in the expression.");
  }
  return owner;
}

// Where a column would be found; the innermost query where it is found nowhere.
Scope* Writer::scopeOf(const Expression& column, Scope* scope) const {
  for (Scope* at = scope; at != nullptr; at = at->parent) {
    for (std::size_t i = at->firstVisible; i < at->sources.size(); ++i) {
      const Source& source = at->sources[i];
      if (!column.qualifier.empty() && !sameName(source.name, column.qualifier)) continue;
      const auto isIt = [&](const SourceColumn& candidate) { return sameName(candidate.name, column.name); };
      if (!column.qualifier.empty() || std::ranges::any_of(source.columns, isIt)) return at;
    }
  }
  return scope;
}

// 1 for a key that the row is not grouped by; GROUPING_ID reads the answers for several keys as one binary number.
Typed Writer::grouping(const Expression& expression, Scope* scope) {
  if (expression.name == "GROUPING" && expression.arguments.size() != 1) {
    fail(expression.token, Message::FunctionArgumentCount, {"GROUPING", "1"});
  }
  if (expression.arguments.empty()) refuse(expression.token, "GROUPING_ID of nothing");
  const bool allowed = scope != nullptr && scope->groupKeys != nullptr && scope->aggregatesAllowed;
  std::int64_t flags = 0;
  for (std::size_t i = 0; i < expression.arguments.size(); ++i) {
    const int key = allowed ? keyOf(*expression.arguments[i], *scope) : -1;
    if (key < 0) {
      fail(expression.token, 8161,
           "Argument " + std::to_string(i + 1) + " of the " + expression.name +
               " function does not match any of the expressions in the GROUP BY clause.");
    }
    const bool left = !scope->emptyKeys.empty() && scope->emptyKeys[static_cast<std::size_t>(key)];
    flags = flags * 2 + (left ? 1 : 0);
  }
  Typed result;
  result.type = Type::of(expression.name == "GROUPING" ? TypeKind::TinyInt : TypeKind::Int);
  result.sql = std::to_string(flags);
  return result;
}

// STRING_AGG(value, separator): in the order that WITHIN GROUP says, else in the order in which the rows come.
Typed Writer::joinedText(const Expression& expression, Scope* scope) {
  if (expression.arguments.size() != 2) fail(expression.token, Message::FunctionArgumentCount, {"STRING_AGG", "2"});
  if (expression.distinct || expression.star) refuse(expression.token, "DISTINCT in STRING_AGG");
  Scope* owner = beginAggregate(expression, scope);
  if (owner != scope) refuse(expression.token, "STRING_AGG of a column of a query around it");
  ++scope->insideAggregate;
  Typed value = this->expression(*expression.arguments[0], scope);
  Typed separator = this->expression(*expression.arguments[1], scope);
  measure(value);
  if (value.type.isLongText() || value.type.kind == TypeKind::Image) invalidArgument(expression, 0, value.type);
  if (!value.type.isText()) value = convert(std::move(value), Type::text(TypeKind::NVarChar, 4000));
  if (!separator.type.isText() || separator.column != nullptr)
    refuse(expression.arguments[1]->token, "such a separator");
  Typed result;
  result.type = longest(value.type);
  result.sql = "ts_string_agg(" + value.sql + "," + separator.sql + "," + std::to_string(result.type.pack());
  bool subquery = value.subquery || separator.subquery;
  for (const auto& item : expression.order) {
    const Typed key = this->expression(*item.expression, scope);
    comparable(key.type, item.expression->token);
    if (isConstant(*item.expression)) refuse(item.expression->token, "a constant in the order of a group");
    if (key.type.kind == TypeKind::UniqueIdentifier)
      refuse(item.expression->token, "a group in the order of a uniqueidentifier");
    subquery = subquery || key.subquery;
    result.sql += "," + key.sql + "," + std::to_string(key.type.pack()) + "," + (item.descending ? "1" : "0");
  }
  --scope->insideAggregate;
  if (subquery) {
    fail(expression.token, 130,
         "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.");
  }
  result.sql += ")";
  return result;
}

// The call itself, of a group or of a window.
Typed Writer::aggregateOf(const Expression& expression, Scope* scope) {
  const AggregateRow& row = *findAggregateRow(expression.name);
  Typed result;
  const bool counts = row.rule == AggregateRule::Count || row.rule == AggregateRule::CountBig;
  if (expression.star ? !counts : expression.arguments.size() != 1) {
    fail(expression.token, Message::FunctionArgumentCount, {lowered(expression.name), "1"});
  }
  const Type count = Type::of(row.rule == AggregateRule::Count ? TypeKind::Int : TypeKind::BigInt);
  if (expression.star) {
    result.sql = "count(*)";
    result.type = count;
    return result;
  }
  int& inside = expression.over ? scope->insideWindow : scope->insideAggregate;
  ++inside;
  Typed value = this->expression(*expression.arguments[0], scope);
  --inside;
  measure(value);
  if (value.subquery && !expression.over) {
    fail(expression.token, 130,
         "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.");
  }
  const auto invalid = [&] {
    fail(expression.token, Message::InvalidOperand, {value.type.messageName(), lowered(expression.name)});
  };
  if (value.type.kind == TypeKind::Null) invalid();
  const bool oldLong = value.type.isLongText() || value.type.kind == TypeKind::Image;
  if (oldLong || (value.type.isLong() && !counts)) invalid();
  if (value.type.kind == TypeKind::Bit && !counts) invalid();
  const std::string distinct = expression.distinct ? "DISTINCT " : "";
  if (counts) {
    if (expression.distinct) comparable(value.type, expression.token);
    result.type = count;
    result.sql = "count(" + distinct + value.sql + (expression.distinct ? collation(value.type) : "") + ")";
    return result;
  }
  if (row.rule == AggregateRule::Least || row.rule == AggregateRule::Greatest) {
    result.type = value.type.orNull();
    result.sql = std::string(row.runtime) + "(" + value.sql + collation(value.type) + ")";
    return result;
  }
  if (!value.type.isNumber()) invalid();
  if (row.rule == AggregateRule::Spread) {
    value = convert(std::move(value), Type::of(TypeKind::Float));
    result.type = Type::of(TypeKind::Float);
    const std::string moving = isMoving(expression) ? ",1" : "";
    result.sql = std::string(row.runtime) + "(" + distinct + value.sql + moving + ")";
    return result;
  }
  if (value.type.kind == TypeKind::Decimal) {
    const int scale = row.rule == AggregateRule::Average ? std::max<int>(value.type.scale, 6) : value.type.scale;
    result.type = Type::decimal(38, scale);
    result.type.numeric = value.type.numeric;
  } else if (value.type.isMoney()) {
    result.type = Type::of(TypeKind::Money);
  } else {
    result.type = numberType(value.type).orNull();
  }
  const std::string packed = std::to_string(result.type.pack());
  if (expression.distinct) {
    // DISTINCT leaves room for one argument only, so the values are made distinct as the type of the result.
    value = convert(std::move(value), result.type);
    result.sql = std::string(row.distinct) + "(DISTINCT " + value.sql + collation(value.type) + ")";
    if (result.type.kind == TypeKind::Int) {
      result.sql =
          "ts_convert(" + result.sql + "," + std::to_string(Type::of(TypeKind::BigInt).pack()) + "," + packed + ")";
    }
  } else {
    const std::string moving = isMoving(expression) ? ",1" : "";
    result.sql = std::string(row.runtime) + "(" + value.sql + "," + packed + moving + ")";
  }
  return result;
}

// Whether rows leave the window again.
bool Writer::isMoving(const Expression& expression) {
  return expression.frame && expression.frame->start.kind != tree::WindowBound::Kind::Unbounded;
}

void Writer::failInGroupKey(int token) const {
  fail(token, 144,
       "Cannot use an aggregate or a subquery in an expression used for the group by list of a GROUP BY "
       "clause.");
}

}  // namespace tolvane::tsql
