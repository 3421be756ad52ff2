#include "tsql/unique_identifier_order.h"

#include <array>

namespace tolvane::tsql {

int compareUniqueIdentifiers(std::string_view left, std::string_view right) {
  // Where the two digits of each byte stand in the text, the most significant byte first.
  static constexpr std::array places{24, 26, 28, 30, 32, 34, 19, 21, 16, 14, 11, 9, 6, 4, 2, 0};
  constexpr std::size_t length = 36;
  if (left.size() != length || right.size() != length) return left.compare(right);
  for (const int place : places) {
    const int order =
        left.substr(static_cast<std::size_t>(place), 2).compare(right.substr(static_cast<std::size_t>(place), 2));
    if (order != 0) return order;
  }
  return 0;
}

}  // namespace tolvane::tsql
