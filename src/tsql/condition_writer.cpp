#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

namespace {

// SQLite reads a chain of AND as a tree as deep as the chain is long; brackets keep it flat enough for its limit.
std::string balanced(const std::vector<std::string>& parts, std::size_t begin, std::size_t end, std::string_view word) {
  if (end - begin == 1) return parts[begin];
  if (end - begin <= 8) {
    std::string result = "(";
    for (std::size_t i = begin; i < end; ++i) {
      if (i > begin) result += word;
      result += parts[i];
    }
    return result + ")";
  }
  const std::size_t middle = begin + (end - begin) / 2;
  return "(" + balanced(parts, begin, middle, word) + std::string(word) + balanced(parts, middle, end, word) + ")";
}

std::string_view operatorName(std::string_view op) {
  if (op == "IS") return "is not distinct from";
  if (op == "IS NOT") return "is distinct from";
  if (op == "=") return "equal to";
  if (op == "<>") return "not equal to";
  if (op == "<") return "less than";
  if (op == ">") return "greater than";
  if (op == "<=") return "less than or equal to";
  return "greater than or equal to";
}

// Decimals compare whatever their scales are, so none of them loses digits for a common type that has no room.
Type comparedAs(const Type& own, const Type& common) {
  return common.kind == TypeKind::Decimal && own.isNumber() ? asDecimal(own) : common;
}

}  // namespace

std::string Writer::condition(const Expression& expression, Scope* scope) {
  const auto negated = [&](std::string text) { return expression.negated ? "(NOT " + text + ")" : text; };
  switch (expression.kind) {
    case ExpressionKind::And:
    case ExpressionKind::Or: {
      std::vector<std::string> parts;
      for (const auto& argument : expression.arguments) parts.push_back(condition(*argument, scope));
      return balanced(parts, 0, parts.size(), expression.kind == ExpressionKind::And ? " AND " : " OR ");
    }
    case ExpressionKind::Not:
      return "(NOT " + condition(*expression.arguments[0], scope) + ")";
    case ExpressionKind::Compare: {
      Typed left = this->expression(*expression.arguments[0], scope);
      return compare(expression.name, std::move(left), this->expression(*expression.arguments[1], scope),
                     expression.token);
    }
    case ExpressionKind::IsNull: {
      const std::string value = this->expression(*expression.arguments[0], scope).sql;
      return "(" + value + (expression.negated ? " IS NOT NULL)" : " IS NULL)");
    }
    case ExpressionKind::Between: {
      const Typed value = this->expression(*expression.arguments[0], scope);
      const std::string low = compare(">=", value, this->expression(*expression.arguments[1], scope), expression.token);
      const std::string high =
          compare("<=", value, this->expression(*expression.arguments[2], scope), expression.token);
      return negated("(" + low + " AND " + high + ")");
    }
    case ExpressionKind::InList: {
      std::vector<Typed> values;
      Type type;
      for (const auto& argument : expression.arguments) {
        values.push_back(this->expression(*argument, scope));
        comparable(values.back().type, argument->token);
        type = commonType(type, values.back().type);
      }
      std::string text = "(" + compared(convert(values[0], comparedAs(values[0].type, type)).sql, type) +
                         (expression.negated ? " NOT IN (" : " IN (");
      for (std::size_t i = 1; i < values.size(); ++i) {
        if (i > 1) text += ',';
        const std::string value = convert(values[i], comparedAs(values[i].type, type)).sql;
        text += type.isBinary() ? compared(value, type) : value;
      }
      return text + "))";
    }
    case ExpressionKind::InQuery:
      return inQuery(expression, scope);
    case ExpressionKind::Like:
      return like(expression, scope);
    case ExpressionKind::Exists: {
      const BoundQuery query = bind(*expression.query, scope, true);
      return "EXISTS (" + render(query, false) + ")";
    }
    case ExpressionKind::Quantified:
      return quantified(expression, scope);
    default:
      fail(expression.token, 4145,
           "An expression of non-boolean type specified in a context where a condition is expected.");
  }
}

void Writer::comparable(const Type& type, int token) const {
  if (type.isLongText() || type.kind == TypeKind::Image) {
    fail(token, 306,
         "The text, ntext, and image data types cannot be compared or sorted, except when using IS NULL or LIKE "
         "operator.");
  }
}

std::string Writer::compare(std::string_view op, Typed left, Typed right, int token) {
  for (const Type& type : {left.type, right.type}) {
    if (type.isLongText() || type.kind == TypeKind::Image) {
      fail(token, 402,
           "The data types " + std::string(left.type.baseName()) + " and " + std::string(right.type.baseName()) +
               " are incompatible in the " + std::string(operatorName(op)) + " operator.");
    }
  }
  // An integer beside a decimal literal without a fraction would do, but the decimal's rules hold for all.
  const Type type = commonType(left.type, right.type);
  const Type leftType = comparedAs(left.type, type);
  const Type rightType = comparedAs(right.type, type);
  left = convert(std::move(left), leftType);
  right = convert(std::move(right), rightType);
  const std::string other = type.isBinary() ? compared(right.sql, type) : right.sql;
  const std::string word = op.starts_with("IS") ? " " + std::string(op) + " " : std::string(op);
  return "(" + compared(left.sql, type) + word + other + ")";
}

std::string Writer::inQuery(const Expression& expression, Scope* scope) {
  Typed value = this->expression(*expression.arguments[0], scope);
  const BoundQuery query = bind(*expression.query, scope, true);
  if (query.scope->aggregatesOutside) refuse(expression.token, "a list with an aggregate of a query around it");
  if (query.outputs.size() != 1) {
    fail(expression.token, 116,
         "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS.");
  }
  Typed member = query.outputs[0].value;
  comparable(value.type, expression.token);
  comparable(member.type, expression.token);
  const Type type = commonType(value.type, member.type);
  const std::string text = render(query, true);
  member.sql = "c1";
  member.parameter = -1;
  member.literal = -1;
  const std::string converted = convert(member, comparedAs(member.type, type)).sql;
  const std::string set = converted == "c1" ? text : "SELECT " + converted + " FROM (" + text + ")";
  const Type valueType = comparedAs(value.type, type);
  return "(" + convert(std::move(value), valueType).sql + collation(type) +
         (expression.negated ? " NOT IN (" : " IN (") + set + "))";
}

// ALL: false as soon as one comparison is false, unknown when one is unknown, true otherwise, also for no row.
// ANY: true as soon as one is true, unknown when one is unknown, false otherwise.
std::string Writer::quantified(const Expression& expression, Scope* scope) {
  Typed value = this->expression(*expression.arguments[0], scope);
  const BoundQuery query = bind(*expression.query, scope, true);
  if (query.scope->aggregatesOutside) refuse(expression.token, "a list with an aggregate of a query around it");
  if (query.outputs.size() != 1) {
    fail(expression.token, 116,
         "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS.");
  }
  Typed member;
  member.type = query.outputs[0].value.type;
  member.sql = "c1";
  const std::string text = render(query, true);
  const std::string test = compare(expression.name, std::move(value), std::move(member), expression.token);
  const std::string tests = "(SELECT " + test + " AS p FROM (" + text + "))";
  if (expression.all) {
    return "(SELECT CASE WHEN min(p)=0 THEN 0 WHEN count(p)<count(*) THEN NULL ELSE 1 END FROM " + tests + ")";
  }
  return "(SELECT CASE WHEN max(p)=1 THEN 1 WHEN count(p)<count(*) THEN NULL ELSE 0 END FROM " + tests + ")";
}

std::string Writer::like(const Expression& expression, Scope* scope) {
  std::vector<Typed> values;
  bool unicode = false;
  for (const auto& argument : expression.arguments) {
    Typed value = this->expression(*argument, scope);
    if (!value.type.isText()) value = convert(std::move(value), Type::text(TypeKind::VarChar, 8000));
    unicode = unicode || value.type.isUnicode();
    values.push_back(std::move(value));
  }
  const std::string escape = values.size() > 2 ? values[2].sql : "NULL";
  const std::string text =
      "ts_like(" + values[0].sql + "," + values[1].sql + "," + escape + "," + (unicode ? "1" : "0") + ")";
  return expression.negated ? "(NOT " + text + ")" : text;
}

}  // namespace tolvane::tsql
