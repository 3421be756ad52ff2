#include "tsql/catalogue.h"

#include <charconv>

namespace tolvane::tsql {
namespace {
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
