#include "tsql/float_digits.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tolvane::tsql {
namespace {

constexpr int significant = 17;

}  // namespace

FloatDigits FloatDigits::of(double value) {
  std::array<char, 32> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                     std::chars_format::scientific, significant - 1);
  FloatDigits result;
  result.negative = value < 0;
  const char* at = buffer.data();
  for (; *at != 'e'; ++at) {
    if (*at != '.') result.digits += *at;
  }
  const bool small = *++at == '-';
  std::from_chars(at + 1, written.ptr, result.exponent);
  if (small) result.exponent = -result.exponent;
  return result;
}

FloatDigits FloatDigits::rounded(int count) const {
  FloatDigits result = *this;
  const auto kept = static_cast<std::size_t>(count);
  if (kept >= digits.size()) return result;
  result.digits.resize(kept);
  if (digits[kept] < '5') return result;
  auto last = result.digits.rbegin();
  while (last != result.digits.rend() && *last == '9') *last++ = '0';
  if (last != result.digits.rend()) {
    ++*last;
  } else {
    result.digits.insert(result.digits.begin(), '1');
    result.digits.pop_back();
    ++result.exponent;
  }
  return result;
}

std::string FloatDigits::plain() const {
  std::string text = negative ? "-" : "";
  if (exponent < 0) return text + "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (whole >= digits.size()) return text + digits + std::string(whole - digits.size(), '0');
  return text + digits.substr(0, whole) + "." + digits.substr(whole);
}

}  // namespace tolvane::tsql
