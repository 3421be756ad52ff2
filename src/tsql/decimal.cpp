#include "tsql/decimal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "tsql/float_digits.h"

namespace tolvane::tsql {
namespace {

constexpr int largestPower = 76;

std::array<WideNumber, largestPower + 1> powersOfTen() {
  std::array<WideNumber, largestPower + 1> powers;
  powers[0] = WideNumber(1);
  for (std::size_t i = 1; i < powers.size(); ++i) {
    powers[i] = powers[i - 1];
    (void)powers[i].multiplyAdd(10, 0);  // 10^76 is below 2^256
  }
  return powers;
}

std::optional<Decimal> withinPrecision(const std::optional<Decimal>& number) {
  if (!number || !number->fits(Decimal::maxPrecision)) return std::nullopt;
  return number;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

const WideNumber& WideNumber::powerOfTen(int exponent) {
  static const auto powers = powersOfTen();
  return powers.at(static_cast<std::size_t>(exponent));
}

bool WideNumber::isZero() const {
  return std::all_of(limbs_.begin(), limbs_.end(), [](std::uint32_t limb) { return limb == 0; });
}

std::size_t WideNumber::used() const {
  std::size_t count = limbs;
  while (count > 0 && limbs_[count - 1] == 0) --count;
  return count;
}

std::strong_ordering WideNumber::operator<=>(const WideNumber& other) const {
  for (std::size_t i = limbs; i-- > 0;) {
    if (limbs_[i] != other.limbs_[i]) return limbs_[i] <=> other.limbs_[i];
  }
  return std::strong_ordering::equal;
}

bool WideNumber::add(const WideNumber& other) {
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < limbs; ++i) {
    carry += std::uint64_t{limbs_[i]} + other.limbs_[i];
    limbs_[i] = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
  return carry == 0;
}

void WideNumber::subtract(const WideNumber& other) {
  std::uint64_t borrow = 0;
  for (std::size_t i = 0; i < limbs; ++i) {
    const std::uint64_t difference = std::uint64_t{limbs_[i]} - other.limbs_[i] - borrow;
    limbs_[i] = static_cast<std::uint32_t>(difference);
    borrow = (difference >> 32) & 1U;
  }
}

bool WideNumber::multiply(const WideNumber& other) {
  const std::size_t leftUsed = used();
  const std::size_t rightUsed = other.used();
  std::array<std::uint32_t, 2 * limbs> product{};
  for (std::size_t i = 0; i < leftUsed; ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < rightUsed; ++j) {
      carry += std::uint64_t{limbs_[i]} * other.limbs_[j] + product[i + j];
      product[i + j] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    product[i + rightUsed] = static_cast<std::uint32_t>(carry);
  }
  std::copy_n(product.begin(), limbs, limbs_.begin());
  return std::all_of(product.begin() + limbs, product.end(), [](std::uint32_t limb) { return limb == 0; });
}

bool WideNumber::multiplyAdd(std::uint32_t factor, std::uint32_t addend) {
  std::uint64_t carry = addend;
  for (auto& limb : limbs_) {
    carry += std::uint64_t{limb} * factor;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
  return carry == 0;
}

std::uint32_t WideNumber::divide(std::uint32_t divisor) {
  std::uint64_t remainder = 0;
  for (std::size_t i = used(); i-- > 0;) {
    remainder = (remainder << 32) | limbs_[i];
    limbs_[i] = static_cast<std::uint32_t>(remainder / divisor);
    remainder %= divisor;
  }
  return static_cast<std::uint32_t>(remainder);
}

// Long division with digits of 32 bits (Knuth, The Art of Computer Programming, volume 2, 4.3.1, algorithm D).
WideNumber WideNumber::divide(const WideNumber& divisor) {
  const std::size_t divisorLength = divisor.used();
  if (divisorLength == 1) return WideNumber(divide(divisor.limbs_[0]));
  if (*this < divisor) {
    WideNumber remainder = *this;
    *this = WideNumber();
    return remainder;
  }
  const std::size_t length = used();
  const int shift = std::countl_zero(divisor.limbs_[divisorLength - 1]);
  const auto shiftedLimb = [shift](std::uint32_t high, std::uint32_t low) {
    return shift == 0 ? high : (high << shift) | (low >> (32 - shift));
  };
  std::array<std::uint32_t, limbs + 1> rest{};
  std::array<std::uint32_t, limbs> by{};
  for (std::size_t i = 0; i <= length; ++i) {
    rest[i] = shiftedLimb(i < length ? limbs_[i] : 0, i > 0 ? limbs_[i - 1] : 0);
  }
  for (std::size_t i = 0; i < divisorLength; ++i) {
    by[i] = shiftedLimb(divisor.limbs_[i], i > 0 ? divisor.limbs_[i - 1] : 0);
  }

  WideNumber quotient;
  constexpr std::uint64_t base = std::uint64_t{1} << 32;
  for (std::size_t j = length - divisorLength + 1; j-- > 0;) {
    const std::uint64_t top = (std::uint64_t{rest[j + divisorLength]} << 32) | rest[j + divisorLength - 1];
    std::uint64_t digit = top / by[divisorLength - 1];
    std::uint64_t left = top % by[divisorLength - 1];
    while (digit >= base || digit * by[divisorLength - 2] > ((left << 32) | rest[j + divisorLength - 2])) {
      --digit;
      left += by[divisorLength - 1];
      if (left >= base) break;
    }
    std::int64_t borrow = 0;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < divisorLength; ++i) {
      carry += digit * by[i];
      const std::int64_t difference =
          std::int64_t{rest[i + j]} - static_cast<std::int64_t>(carry & 0xFFFFFFFFU) + borrow;
      rest[i + j] = static_cast<std::uint32_t>(difference);
      borrow = difference >> 32;
      carry >>= 32;
    }
    const std::int64_t difference = std::int64_t{rest[j + divisorLength]} - static_cast<std::int64_t>(carry) + borrow;
    rest[j + divisorLength] = static_cast<std::uint32_t>(difference);
    if (difference < 0) {  // the estimate was one too many
      --digit;
      std::uint64_t back = 0;
      for (std::size_t i = 0; i < divisorLength; ++i) {
        back += std::uint64_t{rest[i + j]} + by[i];
        rest[i + j] = static_cast<std::uint32_t>(back);
        back >>= 32;
      }
      rest[j + divisorLength] += static_cast<std::uint32_t>(back);
    }
    quotient.limbs_[j] = static_cast<std::uint32_t>(digit);
  }

  WideNumber remainder;
  for (std::size_t i = 0; i < divisorLength; ++i) {
    remainder.limbs_[i] = shift == 0 ? rest[i] : (rest[i] >> shift) | (rest[i + 1] << (32 - shift));
  }
  *this = quotient;
  return remainder;
}

std::optional<std::uint64_t> WideNumber::toUnsigned() const {
  if (used() > 2) return std::nullopt;
  return (std::uint64_t{limbs_[1]} << 32) | limbs_[0];
}

std::vector<std::uint32_t> WideNumber::groups() const {
  return {limbs_.begin(), limbs_.begin() + static_cast<std::ptrdiff_t>(std::max<std::size_t>(used(), 1))};
}

Decimal::Decimal(std::int64_t value)
    : negative_(value < 0),
      magnitude_(value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value)) {
}

Decimal::Decimal(bool negative, const WideNumber& magnitude, int scale)
    : negative_(negative && !magnitude.isZero()), magnitude_(magnitude), scale_(scale) {}

std::optional<Decimal> Decimal::parse(std::string_view text) {
  text = trimmed(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    negative = text[0] == '-';
    text = trimmed(text.substr(1));
  }
  WideNumber magnitude;
  int scale = 0;
  bool point = false;
  bool anyDigit = false;
  for (const char c : text) {
    if (c == '.' && !point) {
      point = true;
    } else if (isDigit(c)) {
      anyDigit = true;
      if (point && scale == maxPrecision) continue;
      // 38 digits before the point and 38 after it stay below 2^256, so it is enough to bound the first 38.
      if (!magnitude.multiplyAdd(10, static_cast<std::uint32_t>(c - '0'))) return std::nullopt;
      if (!point && magnitude >= WideNumber::powerOfTen(maxPrecision)) return std::nullopt;
      if (point) ++scale;
    } else {
      return std::nullopt;
    }
  }
  if (!anyDigit) return std::nullopt;
  return Decimal(negative, magnitude, scale);
}

std::optional<Decimal> Decimal::fromDouble(double value, int scale) {
  if (!std::isfinite(value) || std::abs(value) >= 1e38) return std::nullopt;
  const FloatDigits digits = FloatDigits::of(value);
  // What lies wholly behind the scale, with a digit to decide at the half, is zero.
  if (digits.exponent < -scale - 1) return Decimal(false, WideNumber(), scale);
  const int kept = std::min(static_cast<int>(digits.digits.size()), digits.exponent + 1 + scale);
  const auto number = parse((kept > 0 ? digits.rounded(kept) : digits).plain());
  return number ? withinPrecision(number->rescaled(scale)) : std::nullopt;
}

int Decimal::digits() const {
  int count = 0;
  while (count <= largestPower && magnitude_ >= WideNumber::powerOfTen(count)) ++count;
  return count;
}

bool Decimal::fits(int precision) const {
  return magnitude_ < WideNumber::powerOfTen(precision);
}

std::optional<Decimal> Decimal::rescaled(int scale, Rounding rounding) const {
  Decimal number = *this;
  number.scale_ = scale;
  if (scale > scale_) {
    if (scale - scale_ > largestPower) return std::nullopt;
    if (!number.magnitude_.multiply(WideNumber::powerOfTen(scale - scale_))) return std::nullopt;
  } else if (scale < scale_) {
    if (scale_ - scale > largestPower) return Decimal(false, WideNumber(), scale);
    const WideNumber& divisor = WideNumber::powerOfTen(scale_ - scale);
    WideNumber rest = number.magnitude_.divide(divisor);
    WideNumber missing = divisor;
    missing.subtract(rest);
    if (rounding == Rounding::HalfAway && rest >= missing && !number.magnitude_.add(WideNumber(1))) return std::nullopt;
  }
  if (number.magnitude_.isZero()) number.negative_ = false;
  return number;
}

Decimal Decimal::negated() const {
  return Decimal(!negative_, magnitude_, scale_);
}

std::string Decimal::toText() const {
  std::string reversed;
  for (WideNumber rest = magnitude_; !rest.isZero();) {
    std::uint32_t group = rest.divide(1'000'000'000U);
    for (int i = 0; i < 9; ++i, group /= 10) reversed += static_cast<char>('0' + group % 10);
  }
  while (!reversed.empty() && reversed.back() == '0') reversed.pop_back();
  if (reversed.size() < static_cast<std::size_t>(scale_) + 1)
    reversed.resize(static_cast<std::size_t>(scale_) + 1, '0');
  std::string text(reversed.rbegin(), reversed.rend());
  if (scale_ > 0) text.insert(text.size() - static_cast<std::size_t>(scale_), 1, '.');
  if (negative_) text.insert(0, 1, '-');
  return text;
}

std::vector<std::byte> Decimal::magnitudeBytes() const {
  std::vector<std::byte> bytes;
  for (std::uint32_t group : magnitude_.groups()) {
    for (int i = 0; i < 4; ++i, group >>= 8) bytes.push_back(static_cast<std::byte>(group & 0xFF));
  }
  return bytes;
}

double Decimal::toDouble() const {
  const std::string text = toText();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::optional<std::int64_t> Decimal::toInteger(Rounding rounding) const {
  const auto whole = rescaled(0, rounding);
  const auto magnitude = whole ? whole->magnitude_.toUnsigned() : std::nullopt;
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (!magnitude || *magnitude > largest + (whole->negative_ ? 1 : 0)) return std::nullopt;
  return static_cast<std::int64_t>(whole->negative_ ? std::uint64_t{0} - *magnitude : *magnitude);
}

std::strong_ordering Decimal::compare(const Decimal& other) const {
  if (negative_ != other.negative_) return negative_ ? std::strong_ordering::less : std::strong_ordering::greater;
  const int scale = std::max(scale_, other.scale_);
  const auto left = rescaled(scale);
  const auto right = other.rescaled(scale);
  // A number that is too wide at the other's scale is greater in size than any that fits.
  auto order = !left    ? std::strong_ordering::greater
               : !right ? std::strong_ordering::less
                        : left->magnitude_ <=> right->magnitude_;
  return negative_ ? 0 <=> order : order;
}

std::optional<Decimal> Decimal::sum(const Decimal& left, const Decimal& right, int scale) {
  const int common = std::max(left.scale_, right.scale_);
  auto first = left.rescaled(common);
  auto second = right.rescaled(common);
  if (!first || !second) return std::nullopt;
  if (first->negative_ == second->negative_) {
    if (!first->magnitude_.add(second->magnitude_)) return std::nullopt;
  } else {
    if (first->magnitude_ < second->magnitude_) std::swap(first, second);
    first->magnitude_.subtract(second->magnitude_);
    if (first->magnitude_.isZero()) first->negative_ = false;
  }
  return withinPrecision(first->rescaled(scale));
}

std::optional<Decimal> Decimal::product(const Decimal& left, const Decimal& right, int scale) {
  WideNumber magnitude = left.magnitude_;
  if (!magnitude.multiply(right.magnitude_)) return std::nullopt;
  return withinPrecision(
      Decimal(left.negative_ != right.negative_, magnitude, left.scale_ + right.scale_).rescaled(scale));
}

std::optional<Decimal> Decimal::quotient(const Decimal& left, const Decimal& right, int scale) {
  const int shift = scale + right.scale_ - left.scale_;
  WideNumber dividend = left.magnitude_;
  WideNumber divisor = right.magnitude_;
  if (shift > largestPower) return std::nullopt;
  // A dividend too wide for 256 bits over a divisor of at most 38 digits has a quotient of more than 38.
  if (shift > 0 && !dividend.multiply(WideNumber::powerOfTen(shift))) return std::nullopt;
  if (shift < 0 && !divisor.multiply(WideNumber::powerOfTen(-shift))) return Decimal(false, WideNumber(), scale);
  dividend.divide(divisor);
  return withinPrecision(Decimal(left.negative_ != right.negative_, dividend, scale));
}

std::optional<Decimal> Decimal::remainder(const Decimal& left, const Decimal& right, int scale) {
  const int common = std::max(left.scale_, right.scale_);
  auto dividend = left.rescaled(common);
  const auto divisor = right.rescaled(common);
  if (!dividend || !divisor) return std::nullopt;
  const WideNumber rest = dividend->magnitude_.divide(divisor->magnitude_);
  return withinPrecision(Decimal(left.negative_, rest, common).rescaled(scale, Rounding::Cut));
}

}  // namespace tolvane::tsql
