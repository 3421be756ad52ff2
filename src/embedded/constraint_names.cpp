#include "embedded/constraint_names.h"

#include <algorithm>
#include <cctype>

namespace tolvane::embedded {
namespace {

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '#' || c == '$' || (c & 0x80) != 0;
}

// Words and quoted names of the text, and its other characters one by one. Texts in apostrophes and comments are left
// out.
std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> result;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (text.substr(i, 2) == "/*") {
      const auto end = text.find("*/", i + 2);
      i = end == std::string_view::npos ? text.size() : end + 2;
    } else if (c == '\'' || c == '"' || c == '[' || c == '`') {
      const char close = c == '[' ? ']' : c;
      const auto end = std::min(text.find(close, i + 1), text.size());
      if (c != '\'') result.emplace_back(text.substr(i + 1, end - i - 1));
      i = end + 1;
    } else if (isWordCharacter(c)) {
      const auto* end = std::find_if_not(text.begin() + i, text.end(), isWordCharacter);
      const auto size = static_cast<std::size_t>(end - (text.begin() + i));
      result.emplace_back(text.substr(i, size));
      i += size;
    } else {
      if (c != ' ' && c != '\n' && c != '\r' && c != '\t') result.emplace_back(1, c);
      ++i;
    }
  }
  return result;
}

bool is(const std::string& word, std::string_view keyword) {
  return std::equal(word.begin(), word.end(), keyword.begin(), keyword.end(),
                    [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; });
}

// What stands between the bracket at `at` and its partner.
std::vector<std::string> inBrackets(const std::vector<std::string>& all, std::size_t at) {
  std::vector<std::string> inside;
  int depth = 0;
  for (std::size_t i = at; i < all.size(); ++i) {
    if (all[i] == "(") ++depth;
    if (all[i] == ")" && --depth == 0) break;
    if (depth > 0) inside.push_back(all[i]);
  }
  return inside;
}

}  // namespace

ConstraintNames constraintNames(std::string_view createTable) {
  ConstraintNames names;
  const auto all = words(createTable);
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    const bool named = i >= 2 && is(all[i - 2], "CONSTRAINT");
    const auto name = named ? all[i - 1] : std::string();
    if (is(all[i], "PRIMARY") && is(all[i + 1], "KEY")) {
      names.primaryKey = name;
    } else if (is(all[i], "UNIQUE")) {
      names.uniques.push_back(name);
    } else if (is(all[i], "FOREIGN") && is(all[i + 1], "KEY")) {
      names.foreignKeys.push_back(name);
    } else if (is(all[i], "CHECK") && all[i + 1] == "(") {
      names.checks.push_back({name, inBrackets(all, i + 1)});
    }
  }
  return names;
}

}  // namespace tolvane::embedded
