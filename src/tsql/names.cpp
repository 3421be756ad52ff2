#include "tsql/names.h"

#include <algorithm>

namespace tolvane::tsql {
namespace {
char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
}  // namespace

bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (lowered(a[i]) != lowered(b[i])) return false;
  }
  return true;
}

std::string lowered(std::string_view name) {
  std::string result(name);
  std::ranges::transform(result, result.begin(), [](char c) { return lowered(c); });
  return result;
}

}  // namespace tolvane::tsql
