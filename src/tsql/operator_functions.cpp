// The arithmetic and bit operators. Each gets its operands and the packed type of the result.
#include <array>
#include <cmath>
#include <optional>

#include "tsql/convert.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"

namespace tolvane::tsql {
namespace {

enum class Operator { Add, Subtract, Multiply, Divide, Modulo };

[[noreturn]] void overflow(const Type& type) {
  throw SqlError(Message::ArithmeticOverflow, {"expression", messageName(type)});
}

std::int64_t fitted(std::int64_t value, const Type& type) {
  if (!fitsInteger(value, type.kind)) overflow(type);
  return value;
}

std::int64_t integerOperation(Operator operation, std::int64_t left, std::int64_t right, const Type& type) {
  const bool divides = operation == Operator::Divide || operation == Operator::Modulo;
  if (divides && right == 0) throw SqlError(Message::DivideByZero);
  // The one quotient that does not fit counts for the remainder, too.
  if (divides && right == -1) {
    if (left == INT64_MIN) overflow(type);
    const std::int64_t quotient = fitted(-left, type);
    return operation == Operator::Modulo ? 0 : quotient;
  }
  std::int64_t result = 0;
  bool tooGreat = false;
  switch (operation) {
    case Operator::Add:
      tooGreat = __builtin_add_overflow(left, right, &result);
      break;
    case Operator::Subtract:
      tooGreat = __builtin_sub_overflow(left, right, &result);
      break;
    case Operator::Multiply:
      tooGreat = __builtin_mul_overflow(left, right, &result);
      break;
    case Operator::Divide:
      result = left / right;
      break;
    case Operator::Modulo:
      result = left % right;
      break;
  }
  if (tooGreat) overflow(type);
  return fitted(result, type);
}

double floatOperation(Operator operation, double left, double right, const Type& type) {
  const bool divides = operation == Operator::Divide || operation == Operator::Modulo;
  if (divides && right == 0) throw SqlError(Message::DivideByZero);
  double result = 0;
  switch (operation) {
    case Operator::Add:
      result = left + right;
      break;
    case Operator::Subtract:
      result = left - right;
      break;
    case Operator::Multiply:
      result = left * right;
      break;
    case Operator::Divide:
      result = left / right;
      break;
    case Operator::Modulo:
      result = std::fmod(left, right);
      break;
  }
  if (type.kind == TypeKind::Real) result = static_cast<float>(result);
  if (!std::isfinite(result)) overflow(type);
  return result == 0 ? 0.0 : result;
}

std::string exactOperation(Operator operation, const Decimal& left, const Decimal& right, const Type& type) {
  const int scale = type.isMoney() ? 4 : type.scale;
  const bool divides = operation == Operator::Divide || operation == Operator::Modulo;
  if (divides && right.isZero()) throw SqlError(Message::DivideByZero);
  std::optional<Decimal> result;
  switch (operation) {
    case Operator::Add:
      result = Decimal::sum(left, right, scale);
      break;
    case Operator::Subtract:
      result = Decimal::sum(left, right.negated(), scale);
      break;
    case Operator::Multiply:
      result = Decimal::product(left, right, scale);
      break;
    case Operator::Divide:
      result = Decimal::quotient(left, right, scale);
      break;
    case Operator::Modulo:
      result = Decimal::remainder(left, right, scale);
      break;
  }
  if (!result) overflow(type);
  return exactText(*result, type, "expression");
}

// Dates add as the days since 1900-01-01 that they are.
std::string dateOperation(Operator operation, DateTime left, DateTime right, const Type& type) {
  if (operation != Operator::Add && operation != Operator::Subtract) {
    throw SqlError(Message::InvalidOperand, {messageName(type), operation == Operator::Multiply ? "multiply"
                                                                : operation == Operator::Divide ? "divide"
                                                                                                : "modulo"});
  }
  const int sign = operation == Operator::Add ? 1 : -1;
  const auto sum = carried(std::int64_t{left.days} + sign * std::int64_t{right.days},
                           std::int64_t{left.ticks} + sign * std::int64_t{right.ticks});
  const bool small = type.kind == TypeKind::SmallDateTime;
  const DateTime value = sum ? (small ? roundedToMinute(*sum) : *sum) : DateTime{INT32_MAX, 0};
  if (!(small ? smallDateTimeBounds : dateTimeBounds).hold(value.days)) {
    throw SqlError(Message::DateOverflow, {messageName(type)});
  }
  return storedDateTime(value);
}

Result combined(Operator operation, const Datum& left, const Datum& right, const Type& type) {
  if (left.isNull() || right.isNull()) return {};
  if (type.isInteger()) return integerOperation(operation, wholeNumber(left), wholeNumber(right), type);
  if (type.isFloat()) return floatOperation(operation, approximateNumber(left), approximateNumber(right), type);
  if (type.isExactText()) return exactOperation(operation, exactNumber(left), exactNumber(right), type);
  if (type.kind == TypeKind::DateTime || type.kind == TypeKind::SmallDateTime) {
    return dateOperation(operation, dateTimeOf(left), dateTimeOf(right), type);
  }
  throw SqlError(Message::InvalidOperand, {messageName(type), "arithmetic"});
}

// Two operands and the packed type of the result; then further ones from left to right, each with the type of what it
// makes of the result so far.
template <Operator operation>
Result arithmetic(Call& call) {
  Result result = combined(operation, call.args[0], call.args[1], Type::unpack(call.args[2].integer()));
  for (std::size_t i = 3; i + 1 < call.args.size(); i += 2) {
    result = combined(operation, result.datum(), call.args[i], Type::unpack(call.args[i + 1].integer()));
  }
  return result;
}

// value, packed type.
Result negate(Call& call) {
  if (anyNull(call)) return {};
  const Type type = Type::unpack(call.args[1].integer());
  if (type.isInteger()) return integerOperation(Operator::Subtract, 0, wholeNumber(call.args[0]), type);
  if (type.isFloat()) return floatOperation(Operator::Subtract, 0, approximateNumber(call.args[0]), type);
  if (type.isExactText()) return exactText(exactNumber(call.args[0]).negated(), type, "expression");
  throw SqlError(Message::InvalidOperand, {messageName(type), "minus"});
}

enum class BitOperator { And, Or, Xor };

template <BitOperator operation>
Result bits(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t left = wholeNumber(call.args[0]);
  const std::int64_t right = wholeNumber(call.args[1]);
  switch (operation) {
    case BitOperator::And:
      return left & right;
    case BitOperator::Or:
      return left | right;
    case BitOperator::Xor:
      return left ^ right;
  }
  return {};
}

// value, packed type: as many bits as the type has.
Result complement(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t value = wholeNumber(call.args[0]);
  const TypeKind kind = Type::unpack(call.args[1].integer()).kind;
  if (kind == TypeKind::Bit) return value == 0 ? 1 : 0;
  return kind == TypeKind::TinyInt ? ~value & 0xFF : ~value;
}

constexpr std::array functions{
    Function{"ts_add", 3, -1, true, arithmetic<Operator::Add>},
    Function{"ts_sub", 3, -1, true, arithmetic<Operator::Subtract>},
    Function{"ts_mul", 3, -1, true, arithmetic<Operator::Multiply>},
    Function{"ts_div", 3, 3, true, arithmetic<Operator::Divide>},
    Function{"ts_mod", 3, 3, true, arithmetic<Operator::Modulo>},
    Function{"ts_neg", 2, 2, true, negate},
    Function{"ts_and", 3, 3, true, bits<BitOperator::And>},
    Function{"ts_or", 3, 3, true, bits<BitOperator::Or>},
    Function{"ts_xor", 3, 3, true, bits<BitOperator::Xor>},
    Function{"ts_not", 2, 2, true, complement},
};

}  // namespace

std::span<const Function> operatorFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
