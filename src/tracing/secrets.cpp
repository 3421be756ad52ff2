#include "tracing/secrets.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "platform/engine.h"
#include "platform/error.h"
#include "platform/names.h"

namespace tolvane::tracing {
namespace {

constexpr std::string_view secretColumn = "fmpassword";
constexpr std::string_view secretTable = "t_rpt_multiacctentry";

enum class TokenKind { word, text, mark };

struct Token {
  TokenKind kind = TokenKind::mark;
  std::size_t start = 0;
  std::size_t end = 0;
  std::string word;  ///< a word in lower case, a mark as it is, a text without its apostrophes
};

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '#' ||
         c == '@' || static_cast<unsigned char>(c) >= 0x80;
}

/// The statement's tokens; nothing when a text in it is never closed, or when something follows a text so closely that
/// one of the two apostrophes may belong to the text's content.
std::optional<std::vector<Token>> tokenize(const std::string& sql) {
  std::vector<Token> tokens;
  for (std::size_t i = 0; i < sql.size();) {
    const std::size_t start = i;
    if (sql[i] == ' ' || (sql[i] >= '\t' && sql[i] <= '\r')) {
      ++i;
    } else if (sql[i] == '\'') {
      for (++i; i < sql.size() && (sql[i] != '\'' || (i + 1 < sql.size() && sql[i + 1] == '\'')); ++i) {
        if (sql[i] == '\'') ++i;
      }
      if (i >= sql.size()) return std::nullopt;
      ++i;
      if (i < sql.size() && isWordCharacter(sql[i])) return std::nullopt;
      tokens.push_back({TokenKind::text, start, i, sql.substr(start + 1, i - start - 2)});
    } else if (isWordCharacter(sql[i])) {
      while (i < sql.size() && isWordCharacter(sql[i])) ++i;
      tokens.push_back({TokenKind::word, start, i, lowered(std::string_view(sql).substr(start, i - start))});
    } else {
      ++i;
      // Brackets around a name say nothing here.
      if (sql[start] != '[' && sql[start] != ']') tokens.push_back({TokenKind::mark, start, i, sql.substr(start, 1)});
    }
  }
  return tokens;
}

/// Finds the texts of a statement that are passwords.
class SecretFinder {
 public:
  explicit SecretFinder(const std::vector<Token>& tokens) : tokens_(tokens) {}

  /// The places of the secret texts, in order; nothing when they cannot be told.
  std::optional<std::vector<Token>> find() {
    for (at_ = 0; at_ < tokens_.size(); ++at_) {
      if (isWord(at_, "insert")) {
        if (!readInsert()) return std::nullopt;
      } else if (isWord(at_, secretColumn)) {
        readComparison();
      }
    }
    addConnectionTexts();
    return std::move(secrets_);
  }

 private:
  void addConnectionTexts() {
    for (const auto& token : tokens_) {
      if (token.kind == TokenKind::text && holdsPassword(token.word)) secrets_.push_back(token);
    }
    const auto before = [](const Token& a, const Token& b) { return a.start < b.start; };
    const auto same = [](const Token& a, const Token& b) { return a.start == b.start; };
    std::sort(secrets_.begin(), secrets_.end(), before);
    secrets_.erase(std::unique(secrets_.begin(), secrets_.end(), same), secrets_.end());
  }

  bool isWord(std::size_t i, std::string_view word) const {
    return i < tokens_.size() && tokens_[i].kind == TokenKind::word && tokens_[i].word == word;
  }
  bool isMark(std::size_t i, std::string_view mark) const {
    return i < tokens_.size() && tokens_[i].kind == TokenKind::mark && tokens_[i].word == mark;
  }

  void readComparison() {
    std::size_t i = at_ + 1;
    while (isMark(i, "=") || isMark(i, "<") || isMark(i, ">") || isMark(i, "!") || isWord(i, "like") ||
           isWord(i, "not") || isWord(i, "n")) {
      ++i;
    }
    if (i > at_ + 1 && i < tokens_.size() && tokens_[i].kind == TokenKind::text) secrets_.push_back(tokens_[i]);
  }

  bool readInsert() {
    std::size_t i = at_ + (isWord(at_ + 1, "into") ? 2 : 1);
    const bool ofSecretTable = isWord(i, secretTable);
    ++i;
    std::vector<std::string> columns;
    if (isMark(i, "(")) {
      for (++i; i < tokens_.size() && !isMark(i, ")"); ++i) {
        if (tokens_[i].kind == TokenKind::word) columns.push_back(tokens_[i].word);
      }
      ++i;
    }
    const auto secret = std::find(columns.begin(), columns.end(), secretColumn);
    if (secret == columns.end()) return columns.empty() ? !ofSecretTable : true;
    if (!isWord(i, "values")) return false;
    const auto place = static_cast<std::size_t>(secret - columns.begin());
    do {
      if (!readRow(++i, columns.size(), place)) return false;
    } while (isMark(i, ","));
    at_ = i - 1;
    return true;
  }

  /// Reads "( value, ... )" and leaves `i` behind it.
  bool readRow(std::size_t& i, std::size_t count, std::size_t secret) {
    if (!isMark(i, "(")) return false;
    std::size_t column = 0;
    for (++i; i < tokens_.size() && !isMark(i, ")"); ++i) {
      if (isMark(i, "(")) return false;
      if (isMark(i, ",")) {
        ++column;
      } else if (column == secret && tokens_[i].kind == TokenKind::text) {
        secrets_.push_back(tokens_[i]);
      }
    }
    if (i >= tokens_.size() || column + 1 != count) return false;
    ++i;
    return i >= tokens_.size() || isMark(i, ",") || isMark(i, ";") || tokens_[i].kind == TokenKind::word;
  }

  const std::vector<Token>& tokens_;
  std::size_t at_ = 0;
  std::vector<Token> secrets_;
};

bool namesSecret(const std::string& lower) {
  return lower.find(secretColumn) != std::string::npos ||
         (lower.find(secretTable) != std::string::npos && lower.find("insert") != std::string::npos);
}

/// Whether a key of a password stands anywhere in the text: behind a ";", an apostrophe or at the beginning.
bool hasPasswordKey(std::string_view lower) {
  for (const std::string_view key : {"pwd", "password"}) {
    for (auto at = lower.find(key); at != std::string_view::npos; at = lower.find(key, at + 1)) {
      const auto before = lower.substr(0, at).find_last_not_of(" \t");
      const bool begins = before == std::string_view::npos || lower[before] == ';' || lower[before] == '\'';
      const auto behind = lower.find_first_not_of(" \t", at + key.size());
      if (begins && behind != std::string_view::npos && lower[behind] == '=') return true;
    }
  }
  return false;
}

/// Up to the first text of the statement that may be a password or a part of one.
std::string cutOff(const std::string& sql) {
  const std::size_t apostrophe = std::min(sql.find('\''), sql.size());
  return sql.substr(0, apostrophe) + std::string(hidden);
}

}  // namespace

bool isSecretName(std::string_view name) {
  return lowered(name) == secretColumn;
}

std::string maskSql(const std::string& sql) {
  const auto lower = lowered(sql);
  const bool hasConnectionText = hasPasswordKey(lower);
  if (!hasConnectionText && !namesSecret(lower)) return sql;
  const auto tokens = tokenize(sql);
  const auto secrets = tokens ? SecretFinder(*tokens).find() : std::nullopt;
  if (!secrets) return cutOff(sql);
  std::string result;
  std::size_t copied = 0;
  for (const auto& secret : *secrets) {
    result.append(sql, copied, secret.start - copied);
    result.append("'").append(hidden).append("'");
    copied = secret.end;
  }
  return result.append(sql, copied);
}

bool hasSecretParameters(const std::string& sql) {
  return namesSecret(lowered(sql));
}

std::string maskDsn(const std::string& dsn) {
  const std::string lower = lowered(dsn);
  if (lower.find("pwd") == std::string::npos && lower.find("password") == std::string::npos) return dsn;
  try {
    return DataSourceName::parse(dsn).publicText();
  } catch (const AutomationError&) {
    // Where the password ends in a malformed name nobody can tell.
    return std::string(hidden);
  }
}

bool holdsPassword(std::string_view text) {
  return hasPasswordKey(lowered(text));
}

Value maskValue(const Value& value) {
  const auto* text = value.get<std::string>();
  return text && holdsPassword(*text) ? Value(maskDsn(*text)) : value;
}

}  // namespace tolvane::tracing
