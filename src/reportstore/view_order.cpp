#include "reportstore/view_order.h"

#include <array>

namespace tolvane {
namespace {

struct SortKey {
  std::string_view word;
  std::string_view column;
};

constexpr std::array sortKeys{
    SortKey{"年度", " FYear "},    SortKey{"期间", " FPeriod "},      SortKey{"报表来源", " FSysName "},
    SortKey{"创建人", " FOwner "}, SortKey{"报表类型", " FRptType "},
};

std::string_view columnFor(std::string_view word) {
  for (const SortKey& key : sortKeys) {
    if (key.word == word) return key.column;
  }
  return {};
}

}  // namespace

std::string viewToOrder(std::string_view viewText) {
  std::string order = " Order by ";
  for (std::size_t start = 0;;) {
    const std::size_t end = viewText.find('!', start);
    order += columnFor(viewText.substr(start, end - start));
    if (end == std::string_view::npos) return order;
    order += ", ";
    start = end + 1;
  }
}

}  // namespace tolvane
