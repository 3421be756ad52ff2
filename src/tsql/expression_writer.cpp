#include <algorithm>
#include <array>
#include <charconv>

#include "tsql/function_table.h"
#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

namespace {

std::string inlineText(const Literal& value) {
  static constexpr char digits[] = "0123456789ABCDEF";
  if (value.type.kind == TypeKind::Int) return std::to_string(value.integer);
  if (value.type.isText() || value.type.isExactText()) return quotedText(value.text);
  if (value.type.kind == TypeKind::Float) {
    std::array<char, 32> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value.real, std::chars_format::scientific);
    return std::string(buffer.data(), end.ptr);
  }
  std::string result = "x'";
  for (const char c : value.text) {
    const auto byte = static_cast<unsigned char>(c);
    result += digits[byte >> 4];
    result += digits[byte & 15];
  }
  return result + "'";
}

// What SQL Server tells of itself by a name with two signs and what never changes here; without a text it is refused.
struct FixedVariable {
  std::string_view name;
  std::string_view sql;
  Type type;
};

const FixedVariable* findFixedVariable(std::string_view name) {
  static const std::array fixed{
      FixedVariable{"@@DATEFIRST", "CAST(7 AS INTEGER)", Type::of(TypeKind::TinyInt)},
      FixedVariable{"@@LANGID", "CAST(0 AS INTEGER)", Type::of(TypeKind::SmallInt)},
      FixedVariable{"@@LANGUAGE", "'us_english'", Type::text(TypeKind::NVarChar, 128)},
      FixedVariable{"@@LOCK_TIMEOUT", "CAST(-1 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@MAX_CONNECTIONS", "CAST(32767 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@MAX_PRECISION", "CAST(38 AS INTEGER)", Type::of(TypeKind::TinyInt)},
      FixedVariable{"@@NESTLEVEL", "CAST(0 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@PROCID", "CAST(0 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@TEXTSIZE", "CAST(2147483647 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@CONNECTIONS", "", {}},
      FixedVariable{"@@CPU_BUSY", "", {}},
      FixedVariable{"@@CURSOR_ROWS", "", {}},
      FixedVariable{"@@DBTS", "", {}},
      FixedVariable{"@@FETCH_STATUS", "", {}},
      FixedVariable{"@@IDLE", "", {}},
      FixedVariable{"@@IO_BUSY", "", {}},
      FixedVariable{"@@MICROSOFTVERSION", "", {}},
      FixedVariable{"@@OPTIONS", "", {}},
      FixedVariable{"@@PACKET_ERRORS", "", {}},
      FixedVariable{"@@PACK_RECEIVED", "", {}},
      FixedVariable{"@@PACK_SENT", "", {}},
      FixedVariable{"@@REMSERVER", "", {}},
      FixedVariable{"@@SERVERNAME", "", {}},
      FixedVariable{"@@SERVICENAME", "", {}},
      FixedVariable{"@@SPID", "", {}},
      FixedVariable{"@@TIMETICKS", "", {}},
      FixedVariable{"@@TOTAL_ERRORS", "", {}},
      FixedVariable{"@@TOTAL_READ", "", {}},
      FixedVariable{"@@TOTAL_WRITE", "", {}},
  };
  const auto row = std::ranges::find_if(fixed, [name](const auto& each) { return sameName(each.name, name); });
  return row == fixed.end() ? nullptr : &*row;
}

}  // namespace

void Writer::fail(int token, Message message, std::initializer_list<std::string_view> inserts) const {
  throw SqlError(message, inserts).at(lineOf(batch_, token));
}

void Writer::fail(int token, int number, std::string message) const {
  throw SqlError(number, 16, std::move(message)).at(lineOf(batch_, token));
}

void Writer::refuse(int token, std::string_view what) const {
  throw notSupported(batch_, token, what);
}

std::string Writer::written(int token) const {
  const Token& word = batch_.tokens[static_cast<std::size_t>(token)];
  return std::string(batch_.text.substr(word.begin, word.end - word.begin));
}

void Writer::measure(Typed& value) {
  if (value.literal < 0 || !value.type.isText()) return;
  structural(widthOf(value.literal));
  value.type.length = literalWidth(batch_.literals[static_cast<std::size_t>(value.literal)]);
}

void Writer::structural(int literal) {
  program_.structuralLiterals.push_back(literal);
}

int Writer::variableSlot(const std::string& name, int token) const {
  for (std::size_t i = 0; i < program_.variables.size(); ++i) {
    const Variable& variable = program_.variables[i];
    if (sameName(variable.name, name) && variable.token <= token) return static_cast<int>(i);
  }
  fail(token, Message::MustDeclareVariable, {name});
}

std::string Writer::addParameter(const Parameter& parameter) {
  auto found = std::ranges::find(parameters_, parameter);
  if (found == parameters_.end()) found = parameters_.insert(found, parameter);
  return "?" + std::to_string(found - parameters_.begin() + 1);
}

// Text that was written for a statement may have been dropped again, so the parameters that are left are numbered in
// the order of their appearance.
Statement Writer::finish(std::string_view text) const {
  Statement result;
  result.text.reserve(text.size());
  std::vector<int> numbers(parameters_.size(), 0);
  char quote = '\0';
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '\'' || c == '"') {
      quote = c;
    }
    result.text += c;
    if (c != '?' || quote != '\0') continue;
    std::size_t old = 0;
    while (i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '9') {
      old = old * 10 + static_cast<std::size_t>(text[++i] - '0');
    }
    if (numbers[old - 1] == 0) {
      result.parameters.push_back(parameters_[old - 1]);
      numbers[old - 1] = static_cast<int>(result.parameters.size());
    }
    result.text += std::to_string(numbers[old - 1]);
  }
  return result;
}

// Bytes compare as if the shorter ones went on with zeros; without the zeros at the end SQLite compares them so.
std::string Writer::compared(const std::string& sql, const Type& type) {
  return type.isBinary() ? "ts_bytes(" + sql + ")" : sql + collation(type);
}

std::string Writer::collation(const Type& type) {
  if (type.isText()) return " COLLATE TSQL";
  if (type.isExactText()) return " COLLATE TSQL_DECIMAL";
  if (type.kind == TypeKind::UniqueIdentifier) return " COLLATE TSQL_GUID";
  return {};
}

// --- conversion

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

// --- leaves

Typed Writer::literal(const Expression& expression) {
  const Literal& value = batch_.literals[static_cast<std::size_t>(expression.literal)];
  Typed result;
  result.type = value.type;
  result.literal = expression.literal;
  if (inline_) {
    structural(expression.literal);
    result.sql = inlineText(value);
    return result;
  }
  result.sql = addParameter({Parameter::Source::Literal, expression.literal, value.type, value.type});
  result.parameter = std::stoi(result.sql.substr(1)) - 1;
  return result;
}

Typed Writer::variable(const Expression& expression) {
  struct SystemVariable {
    std::string_view name;
    Parameter::Source source;
    Type type;
  };
  static const SystemVariable system[] = {
      {"@@ROWCOUNT", Parameter::Source::RowCount, Type::of(TypeKind::Int).orNull(false)},
      {"@@ERROR", Parameter::Source::Error, Type::of(TypeKind::Int).orNull(false)},
      {"@@TRANCOUNT", Parameter::Source::TranCount, Type::of(TypeKind::Int).orNull(false)},
      {"@@IDENTITY", Parameter::Source::Identity, Type::numericOf(38, 0)},
      {"@@FETCH_STATUS", Parameter::Source::Fetch, Type::of(TypeKind::Int).orNull(false)},
      {"@@DATEFIRST", Parameter::Source::DateFirst, Type::of(TypeKind::TinyInt).orNull(false)},
  };
  if (inline_) refuse(expression.token, "a variable in a definition");
  Typed result;
  Parameter parameter;
  if (expression.name.starts_with("@@")) {
    if (sameName(expression.name, "@@VERSION")) {
      result.sql = "ts_version()";
      result.type = Type::text(TypeKind::NVarChar, 300);
      return result;
    }
    const auto* found =
        std::ranges::find_if(system, [&](const auto& row) { return sameName(row.name, expression.name); });
    if (found != std::end(system)) {
      parameter = {found->source, 0, found->type, found->type};
    } else if (const FixedVariable* fixed = findFixedVariable(expression.name)) {
      if (fixed->sql.empty()) refuse(expression.token, "the global variable");
      result.sql = fixed->sql;
      result.type = fixed->type.orNull(false);
      return result;
    }
  }
  if (parameter.from.kind == TypeKind::Null) {
    const int slot = variableSlot(expression.name, expression.token);
    const Type& type = program_.variables[static_cast<std::size_t>(slot)].type;
    parameter = {Parameter::Source::Variable, slot, type, type};
  }
  result.type = parameter.from;
  result.sql = addParameter(parameter);
  result.parameter = std::stoi(result.sql.substr(1)) - 1;
  return result;
}

Typed Writer::column(const Expression& expression, Scope* scope) {
  const Scope* rowCountOf = nullptr;
  for (Scope* at = scope; at != nullptr; at = at->parent) {
    const SourceColumn* found = nullptr;
    const Source* owner = nullptr;
    bool qualifierKnown = false;
    if (at->rowCount) rowCountOf = at->parent;
    for (std::size_t i = at->firstVisible; i < at->sources.size(); ++i) {
      const Source& source = at->sources[i];
      if (!expression.qualifier.empty() && !sameName(source.name, expression.qualifier)) continue;
      if (!expression.prefix.empty() && !prefixFits(expression.prefix, source)) continue;
      qualifierKnown = true;
      for (const SourceColumn& candidate : source.columns) {
        if (!sameName(candidate.name, expression.name)) continue;
        if (found != nullptr) fail(expression.token, Message::AmbiguousColumn, {expression.name});
        found = &candidate;
        owner = &source;
      }
    }
    if (found != nullptr) {
      if (at != scope) at->usedInside = true;
      // SQLite does not let the ORDER BY and GROUP BY of a sub-query see the queries around it.
      for (const Scope* inner = scope; inner != at; inner = inner->parent) {
        if (inner->clause == Scope::Clause::OrderBy) refuse(expression.token, "ORDER BY a column of a query around it");
        if (inner->clause == Scope::Clause::GroupBy) refuse(expression.token, "GROUP BY a column of a query around it");
      }
      if (at == rowCountOf) {
        fail(expression.token, 4115,
             "The reference to column \"" + expression.name +
                 "\" is not allowed in an argument to a TOP, OFFSET, or FETCH clause. Only references to columns at an "
                 "outer scope or standalone expressions and subqueries are allowed here.");
      }
      if (rowCountOf != nullptr) refuse(expression.token, "a column of a query around it in a number of rows");
      // A sub-query may use what the query around it groups by.
      const int key = keyOf(expression, *at);
      const bool grouped = key >= 0;
      if (!grouped && at->insideAggregate == 0 && at->insideGroupKey == 0) {
        at->setUngrouped((owner->objectName.empty() ? "" : owner->objectName + ".") + found->name);
      }
      Typed result;
      result.sql = found->sql;
      result.type = found->type;
      result.column = found;
      const bool isKey = grouped && !at->emptyKeys.empty() && at->insideAggregate == 0 && at->insideGroupKey == 0;
      if (isKey) makeKey(result, *at, key);
      return result;
    }
    const auto isPartial = [&](const Source& source) {
      return source.partial && (expression.qualifier.empty() || sameName(source.name, expression.qualifier));
    };
    if (std::ranges::any_of(at->sources, isPartial)) {
      refuse(expression.token, "that column of a table of the catalogue");
    }
    if (qualifierKnown && !expression.qualifier.empty())
      fail(expression.token, Message::InvalidColumn, {expression.name});
  }
  if (!expression.qualifier.empty()) {
    fail(expression.token, Message::MultipartNotBound,
         {expression.prefix + expression.qualifier + "." + expression.name});
  }
  fail(expression.token, Message::InvalidColumn, {expression.name});
}

// --- groups

bool Writer::sameExpression(const Expression& a, const Expression& b) const {
  if (a.kind != b.kind || a.arguments.size() != b.arguments.size() || a.negated != b.negated || a.query || b.query) {
    return false;
  }
  if (a.over || b.over || a.distinct != b.distinct || a.star != b.star || a.collated != b.collated) return false;
  if (a.kind == ExpressionKind::Literal) {
    const Literal& left = batch_.literals[static_cast<std::size_t>(a.literal)];
    const Literal& right = batch_.literals[static_cast<std::size_t>(b.literal)];
    if (left.type != right.type || left.integer != right.integer || left.real != right.real ||
        left.text != right.text) {
      return false;
    }
    program_.structuralLiterals.push_back(a.literal);
    program_.structuralLiterals.push_back(b.literal);
    return true;
  }
  // A name without its qualifier is the same column when only one can be meant, which binding checks.
  const bool qualifiers = a.qualifier.empty() || b.qualifier.empty() || sameName(a.qualifier, b.qualifier);
  if (!sameName(a.name, b.name) || !qualifiers || a.type != b.type) return false;
  for (std::size_t i = 0; i < a.arguments.size(); ++i) {
    if (!sameExpression(*a.arguments[i], *b.arguments[i])) return false;
  }
  const auto samePart = [&](const tree::ExpressionPtr& x, const tree::ExpressionPtr& y) {
    return (!x && !y) || (x && y && sameExpression(*x, *y));
  };
  return samePart(a.operand, b.operand) && samePart(a.otherwise, b.otherwise);
}

bool Writer::isGroupKey(const Expression& expression, const Scope& scope) const {
  if (scope.groupKeys == nullptr || scope.insideAggregate > 0 || scope.insideGroupKey > 0) return false;
  return keyOf(expression, scope) >= 0;
}

// Which of the query's keys it is, -1 for none.
int Writer::keyOf(const Expression& expression, const Scope& scope) const {
  if (scope.groupKeys == nullptr) return -1;
  const auto& keys = *scope.groupKeys;
  const auto found = std::ranges::find_if(keys, [&](const auto& key) { return sameExpression(*key, expression); });
  return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

// Whether the value is the same whatever row it is asked for: literals and what is computed of them.
bool Writer::isConstant(const Expression& expression) const {
  switch (expression.kind) {
    case ExpressionKind::Literal:
    case ExpressionKind::Null:
      return true;
    case ExpressionKind::Unary:
      return isConstant(*expression.arguments[0]);
    case ExpressionKind::Binary: {
      // What may fail is left to the row.
      const bool divides = expression.name == "/" || expression.name == "%";
      return !divides && isConstant(*expression.arguments[0]) && isConstant(*expression.arguments[1]);
    }
    default:
      return false;
  }
}

// `dbo.t.a`: an alias stands for itself, and takes nothing before it.
bool Writer::prefixFits(const std::string& prefix, const Source& source) const {
  if (source.renamed || source.schema.empty()) return false;
  const auto end = prefix.size() - 1;
  const auto before = prefix.rfind('.', end == 0 ? 0 : end - 1);
  const auto begin = before == std::string::npos ? 0 : before + 1;
  const std::string_view schema = std::string_view(prefix).substr(begin, end - begin);
  if (begin > 0 && !isOwnDatabase(std::string_view(prefix).substr(0, prefix.find('.')))) return false;
  return schema.empty() || sameName(schema, source.schema);
}

// --- values

Typed Writer::expression(const Expression& expression, Scope* scope) {
  Scope* grouped = nullptr;
  if (scope != nullptr && isGroupKey(expression, *scope)) grouped = scope;
  if (grouped != nullptr) ++grouped->insideGroupKey;
  Typed result;
  switch (expression.kind) {
    case ExpressionKind::Literal:
      result = literal(expression);
      break;
    case ExpressionKind::Null:
      result.sql = "NULL";
      break;
    case ExpressionKind::Variable:
      result = variable(expression);
      break;
    case ExpressionKind::Placeholder: {
      const auto index = static_cast<std::size_t>(expression.literal);
      const Type type =
          index < options_.placeholders.size() ? options_.placeholders[index] : Type::text(TypeKind::NVarChar, 4000);
      result.type = type;
      result.sql = addParameter({Parameter::Source::Placeholder, expression.literal, type, type});
      result.parameter = std::stoi(result.sql.substr(1)) - 1;
      break;
    }
    case ExpressionKind::Column:
      result = column(expression, scope);
      break;
    case ExpressionKind::Unary:
      result = unary(expression, scope);
      break;
    case ExpressionKind::Binary:
      result = binary(expression, scope);
      break;
    case ExpressionKind::Call:
      result = call(expression, scope);
      break;
    case ExpressionKind::Cast:
      result = cast(expression, scope);
      break;
    case ExpressionKind::Case:
      result = caseOf(expression, scope);
      break;
    case ExpressionKind::Subquery:
      result = scalarSubquery(expression, scope);
      break;
    case ExpressionKind::Default:
      fail(expression.token, Message::IncorrectSyntaxKeyword, {written(expression.token)});
    default: {
      const Token& token = batch_.tokens[static_cast<std::size_t>(expression.token)];
      fail(expression.token, Message::IncorrectSyntax, {batch_.text.substr(token.begin, token.end - token.begin)});
    }
  }
  if (grouped != nullptr) {
    --grouped->insideGroupKey;
    if (!grouped->emptyKeys.empty()) makeKey(result, *grouped, keyOf(expression, *grouped));
  }
  const bool mayHaveCollation = result.type.isText() || result.type.kind == TypeKind::Null;
  if (expression.collated && !mayHaveCollation) {
    fail(expression.token, Message::CollateOfNoText, {result.type.baseName()});
  }
  return result;
}

// A key is null in the rows of a grouping that leaves it out.
void Writer::makeKey(Typed& value, const Scope& scope, int key) const {
  value.type.nullable = true;
  if (!scope.emptyKeys[static_cast<std::size_t>(key)]) return;
  value.sql = "NULL";
  value.literal = -1;
  value.parameter = -1;
}

Typed Writer::unary(const Expression& expression, Scope* scope) {
  Typed value = this->expression(*expression.arguments[0], scope);
  if (expression.name == "+") {
    value.column = nullptr;
    return value;
  }
  if (value.type.kind == TypeKind::Null) return value;
  Typed result;
  result.type = value.type;
  if (expression.name == "-" && value.literal >= 0 && value.type.kind == TypeKind::Decimal && value.type.scale == 0) {
    // The least int is one although its digits alone are not.
    structural(value.literal);
    if (batch_.literals[static_cast<std::size_t>(value.literal)].text == "2147483648") {
      result.type = Type::of(TypeKind::Int).orNull(false);
      result.sql = "(-2147483648)";
      return result;
    }
  }
  result.subquery = value.subquery;
  const bool complement = expression.name == "~";
  const bool fits = complement ? value.type.isInteger() : value.type.isNumber() && value.type.kind != TypeKind::Bit;
  if (!fits) fail(expression.token, Message::InvalidOperand, {value.type.baseName(), complement ? "'~'" : "minus"});
  if (complement) {
    result.sql = "ts_not(" + value.sql + "," + std::to_string(value.type.pack()) + ")";
  } else if (value.type.isFloat() || (value.literal >= 0 && value.type.kind == TypeKind::Int)) {
    result.sql = "(-" + value.sql + ")";
    result.digitsOf = value.literal;
  } else {
    // tinyint has no negative numbers.
    if (value.type.kind == TypeKind::TinyInt) result.type.kind = TypeKind::SmallInt;
    result.sql = "ts_neg(" + value.sql + "," + std::to_string((complement ? value.type : result.type).pack()) + ")";
  }
  return result;
}

Typed Writer::binary(const Expression& expression, Scope* scope) {
  Typed left = this->expression(*expression.arguments[0], scope);
  return combine(expression, std::move(left), this->expression(*expression.arguments[1], scope));
}

Typed Writer::compound(const std::string& operation, const std::string& variable, const Expression& value, int token) {
  Expression operand;
  operand.kind = ExpressionKind::Variable;
  operand.name = variable;
  operand.token = token;
  Expression whole;
  whole.name = operation;
  whole.token = token;
  return combine(whole, this->variable(operand), expression(value, nullptr));
}

Typed Writer::compoundColumn(const std::string& operation, const std::string& table, const std::string& name,
                             const Expression& value, Scope* scope, int token) {
  Expression operand;
  operand.kind = ExpressionKind::Column;
  operand.qualifier = table;
  operand.name = name;
  operand.token = token;
  Expression whole;
  whole.name = operation;
  whole.token = token;
  return combine(whole, column(operand, scope), expression(value, scope));
}

namespace {

// Puts one operand more into the call or brackets that end the text, where it is a chain of the same operator: a sum of
// many would otherwise be nested deeper than SQLite reads.
bool longer(Typed& left, char op, const std::string& operand) {
  constexpr int mostOperands = 40;  // a function of SQLite has 100 arguments at most
  if (left.chain != op || left.chained == mostOperands || left.sql.empty()) {
    left.chained = 0;
    return false;
  }
  left.sql.insert(left.sql.size() - 1, operand);
  ++left.chained;
  return true;
}

}  // namespace

Typed Writer::combine(const Expression& expression, Typed left, Typed right) {
  const auto isText = [](const Typed& value) { return value.type.isText() && !value.type.isLongText(); };
  const bool leftText = isText(left) || left.type.kind == TypeKind::Null;
  const bool rightText = isText(right) || right.type.kind == TypeKind::Null;
  const bool bothNull = left.type.kind == TypeKind::Null && right.type.kind == TypeKind::Null;
  if (expression.name == "+" && leftText && rightText && !bothNull) {
    Typed result;
    measure(left);
    measure(right);
    if (left.type.kind == TypeKind::Null) left.type = right.type.orNull();
    if (right.type.kind == TypeKind::Null) right.type = left.type.orNull();
    result.type = concatenation(left.type, right.type);
    result.sql = longer(left, '|', "||" + right.sql) ? std::move(left.sql) : "(" + left.sql + "||" + right.sql + ")";
    result.chain = '|';
    result.chained = left.chained;
    result.subquery = left.subquery || right.subquery;
    // What goes beyond the longest text of its kind is cut off without an error.
    const bool mayBeCut = result.type.length != maxLength && left.type.length + right.type.length > result.type.length;
    if (!mayBeCut) return result;
    const Type type = result.type;
    result.type = Type::text(type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar, maxLength);
    return convert(std::move(result), type);
  }
  return arithmetic(expression, std::move(left), std::move(right));
}

// An exact number beside a decimal: an integer literal is as wide as it is written.
Typed Writer::decimalOperand(Typed value) {
  const int literal = value.literal >= 0 ? value.literal : value.digitsOf;
  if (literal >= 0 && value.type.kind == TypeKind::Int) {
    structural(literal);
    return convert(std::move(value), numericLiteral(literal));
  }
  const Type type = value.type.isNumber() ? asDecimal(value.type) : value.type;
  return convert(std::move(value), type);
}

Typed Writer::arithmetic(const Expression& expression, Typed left, Typed right) {
  const char op = expression.name[0];
  const OperatorRow& row = *findOperatorRow(expression.name);
  const auto invalid = [&](const Type& type) {
    fail(expression.token, Message::InvalidOperand, {type.baseName(), row.name});
  };
  Typed result;
  result.subquery = left.subquery || right.subquery;
  if (left.type.kind == TypeKind::Null && right.type.kind == TypeKind::Null) {
    result.sql = "NULL";
    result.type = Type::of(TypeKind::Int);
    return result;
  }
  Type type = commonType(left.type, right.type);
  const bool bits = op == '&' || op == '|' || op == '^';
  const auto incompatible = [&] {
    fail(expression.token, 402,
         "The data types " + std::string(left.type.messageName()) + " and " + std::string(right.type.messageName()) +
             " are incompatible in the " + std::string(row.name) + " operator.");
  };
  if (bits) {
    const auto possible = [](const Type& operand) {
      const bool shortText = operand.isText() && !operand.isLongText();
      return operand.isInteger() || shortText || (operand.isBinary() && operand.kind != TypeKind::Image) ||
             operand.kind == TypeKind::Null;
    };
    const bool integer = left.type.isInteger() || right.type.isInteger();
    if (!possible(left.type) && !possible(right.type)) invalid(left.type);
    if (!integer || !possible(left.type) || !possible(right.type)) incompatible();
  } else if (op == '%' && type.isFloat()) {
    if (left.type.isFloat() && right.type.isFloat()) invalid(left.type);
    incompatible();
  } else if (type.kind == TypeKind::Bit) {
    if (op == '*' || op == '/') invalid(left.type);
    incompatible();
  } else if (type.isDate()) {
    if ((op != '+' && op != '-') || type.kind == TypeKind::Date) {
      const Type& other = left.type.kind == type.kind ? right.type : left.type;
      if (type.kind == TypeKind::Date && other.isNumber()) {
        fail(expression.token, Message::OperandClash, {type.baseName(), other.baseName()});
      }
      if (left.type.kind == type.kind) invalid(left.type);
      incompatible();
    }
  } else if (type.isBinary() && op == '+' && type.kind != TypeKind::Image) {
    result.type = Type::text(TypeKind::VarBinary, std::min(8000, std::max(1, left.type.length + right.type.length)));
    result.sql = "CAST(" + left.sql + "||" + right.sql + " AS BLOB)";
    return result;
  } else if (!type.isNumber()) {
    const bool texts = left.type.isText() && right.type.isText();
    const bool bytesAndText =
        (left.type.isBinary() && right.type.isText()) || (left.type.isText() && right.type.isBinary());
    const bool identifier = type.kind == TypeKind::UniqueIdentifier;
    const bool identifierAndText = identifier && ((left.type.isText() && !left.type.isLongText()) ||
                                                  (right.type.isText() && !right.type.isLongText()));
    if (op == '+' && (bytesAndText || identifierAndText)) incompatible();
    if (texts && (op == '%' || (op == '+' && type.isLongText()))) incompatible();
    invalid(type);
  }
  // What may overflow may be null, in a session that asks for that.
  const bool nullable = left.type.nullable || right.type.nullable || (!type.isFloat() && !bits);
  if (type.kind == TypeKind::Decimal) {
    left = decimalOperand(convert(std::move(left), left.type.isNumber() ? left.type : type));
    right = decimalOperand(convert(std::move(right), right.type.isNumber() ? right.type : type));
    type = decimalResult(op, left.type, right.type);
  } else {
    left = convert(std::move(left), type);
    right = convert(std::move(right), type);
  }
  result.type = type.orNull(nullable);
  const std::string operand = "," + right.sql + "," + std::to_string(type.pack());
  const bool chains = op == '+' || op == '-' || op == '*';
  result.sql = chains && longer(left, op, operand) ? std::move(left.sql)
                                                   : std::string(row.runtime) + "(" + left.sql + operand + ")";
  if (chains) result.chain = op;
  result.chained = left.chained;
  return result;
}

// An integer literal among decimals is as wide as it is written.
Type Writer::commonTypeOf(const std::vector<const Typed*>& values) {
  Type type = values[0]->type;
  for (const Typed* value : values) type = commonType(type, value->type);
  if (type.kind != TypeKind::Decimal) return type;
  Type narrow;
  for (const Typed* value : values) {
    const int literal = value->literal >= 0 ? value->literal : value->digitsOf;
    const bool integer = literal >= 0 && value->type.kind == TypeKind::Int;
    if (integer) structural(literal);
    narrow = commonType(narrow, integer ? numericLiteral(literal) : value->type);
  }
  return narrow.orNull(type.nullable);
}

Type Writer::numericLiteral(int literal) const {
  const auto digits = std::to_string(batch_.literals[static_cast<std::size_t>(literal)].integer).size();
  return Type::decimal(static_cast<int>(digits), 0);
}

Typed Writer::conditional(std::vector<std::pair<std::string, Typed>> branches, Typed otherwise) {
  measure(otherwise);
  for (auto& [when, value] : branches) measure(value);
  std::vector<const Typed*> values{&otherwise};
  for (const auto& [when, value] : branches) values.push_back(&value);
  const Type type = commonTypeOf(values);
  Typed result;
  result.type = type;
  result.sql = "CASE";
  for (auto& [when, value] : branches) {
    result.subquery = result.subquery || value.subquery;
    result.sql += " WHEN " + when + " THEN " + convert(std::move(value), type, When::Late).sql;
  }
  result.subquery = result.subquery || otherwise.subquery;
  const bool noOther = otherwise.type.kind == TypeKind::Null;
  result.sql += noOther ? " END" : " ELSE " + convert(std::move(otherwise), type, When::Late).sql + " END";
  result.sql = "(" + result.sql + ")";
  return result;
}

Typed Writer::caseOf(const Expression& expression, Scope* scope) {
  std::vector<std::pair<std::string, Typed>> branches;
  bool allNull = true;
  bool subquery = false;
  for (std::size_t i = 0; i < expression.arguments.size(); i += 2) {
    std::string when;
    if (expression.operand) {
      Typed operand = this->expression(*expression.operand, scope);
      Typed value = this->expression(*expression.arguments[i], scope);
      subquery = subquery || operand.subquery || value.subquery;
      when = compare("=", std::move(operand), std::move(value), expression.token);
    } else {
      when = condition(*expression.arguments[i], scope);
      subquery = subquery || when.find("SELECT") != std::string::npos;
    }
    branches.emplace_back(std::move(when), this->expression(*expression.arguments[i + 1], scope));
    allNull = allNull && branches.back().second.type.kind == TypeKind::Null;
  }
  Typed otherwise;
  otherwise.sql = "NULL";
  if (expression.otherwise) otherwise = this->expression(*expression.otherwise, scope);
  if (allNull && otherwise.type.kind == TypeKind::Null) {
    fail(expression.token, 8133,
         "At least one of the result expressions in a CASE specification must be an expression other than the NULL "
         "constant.");
  }
  Typed result = conditional(std::move(branches), std::move(otherwise));
  result.subquery = result.subquery || subquery;
  return result;
}

Typed Writer::cast(const Expression& expression, Scope* scope) {
  Typed value = this->expression(*expression.arguments[0], scope);
  std::string style;
  if (expression.arguments.size() > 1) {
    style = "," + convert(this->expression(*expression.arguments[1], scope), Type::of(TypeKind::Int)).sql;
  }
  return convertExplicitly(std::move(value), expression.type, style, expression.name.starts_with("TRY_"));
}

Typed Writer::scalarSubquery(const Expression& expression, Scope* scope) {
  const BoundQuery query = bind(*expression.query, scope, true);
  if (query.outputs.size() != 1) {
    fail(expression.token, 116,
         "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS.");
  }
  Typed result;
  result.subquery = true;
  result.type = query.outputs[0].value.type.orNull();
  if (query.body->singleRow) {
    result.sql = "(" + render(query, false) + ")";
  } else {
    result.sql = "(SELECT ts_single(c1) FROM (" + render(query, true) + "))";
  }
  return result;
}

}  // namespace tolvane::tsql
