#pragma once

#include <string>

namespace tolvane::tsql {

// A finite binary number as SQL Server sees it before it writes or converts it: seventeen significant digits. What is
// rounded further is rounded from these digits, halves away from zero.
struct FloatDigits {
  bool negative = false;
  std::string digits;  // the first one is not 0, unless the number is
  int exponent = 0;    // of ten, for the first digit

  [[nodiscard]] static FloatDigits of(double value);

  // Fewer digits, at least one.
  [[nodiscard]] FloatDigits rounded(int count) const;
  // Without an exponent, as many digits after the point as there are.
  [[nodiscard]] std::string plain() const;
};

}  // namespace tolvane::tsql
