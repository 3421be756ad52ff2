#include "tsql/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "tsql/float_digits.h"

namespace tolvane::tsql {
namespace {

constexpr auto signs = std::to_array<std::string_view>({
    "$",      "\u00A2", "\u00A3", "\u00A4", "\u00A5", "\u09F2", "\u09F3", "\u0E3F", "\u17DB",
    "\u20A0", "\u20A1", "\u20A2", "\u20A3", "\u20A4", "\u20A5", "\u20A6", "\u20A7", "\u20A8",
    "\u20A9", "\u20AA", "\u20AB", "\u20AC", "\u20AD", "\u20AE", "\u20AF", "\u20B0", "\u20B1",
    "\uFDFC", "\uFE69", "\uFF04", "\uFFE0", "\uFFE1", "\uFFE5", "\uFFE6",
});

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool takeSign(std::string_view& text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+')) return false;
  const bool negative = text[0] == '-';
  text = trimmed(text.substr(1));
  return negative;
}

// Digits with at most one point among them, at least one digit; then optionally e or d, sign and digits.
bool isFloatSyntax(std::string_view text) {
  std::size_t i = 0;
  std::size_t digits = 0;
  bool point = false;
  for (; i < text.size() && (isDigit(text[i]) || (text[i] == '.' && !point)); ++i) {
    if (text[i] == '.') {
      point = true;
    } else {
      ++digits;
    }
  }
  if (digits == 0) return false;
  if (i == text.size()) return true;
  if (std::string_view("eEdD").find(text[i]) == std::string_view::npos) return false;
  if (++i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  return i < text.size() && std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), isDigit);
}

std::string scientific(const FloatDigits& number) {
  std::string text = number.negative ? "-" : "";
  text += number.digits[0];
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const std::string exponent = std::to_string(number.exponent < 0 ? -number.exponent : number.exponent);
  text += number.exponent < 0 ? "e-" : "e+";
  return text + std::string(exponent.size() < 3 ? 3 - exponent.size() : 0, '0') + exponent;
}

}  // namespace

std::span<const std::string_view> currencySigns() {
  return signs;
}

IntegerText parseInteger(std::string_view text) {
  text = trimmed(text);
  const bool negative = takeSign(text);
  if (!std::all_of(text.begin(), text.end(), isDigit)) return {};
  std::uint64_t magnitude = 0;
  const auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
  for (const char c : text) {
    const auto digit = static_cast<std::uint64_t>(c - '0');
    if (magnitude > (limit - digit) / 10) return {IntegerText::Outcome::Overflow, 0};
    magnitude = magnitude * 10 + digit;
  }
  return {IntegerText::Outcome::Read, static_cast<std::int64_t>(negative ? std::uint64_t{0} - magnitude : magnitude)};
}

std::optional<double> parseFloat(std::string_view text) {
  text = trimmed(text);
  if (text.empty()) return 0.0;
  const bool negative = takeSign(text);
  if (!isFloatSyntax(text)) return std::nullopt;
  std::string number(text);
  std::replace_if(
      number.begin(), number.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
  double value = 0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  if (read.ec == std::errc::result_out_of_range) {
    // from_chars does not say which end of the range was left; a negative exponent is the small one.
    value = number.find("e-") != std::string::npos || number.find("E-") != std::string::npos ||
                    number.find_first_not_of("0.") == std::string::npos || number[0] == '.'
                ? 0.0
                : std::numeric_limits<double>::infinity();
  }
  return negative ? -value : value;
}

std::optional<Decimal> parseMoney(std::string_view text) {
  text = trimmed(text);
  bool negative = takeSign(text);
  for (const std::string_view sign : signs) {
    if (text.substr(0, sign.size()) == sign) {
      text = trimmed(text.substr(sign.size()));
      negative = takeSign(text) || negative;
      break;
    }
  }
  std::string digits;
  const auto point = std::min(text.find('.'), text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != ',' || i > point) digits += text[i];
  }
  if (digits.empty() || digits == ".") return Decimal();
  if (!isDigit(digits[0]) && digits[0] != '.') return std::nullopt;
  const auto amount = Decimal::parse(digits);
  return amount && negative ? amount->negated() : amount;
}

bool isNumeric(std::string_view text) {
  // Blank control characters before a number count as part of it, even alone, and so does the backslash, which shows as
  // the yen sign in Japanese; a blank alone does not.
  const auto begin = text.find_first_not_of("\t\n\v\f\r");
  if (begin != 0) return !text.empty() && (begin == std::string_view::npos || isNumeric(text.substr(begin)));
  if (text == "\\") return true;
  if (trimmed(text).empty()) return false;
  return parseFloat(text).has_value() || parseMoney(text).has_value() ||
         parseInteger(text).outcome != IntegerText::Outcome::Syntax;
}

std::string floatText(double value, int style) {
  if (style == 126) style = 2;
  if (style < 0 || style > 3) style = 0;
  static constexpr std::array<int, 4> digitsOf{6, 8, 16, 17};
  const FloatDigits number = FloatDigits::of(value).rounded(digitsOf.at(static_cast<std::size_t>(style)));
  if (style != 0) return scientific(number);
  FloatDigits shown = number;
  while (shown.digits.size() > 1 && shown.digits.back() == '0') shown.digits.pop_back();
  return shown.exponent < -4 || shown.exponent >= digitsOf[0] ? scientific(shown) : shown.plain();
}

std::string floatMessageText(double value) {
  const auto number = Decimal::parse(FloatDigits::of(value).plain());
  const auto shown = number ? number->rescaled(6) : std::nullopt;
  return shown ? shown->toText() : FloatDigits::of(value).plain() + ".000000";
}

std::string moneyText(const Decimal& value, int style) {
  const auto rounded = value.rescaled(style == 2 || style == 126 ? 4 : 2);
  std::string text = rounded ? rounded->toText() : value.toText();
  if (style == 1) {
    const std::size_t first = rounded && rounded->isNegative() ? 1 : 0;
    for (std::size_t i = text.find('.'); i > first + 3; i -= 3) text.insert(i - 3, 1, ',');
  }
  return text;
}

}  // namespace tolvane::tsql
