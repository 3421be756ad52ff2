#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tsql/decimal.h"

// Numbers written and read as text by SQL Server's rules.
namespace tolvane::tsql {

// Text with blanks around it to a whole number: sign and digits. No text at all, or a sign alone, is 0.
struct IntegerText {
  enum class Outcome { Read, Syntax, Overflow };  // Overflow: does not fit 64 bits
  Outcome outcome = Outcome::Syntax;
  std::int64_t value = 0;
};
[[nodiscard]] IntegerText parseInteger(std::string_view text);

// Sign, digits, point, exponent after e or d; no text at all is 0. Nothing for what is not a number; infinity for one
// that is too great.
[[nodiscard]] std::optional<double> parseFloat(std::string_view text);

// The signs that may stand before an amount, in a literal and in a text.
[[nodiscard]] std::span<const std::string_view> currencySigns();

// Sign, currency sign, digits with commas before the point; no text at all, or signs alone, is 0. All fraction digits
// are kept. Nothing for what is not an amount.
[[nodiscard]] std::optional<Decimal> parseMoney(std::string_view text);

// ISNUMERIC: whether the text converts to at least one of int, float, money and decimal; no text does not.
[[nodiscard]] bool isNumeric(std::string_view text);

// A float in the words of an error: six decimals.
[[nodiscard]] std::string floatMessageText(double value);

// A float in style 0 (six digits at most), 1 (eight, with exponent), 2 and 126 (sixteen, with exponent) or 3
// (seventeen, with exponent); exponents have three digits. Any other style is 0.
[[nodiscard]] std::string floatText(double value, int style);

// An amount in style 0 (two decimals), 1 (the same with a comma every three digits) or 2 and 126 (four decimals). Any
// other style is 0.
[[nodiscard]] std::string moneyText(const Decimal& value, int style);

}  // namespace tolvane::tsql
