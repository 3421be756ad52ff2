#include "platform/decimal_digits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tolvane {
namespace {

constexpr int maxDecimalScale = 28;
// Exponents beyond this are out of every type's range; the bound keeps "1e999999999" from asking for memory.
constexpr std::int64_t exponentBound = 5000;

using Limbs = std::array<std::uint32_t, 3>;  // little-endian

std::string withoutLeadingZeros(std::string digits) {
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

bool multiplyAdd(Limbs& limbs, std::uint32_t factor, std::uint32_t addend) {
  std::uint64_t carry = addend;
  for (auto& limb : limbs) {
    carry += static_cast<std::uint64_t>(limb) * factor;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
  return carry == 0;
}

std::uint32_t divide(Limbs& limbs, std::uint32_t divisor) {
  std::uint64_t remainder = 0;
  for (auto limb = limbs.rbegin(); limb != limbs.rend(); ++limb) {
    remainder = (remainder << 32) | *limb;
    *limb = static_cast<std::uint32_t>(remainder / divisor);
    remainder %= divisor;
  }
  return static_cast<std::uint32_t>(remainder);
}

std::optional<Limbs> magnitudeOf(const DecimalDigits& number) {
  Limbs limbs{};
  for (const char digit : number.digits) {
    if (!multiplyAdd(limbs, 10, static_cast<std::uint32_t>(digit - '0'))) return std::nullopt;
  }
  for (std::int64_t i = 0; i < number.exponent; ++i) {
    if (!multiplyAdd(limbs, 10, 0)) return std::nullopt;
  }
  return limbs;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// Walks over a number's text.
class NumberReader {
 public:
  explicit NumberReader(std::string_view text) : rest_(withoutBlanks(text)) {}

  std::optional<DecimalDigits> read() {
    readLead();
    if (!readMantissa() || !readExponent()) return std::nullopt;
    readTrail();
    if (!rest_.empty() || open_ != closed_) return std::nullopt;
    number_.negative = minus_ || open_;
    number_.digits = withoutLeadingZeros(std::move(number_.digits));
    return std::move(number_);
  }

 private:
  bool take(std::string_view token) {
    if (!rest_.starts_with(token)) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  bool takeSign() {
    if (signed_ || open_) return false;
    if (take("-")) {
      minus_ = true;
    } else if (!take("+")) {
      return false;
    }
    signed_ = true;
    return true;
  }

  bool takeCurrencySign() {
    if (currency_) return false;
    currency_ = take("\u00A5") || take("\uFFE5");
    return currency_;
  }

  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }

  void readLead() {
    for (;;) {
      skipBlanks();
      if (takeSign() || takeCurrencySign()) continue;
      if (!open_ && !signed_ && take("(")) {
        open_ = true;
        continue;
      }
      return;
    }
  }

  void readTrail() {
    for (;;) {
      skipBlanks();
      if (takeSign() || takeCurrencySign()) continue;
      if (open_ && !closed_ && take(")")) {
        closed_ = true;
        continue;
      }
      return;
    }
  }

  bool readMantissa() {
    bool any = false;
    for (; !rest_.empty() && (isDigit(rest_.front()) || (any && rest_.front() == ',')); rest_.remove_prefix(1)) {
      if (rest_.front() == ',') continue;
      number_.digits += rest_.front();
      any = true;
    }
    if (!take(".")) return any;
    const std::size_t whole = number_.digits.size();
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1)) {
      number_.digits += rest_.front();
      --number_.exponent;
      any = true;
    }
    // The platform's parser lets a second point pass behind a number without decimals.
    if (any && number_.digits.size() == whole) take(".");
    return any;
  }

  bool readExponent() {
    if (rest_.empty() || std::string_view("eEdD").find(rest_.front()) == std::string_view::npos) return true;
    rest_.remove_prefix(1);
    bool minus = false;
    if (!rest_.empty() && (rest_.front() == '+' || rest_.front() == '-')) {
      minus = rest_.front() == '-';
      rest_.remove_prefix(1);
    }
    if (rest_.empty() || !isDigit(rest_.front())) return false;
    std::int64_t exponent = 0;
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1)) {
      exponent = std::min(exponent * 10 + (rest_.front() - '0'), exponentBound);
    }
    number_.exponent += minus ? -exponent : exponent;
    return true;
  }

  std::string_view rest_;
  DecimalDigits number_;
  bool signed_ = false;
  bool minus_ = false;
  bool open_ = false;
  bool closed_ = false;
  bool currency_ = false;
};

}  // namespace

DecimalDigits DecimalDigits::of(std::uint64_t value) {
  return {false, value == 0 ? std::string() : std::to_string(value), 0};
}

DecimalDigits DecimalDigits::of(std::int64_t value) {
  auto number = of(value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value));
  number.negative = value < 0;
  return number;
}

DecimalDigits DecimalDigits::of(Currency value) {
  auto number = of(value.scaled);
  number.exponent = -4;
  return number;
}

DecimalDigits DecimalDigits::of(const Decimal& value) {
  Limbs limbs{static_cast<std::uint32_t>(value.low), static_cast<std::uint32_t>(value.low >> 32), value.high};
  std::string digits;
  while (limbs != Limbs{}) digits += static_cast<char>('0' + divide(limbs, 10));
  std::reverse(digits.begin(), digits.end());
  return {value.negative, std::move(digits), -static_cast<std::int64_t>(value.scale)};
}

DecimalDigits DecimalDigits::of(double value, int significant) {
  std::array<char, 64> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, significant - 1)
          .ptr;
  auto number = readNumberText(std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())));
  auto result = number.value_or(DecimalDigits{});
  while (!result.digits.empty() && result.digits.back() == '0') {
    result.digits.pop_back();
    ++result.exponent;
  }
  return result;
}

DecimalDigits DecimalDigits::roundedTo(std::int64_t lowest) const {
  if (exponent >= lowest) return *this;
  DecimalDigits result{negative, {}, lowest};
  const auto dropped = static_cast<std::uint64_t>(lowest - exponent);
  if (dropped > digits.size()) return result;
  const std::size_t kept = digits.size() - static_cast<std::size_t>(dropped);
  result.digits = digits.substr(0, kept);
  const std::string_view tail = std::string_view(digits).substr(kept);
  const bool beyondHalf = tail.front() > '5' || (tail.front() == '5' && tail.find_first_not_of('0', 1) != tail.npos);
  const bool half = tail.front() == '5' && !beyondHalf;
  const bool odd = kept > 0 && (digits[kept - 1] - '0') % 2 == 1;
  if (!beyondHalf && !(half && odd)) return result;
  std::size_t at = kept;
  while (at > 0 && result.digits[at - 1] == '9') result.digits[--at] = '0';
  if (at == 0) {
    result.digits.insert(result.digits.begin(), '1');
  } else {
    ++result.digits[at - 1];
  }
  return result;
}

std::optional<std::int64_t> DecimalDigits::toInteger() const {
  const DecimalDigits whole = roundedTo(0);
  if (whole.digits.empty()) return 0;
  const auto limbs = magnitudeOf(whole);
  if (!limbs || (*limbs)[2] != 0) return std::nullopt;
  const std::uint64_t magnitude = (static_cast<std::uint64_t>((*limbs)[1]) << 32) | (*limbs)[0];
  const std::uint64_t bound = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
  if (magnitude > bound) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

std::optional<Currency> DecimalDigits::toCurrency() const {
  DecimalDigits scaled = roundedTo(-4);
  scaled.exponent += 4;
  const auto integer = scaled.toInteger();
  return integer ? std::optional(Currency{*integer}) : std::nullopt;
}

std::optional<Decimal> DecimalDigits::toDecimal() const {
  if (digits.empty()) {
    const auto scale = std::clamp<std::int64_t>(-exponent, 0, maxDecimalScale);
    return Decimal{0, 0, static_cast<std::uint8_t>(scale), negative};
  }
  for (std::int64_t scale = std::clamp<std::int64_t>(-exponent, 0, maxDecimalScale); scale >= 0; --scale) {
    DecimalDigits scaled = roundedTo(-scale);
    scaled.exponent += scale;
    if (const auto limbs = magnitudeOf(scaled)) {
      return Decimal{(*limbs)[2], (static_cast<std::uint64_t>((*limbs)[1]) << 32) | (*limbs)[0],
                     static_cast<std::uint8_t>(scale), negative};
    }
  }
  return std::nullopt;
}

std::optional<double> DecimalDigits::toDouble() const {
  if (digits.empty()) return 0.0;
  const std::string text = (negative ? "-" : "") + digits + "e" + std::to_string(exponent);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Too small is zero, too large does not fit.
    if (static_cast<std::int64_t>(digits.size()) + exponent < 0) return 0.0;
    return std::nullopt;
  }
  return value;
}

std::string DecimalDigits::plainText(int decimals) const {
  std::string whole = digits;
  std::string fraction;
  if (exponent >= 0) {
    if (!whole.empty()) whole.append(static_cast<std::size_t>(exponent), '0');
  } else {
    const auto places = static_cast<std::size_t>(-exponent);
    if (whole.size() < places) whole.insert(0, places - whole.size(), '0');
    fraction = whole.substr(whole.size() - places);
    whole.resize(whole.size() - places);
  }
  if (fraction.size() < static_cast<std::size_t>(decimals)) fraction.resize(static_cast<std::size_t>(decimals), '0');
  if (whole.empty()) whole = "0";
  return (negative && !digits.empty() ? "-" : "") + whole + (fraction.empty() ? "" : "." + fraction);
}

std::optional<DecimalDigits> readPlainDecimal(std::string_view text) {
  DecimalDigits number;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    number.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point < text.size() ? text.substr(point + 1) : std::string_view();
  if (whole.empty() || (point < text.size() && fraction.empty())) return std::nullopt;
  if (!std::all_of(whole.begin(), whole.end(), isDigit)) return std::nullopt;
  if (!std::all_of(fraction.begin(), fraction.end(), isDigit)) return std::nullopt;
  number.digits = withoutLeadingZeros(std::string(whole).append(fraction));
  number.exponent = -static_cast<std::int64_t>(fraction.size());
  return number;
}

std::optional<DecimalDigits> readNumberText(std::string_view text) {
  return NumberReader(text).read();
}

std::optional<std::uint64_t> readBasedNumber(std::string_view text) {
  text = withoutBlanks(text);
  if (!text.starts_with('&')) return std::nullopt;
  text.remove_prefix(1);
  int base = 8;
  if (!text.empty() && std::string_view("hHoO").find(text.front()) != std::string_view::npos) {
    base = text.front() == 'h' || text.front() == 'H' ? 16 : 8;
    text.remove_prefix(1);
  }
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace tolvane
