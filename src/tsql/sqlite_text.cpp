#include "tsql/sqlite_text.h"

#include "tsql/sql_error.h"

namespace tolvane::tsql {

std::string quoted(std::string_view name) {
  std::string result = "\"";
  for (const char c : name) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

// SQLite's texts of statements end at the character 0, and those of definitions are texts for good.
std::string quotedText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw SqlError(notSupportedNumber, 16, "The character 0 in a text of a definition is not supported.");
  }
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') result += '\'';
    result += c;
  }
  return result + '\'';
}

}  // namespace tolvane::tsql
