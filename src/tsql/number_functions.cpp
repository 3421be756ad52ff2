// Functions on numbers. Those that keep the type of their argument get the packed type of the result as the last one.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <string>

#include "tsql/convert.h"
#include "tsql/function_groups.h"
#include "tsql/number_text.h"
#include "tsql/sql_error.h"

namespace tolvane::tsql {
namespace {

Type resultType(const Call& call) {
  return Type::unpack(call.args.back().integer());
}

[[noreturn]] void overflow(const Type& type) {
  throw SqlError(Message::ArithmeticOverflow, {"expression", messageName(type)});
}

// An exact number as a value of the type, which may be any number type.
Result exactResult(const std::optional<Decimal>& number, const Type& type) {
  if (!number) overflow(type);
  if (type.isExactText()) return exactText(*number, type, "expression");
  if (type.isFloat()) return number->toDouble();
  const auto whole = number->toInteger(Rounding::Cut);
  if (!whole || !fitsInteger(*whole, type.kind)) overflow(type);
  return *whole;
}

Result floatResult(double value, const Type& type) {
  if (std::isnan(value)) throw SqlError(Message::InvalidFloat);
  if (std::isinf(value)) overflow(type);
  if (type.isFloat()) return value == 0 ? 0.0 : type.kind == TypeKind::Real ? static_cast<float>(value) : value;
  if (type.isExactText()) return exactResult(Decimal::fromDouble(value, type.isMoney() ? 4 : type.scale), type);
  return exactResult(Decimal::fromDouble(value, 15), type);
}

Result abs(Call& call) {
  if (anyNull(call)) return {};
  const Type type = resultType(call);
  if (type.isFloat()) return floatResult(std::abs(approximateNumber(call.args[0])), type);
  const Decimal number = exactNumber(call.args[0]);
  return exactResult(number.isNegative() ? number.negated() : number, type);
}

double roundedFloat(double value, std::int64_t digits, bool cut) {
  constexpr std::int64_t digitsOfDouble = 308;
  if (digits > digitsOfDouble) return value;
  if (digits < -digitsOfDouble) return 0;
  const double factor = std::pow(10.0, static_cast<double>(std::abs(digits)));
  const double scaled = digits >= 0 ? value * factor : value / factor;
  if (!std::isfinite(scaled)) return value;
  const double whole = cut ? std::trunc(scaled) : std::round(scaled);
  return digits >= 0 ? whole / factor : whole * factor;
}

// Digits of the fraction are set to 0, and those before the point with a negative count; what is kept is rounded or
// cut.
std::optional<Decimal> roundedExact(const Decimal& value, std::int64_t digits, Rounding rounding) {
  if (digits >= value.scale()) return value;
  if (digits >= 0) return value.rescaled(static_cast<int>(digits), rounding);
  if (digits < -Decimal::maxPrecision) return Decimal();
  const auto power = Decimal(false, WideNumber::powerOfTen(static_cast<int>(-digits)), 0);
  // One digit more than is kept decides the rounding; it is exact because the quotient is cut there.
  const auto quotient = Decimal::quotient(value, power, 1);
  const auto whole = quotient ? quotient->rescaled(0, rounding) : std::nullopt;
  return whole ? Decimal::product(*whole, power, 0) : std::nullopt;
}

// number, digits[, 0 to round, anything else to cut], packed type of the result.
Result round(Call& call) {
  if (anyNull(call)) return {};
  const Type type = resultType(call);
  const std::int64_t digits = wholeNumber(call.args[1]);
  const bool cut = call.args.size() > 3 && wholeNumber(call.args[2]) != 0;
  if (type.isFloat()) return floatResult(roundedFloat(approximateNumber(call.args[0]), digits, cut), type);
  return exactResult(roundedExact(exactNumber(call.args[0]), digits, cut ? Rounding::Cut : Rounding::HalfAway), type);
}

enum class Towards { Floor, Ceiling };

template <Towards towards>
Result wholePart(Call& call) {
  if (anyNull(call)) return {};
  const Type type = resultType(call);
  if (type.isFloat()) {
    const double value = approximateNumber(call.args[0]);
    return floatResult(towards == Towards::Floor ? std::floor(value) : std::ceil(value), type);
  }
  const Decimal value = exactNumber(call.args[0]);
  auto whole = value.rescaled(0, Rounding::Cut);
  const bool away = towards == Towards::Floor ? value.isNegative() : !value.isNegative();
  if (whole && away && whole->compare(value) != std::strong_ordering::equal) {
    whole = Decimal::sum(*whole, Decimal(towards == Towards::Floor ? -1 : 1), 0);
  }
  return exactResult(whole, type);
}

Result sign(Call& call) {
  if (anyNull(call)) return {};
  const Type type = resultType(call);
  if (type.isFloat()) {
    const double value = approximateNumber(call.args[0]);
    return value > 0 ? 1.0 : value < 0 ? -1.0 : 0.0;
  }
  const Decimal value = exactNumber(call.args[0]);
  return exactResult(Decimal(value.isZero() ? 0 : value.isNegative() ? -1 : 1), type);
}

// base, exponent, packed type of the result: whole powers of exact numbers are exact, or overflow.
Result power(Call& call) {
  if (anyNull(call)) return {};
  const Type type = resultType(call);
  const double base = approximateNumber(call.args[0]);
  const double exponent = approximateNumber(call.args[1]);
  if (base == 0 && exponent < 0) throw SqlError(Message::InvalidFloat);
  constexpr double mostSteps = 128;
  if (type.isInteger() && exponent >= 0 && exponent <= mostSteps && exponent == std::floor(exponent)) {
    std::optional<Decimal> product = Decimal(1);
    const Decimal factor = exactNumber(call.args[0]);
    for (int i = 0; product && i < static_cast<int>(exponent); ++i) product = Decimal::product(*product, factor, 0);
    return exactResult(product, type);
  }
  return floatResult(std::pow(base, exponent), type);
}

template <double (*function)(double)>
Result floatFunction(Call& call) {
  if (anyNull(call)) return {};
  return floatResult(function(approximateNumber(call.args[0])), Type::of(TypeKind::Float));
}

double squareRoot(double value) {
  return std::sqrt(value);
}
double square(double value) {
  return value * value;
}
double exponential(double value) {
  return std::exp(value);
}
double sine(double value) {
  return std::sin(value);
}
double cosine(double value) {
  return std::cos(value);
}
double tangent(double value) {
  return std::tan(value);
}
double cotangent(double value) {
  return value == 0 ? std::nan("") : 1 / std::tan(value);
}
double arcSine(double value) {
  return std::asin(value);
}
double arcCosine(double value) {
  return std::acos(value);
}
double arcTangent(double value) {
  return std::atan(value);
}
double logarithm(double value) {
  return value > 0 ? std::log(value) : std::nan("");
}
double decimalLogarithm(double value) {
  return value > 0 ? std::log10(value) : std::nan("");
}

// y, x: the angle between the axis and the point (x, y), which the origin has not.
Result angleOf(Call& call) {
  if (anyNull(call)) return {};
  const double y = approximateNumber(call.args[0]);
  const double x = approximateNumber(call.args[1]);
  if (y == 0 && x == 0) throw SqlError(Message::InvalidFloat);
  return floatResult(std::atan2(y, x), Type::of(TypeKind::Float));
}

// value[, base].
Result logarithmCall(Call& call) {
  if (anyNull(call)) return {};
  const double value = logarithm(approximateNumber(call.args[0]));
  if (call.args.size() == 1) return floatResult(value, Type::of(TypeKind::Float));
  const double base = logarithm(approximateNumber(call.args[1]));
  return floatResult(base == 0 ? std::nan("") : value / base, Type::of(TypeKind::Float));
}

constexpr double halfTurn = 180;

Result degrees(Call& call) {
  if (anyNull(call)) return {};
  return floatResult(approximateNumber(call.args[0]) * halfTurn / std::numbers::pi, resultType(call));
}

Result radians(Call& call) {
  if (anyNull(call)) return {};
  return floatResult(approximateNumber(call.args[0]) * std::numbers::pi / halfTurn, resultType(call));
}

Result pi(Call&) {
  return std::numbers::pi;
}

// Two multiplicative generators combined (L'Ecuyer, Communications of the ACM 31, 1988).
double nextRandom(RandomState& state) {
  constexpr std::int64_t firstModulus = 2147483563;
  constexpr std::int64_t secondModulus = 2147483399;
  state.first = static_cast<std::int32_t>(std::int64_t{state.first} * 40014 % firstModulus);
  state.second = static_cast<std::int32_t>(std::int64_t{state.second} * 40692 % secondModulus);
  std::int64_t difference = std::int64_t{state.first} - state.second;
  if (difference < 1) difference += firstModulus - 1;
  return static_cast<double>(difference) * 4.656613e-10;
}

// [seed]: a seed sets the connection's generator and gives its first number. Without one, all rows of a statement get
// the same number, as in SQL Server.
Result rand(Call& call) {
  if (!call.args.empty()) {
    if (call.args[0].isNull()) return {};
    constexpr std::int64_t modulus = 2147483563;
    const std::int64_t seed = std::abs(wholeNumber(call.args[0]) % modulus);
    call.session.random() = {static_cast<std::int32_t>(seed == 0 ? 12345 : seed), 67890};
  }
  return nextRandom(call.session.random());
}

// value, packed type.
Result isnumeric(Call& call) {
  if (call.args[0].isNull()) return 0;
  const Type type = Type::unpack(call.args[1].integer());
  if (type.isNumber()) return 1;
  return type.isText() && call.args[0].kind() == Kind::Text && isNumeric(call.args[0].text()) ? 1 : 0;
}

std::string fixedText(double value, int decimals) {
  if (const auto number = Decimal::fromDouble(value, decimals)) return number->toText();
  std::array<char, 400> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
  return std::string(text.data(), written.ptr);
}

// number[, length 10[, decimals 0]]: right-aligned; decimals that have no room are rounded away, a whole number that
// has none becomes stars.
Result str(Call& call) {
  constexpr std::int64_t mostDecimals = 16;
  constexpr std::int64_t longest = 8000;
  if (anyNull(call)) return {};
  const std::int64_t length = call.args.size() > 1 ? wholeNumber(call.args[1]) : 10;
  std::int64_t decimals = call.args.size() > 2 ? wholeNumber(call.args[2]) : 0;
  if (length < 1 || length > longest || decimals < 0) return {};
  decimals = std::min(decimals, mostDecimals);
  const double value = approximateNumber(call.args[0]);
  const auto width = static_cast<std::size_t>(length);
  std::string text = fixedText(value, static_cast<int>(decimals));
  while (text.size() > width && decimals > 0) {
    // A point at the end of the room is of no use: it goes with the last decimal.
    decimals = std::max<std::int64_t>(decimals - static_cast<std::int64_t>(text.size() - width), 0);
    text = fixedText(value, static_cast<int>(decimals));
  }
  if (text.size() > width) return std::string(width, '*');
  return std::string(width - text.size(), ' ') + text;
}

constexpr std::array functions{
    Function{"ts_abs", 2, 2, true, abs},
    Function{"ts_round", 3, 4, true, round},
    Function{"ts_floor", 2, 2, true, wholePart<Towards::Floor>},
    Function{"ts_ceiling", 2, 2, true, wholePart<Towards::Ceiling>},
    Function{"ts_sign", 2, 2, true, sign},
    Function{"ts_power", 3, 3, true, power},
    Function{"ts_sqrt", 1, 1, true, floatFunction<squareRoot>},
    Function{"ts_square", 1, 1, true, floatFunction<square>},
    Function{"ts_exp", 1, 1, true, floatFunction<exponential>},
    Function{"ts_sin", 1, 1, true, floatFunction<sine>},
    Function{"ts_cos", 1, 1, true, floatFunction<cosine>},
    Function{"ts_tan", 1, 1, true, floatFunction<tangent>},
    Function{"ts_cot", 1, 1, true, floatFunction<cotangent>},
    Function{"ts_asin", 1, 1, true, floatFunction<arcSine>},
    Function{"ts_acos", 1, 1, true, floatFunction<arcCosine>},
    Function{"ts_atan", 1, 1, true, floatFunction<arcTangent>},
    Function{"ts_atn2", 2, 2, true, angleOf},
    Function{"ts_degrees", 2, 2, true, degrees},
    Function{"ts_radians", 2, 2, true, radians},
    Function{"ts_log", 1, 2, true, logarithmCall},
    Function{"ts_log10", 1, 1, true, floatFunction<decimalLogarithm>},
    Function{"ts_pi", 0, 0, true, pi},
    Function{"ts_rand", 0, 1, true, rand},
    Function{"ts_isnumeric", 2, 2, true, isnumeric},
    Function{"ts_str", 1, 3, true, str},
};

}  // namespace

std::span<const Function> numberFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
