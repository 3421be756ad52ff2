// The operators of one and two values.
#include "tsql/function_table.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

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

}  // namespace tolvane::tsql
