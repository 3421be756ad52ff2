#include "platform/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "platform/calendar.h"
#include "platform/decimal_digits.h"
#include "platform/error.h"

namespace tolvane {
namespace {

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

template <typename T>
concept Integral = std::is_integral_v<T> && !std::is_same_v<T, bool>;

[[noreturn]] void mismatch() {
  raise(RuntimeError::typeMismatch);
}
[[noreturn]] void overflow() {
  raise(RuntimeError::overflow);
}

template <typename T>
T fitting(const std::optional<T>& value) {
  if (!value) overflow();
  return *value;
}

bool sameText(std::string_view a, std::string_view lower) {
  return a.size() == lower.size() && std::equal(a.begin(), a.end(), lower.begin(), [](char x, char y) {
           return (x >= 'A' && x <= 'Z' ? static_cast<char>(x + 32) : x) == y;
         });
}

template <typename Target>
Target narrowed(std::int64_t value) {
  if (value < std::numeric_limits<Target>::min() || value > std::numeric_limits<Target>::max()) overflow();
  return static_cast<Target>(value);
}

std::int64_t roundedInteger(double value) {
  const double whole = std::nearbyint(value);
  // Both bounds are exact powers of two; NaN fails the comparison too.
  if (!(whole >= -0x1p63 && whole < 0x1p63)) overflow();
  return static_cast<std::int64_t>(whole);
}

/// A hexadecimal or octal text is a bit pattern of the target's width: "&HFFFF" is -1 as a 16-bit integer.
template <typename Target>
Target ofBits(std::uint64_t bits) {
  using Unsigned = std::make_unsigned_t<Target>;
  if (bits > std::numeric_limits<Unsigned>::max()) overflow();
  return static_cast<Target>(static_cast<Unsigned>(bits));
}

DecimalDigits numberIn(const std::string& text) {
  if (const auto bits = readBasedNumber(text)) return DecimalDigits::of(*bits);
  const auto number = readNumberText(text);
  if (!number) mismatch();
  return *number;
}

/// One integer type from every kind of value.
template <typename Target>
struct ToInteger {
  Target operator()(Empty) const { return 0; }
  Target operator()(Null) const { raise(RuntimeError::invalidUseOfNull); }
  Target operator()(bool v) const { return v ? static_cast<Target>(-1) : Target{0}; }
  template <Integral T>
  Target operator()(const T& v) const {
    return narrowed<Target>(v);
  }
  Target operator()(float v) const { return narrowed<Target>(roundedInteger(v)); }
  Target operator()(double v) const { return narrowed<Target>(roundedInteger(v)); }
  Target operator()(Date v) const { return narrowed<Target>(roundedInteger(v.days)); }
  Target operator()(Currency v) const { return narrowed<Target>(fitting(DecimalDigits::of(v).toInteger())); }
  Target operator()(const Decimal& v) const { return narrowed<Target>(fitting(DecimalDigits::of(v).toInteger())); }
  Target operator()(const std::string& v) const {
    if (const auto bits = readBasedNumber(v)) return ofBits<Target>(*bits);
    return narrowed<Target>(fitting(numberIn(v).toInteger()));
  }
  template <typename T>
  Target operator()(const T&) const {
    mismatch();
  }
};

double currencyAsDouble(Currency value) {
  return DecimalDigits::of(value).toDouble().value_or(0);
}

/// The platform's text of a floating-point number: at most `significant` digits, an exponent from 10^significant up.
template <typename Real>
std::string realText(Real value, int significant) {
  if (std::isnan(value)) return "-1.#IND";
  if (std::isinf(value)) return value > 0 ? "1.#INF" : "-1.#INF";
  if (value == 0) return "0";
  std::array<char, 64> buffer;
  char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<double>(value),
                                  std::chars_format::general, significant)
                        .ptr;
  std::string text(buffer.data(), end);
  if (const auto exponent = text.find('e'); exponent != std::string::npos) text[exponent] = 'E';
  return text;
}

std::string withoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string twoDigits(std::int32_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

std::string dateText(Date date) {
  // Whole seconds, as this form has no fraction; the half second that rounding needs goes the way the fraction goes.
  CalendarTime time = toCalendar(date);
  if (time.millisecond >= 500) {
    constexpr double halfSecond = 0.5 / 86400;
    time = toCalendar(Date{date.days + (date.days < 0 ? -halfSecond : halfSecond)});
  }
  const std::string clock = std::to_string(time.hour) + ":" + twoDigits(time.minute) + ":" + twoDigits(time.second);
  if (time.year == 1899 && time.month == 12 && time.day == 30) return clock;
  const std::string day = std::to_string(time.year) + "-" + std::to_string(time.month) + "-" + std::to_string(time.day);
  const bool midnight = time.hour == 0 && time.minute == 0 && time.second == 0;
  return midnight ? day : day + " " + clock;
}

Date checkedDate(double days) {
  // Years 100 to 9999.
  if (!(days > -657435.0 && days < 2958466.0)) overflow();
  return Date{days};
}

Value converted(const Value& value, ValueType type) {
  switch (type) {
    case ValueType::int16:
      return toInt16(value);
    case ValueType::int32:
      return toInt32(value);
    case ValueType::single:
      return toSingle(value);
    case ValueType::real:
      return toDouble(value);
    case ValueType::currency:
      return toCurrency(value);
    case ValueType::date:
      return toDate(value);
    case ValueType::string:
      return toText(value);
    case ValueType::boolean:
      return toBoolean(value);
    case ValueType::decimal:
      return toDecimal(value);
    case ValueType::byte:
      return toByte(value);
    case ValueType::int64:
      return toInt64(value);
    case ValueType::variant:
    case ValueType::empty:
    case ValueType::null:
    case ValueType::object:
    case ValueType::error:
      break;
  }
  mismatch();
}

}  // namespace

std::int32_t toInt32(const Value& value) {
  return std::visit(ToInteger<std::int32_t>{}, value.storage());
}
std::int16_t toInt16(const Value& value) {
  return std::visit(ToInteger<std::int16_t>{}, value.storage());
}
std::uint8_t toByte(const Value& value) {
  return std::visit(ToInteger<std::uint8_t>{}, value.storage());
}
std::int64_t toInt64(const Value& value) {
  return std::visit(ToInteger<std::int64_t>{}, value.storage());
}

double toDouble(const Value& value) {
  return std::visit(Overloaded{
                        [](Empty) { return 0.0; },
                        [](Null) -> double { raise(RuntimeError::invalidUseOfNull); },
                        [](bool v) { return v ? -1.0 : 0.0; },
                        [](const Integral auto& v) { return static_cast<double>(v); },
                        [](float v) { return static_cast<double>(v); },
                        [](double v) { return v; },
                        [](Date v) { return v.days; },
                        [](Currency v) { return currencyAsDouble(v); },
                        [](const Decimal& v) { return fitting(DecimalDigits::of(v).toDouble()); },
                        [](const std::string& v) { return fitting(numberIn(v).toDouble()); },
                        [](const auto&) -> double { mismatch(); },
                    },
                    value.storage());
}

float toSingle(const Value& value) {
  const double wide = toDouble(value);
  if (std::isfinite(wide) && std::abs(wide) > static_cast<double>(std::numeric_limits<float>::max())) overflow();
  return static_cast<float>(wide);
}

Currency toCurrency(const Value& value) {
  return std::visit(
      Overloaded{
          [](Empty) { return Currency{}; },
          [](Null) -> Currency { raise(RuntimeError::invalidUseOfNull); },
          [](bool v) { return Currency{v ? -10000 : 0}; },
          [](const Integral auto& v) { return fitting(DecimalDigits::of(static_cast<std::int64_t>(v)).toCurrency()); },
          [](float v) { return Currency{roundedInteger(static_cast<double>(v) * 10000.0)}; },
          [](double v) { return Currency{roundedInteger(v * 10000.0)}; },
          [](Date v) { return Currency{roundedInteger(v.days * 10000.0)}; },
          [](Currency v) { return v; },
          [](const Decimal& v) { return fitting(DecimalDigits::of(v).toCurrency()); },
          [](const std::string& v) { return fitting(numberIn(v).toCurrency()); },
          [](const auto&) -> Currency { mismatch(); },
      },
      value.storage());
}

Decimal toDecimal(const Value& value) {
  const auto ofReal = [](double v, int significant) {
    if (!std::isfinite(v)) overflow();
    return fitting(DecimalDigits::of(v, significant).toDecimal());
  };
  return std::visit(
      Overloaded{
          [](Empty) { return Decimal{}; },
          [](Null) -> Decimal { raise(RuntimeError::invalidUseOfNull); },
          [](bool v) {
            return Decimal{0, v ? 1U : 0U, 0, v};
          },
          [](const Integral auto& v) { return fitting(DecimalDigits::of(static_cast<std::int64_t>(v)).toDecimal()); },
          [&](float v) { return ofReal(static_cast<double>(v), 7); },
          [&](double v) { return ofReal(v, 15); },
          [&](Date v) { return ofReal(v.days, 15); },
          [](Currency v) { return fitting(DecimalDigits::of(v).toDecimal()); },
          [](const Decimal& v) { return v; },
          [](const std::string& v) { return fitting(numberIn(v).toDecimal()); },
          [](const auto&) -> Decimal { mismatch(); },
      },
      value.storage());
}

bool toBoolean(const Value& value) {
  return std::visit(Overloaded{
                        [](Empty) { return false; },
                        [](Null) -> bool { raise(RuntimeError::invalidUseOfNull); },
                        [](bool v) { return v; },
                        [](const Integral auto& v) { return v != 0; },
                        [](float v) { return v != 0; },
                        [](double v) { return v != 0; },
                        [](Date v) { return v.days != 0; },
                        [](Currency v) { return v.scaled != 0; },
                        [](const Decimal& v) { return v.high != 0 || v.low != 0; },
                        [](const std::string& v) {
                          if (sameText(v, "true") || sameText(v, "#true#")) return true;
                          if (sameText(v, "false") || sameText(v, "#false#")) return false;
                          return !numberIn(v).digits.empty();
                        },
                        [](const auto&) -> bool { mismatch(); },
                    },
                    value.storage());
}

Date toDate(const Value& value) {
  if (const auto* date = value.get<Date>()) return *date;
  if (const auto* text = value.get<std::string>()) {
    const auto date = parseDate(*text);
    if (!date) mismatch();
    return *date;
  }
  return checkedDate(toDouble(value));
}

std::string toText(const Value& value) {
  return std::visit(Overloaded{
                        [](Empty) { return std::string(); },
                        [](Null) -> std::string { raise(RuntimeError::invalidUseOfNull); },
                        [](bool v) { return std::string(v ? "True" : "False"); },
                        [](const Integral auto& v) { return std::to_string(v); },
                        [](float v) { return realText(v, 7); },
                        [](double v) { return realText(v, 15); },
                        [](Date v) { return dateText(v); },
                        [](Currency v) { return withoutTrailingZeros(exactText(v)); },
                        [](const Decimal& v) { return withoutTrailingZeros(exactText(v)); },
                        [](const std::string& v) { return v; },
                        [](const auto&) -> std::string { mismatch(); },
                    },
                    value.storage());
}

Value changeType(const Value& value, ValueType type) {
  if (type == ValueType::variant) return value;
  if (!value.isArray() && value.type() == type) return value;
  if (value.isNull()) raise(RuntimeError::invalidUseOfNull);
  return converted(value, type);
}

bool isNumeric(const Value& value) {
  return std::visit(Overloaded{
                        [](Empty) { return true; },
                        [](bool) { return true; },
                        [](const Integral auto&) { return true; },
                        [](float) { return true; },
                        [](double) { return true; },
                        [](Currency) { return true; },
                        [](const Decimal&) { return true; },
                        [](const std::string& v) { return parseNumber(v).has_value(); },
                        [](const auto&) { return false; },
                    },
                    value.storage());
}

std::optional<double> parseNumber(std::string_view text) {
  if (const auto bits = readBasedNumber(text)) return static_cast<double>(*bits);
  const auto number = readNumberText(text);
  return number ? number->toDouble() : std::nullopt;
}

std::string_view trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string exactText(Currency value) {
  return DecimalDigits::of(value).plainText(4);
}
std::string exactText(const Decimal& value) {
  return DecimalDigits::of(value).plainText();
}

std::optional<Decimal> parseDecimal(std::string_view text) {
  const auto number = readPlainDecimal(text);
  if (!number) return std::nullopt;
  const auto value = number->toDecimal();
  // A value that lost digits did not fit.
  if (!value || value->scale != -number->exponent) return std::nullopt;
  return value;
}

std::optional<Currency> parseCurrency(std::string_view text) {
  const auto number = readPlainDecimal(text);
  if (!number) return std::nullopt;
  const auto value = number->toCurrency();
  if (!value) return std::nullopt;
  const bool exact = number->exponent >= -4 || number->digits.find_last_not_of('0') == std::string::npos ||
                     number->digits.size() - 1 - number->digits.find_last_not_of('0') >=
                         static_cast<std::size_t>(-4 - number->exponent);
  return exact ? value : std::nullopt;
}

}  // namespace tolvane
