#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tsql {

// A non-negative whole number of up to 256 bits: wide enough for the product of two numbers of 38 digits.
class WideNumber {
 public:
  static constexpr std::size_t limbs = 8;

  WideNumber() = default;
  explicit WideNumber(std::uint64_t value) {
    limbs_[0] = static_cast<std::uint32_t>(value);
    limbs_[1] = static_cast<std::uint32_t>(value >> 32);
  }

  // 10 to the power of exponent, 0 .. 76.
  [[nodiscard]] static const WideNumber& powerOfTen(int exponent);

  [[nodiscard]] bool isZero() const;
  [[nodiscard]] bool isOdd() const { return (limbs_[0] & 1U) != 0; }
  [[nodiscard]] std::strong_ordering operator<=>(const WideNumber& other) const;
  bool operator==(const WideNumber&) const = default;

  // Each says whether the result fits; when it does not, this number is of no use any more.
  [[nodiscard]] bool add(const WideNumber& other);
  [[nodiscard]] bool multiply(const WideNumber& other);
  [[nodiscard]] bool multiplyAdd(std::uint32_t factor, std::uint32_t addend);
  // other must not be greater than this number.
  void subtract(const WideNumber& other);
  // Leaves the quotient here and gives the remainder; the divisor must not be 0.
  WideNumber divide(const WideNumber& divisor);
  std::uint32_t divide(std::uint32_t divisor);

  // Nothing when the number does not fit.
  [[nodiscard]] std::optional<std::uint64_t> toUnsigned() const;
  // Groups of 32 bits, the least significant one first, as many as are needed.
  [[nodiscard]] std::vector<std::uint32_t> groups() const;

 private:
  [[nodiscard]] std::size_t used() const;

  std::array<std::uint32_t, limbs> limbs_{};  // the least significant one first
};

enum class Rounding {
  HalfAway,  // 0.5 and more goes away from zero
  Cut        // towards zero
};

// An exact decimal number: sign, magnitude, and the number of digits after the point. Zero is never negative.
// All operations are exact, or say that their result has more than 38 digits.
class Decimal {
 public:
  static constexpr int maxPrecision = 38;

  Decimal() = default;
  explicit Decimal(std::int64_t value);
  Decimal(bool negative, const WideNumber& magnitude, int scale);

  // Sign, digits, point, digits; blanks around it and after the sign; at least one digit. Nothing for anything else and
  // for more than 38 digits before the point. Digits after the 38th of the fraction are cut.
  [[nodiscard]] static std::optional<Decimal> parse(std::string_view text);
  // Its seventeen significant digits, rounded to scale. Nothing when it is not a number of at most 38 digits.
  [[nodiscard]] static std::optional<Decimal> fromDouble(double value, int scale);

  [[nodiscard]] bool isNegative() const { return negative_; }
  [[nodiscard]] bool isZero() const { return magnitude_.isZero(); }
  [[nodiscard]] int scale() const { return scale_; }
  // Digits without leading zeros, those of the fraction included; 0 for zero.
  [[nodiscard]] int digits() const;

  // The same number with another count of fraction digits. Nothing when it does not fit the width of intermediate
  // results; callers check fits() for the width of the type.
  [[nodiscard]] std::optional<Decimal> rescaled(int scale, Rounding rounding = Rounding::HalfAway) const;
  [[nodiscard]] bool fits(int precision) const;
  [[nodiscard]] Decimal negated() const;

  // Exactly scale() digits after the point, no point for scale 0, '-' before negative numbers.
  [[nodiscard]] std::string toText() const;
  // Without sign and point, the least significant byte first, in whole groups of four bytes, at least one.
  [[nodiscard]] std::vector<std::byte> magnitudeBytes() const;
  [[nodiscard]] double toDouble() const;
  // Nothing when the rounded or cut number does not fit.
  [[nodiscard]] std::optional<std::int64_t> toInteger(Rounding rounding) const;

  [[nodiscard]] std::strong_ordering compare(const Decimal& other) const;

  // Results at the given scale: rounded for sum, difference and product, cut for quotient and remainder, as SQL Server
  // does when it must drop digits. Nothing when there are more than 38 digits. Divisors must not be zero.
  [[nodiscard]] static std::optional<Decimal> sum(const Decimal& left, const Decimal& right, int scale);
  [[nodiscard]] static std::optional<Decimal> product(const Decimal& left, const Decimal& right, int scale);
  [[nodiscard]] static std::optional<Decimal> quotient(const Decimal& left, const Decimal& right, int scale);
  // Takes the sign of the dividend.
  [[nodiscard]] static std::optional<Decimal> remainder(const Decimal& left, const Decimal& right, int scale);

 private:
  bool negative_ = false;
  WideNumber magnitude_;
  int scale_ = 0;
};

}  // namespace tolvane::tsql
