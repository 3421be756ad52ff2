// Exact decimal numbers on the way between texts, fixed-point values and integers, so that no amount of money ever
// passes through binary floating point. Used by the conversions only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane {

/// The value (-1)^negative x digits x 10^exponent. `digits` has no leading zeros; empty digits are zero.
struct DecimalDigits {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;

  [[nodiscard]] static DecimalDigits of(std::int64_t value);
  [[nodiscard]] static DecimalDigits of(std::uint64_t value);
  [[nodiscard]] static DecimalDigits of(Currency value);
  [[nodiscard]] static DecimalDigits of(const Decimal& value);
  /// The shortest number that reads the same with `significant` digits, as the platform turns doubles into decimals.
  /// The value is finite.
  [[nodiscard]] static DecimalDigits of(double value, int significant);

  /// The nearest number without digits below 10^exponent; halves go to the even neighbour.
  [[nodiscard]] DecimalDigits roundedTo(std::int64_t exponent) const;

  // Each answers nothing when the rounded value does not fit.
  [[nodiscard]] std::optional<std::int64_t> toInteger() const;
  [[nodiscard]] std::optional<Currency> toCurrency() const;
  /// Keeps as many decimals as fit, 28 at most.
  [[nodiscard]] std::optional<Decimal> toDecimal() const;
  [[nodiscard]] std::optional<double> toDouble() const;

  /// Plain digits with `decimals` places at least, and as many more as the number has.
  [[nodiscard]] std::string plainText(int decimals = 0) const;
};

/// Reads "[+-]digits[.digits]" and nothing else.
[[nodiscard]] std::optional<DecimalDigits> readPlainDecimal(std::string_view text);

/// Reads a number of the platform's form: blanks around, a sign before or behind, parentheses for negative numbers, the
/// currency sign of the suite's home, separators between digits, an exponent after "e" or "d".
/// "&H" and "&O" numbers are not read here; see readBasedNumber.
[[nodiscard]] std::optional<DecimalDigits> readNumberText(std::string_view text);

/// The bits of "&H1F", "&O17" or "&17" (octal), with blanks around; nothing above 64 bits.
[[nodiscard]] std::optional<std::uint64_t> readBasedNumber(std::string_view text);

}  // namespace tolvane
