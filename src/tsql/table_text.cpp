#include "tsql/table_text.h"

#include <algorithm>
#include <array>

#include "tsql/catalogue.h"
#include "tsql/writer.h"

namespace tolvane::tsql {
namespace {

struct Piece {
  enum class Kind { Word, Name, Text, Comment, Sign };
  Kind kind = Kind::Sign;
  std::size_t begin = 0;
  std::size_t end = 0;
};

bool isWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '$' ||
         c == '.' || (static_cast<unsigned char>(c) & 0x80U) != 0;
}

// One past the closing quote, which is doubled inside.
std::size_t quoteEnd(std::string_view text, std::size_t begin, char close) {
  for (std::size_t i = begin + 1; i < text.size(); ++i) {
    if (text[i] != close) continue;
    if (i + 1 < text.size() && text[i + 1] == close) {
      ++i;
    } else {
      return i + 1;
    }
  }
  return text.size();
}

std::size_t wordEnd(std::string_view text, std::size_t at) {
  const bool number = text[at] >= '0' && text[at] <= '9';
  while (at < text.size()) {
    const bool exponent =
        number && (text[at] == '+' || text[at] == '-') && (text[at - 1] == 'e' || text[at - 1] == 'E');
    if (!isWordCharacter(text[at]) && !exponent) break;
    ++at;
  }
  return at;
}

std::vector<Piece> piecesOf(std::string_view text) {
  std::vector<Piece> pieces;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    Piece piece{Piece::Kind::Sign, i, i + 1};
    if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
      ++i;
      continue;
    }
    if (text.substr(i, 2) == "/*") {
      const auto close = text.find("*/", i + 2);
      piece = {Piece::Kind::Comment, i, close == std::string_view::npos ? text.size() : close + 2};
    } else if (c == '"' || c == '`' || c == '[') {
      piece = {Piece::Kind::Name, i, quoteEnd(text, i, c == '[' ? ']' : c)};
    } else if (c == '\'') {
      piece = {Piece::Kind::Text, i, quoteEnd(text, i, c)};
    } else if ((c == 'x' || c == 'X') && text.substr(i + 1, 1) == "'") {
      piece = {Piece::Kind::Text, i, quoteEnd(text, i + 1, '\'')};
    } else if (isWordCharacter(c)) {
      piece = {Piece::Kind::Word, i, wordEnd(text, i)};
    }
    pieces.push_back(piece);
    i = piece.end;
  }
  return pieces;
}

std::string unquoted(std::string_view name) {
  if (name.empty() || (name.front() != '"' && name.front() != '`' && name.front() != '[')) return std::string(name);
  const char close = name.front() == '[' ? ']' : name.front();
  std::string result;
  for (std::size_t i = 1; i + 1 < name.size(); ++i) {
    result += name[i];
    if (name[i] == close) ++i;
  }
  return result;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text), pieces_(piecesOf(text)) {}

  [[nodiscard]] bool ended() const { return at_ >= pieces_.size(); }
  [[nodiscard]] std::string_view here() const { return ended() ? std::string_view() : view(pieces_[at_]); }
  [[nodiscard]] bool isSign(char sign) const {
    return !ended() && pieces_[at_].kind == Piece::Kind::Sign && text_[pieces_[at_].begin] == sign;
  }
  [[nodiscard]] bool isWord(std::string_view word) const {
    return !ended() && pieces_[at_].kind == Piece::Kind::Word && sameName(here(), word);
  }
  [[nodiscard]] bool isComment() const { return !ended() && pieces_[at_].kind == Piece::Kind::Comment; }
  [[nodiscard]] std::size_t begin() const { return ended() ? text_.size() : pieces_[at_].begin; }
  [[nodiscard]] std::size_t passed() const { return at_ == 0 ? 0 : pieces_[at_ - 1].end; }
  void next() {
    if (!ended()) ++at_;
  }
  bool take(std::string_view word) {
    if (!isWord(word)) return false;
    next();
    return true;
  }
  std::string name() {
    auto result = unquoted(here());
    next();
    return result;
  }
  // A bracket and all up to its partner, or one piece.
  void skip() {
    int depth = 0;
    do {
      if (isSign('(')) ++depth;
      if (isSign(')')) --depth;
      next();
    } while (depth > 0 && !ended());
  }
  std::vector<std::string> names() {
    std::vector<std::string> result;
    if (!isSign('(')) return result;
    next();
    while (!ended() && !isSign(')')) {
      if (isSign(',')) {
        next();
      } else {
        result.push_back(name());
      }
    }
    next();
    return result;
  }
  [[nodiscard]] std::string_view between(std::size_t begin, std::size_t end) const {
    return begin < end ? text_.substr(begin, end - begin) : std::string_view();
  }
  [[nodiscard]] const std::vector<Piece>& pieces() const { return pieces_; }
  [[nodiscard]] std::string_view view(const Piece& piece) const {
    return text_.substr(piece.begin, piece.end - piece.begin);
  }

 private:
  std::string_view text_;
  std::vector<Piece> pieces_;
  std::size_t at_ = 0;
};

constexpr std::array<std::string_view, 10> clauseWords{"CONSTRAINT", "NOT",     "NULL",   "DEFAULT",    "CHECK",
                                                       "COLLATE",    "PRIMARY", "UNIQUE", "REFERENCES", "FOREIGN"};

bool beginsClause(const Reader& reader) {
  return std::ranges::any_of(clauseWords, [&](std::string_view word) { return reader.isWord(word); });
}

void takeNote(Reader& reader, TableClause& clause) {
  if (!reader.isComment()) return;
  const auto comment = reader.here();
  clause.note = comment.substr(2, comment.size() < 4 ? 0 : comment.size() - 4);
  reader.next();
}

TableClause clauseOf(Reader& reader) {
  TableClause clause;
  if (reader.take("CONSTRAINT")) clause.name = reader.name();
  const auto begin = reader.begin();
  if (reader.take("DEFAULT")) {
    if (reader.isSign('-') || reader.isSign('+')) reader.next();
    reader.skip();
  } else if (reader.take("NOT")) {
    reader.next();
  } else {
    reader.next();
    while (!reader.ended() && !reader.isComment() && !reader.isSign(',') && !reader.isSign(')')) {
      const bool action = reader.isWord("NULL") || reader.isWord("DEFAULT");  // ON DELETE SET ...
      if (beginsClause(reader) && !reader.isWord("REFERENCES") && !action) break;
      reader.skip();
    }
  }
  clause.text = reader.between(begin, reader.passed());
  takeNote(reader, clause);
  return clause;
}

ColumnText columnOf(Reader& reader) {
  ColumnText column;
  column.name = reader.name();
  const auto begin = reader.begin();
  const auto itemEnds = [&] { return reader.ended() || reader.isSign(',') || reader.isSign(')'); };
  while (!itemEnds() && !beginsClause(reader)) reader.skip();
  column.type = reader.between(begin, reader.passed());
  while (!itemEnds()) {
    const auto before = reader.begin();
    column.clauses.push_back(clauseOf(reader));
    if (reader.begin() == before) reader.next();
  }
  return column;
}

void append(std::string& text, const TableClause& clause) {
  if (!clause.name.empty()) text += "CONSTRAINT " + quoted(clause.name) + " ";
  text += clause.text;
  if (!clause.note.empty()) text += " /*" + clause.note + "*/";
}

}  // namespace

bool TableClause::begins(std::string_view keyword) const {
  return text.size() >= keyword.size() && sameName(std::string_view(text).substr(0, keyword.size()), keyword);
}

const TableClause* ColumnText::find(std::string_view keyword) const {
  const auto found = std::ranges::find_if(clauses, [&](const TableClause& clause) { return clause.begins(keyword); });
  return found == clauses.end() ? nullptr : &*found;
}

std::optional<TableText> TableText::of(std::string_view createTable) {
  Reader reader(createTable);
  while (!reader.ended() && !reader.isSign('(')) reader.next();
  if (reader.ended()) return std::nullopt;
  TableText result;
  result.head = createTable.substr(0, reader.begin());
  reader.next();
  while (!reader.ended() && !reader.isSign(')')) {
    if (beginsClause(reader)) {
      result.constraints.push_back(clauseOf(reader));
    } else {
      result.columns.push_back(columnOf(reader));
    }
    if (reader.isSign(',')) reader.next();
  }
  if (reader.ended() || result.columns.empty()) return std::nullopt;
  result.tail = createTable.substr(reader.begin());
  return result;
}

std::string TableText::text() const {
  std::string result = head + "(";
  bool first = true;
  const auto comma = [&] {
    if (!first) result += ",";
    first = false;
  };
  for (const ColumnText& column : columns) {
    comma();
    result += quoted(column.name);
    if (!column.type.empty()) result += " " + column.type;
    for (const TableClause& clause : column.clauses) {
      result += ' ';
      append(result, clause);
    }
  }
  for (const TableClause& clause : constraints) {
    comma();
    append(result, clause);
  }
  return result + tail;
}

ColumnText* TableText::find(std::string_view column) {
  const auto found = std::ranges::find_if(columns, [&](const ColumnText& each) { return sameName(each.name, column); });
  return found == columns.end() ? nullptr : &*found;
}

std::optional<ForeignKeyText> foreignKeyOf(const TableClause& clause) {
  Reader reader(clause.text);
  if (!reader.take("FOREIGN") || !reader.take("KEY")) return std::nullopt;
  ForeignKeyText key;
  key.columns = reader.names();
  if (!reader.take("REFERENCES")) return std::nullopt;
  key.table = reader.name();
  key.referenced = reader.names();
  while (reader.take("ON")) {
    std::string& action = reader.isWord("DELETE") ? key.onDelete : key.onUpdate;
    reader.next();
    action = reader.here();
    reader.next();
    if (sameName(action, "CASCADE")) continue;
    action += " " + std::string(reader.here());
    reader.next();
  }
  return key;
}

std::vector<std::string> namesIn(std::string_view text) {
  std::vector<std::string> result;
  const Reader reader(text);
  for (const Piece& piece : reader.pieces()) {
    if (piece.kind == Piece::Kind::Name) result.push_back(unquoted(reader.view(piece)));
  }
  return result;
}

}  // namespace tolvane::tsql
