#include "tsql/catalogue.h"

#include <charconv>

namespace tolvane::tsql {
namespace {
char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr std::string_view identityCall = "ts_identity(";

// The number behind the last comma, which is cut off with it.
std::int64_t takeLastNumber(std::string_view& text) {
  const auto comma = text.rfind(',');
  std::int64_t number = 0;
  if (comma == std::string_view::npos) return number;
  std::from_chars(text.data() + comma + 1, text.data() + text.size(), number);
  text = text.substr(0, comma);
  return number;
}
}  // namespace

bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (lowered(a[i]) != lowered(b[i])) return false;
  }
  return true;
}

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

void Table::nameIndex(Index& index, std::string_view stored) const {
  index.stored = stored;
  index.name = stored;
  for (const std::string_view end : {primaryIndexEnd, uniqueIndexEnd}) {
    if (!index.name.ends_with(end)) continue;
    index.name.resize(index.name.size() - end.size());
    index.constraint = true;
    index.primary = end == primaryIndexEnd;
    return;
  }
  // An index whose name was taken in the database stands under its table's name.
  if (const std::string prefix = name + "."; index.name.starts_with(prefix)) index.name.erase(0, prefix.size());
}

std::string identityDefault(std::string_view table, const Type& type, std::int64_t seed, std::int64_t increment) {
  std::string text(identityCall);
  text += '\'';
  for (const char c : table) text += c == '\'' ? std::string("''") : std::string(1, c);
  return text + "'," + std::to_string(type.pack()) + "," + std::to_string(seed) + "," + std::to_string(increment) + ")";
}

void readIdentity(Column& column) {
  std::string_view text = column.defaultText;
  if (!text.starts_with(identityCall) || !text.ends_with(')')) return;
  text.remove_suffix(1);
  column.increment = takeLastNumber(text);
  column.seed = takeLastNumber(text);
  column.identity = column.made = true;
  column.defaultText.clear();
}

}  // namespace tolvane::tsql
