#include <algorithm>

#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

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
