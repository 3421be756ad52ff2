#include "embedded/source_text.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "platform/data_access.h"

namespace tolvane::embedded {
namespace {

bool isNameCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || c == '_' || c == '#' || c == '$' || c == '@' || byte >= 0x80;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string inBrackets(std::string_view name) {
  std::string result = "[";
  for (const char c : name) {
    if (c == ']') result += ']';
    result += c;
  }
  return result + "]";
}

}  // namespace

std::string statementOf(const std::string& source, std::int32_t options, const tsql::Catalogue& catalogue) {
  constexpr std::string_view owner = "dbo.";
  auto name = trimmed(source);
  if (name.size() > owner.size() && tsql::sameName(name.substr(0, owner.size()), owner))
    name.remove_prefix(owner.size());
  const bool inOwnBrackets = name.size() > 2 && name.front() == '[' && name.find(']') == name.size() - 1;
  if (inOwnBrackets) name = name.substr(1, name.size() - 2);
  const bool oneName = !name.empty() && (inOwnBrackets || std::all_of(name.begin(), name.end(), isNameCharacter));
  const bool saidToBe = options == static_cast<std::int32_t>(CommandType::table);
  if (oneName && (saidToBe || catalogue.find(name))) return "SELECT * FROM " + inBrackets(name);
  return saidToBe ? "SELECT * FROM " + source : source;
}

}  // namespace tolvane::embedded
