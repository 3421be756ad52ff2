#include "tsql/parser.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tolvane::tsql {
namespace {

constexpr int deepest = 128;

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Sorted. The words that may not be names without brackets.
constexpr std::array<std::string_view, 146> reserved{
    "ADD",          "ALL",           "ALTER",      "AND",          "ANY",          "AS",
    "ASC",          "AUTHORIZATION", "BACKUP",     "BEGIN",        "BETWEEN",      "BREAK",
    "BROWSE",       "BULK",          "BY",         "CASCADE",      "CASE",         "CHECK",
    "CHECKPOINT",   "CLOSE",         "CLUSTERED",  "COALESCE",     "COLLATE",      "COLUMN",
    "COMMIT",       "COMPUTE",       "CONSTRAINT", "CONTAINS",     "CONTINUE",     "CONVERT",
    "CREATE",       "CROSS",         "CURRENT",    "CURRENT_DATE", "CURRENT_TIME", "CURRENT_TIMESTAMP",
    "CURRENT_USER", "CURSOR",        "DATABASE",   "DBCC",         "DEALLOCATE",   "DECLARE",
    "DEFAULT",      "DELETE",        "DENY",       "DESC",         "DISK",         "DISTINCT",
    "DISTRIBUTED",  "DOUBLE",        "DROP",       "DUMP",         "ELSE",         "END",
    "ERRLVL",       "ESCAPE",        "EXCEPT",     "EXEC",         "EXECUTE",      "EXISTS",
    "EXIT",         "FETCH",         "FILE",       "FILLFACTOR",   "FOR",          "FOREIGN",
    "FREETEXT",     "FROM",          "FULL",       "FUNCTION",     "GOTO",         "GRANT",
    "GROUP",        "HAVING",        "HOLDLOCK",   "IDENTITY",     "IDENTITYCOL",  "IF",
    "IN",           "INDEX",         "INNER",      "INSERT",       "INTERSECT",    "INTO",
    "IS",           "JOIN",          "KEY",        "KILL",         "LEFT",         "LIKE",
    "LINENO",       "LOAD",          "MERGE",      "NATIONAL",     "NOCHECK",      "NONCLUSTERED",
    "NOT",          "NULL",          "NULLIF",     "OF",           "OFF",          "OFFSETS",
    "ON",           "OPEN",          "OPENQUERY",  "OPENROWSET",   "OPENXML",      "OPTION",
    "OR",           "ORDER",         "OUTER",      "OVER",         "PERCENT",      "PIVOT",
    "PLAN",         "PRIMARY",       "PRINT",      "PROC",         "PROCEDURE",    "PUBLIC",
    "RAISERROR",    "READ",          "READTEXT",   "RECONFIGURE",  "REFERENCES",   "REPLICATION",
    "RESTORE",      "RESTRICT",      "RETURN",     "REVERT",       "REVOKE",       "RIGHT",
    "ROLLBACK",     "ROWCOUNT",      "ROWGUIDCOL", "RULE",         "SAVE",         "SCHEMA",
    "SELECT",       "SESSION_USER",  "SET",        "SETUSER",      "SHUTDOWN",     "SOME",
    "STATISTICS",   "SYSTEM_USER"};
constexpr std::array<std::string_view, 27> reservedMore{
    "TABLE",    "TABLESAMPLE", "TEXTSIZE", "THEN",    "TO",      "TOP",    "TRAN",       "TRANSACTION", "TRIGGER",
    "TRUNCATE", "TSEQUAL",     "UNION",    "UNIQUE",  "UNPIVOT", "UPDATE", "UPDATETEXT", "USE",         "USER",
    "VALUES",   "VARYING",     "VIEW",     "WAITFOR", "WHEN",    "WHERE",  "WHILE",      "WITH",        "WRITETEXT"};
constexpr std::size_t longestReserved = 17;
static_assert(std::ranges::is_sorted(reserved) && std::ranges::is_sorted(reservedMore));

}  // namespace

bool isReserved(std::string_view word) {
  if (word.size() < 2 || word.size() > longestReserved) return false;
  std::array<char, longestReserved> capitals{};
  std::transform(word.begin(), word.end(), capitals.begin(), upper);
  const std::string_view key(capitals.data(), word.size());
  return std::ranges::binary_search(reserved, key) || std::ranges::binary_search(reservedMore, key);
}

std::string nameOf(const ShapedBatch& batch, const Token& token) {
  auto written = batch.text.substr(token.begin, token.end - token.begin);
  if (token.kind != TokenKind::QuotedName) return std::string(written);
  const char end = written.back();
  written = written.substr(1, written.size() - 2);
  std::string result;
  for (std::size_t i = 0; i < written.size(); ++i) {
    result += written[i];
    if (written[i] == end) ++i;
  }
  return result;
}

int lineOf(const ShapedBatch& batch, int token) {
  const auto begin = batch.tokens[static_cast<std::size_t>(token)].begin;
  return 1 + static_cast<int>(std::count(batch.text.begin(), batch.text.begin() + begin, '\n'));
}

SqlError notSupported(const ShapedBatch& batch, int token, std::string_view what) {
  const Token& at = batch.tokens[static_cast<std::size_t>(token)];
  const int line = lineOf(batch, token);
  return SqlError(notSupportedNumber, 16,
                  "'" + std::string(batch.text.substr(at.begin, at.end - at.begin)) + "' in line " +
                      std::to_string(line) + ": " + std::string(what) + " is not supported.")
      .at(line);
}

Parser::Depth::Depth(Parser& parser) : parser_(parser) {
  if (++parser_.depth_ > deepest) {
    --parser_.depth_;
    throw SqlError(
        191, 15,
        "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into smaller "
        "queries.")
        .at(lineOf(parser_.batch_, parser_.at_));
  }
}

// The word is as long as the capitals.
bool Parser::equalsUpper(std::string_view word, std::string_view capitals) {
  return std::equal(word.begin(), word.end(), capitals.begin(), [](char a, char b) { return upper(a) == b; });
}

bool Parser::takeWord(std::string_view capitals) {
  if (!isWord(capitals)) return false;
  ++at_;
  return true;
}

bool Parser::takeOperator(std::string_view symbol) {
  if (!isOperator(symbol)) return false;
  ++at_;
  return true;
}

void Parser::expectWord(std::string_view capitals) {
  if (!takeWord(capitals)) fail();
}

void Parser::expectOperator(std::string_view symbol) {
  if (!takeOperator(symbol)) fail();
}

void Parser::fail() const {
  if (isOperator("{")) refuse("an escape of ODBC");
  const int line = lineOf(batch_, at_);
  // At the end of the text SQL Server names the last word that it read.
  const int blamed = isEnd() && at_ > 0 ? at_ - 1 : at_;
  const Token& word = batch_.tokens[static_cast<std::size_t>(blamed)];
  if (word.kind == TokenKind::Word && isReserved(text(word)) && !isEnd()) {
    throw SqlError(Message::IncorrectSyntaxKeyword, {text(word)}).at(line);
  }
  if (word.kind == TokenKind::Literal) {
    const Literal& literal = batch_.literals[static_cast<std::size_t>(word.literal)];
    throw SqlError(Message::IncorrectSyntax, {literal.type.isText() ? literal.text : text(word)}).at(line);
  }
  throw SqlError(Message::IncorrectSyntax, {nameOf(batch_, word)}).at(line);
}

void Parser::refuse(std::string_view what) const {
  throw notSupported(batch_, at_, what);
}

bool Parser::isName() const {
  return token().kind == TokenKind::QuotedName || (token().kind == TokenKind::Word && !isReserved(here()));
}

// SQLite's texts end with that character, wherever they stand.
void Parser::refuseNul(std::string_view name) const {
  if (name.find('\0') != std::string_view::npos) refuse("a name with the character 0");
}

std::string Parser::name() {
  if (!isName()) fail();
  if (token().kind == TokenKind::QuotedName && token().end - token().begin == 2) {
    throw SqlError(1038, 15,
                   "An object or column name is missing or empty. For SELECT INTO statements, verify each column has a "
                   "name. For other statements, look for empty alias names. Aliases defined as \"\" or [] are not "
                   "allowed. Change the alias to a valid name.")
        .at(lineOf(batch_, at_));
  }
  std::string result = nameOf(batch_, token());
  refuseNul(result);
  if (result.size() > 128 * 4)
    throw SqlError(
        103, 15, "The identifier that starts with '" + result.substr(0, 128) + "' is too long. Maximum length is 128.");
  ++at_;
  return result;
}

// A name after a point may be any word.
std::string Parser::anyName() {
  if (token().kind != TokenKind::Word) return name();
  return nameOf(batch_, batch_.tokens[static_cast<std::size_t>(at_++)]);
}

int Parser::structuralInteger() {
  if (token().kind != TokenKind::Literal) fail();
  const int index = token().literal;
  const Literal& literal = batch_.literals[static_cast<std::size_t>(index)];
  if (literal.type.kind != TypeKind::Int) fail();
  structural_.push_back(index);
  ++at_;
  return static_cast<int>(literal.integer);
}

// Seed or step of an identity column, which may be larger than an int.
std::int64_t Parser::takeIdentityNumber() {
  const bool negative = takeOperator("-");
  if (!negative) takeOperator("+");
  if (token().kind != TokenKind::Literal) fail();
  const auto digits = here();
  std::int64_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) refuse("an identity value of that kind");
  structural_.push_back(token().literal);
  ++at_;
  return negative ? -number : number;
}

int Parser::takeSignedInteger() {
  if (takeOperator("-")) return -structuralInteger();
  takeOperator("+");
  return structuralInteger();
}

std::vector<tree::StatementPtr> Parser::parseBatch() {
  std::vector<tree::StatementPtr> statements;
  while (takeOperator(";")) {
  }
  while (!isEnd()) statements.push_back(statement());
  return statements;
}

tree::StatementPtr Parser::parseStatementAt(int first) {
  at_ = first;
  // Whether THROW may stand there was judged with the whole batch.
  throwMayFollow_ = first;
  catchDepth_ = 1;
  return statement();
}

tree::StatementPtr makeStatement(tree::StatementKind kind) {
  auto result = std::make_unique<tree::StatementNode>();
  result->kind = kind;
  return result;
}

}  // namespace tolvane::tsql
