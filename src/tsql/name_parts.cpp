#include "tsql/name_parts.h"

namespace tolvane::tsql {

std::optional<std::vector<std::string>> nameParts(std::string_view name) {
  std::vector<std::string> parts(1);
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '.') {
      parts.emplace_back();
    } else if ((name[i] == '[' || name[i] == '"') && parts.back().empty()) {
      const char end = name[i] == '[' ? ']' : '"';
      for (++i;; ++i) {
        if (i >= name.size()) return std::nullopt;
        if (name[i] == end && (i + 1 >= name.size() || name[i + 1] != end)) break;
        if (name[i] == end) ++i;
        parts.back() += name[i];
      }
      if (i + 1 < name.size() && name[i + 1] != '.') return std::nullopt;
    } else {
      parts.back() += name[i];
    }
  }
  return parts;
}

}  // namespace tolvane::tsql
