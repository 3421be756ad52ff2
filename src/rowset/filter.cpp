#include "rowset/filter.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>

#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/names.h"
#include "rowset/decimal_order.h"
#include "rowset/server_errors.h"

namespace tolvane::rowset {

struct Filter::Node {
  enum class Kind { compare, like, both, either };
  enum class Operator { less, greater, lessOrEqual, greaterOrEqual, different, equal };
  enum class Match { whole, start, inside };

  Kind kind = Kind::compare;
  // compare and like
  std::size_t column = 0;
  Operator operation = Operator::equal;
  Match match = Match::whole;
  Value value;
  // both and either
  std::unique_ptr<Node> left;
  std::unique_ptr<Node> right;
};

namespace {

using Node = Filter::Node;

constexpr int deepestNesting = 200;

[[noreturn]] void badCriteria() {
  throw AutomationError(AdoError::invalidArgument, std::string(recordsetSource));
}

bool sameWord(std::string_view word, std::string_view keyword) {
  return sameName(word, keyword);
}

struct Clause {
  std::unique_ptr<Node> node;
  bool groupOfOr = false;  // in brackets, with OR inside
};

class Parser {
 public:
  Parser(std::string_view text, const std::vector<FieldInfo>& fields) : text_(text), fields_(fields) {}

  std::unique_ptr<Node> parse() {
    auto clause = chain(0);
    if (!atEnd()) badCriteria();
    return std::move(clause.node);
  }

 private:
  // Clauses from left to right; AND and OR weigh the same.
  Clause chain(int depth) {
    if (depth > deepestNesting) badCriteria();
    auto left = clause(depth);
    bool hasOr = false;
    while (const auto kind = joint()) {
      auto right = clause(depth);
      if (*kind == Node::Kind::both && (left.groupOfOr || right.groupOfOr)) badCriteria();
      hasOr = hasOr || *kind == Node::Kind::either;
      auto joined = std::make_unique<Node>();
      joined->kind = *kind;
      joined->left = std::move(left.node);
      joined->right = std::move(right.node);
      left = {std::move(joined), left.groupOfOr || right.groupOfOr};
    }
    left.groupOfOr = left.groupOfOr || hasOr;
    return left;
  }

  Clause clause(int depth) {
    if (take("(")) {
      auto inner = chain(depth + 1);
      if (!take(")")) badCriteria();
      return inner;
    }
    return {comparison(), false};
  }

  std::optional<Node::Kind> joint() {
    const auto start = at_;
    const auto found = word();
    if (sameWord(found, "AND")) return Node::Kind::both;
    if (sameWord(found, "OR")) return Node::Kind::either;
    at_ = start;
    return std::nullopt;
  }

  std::unique_ptr<Node> comparison() {
    auto node = std::make_unique<Node>();
    node->column = column();
    const auto start = at_;
    if (sameWord(word(), "LIKE")) {
      node->kind = Node::Kind::like;
      setPattern(*node, quotedText('\''));
      return node;
    }
    at_ = start;
    node->operation = operation();
    node->value = value();
    return node;
  }

  std::size_t column() {
    skipBlanks();
    std::string name;
    if (take("[")) {
      const auto close = text_.find(']', at_);
      if (close == std::string_view::npos) badCriteria();
      name = text_.substr(at_, close - at_);
      at_ = close + 1;
    } else {
      name = word();
    }
    if (name.empty()) badCriteria();
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const FieldInfo& field) { return sameName(field.name, name); });
    if (found == fields_.end()) throw AutomationError(AdoError::itemNotFound, std::string(recordsetSource));
    return static_cast<std::size_t>(found - fields_.begin());
  }

  Node::Operator operation() {
    if (take("<=")) return Node::Operator::lessOrEqual;
    if (take(">=")) return Node::Operator::greaterOrEqual;
    if (take("<>")) return Node::Operator::different;
    if (take("<")) return Node::Operator::less;
    if (take(">")) return Node::Operator::greater;
    if (take("=")) return Node::Operator::equal;
    badCriteria();
  }

  Value value() {
    skipBlanks();
    if (atEnd()) badCriteria();
    if (text_[at_] == '\'') return quotedText('\'');
    if (text_[at_] == '#') {
      const auto date = parseDate(quotedText('#'));
      if (!date) badCriteria();
      return *date;
    }
    const auto start = at_;
    while (at_ < text_.size() && text_[at_] != ' ' && text_[at_] != ')') ++at_;
    const auto number = parseDecimal(text_.substr(start, at_ - start));
    if (number) return *number;
    const auto real = parseNumber(text_.substr(start, at_ - start));
    if (!real) badCriteria();
    return *real;
  }

  // The text between two marks, a doubled mark inside standing for one.
  std::string quotedText(char mark) {
    skipBlanks();
    if (atEnd() || text_[at_] != mark) badCriteria();
    std::string result;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == mark) {
        if (at_ + 1 == text_.size() || text_[at_ + 1] != mark) {
          ++at_;
          return result;
        }
        ++at_;
      }
      result += text_[at_];
    }
    badCriteria();
  }

  static void setPattern(Node& node, std::string pattern) {
    const auto isWildcard = [](char c) { return c == '*' || c == '%'; };
    const bool atBack = !pattern.empty() && isWildcard(pattern.back());
    if (atBack) pattern.pop_back();
    const bool atFront = !pattern.empty() && isWildcard(pattern.front());
    if (atFront) pattern.erase(0, 1);
    if (atFront && !atBack) badCriteria();
    if (std::any_of(pattern.begin(), pattern.end(), isWildcard)) badCriteria();
    node.match = atFront ? Node::Match::inside : atBack ? Node::Match::start : Node::Match::whole;
    node.value = std::move(pattern);
  }

  std::string_view word() {
    skipBlanks();
    const auto start = at_;
    while (at_ < text_.size()) {
      const auto c = static_cast<unsigned char>(text_[at_]);
      if (std::isalnum(c) == 0 && c != '_' && c < 0x80) break;
      ++at_;
    }
    return text_.substr(start, at_ - start);
  }

  bool take(std::string_view mark) {
    skipBlanks();
    if (!text_.substr(at_).starts_with(mark)) return false;
    at_ += mark.size();
    return true;
  }

  void skipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }

  bool atEnd() {
    skipBlanks();
    return at_ == text_.size();
  }

  std::string_view text_;
  const std::vector<FieldInfo>& fields_;
  std::size_t at_ = 0;
};

bool matches(const Node& node, const Value& value, const TextOrder& order) {
  const auto text = order.folded(toText(value));
  const auto pattern = order.folded(*node.value.get<std::string>());
  switch (node.match) {
    case Node::Match::whole:
      return text == pattern;
    case Node::Match::start:
      return text.starts_with(pattern);
    case Node::Match::inside:
      return text.find(pattern) != std::u32string::npos;
  }
  return false;
}

int orderOf(double left, double right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

// How a row's value stands to the value of a clause, taken as the column's kind.
int compare(const Value& left, const Value& right, const TextOrder& order) {
  if (const auto* text = left.get<std::string>()) return order.compare(*text, toText(right));
  if (const auto* date = left.get<Date>()) return orderOf(date->days, toDate(right).days);
  if (left.get<Currency>() || left.get<Decimal>()) {
    const auto a = exactText(toDecimal(left));
    const auto b = exactText(toDecimal(right));
    return compareDecimalTexts(a, b);
  }
  return orderOf(toDouble(left), toDouble(right));
}

bool holds(Node::Operator operation, int order) {
  switch (operation) {
    case Node::Operator::less:
      return order < 0;
    case Node::Operator::greater:
      return order > 0;
    case Node::Operator::lessOrEqual:
      return order <= 0;
    case Node::Operator::greaterOrEqual:
      return order >= 0;
    case Node::Operator::different:
      return order != 0;
    case Node::Operator::equal:
      return order == 0;
  }
  return false;
}

bool accepts(const Node& node, const std::function<Value(std::size_t)>& column, const TextOrder& order) {
  if (node.kind == Node::Kind::both) return accepts(*node.left, column, order) && accepts(*node.right, column, order);
  if (node.kind == Node::Kind::either) return accepts(*node.left, column, order) || accepts(*node.right, column, order);
  const auto value = column(node.column);
  if (value.isNull() || value.isEmpty() || value.get<Bytes>()) return false;
  if (node.kind == Node::Kind::like) return matches(node, value, order);
  return holds(node.operation, compare(value, node.value, order));
}

// A value that the column's kind cannot be compared with is found when the filter is set, not at some row of it.
void checkValues(const Node& node, const std::vector<FieldInfo>& fields) {
  if (node.left) {
    checkValues(*node.left, fields);
    checkValues(*node.right, fields);
    return;
  }
  try {
    switch (fields[node.column].type) {
      case DataType::smallInt:
      case DataType::integer:
      case DataType::single:
      case DataType::real:
      case DataType::currency:
      case DataType::boolean:
      case DataType::unsignedTinyInt:
      case DataType::bigInt:
      case DataType::numeric:
        if (node.kind == Node::Kind::compare) (void)toDouble(node.value);
        break;
      case DataType::date:
      case DataType::timestamp:
        if (node.kind == Node::Kind::compare) (void)toDate(node.value);
        break;
      default:
        break;
    }
  } catch (const AutomationError&) {
    badCriteria();
  }
}

}  // namespace

Filter::Filter(std::string_view criteria, const std::vector<FieldInfo>& fields, const TextOrder& order)
    : root_(Parser(criteria, fields).parse()), order_(&order) {
  checkValues(*root_, fields);
}
Filter::Filter(Filter&&) noexcept = default;
Filter& Filter::operator=(Filter&&) noexcept = default;
Filter::~Filter() = default;

bool Filter::accepts(const std::function<Value(std::size_t)>& column) const {
  return tolvane::rowset::accepts(*root_, column, *order_);
}

}  // namespace tolvane::rowset
