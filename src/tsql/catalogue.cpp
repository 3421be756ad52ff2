#include "tsql/catalogue.h"

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

int Table::find(std::string_view columnName) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sameName(columns[i].name, columnName)) return static_cast<int>(i);
  }
  return -1;
}

int Table::identityColumn() const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].identity) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace tolvane::tsql
