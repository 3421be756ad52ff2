#include "rowset/decimal_order.h"

#include <algorithm>

namespace tolvane::rowset {
namespace {

struct Parts {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;  // without zeros at the end
};

Parts split(std::string_view text) {
  Parts parts;
  if (!text.empty() && text.front() == '-') {
    parts.negative = true;
    text.remove_prefix(1);
  }
  const auto point = text.find('.');
  parts.whole = text.substr(0, point);
  if (point != std::string_view::npos) parts.fraction = text.substr(point + 1);
  while (!parts.whole.empty() && parts.whole.front() == '0') parts.whole.remove_prefix(1);
  while (!parts.fraction.empty() && parts.fraction.back() == '0') parts.fraction.remove_suffix(1);
  if (parts.whole.empty() && parts.fraction.empty()) parts.negative = false;
  return parts;
}

int sign(int order) {
  return (order > 0) - (order < 0);
}

}  // namespace

int compareDecimalTexts(std::string_view left, std::string_view right) {
  const auto a = split(left);
  const auto b = split(right);
  if (a.negative != b.negative) return a.negative ? -1 : 1;
  int order = 0;
  if (a.whole.size() != b.whole.size()) {
    order = a.whole.size() < b.whole.size() ? -1 : 1;
  } else {
    order = sign(a.whole.compare(b.whole));
    if (order == 0) order = sign(a.fraction.compare(b.fraction));
  }
  return a.negative ? -order : order;
}

}  // namespace tolvane::rowset
