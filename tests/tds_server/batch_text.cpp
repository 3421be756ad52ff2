#include "tds_server/batch_text.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tolvane::tds {
namespace {

bool isWordPart(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '@' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

// Behind the quoted part or comment that begins at `at`; `at` itself when none does.
std::size_t behindQuoted(std::string_view text, std::size_t at) {
  const auto rest = text.substr(at);
  const auto end = [&](std::string_view close, std::size_t from) {
    const auto found = text.find(close, from);
    return found == std::string_view::npos ? text.size() : found + close.size();
  };
  if (rest.starts_with('\'')) return end("'", at + 1);
  if (rest.starts_with('"')) return end("\"", at + 1);
  if (rest.starts_with('[')) return end("]", at + 1);
  if (rest.starts_with("--")) return end("\n", at);
  if (rest.starts_with("/*")) return end("*/", at + 2);
  return at;
}

// Calls `see(start, end)` for each word and each other character that is not quoted.
template <typename See>
void walk(std::string_view text, See&& see) {
  for (std::size_t at = 0; at < text.size();) {
    const auto behind = behindQuoted(text, at);
    if (behind > at) {
      at = behind;
      continue;
    }
    auto end = at + 1;
    if (isWordPart(text[at])) {
      while (end < text.size() && isWordPart(text[end])) ++end;
    }
    see(at, end);
    at = end;
  }
}

bool staysWhole(std::string_view text) {
  static constexpr std::array<std::string_view, 5> words{"begin", "if", "while", "declare", "goto"};
  bool whole = false;
  walk(text, [&](std::size_t start, std::size_t end) {
    const auto word = lowered(text.substr(start, end - start));
    whole = whole || std::find(words.begin(), words.end(), word) != words.end();
  });
  return whole;
}

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool isNumbered(std::string_view word) {
  return word.size() > 2 && (word.starts_with("@P") || word.starts_with("@p")) &&
         std::all_of(word.begin() + 2, word.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::vector<std::string> statementsOf(std::string_view text) {
  if (staysWhole(text)) return {std::string(text)};
  std::vector<std::string> statements;
  std::size_t from = 0;
  const auto add = [&](std::size_t end) {
    if (!isBlank(text.substr(from, end - from))) statements.emplace_back(text.substr(from, end - from));
    from = end + 1;
  };
  walk(text, [&](std::size_t start, std::size_t) {
    if (text[start] == ';') add(start);
  });
  add(text.size());
  if (statements.empty()) statements.emplace_back(text);
  return statements;
}

std::string withMarks(std::string_view text) {
  std::string result;
  std::size_t copied = 0;
  walk(text, [&](std::size_t start, std::size_t end) {
    if (!isNumbered(text.substr(start, end - start))) return;
    result += text.substr(copied, start - copied);
    result += '?';
    copied = end;
  });
  return result + std::string(text.substr(copied));
}

std::size_t markCount(std::string_view text) {
  std::size_t marks = 0;
  walk(text, [&](std::size_t start, std::size_t) { marks += text[start] == '?' ? 1 : 0; });
  return marks;
}

std::vector<std::string> firstWords(std::string_view text, std::size_t count) {
  std::vector<std::string> words;
  walk(text, [&](std::size_t start, std::size_t end) {
    if (words.size() < count && isWordPart(text[start])) words.push_back(lowered(text.substr(start, end - start)));
  });
  return words;
}

std::string databaseIn(std::string_view text) {
  constexpr std::string_view word = "database";
  const auto found = lowered(text).find(word);
  if (found == std::string::npos) return {};
  auto rest = text.substr(found + word.size());
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
  if (rest.starts_with('[')) return std::string(rest.substr(1, rest.find(']') - 1));
  return std::string(rest.substr(0, rest.find_first_of(" \t\r\n")));
}

}  // namespace tolvane::tds
