#include "odbc/source_text.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/names.h"

namespace tolvane::odbc {
namespace {

struct Token {
  enum class Kind { name, quotedName, text, number, mark };
  Kind kind = Kind::mark;
  std::string_view text;  // as written
  std::size_t start = 0;
};

bool isNameStart(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalpha(byte) != 0 || c == '_' || c == '#' || c == '@' || byte >= 0x80;
}

bool isNamePart(char c) {
  return isNameStart(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '$';
}

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  std::vector<Token> tokens() {
    std::vector<Token> all;
    while (skipBlanks()) all.push_back(next());
    return all;
  }

 private:
  bool skipBlanks() {
    for (;;) {
      while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) ++at_;
      if (text_.substr(at_).starts_with("--")) {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else if (text_.substr(at_).starts_with("/*")) {
        const auto end = text_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? text_.size() : end + 2;
      } else {
        return at_ < text_.size();
      }
    }
  }

  Token next() {
    const auto start = at_;
    const char c = text_[at_];
    auto kind = Token::Kind::mark;
    if (c == '\'' || ((c == 'N' || c == 'n') && text_.substr(at_ + 1).starts_with('\''))) {
      at_ += c == '\'' ? 0 : 1;
      skipQuoted('\'');
      kind = Token::Kind::text;
    } else if (c == '[' || c == '"') {
      skipQuoted(c == '[' ? ']' : '"');
      kind = Token::Kind::quotedName;
    } else if (isNameStart(c)) {
      while (at_ < text_.size() && isNamePart(text_[at_])) ++at_;
      kind = Token::Kind::name;
    } else if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
      while (at_ < text_.size() && (isNamePart(text_[at_]) || text_[at_] == '.')) ++at_;
      kind = Token::Kind::number;
    } else {
      ++at_;
    }
    return {kind, text_.substr(start, at_ - start), start};
  }

  // A closing mark that is doubled stands for itself.
  void skipQuoted(char close) {
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] != close) continue;
      if (at_ + 1 < text_.size() && text_[at_ + 1] == close) {
        ++at_;
        continue;
      }
      ++at_;
      return;
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

std::string plainName(std::string_view written) {
  if (written.size() < 2 || (written.front() != '[' && written.front() != '"')) return std::string(written);
  const char close = written.front() == '[' ? ']' : '"';
  std::string name;
  for (std::size_t i = 1; i + 1 < written.size(); ++i) {
    name += written[i];
    if (written[i] == close) ++i;
  }
  return name;
}

bool isWord(const Token& token, std::string_view word) {
  return token.kind == Token::Kind::name && sameName(token.text, word);
}

bool isMark(const Token& token, char mark) {
  return token.kind == Token::Kind::mark && token.text.front() == mark;
}

bool isName(const Token& token) {
  return token.kind == Token::Kind::name || token.kind == Token::Kind::quotedName;
}

// Words behind which a statement is no longer rows of one table.
bool endsOneTable(const Token& token) {
  static constexpr std::array<std::string_view, 14> words{"GROUP",  "HAVING", "UNION",  "EXCEPT", "INTERSECT",
                                                          "INTO",   "JOIN",   "INNER",  "LEFT",   "RIGHT",
                                                          "INSERT", "UPDATE", "DELETE", "COMPUTE"};
  return isMark(token, ';') ||
         std::any_of(words.begin(), words.end(), [&](std::string_view word) { return isWord(token, word); });
}

// SELECT list FROM table [alias] [WHERE ...] [ORDER BY ...], read from its tokens.
class SelectReader {
 public:
  SelectReader(const std::string& text, Source& source)
      : text_(text), tokens_(Lexer(text_).tokens()), source_(source) {}

  void read() {
    if (tokens_.empty() || !isWord(tokens_[0], "SELECT")) return;
    at_ = 1;
    if (at_ < tokens_.size() && isWord(tokens_[at_], "DISTINCT")) return;
    skipTop();
    std::vector<std::string> columns;
    bool all = false;
    const auto listAt = at_;
    if (!readList(columns, all)) return;
    const auto listEnd = tokens_[at_ - 1].start;
    const auto table = readName();
    if (table.empty()) return;
    skipAlias();
    const auto headEnd = at_ < tokens_.size() ? tokens_[at_].start : text_.size();
    bool where = false;
    if (!readRest(where)) return;
    source_.table = table;
    source_.head = text_.substr(0, headEnd);
    source_.listStart = tokens_[listAt].start;
    source_.listEnd = listEnd;
    source_.hasWhere = where;
    source_.allColumns = all;
    source_.columns = std::move(columns);
  }

 private:
  [[nodiscard]] bool more() const { return at_ < tokens_.size(); }

  void skipTop() {
    if (!more() || !isWord(tokens_[at_], "TOP")) return;
    ++at_;
    while (more() &&
           (tokens_[at_].kind == Token::Kind::number || isMark(tokens_[at_], '(') || isMark(tokens_[at_], ')')))
      ++at_;
  }

  // Up to FROM; false when there is none or a star stands among other columns.
  bool readList(std::vector<std::string>& columns, bool& all) {
    std::size_t first = at_;
    int depth = 0;
    for (; more(); ++at_) {
      const auto& token = tokens_[at_];
      if (isMark(token, '(')) ++depth;
      if (isMark(token, ')')) --depth;
      const bool ends = depth == 0 && isWord(token, "FROM");
      if (!ends && !(depth == 0 && isMark(token, ','))) continue;
      if (isStar(first, at_)) all = true;
      columns.push_back(columnOf(first, at_));
      first = at_ + 1;
      if (!ends) continue;
      ++at_;
      if (all && columns.size() > 1) return false;
      if (all) columns.clear();
      return true;
    }
    return false;
  }

  [[nodiscard]] bool isStar(std::size_t first, std::size_t end) const {
    if (end - first == 1) return isMark(tokens_[first], '*');
    return end - first == 3 && isName(tokens_[first]) && isMark(tokens_[first + 1], '.') &&
           isMark(tokens_[first + 2], '*');
  }

  // "a", "t.a", with an alias behind: the column's name, or nothing for anything else.
  [[nodiscard]] std::string columnOf(std::size_t first, std::size_t end) const {
    auto at = first;
    std::string column;
    while (at < end && isName(tokens_[at])) {
      column = tokens_[at++].text;
      if (at < end && isMark(tokens_[at], '.')) {
        ++at;
        continue;
      }
      break;
    }
    if (at < end && isWord(tokens_[at], "AS")) ++at;
    if (at < end && isName(tokens_[at])) ++at;
    return at == end ? column : std::string();
  }

  std::string readName() {
    const auto first = at_;
    while (more() && isName(tokens_[at_])) {
      ++at_;
      if (!more() || !isMark(tokens_[at_], '.')) break;
      ++at_;
    }
    if (at_ == first) return {};
    const auto& last = tokens_[at_ - 1];
    return text_.substr(tokens_[first].start, last.start + last.text.size() - tokens_[first].start);
  }

  void skipAlias() {
    if (more() && isWord(tokens_[at_], "AS")) ++at_;
    const bool isAlias = more() && isName(tokens_[at_]) && !isWord(tokens_[at_], "WHERE") &&
                         !isWord(tokens_[at_], "ORDER") && !endsOneTable(tokens_[at_]);
    if (isAlias) ++at_;
  }

  bool readRest(bool& where) {
    if (!more()) return true;
    if (!isWord(tokens_[at_], "WHERE") && !isWord(tokens_[at_], "ORDER")) return false;
    where = isWord(tokens_[at_], "WHERE");
    int depth = 0;
    for (++at_; more(); ++at_) {
      if (isMark(tokens_[at_], '(')) ++depth;
      if (isMark(tokens_[at_], ')')) --depth;
      if (depth == 0 && (endsOneTable(tokens_[at_]) || isWord(tokens_[at_], "SELECT"))) return false;
    }
    return true;
  }

  const std::string& text_;
  std::vector<Token> tokens_;
  Source& source_;
  std::size_t at_ = 0;
};

// A name alone, with dots between its parts; words that begin a statement are no tables.
bool isOneName(const std::vector<Token>& tokens) {
  if (tokens.empty() || tokens.size() % 2 == 0) return false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (i % 2 == 0 ? !isName(tokens[i]) : !isMark(tokens[i], '.')) return false;
  }
  static constexpr std::array<std::string_view, 6> words{"COMMIT", "ROLLBACK", "BEGIN", "RETURN", "CHECKPOINT", "SAVE"};
  return std::none_of(words.begin(), words.end(), [&](std::string_view word) { return isWord(tokens[0], word); });
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0) text.remove_prefix(1);
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) text.remove_suffix(1);
  return text;
}

}  // namespace

bool Source::isWholeTable() const {
  return !table.empty() && !hasWhere &&
         std::none_of(columns.begin(), columns.end(), [](const std::string& column) { return column.empty(); });
}

std::string Source::withList(const std::string& list) const {
  return statement.substr(0, listStart) + list + ' ' + statement.substr(listEnd);
}

Source readSource(const std::string& source, bool isTable) {
  Source result;
  result.statement = source;
  if (isTable || isOneName(Lexer(source).tokens())) {
    result.statement = "SELECT * FROM " + std::string(trimmed(source));
  }
  SelectReader(result.statement, result).read();
  return result;
}

std::vector<std::string> nameParts(std::string_view name) {
  std::vector<std::string> parts;
  for (const auto& token : Lexer(name).tokens()) {
    if (isName(token)) parts.push_back(plainName(token.text));
  }
  return parts;
}

std::size_t markCount(std::string_view text) {
  const auto tokens = Lexer(text).tokens();
  return static_cast<std::size_t>(
      std::count_if(tokens.begin(), tokens.end(), [](const Token& token) { return isMark(token, '?'); }));
}

bool mayChangeTables(std::string_view text) {
  static constexpr std::array<std::string_view, 3> words{"CREATE", "ALTER", "DROP"};
  const auto begins = [&](std::size_t at) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
      return text.size() - at >= word.size() && sameName(text.substr(at, word.size()), word);
    });
  };
  for (std::size_t at = text.find_first_of("CcAaDd"); at != std::string_view::npos;
       at = text.find_first_of("CcAaDd", at + 1)) {
    if (begins(at)) return true;
  }
  return false;
}

}  // namespace tolvane::odbc
