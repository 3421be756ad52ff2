#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "tsql/compiler.h"
#include "tsql/convert.h"
#include "tsql/number_text.h"

namespace tolvane::tsql {
namespace {

enum class Class : std::uint8_t { Other, Blank, Letter, Digit };

constexpr std::array<Class, 256> makeClasses() {
  std::array<Class, 256> classes{};
  for (int c = 0; c < 256; ++c) {
    // 1 and 2 mark literals in the key, so they are no blanks: they begin no token.
    if (c <= ' ' && c != 1 && c != 2) classes[c] = Class::Blank;
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80 || c == '_' || c == '#')
      classes[c] = Class::Letter;
    if (c >= '0' && c <= '9') classes[c] = Class::Digit;
  }
  return classes;
}
constexpr auto classes = makeClasses();

Class classOf(char c) {
  return classes[static_cast<unsigned char>(c)];
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isNamePart(char c) {
  return classOf(c) >= Class::Letter || c == '@' || c == '$';
}

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Cuts one batch. The key grows along: everything between literals is copied as it stands, a literal gives one mark.
class Lexer {
 public:
  explicit Lexer(ShapedBatch& batch) : batch_(batch), text_(batch.text) {}

  void run() {
    while (skipBlanks()) token();
    batch_.key.append(text_.substr(keyed_));
    batch_.tokens.push_back({TokenKind::End, here(), here(), -1});
  }

 private:
  std::uint32_t here() const { return static_cast<std::uint32_t>(at_); }
  char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

  [[noreturn]] void fail(Message message, std::string_view word) const { throw SqlError(message, {word}).at(line()); }

  int line() const {
    int lines = 1;
    for (std::size_t i = 0; i < at_ && i < text_.size(); ++i) lines += text_[i] == '\n';
    return lines;
  }

  // True when a token begins here.
  bool skipBlanks() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (classOf(c) == Class::Blank) {
        ++at_;
      } else if (c == '-' && peek(1) == '-') {
        const auto end = text_.find('\n', at_);
        at_ = end == std::string_view::npos ? text_.size() : end + 1;
      } else if (c == '/' && peek(1) == '*') {
        comment();
      } else {
        return true;
      }
    }
    return false;
  }

  // Comments nest.
  void comment() {
    int depth = 0;
    do {
      if (at_ >= text_.size()) throw SqlError(113, 15, "Missing end comment mark '*/'.").at(line());
      if (peek() == '/' && peek(1) == '*') {
        ++depth;
        at_ += 2;
      } else if (peek() == '*' && peek(1) == '/') {
        --depth;
        at_ += 2;
      } else {
        ++at_;
      }
    } while (depth > 0);
  }

  void token() {
    const char c = peek();
    if (static_cast<unsigned char>(c) >= 0x80) {
      if (const std::size_t length = currencySign(); length > 0) return money(length);
    }
    if ((c == 'N' || c == 'n') && peek(1) == '\'') return text(1);
    switch (classOf(c)) {
      case Class::Letter:
        return word(TokenKind::Word);
      case Class::Digit:
        return c == '0' && (peek(1) == 'x' || peek(1) == 'X') ? binary() : number();
      default:
        break;
    }
    if (c == '\'') return text(0);
    if (c == '@') return word(TokenKind::Variable);
    if (c == '[') return quotedName(']');
    if (c == '"') return quotedName('"');
    if (c == '.' && isDigit(peek(1))) return number();
    if (c == '$') return money(1);
    if (c == '?') {
      batch_.tokens.push_back({TokenKind::Placeholder, here(), here() + 1, batch_.placeholders++});
      ++at_;
      return;
    }
    operation();
  }

  void word(TokenKind kind) {
    const auto begin = here();
    ++at_;
    while (at_ < text_.size() && isNamePart(text_[at_])) ++at_;
    batch_.tokens.push_back({kind, begin, here(), -1});
  }

  void quotedName(char end) {
    const auto begin = at_;
    ++at_;
    for (;; ++at_) {
      if (at_ >= text_.size()) fail(Message::UnclosedQuotation, text_.substr(begin + 1));
      if (text_[at_] != end) continue;
      if (peek(1) != end) break;
      ++at_;
    }
    ++at_;
    batch_.tokens.push_back({TokenKind::QuotedName, static_cast<std::uint32_t>(begin), here(), -1});
  }

  void operation() {
    static constexpr std::string_view singles = "+-*/%&|^~=<>!(),.;:{}";
    static constexpr std::array<std::string_view, 16> doubles{
        "<=", ">=", "<>", "!=", "!<", "!>", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "::", "||"};
    const auto begin = here();
    if (singles.find(peek()) == std::string_view::npos) fail(Message::IncorrectSyntax, text_.substr(at_, 1));
    std::size_t length = 1;
    for (const auto pair : doubles) {
      if (text_.substr(at_, 2) == pair) length = 2;
    }
    at_ += length;
    batch_.tokens.push_back({TokenKind::Operator, begin, here(), -1});
  }

  // Ends a literal that began at `begin`; `mark` is what stands for it in the key.
  void literal(std::size_t begin, Literal&& value, std::string_view mark) {
    batch_.key.append(text_.substr(keyed_, begin - keyed_));
    // A control character cannot stand in a text outside of literals in a way that matters.
    batch_.key += '\x01';
    batch_.key.append(mark);
    batch_.key += '\x02';
    keyed_ = at_;
    batch_.tokens.push_back({TokenKind::Literal, static_cast<std::uint32_t>(begin), here(),
                             static_cast<std::int32_t>(batch_.literals.size())});
    batch_.literals.push_back(std::move(value));
  }

  void text(std::size_t prefix) {
    const auto begin = at_;
    at_ += prefix + 1;
    const auto first = at_;
    bool doubled = false;
    for (;;) {
      const auto quote = text_.find('\'', at_);
      if (quote == std::string_view::npos) fail(Message::UnclosedQuotation, text_.substr(first));
      at_ = quote + 1;
      if (peek() != '\'') break;
      doubled = true;
      ++at_;
    }
    Literal value;
    value.text = text_.substr(first, at_ - 1 - first);
    if (doubled) {
      std::string plain;
      plain.reserve(value.text.size());
      for (std::size_t i = 0; i < value.text.size(); ++i) {
        plain += value.text[i];
        if (value.text[i] == '\'') ++i;
      }
      value.text = batch_.storage.emplace_back(std::move(plain));
    }
    value.type = prefix == 1 ? Type::text(TypeKind::NVarChar, 4000) : Type::text(TypeKind::VarChar, 8000);
    value.type.nullable = false;
    literal(begin, std::move(value), prefix == 1 ? "U" : "S");
  }

  void binary() {
    const auto begin = at_;
    at_ += 2;
    std::string digits;
    while (hexValue(peek()) >= 0 && at_ < text_.size()) digits += text_[at_++];
    if (digits.size() % 2 == 1) digits.insert(digits.begin(), '0');
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
      bytes += static_cast<char>(hexValue(digits[i]) * 16 + hexValue(digits[i + 1]));
    }
    Literal value;
    const auto length = static_cast<std::int32_t>(bytes.size());
    value.type = Type::text(TypeKind::VarBinary, length == 0 ? 1 : length).orNull(false);
    value.text = batch_.storage.emplace_back(std::move(bytes));
    literal(begin, std::move(value), "B" + std::to_string(length));
  }

  void digits() {
    while (isDigit(peek())) ++at_;
  }

  // $IDENTITY and the like: columns that are not called by their names.
  void refusePseudocolumn() const {
    std::size_t length = 0;
    while (classOf(peek(length)) == Class::Letter) ++length;
    const std::string_view word = text_.substr(at_, length);
    for (const std::string_view known : {"IDENTITY", "ROWGUID", "PARTITION", "ACTION"}) {
      if (!sameName(word, known)) continue;
      throw SqlError(
          notSupportedNumber, 16,
          "'$" + std::string(word) + "' in line " + std::to_string(line()) + ": a column by its role is not supported.")
          .at(line());
    }
  }

  // The length of a sign that begins an amount as the dollar does; 0 where there is none.
  std::size_t currencySign() const {
    for (const std::string_view sign : currencySigns()) {
      if (text_.substr(at_).starts_with(sign)) return sign.size();
    }
    return 0;
  }

  // A sign, then perhaps a minus, digits and a point. Decimals from the fifth on are rounded away.
  void money(std::size_t signLength) {
    const auto begin = at_;
    at_ += signLength;
    if (signLength == 1) refusePseudocolumn();
    const bool negative = peek() == '-' && (isDigit(peek(1)) || peek(1) == '.');
    if (negative) ++at_;
    const auto first = at_;
    digits();
    if (peek() == '.') ++at_;
    digits();
    Literal value;
    // The sign alone, or with a point, is 0.
    const Decimal amount = Decimal::parse(text_.substr(first, at_ - first)).value_or(Decimal());
    value.type = Type::of(TypeKind::Money).orNull(false);
    try {
      value.text =
          batch_.storage.emplace_back(exactText(negative ? amount.negated() : amount, value.type, "expression"));
    } catch (const SqlError& error) {
      throw SqlError(error).at(line());
    }
    literal(begin, std::move(value), "M");
  }

  void number() {
    const auto begin = at_;
    digits();
    bool point = false;
    if (peek() == '.') {
      point = true;
      ++at_;
      digits();
    }
    // A letter E with digits, or with nothing behind it, is an exponent; otherwise it begins a word that is glued to
    // the number (1Else).
    std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
    if (!isDigit(peek(1 + sign))) sign = 0;
    if ((peek() == 'e' || peek() == 'E') && (sign > 0 || isDigit(peek(1)) || !isNamePart(peek(1)))) {
      at_ += 1 + sign;
      digits();
      return real(begin);
    }
    const auto digitsText = text_.substr(begin, at_ - begin);
    Literal value;
    const auto [end, error] = std::from_chars(digitsText.data(), digitsText.data() + digitsText.size(), value.integer);
    if (!point && error == std::errc() && value.integer <= std::numeric_limits<std::int32_t>::max()) {
      value.type = Type::of(TypeKind::Int).orNull(false);
      return literal(begin, std::move(value), "I");
    }
    decimal(begin, digitsText);
  }

  void real(std::size_t begin) {
    Literal value;
    const auto written = text_.substr(begin, at_ - begin);
    const auto [end, error] = std::from_chars(written.data(), written.data() + written.size(), value.real);
    // from_chars does not say which end of the range was left.
    if (error == std::errc::result_out_of_range && std::isinf(std::strtod(std::string(written).c_str(), nullptr))) {
      throw SqlError(168, 15,
                     "The floating point value '" + std::string(written) +
                         "' is out of the range of computer representation (8 bytes).")
          .at(line());
    }
    value.type = Type::of(TypeKind::Float).orNull(false);
    literal(begin, std::move(value), "F");
  }

  void decimal(std::size_t begin, std::string_view written) {
    const auto point = written.find('.');
    std::string whole(written.substr(0, point));
    const std::string fraction(point == std::string_view::npos ? "" : written.substr(point + 1));
    while (!whole.empty() && whole[0] == '0') whole.erase(0, 1);
    const auto precision = whole.size() + fraction.size();
    if (precision > 38) {
      throw SqlError(1007, 15,
                     "The number '" + std::string(written) +
                         "' is out of the range for numeric representation (maximum precision 38).")
          .at(line());
    }
    Literal value;
    value.type = Type::numericOf(precision == 0 ? 1 : static_cast<int>(precision), static_cast<int>(fraction.size()));
    value.type.nullable = false;
    value.text = batch_.storage.emplace_back((whole.empty() ? "0" : whole) + (fraction.empty() ? "" : "." + fraction));
    literal(begin, std::move(value), "D" + std::to_string(precision) + "," + std::to_string(fraction.size()));
  }

  ShapedBatch& batch_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t keyed_ = 0;  // the key holds the text up to here
};

}  // namespace

void ShapedBatch::assign(std::string_view newText) {
  text = newText;
  tokens.clear();
  literals.clear();
  placeholders = 0;
  key.clear();
  storage.clear();
  if (text.size() > std::numeric_limits<std::uint32_t>::max() / 2) {
    throw SqlError(103, 15, "The batch is longer than this engine takes.");
  }
  Lexer(*this).run();
}

ShapedBatch shape(std::string_view text) {
  ShapedBatch result;
  result.assign(text);
  return result;
}

std::int32_t literalWidth(const Literal& literal) {
  // Of varchar in the code page, where what is not ASCII has two bytes.
  std::int32_t width = 0;
  for (const char c : literal.text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      ++width;
    } else if (literal.type.isUnicode()) {
      width += byte >= 0xF0 ? 2 : byte >= 0xC0 ? 1 : 0;
    } else if (byte >= 0xC0) {
      width += 2;
    }
  }
  const std::int32_t longest = literal.type.isUnicode() ? 4000 : 8000;
  return width > longest ? maxLength : std::max(width, 1);
}

std::string structuralKey(const ShapedBatch& batch, const std::vector<int>& structuralLiterals) {
  std::string key;
  for (const int index : structuralLiterals) {
    if (index < 0) {
      key += std::to_string(literalWidth(batch.literals[static_cast<std::size_t>(widthOf(index))])) + ',';
      continue;
    }
    const Literal& literal = batch.literals[static_cast<std::size_t>(index)];
    const std::string value = literal.type.kind == TypeKind::Int     ? std::to_string(literal.integer)
                              : literal.type.kind == TypeKind::Float ? std::to_string(literal.real)
                                                                     : std::string(literal.text);
    key += std::to_string(value.size());
    key += ':';
    key += value;
  }
  return key;
}

}  // namespace tolvane::tsql
