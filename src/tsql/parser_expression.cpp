#include "tsql/function_table.h"
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;
using tree::ExpressionPtr;

ExpressionPtr Parser::make(ExpressionKind kind) const {
  auto result = std::make_unique<Expression>();
  result->kind = kind;
  result->token = at_;
  return result;
}

// A value in the place of a condition is an error that names the word after it.
ExpressionPtr Parser::asCondition(ExpressionPtr value) const {
  if (value->kind >= ExpressionKind::Compare) return value;
  const std::string near =
      isEnd() ? nameOf(batch_, batch_.tokens[static_cast<std::size_t>(at_ - 1)]) : nameOf(batch_, token());
  throw SqlError(
      4145, 15,
      "An expression of non-boolean type specified in a context where a condition is expected, near '" + near + "'.")
      .at(lineOf(batch_, at_));
}

ExpressionPtr Parser::requiredCondition() {
  return asCondition(condition());
}

// AND and OR take any number of arguments, so that long chains do not become deep trees.
ExpressionPtr Parser::condition() {
  const Depth depth(*this);
  auto first = conjunction();
  if (!isWord("OR")) return first;
  auto result = make(ExpressionKind::Or);
  result->arguments.push_back(asCondition(std::move(first)));
  while (takeWord("OR")) result->arguments.push_back(asCondition(conjunction()));
  return result;
}

ExpressionPtr Parser::conjunction() {
  auto first = negation();
  if (!isWord("AND")) return first;
  auto result = make(ExpressionKind::And);
  result->arguments.push_back(asCondition(std::move(first)));
  while (takeWord("AND")) result->arguments.push_back(asCondition(negation()));
  return result;
}

ExpressionPtr Parser::negation() {
  if (!isWord("NOT")) return predicate();
  const Depth depth(*this);
  auto result = make(ExpressionKind::Not);
  ++at_;
  result->arguments.push_back(asCondition(negation()));
  return result;
}

// `( condition )` and `( expression )` begin alike: a bracket is read as a condition, which may turn out a plain value.
ExpressionPtr Parser::predicate() {
  if (isWord("EXISTS")) {
    auto result = make(ExpressionKind::Exists);
    ++at_;
    expectOperator("(");
    result->query = query();
    expectOperator(")");
    return result;
  }
  if ((isWord("CONTAINS") || isWord("FREETEXT")) && isOperator(1, "(")) refuse("full-text search");
  return predicateTail(expression());
}

// Whether what stands in brackets behind IN is a list of values whose first one is a sub-query in brackets.
bool Parser::beginsList() const {
  if (!isOperator("(")) return false;
  int depth = 0;
  int ahead = 0;
  do {
    if (peek(ahead).kind == TokenKind::End) return false;
    if (isOperator(ahead, "(")) ++depth;
    if (isOperator(ahead, ")")) --depth;
    ++ahead;
  } while (depth > 0);
  return !isOperator(ahead, ")") && !isWord(ahead, "UNION") && !isWord(ahead, "EXCEPT") && !isWord(ahead, "INTERSECT");
}

ExpressionPtr Parser::predicateTail(ExpressionPtr left) {
  if (isWord("IS")) {
    auto result = make(ExpressionKind::IsNull);
    ++at_;
    result->negated = takeWord("NOT");
    if (takeWord("DISTINCT")) {
      expectWord("FROM");
      result->kind = ExpressionKind::Compare;
      result->name = result->negated ? "IS" : "IS NOT";
      result->negated = false;
      result->arguments.push_back(std::move(left));
      result->arguments.push_back(expression());
      return result;
    }
    expectWord("NULL");
    result->arguments.push_back(std::move(left));
    return result;
  }
  const int ahead = isWord("NOT") ? 1 : 0;
  const bool between = isWord(ahead, "BETWEEN");
  const bool in = isWord(ahead, "IN");
  const bool like = isWord(ahead, "LIKE");
  if (!between && !in && !like) return comparison(std::move(left));
  at_ += ahead;
  auto result = make(between ? ExpressionKind::Between : like ? ExpressionKind::Like : ExpressionKind::InList);
  result->negated = ahead == 1;
  ++at_;
  result->arguments.push_back(std::move(left));
  if (between) {
    result->arguments.push_back(expression());
    expectWord("AND");
    result->arguments.push_back(expression());
  } else if (like) {
    result->arguments.push_back(expression());
    if (takeWord("ESCAPE")) result->arguments.push_back(expression());
  } else {
    expectOperator("(");
    if (beginsQuery(0) && !beginsList()) {
      result->kind = ExpressionKind::InQuery;
      result->query = query();
    } else {
      do {
        result->arguments.push_back(expression());
      } while (takeOperator(","));
    }
    expectOperator(")");
  }
  return result;
}

ExpressionPtr Parser::comparison(ExpressionPtr left) {
  // The outer joins of old are no operators any more.
  if (isOperator("*=")) fail();
  static constexpr std::string_view operators[] = {"=", "<>", "!=", "<", ">", "<=", ">=", "!<", "!>"};
  static constexpr std::string_view meanings[] = {"=", "<>", "<>", "<", ">", "<=", ">=", ">=", "<="};
  for (std::size_t i = 0; i < std::size(operators); ++i) {
    if (!isOperator(operators[i])) continue;
    auto result = make(ExpressionKind::Compare);
    result->name = meanings[i];
    ++at_;
    // < = and > = may be written apart, as may < >.
    if ((result->name == "<" || result->name == ">") && isOperator("=")) {
      ++at_;
      result->name += '=';
    } else if (result->name == "<" && takeOperator(">")) {
      result->name = "<>";
    } else if (result->name != "=" && isOperator(result->name)) {
      refuse("a shift of bits");
    }
    result->arguments.push_back(std::move(left));
    if (isWord("ALL") || isWord("ANY") || isWord("SOME")) {
      result->kind = ExpressionKind::Quantified;
      result->all = isWord("ALL");
      ++at_;
      expectOperator("(");
      result->query = query();
      expectOperator(")");
    } else {
      result->arguments.push_back(expression());
    }
    return result;
  }
  return left;
}

// + - & ^ | share one rank in T-SQL, from left to right.
ExpressionPtr Parser::expression() {
  const Depth depth(*this);
  auto left = term();
  int chain = 0;
  while (isOperator("+") || isOperator("-") || isOperator("&") || isOperator("|") || isOperator("^")) {
    if (++chain > 400) fail();
    auto result = make(ExpressionKind::Binary);
    result->name = here();
    ++at_;
    result->arguments.push_back(std::move(left));
    result->arguments.push_back(term());
    left = std::move(result);
  }
  return left;
}

ExpressionPtr Parser::term() {
  auto left = unary();
  int chain = 0;
  while (isOperator("*") || isOperator("/") || isOperator("%")) {
    if (++chain > 400) fail();
    auto result = make(ExpressionKind::Binary);
    result->name = here();
    ++at_;
    result->arguments.push_back(std::move(left));
    result->arguments.push_back(unary());
    left = std::move(result);
  }
  return left;
}

// There is one collation; a text may say that it means this one.
void Parser::collation() {
  const std::string collation = name();
  if (sameName(collation, "Chinese_PRC_CI_AS") || sameName(collation, "database_default")) return;
  --at_;
  refuse("a collation other than Chinese_PRC_CI_AS");
}

ExpressionPtr Parser::unary() {
  if (!isOperator("-") && !isOperator("+") && !isOperator("~")) {
    auto result = primary();
    while (takeWord("COLLATE")) {
      collation();
      result->collated = true;
    }
    if (isWord("AT") && isWord(1, "TIME") && isWord(2, "ZONE")) refuse("AT TIME ZONE");
    return result;
  }
  const Depth depth(*this);
  auto result = make(ExpressionKind::Unary);
  result->name = here();
  ++at_;
  // A sign binds as an addition does, so what is multiplied behind it belongs to it; a complement binds tightest.
  result->arguments.push_back(result->name == "~" ? unary() : term());
  return result;
}

ExpressionPtr Parser::primary() {
  switch (token().kind) {
    case TokenKind::Literal:
    case TokenKind::Placeholder: {
      auto result = make(token().kind == TokenKind::Literal ? ExpressionKind::Literal : ExpressionKind::Placeholder);
      result->literal = token().literal;
      ++at_;
      return result;
    }
    case TokenKind::Variable: {
      auto result = make(ExpressionKind::Variable);
      result->name = here();
      ++at_;
      if (isOperator(".")) memberOf(*result);
      return result;
    }
    case TokenKind::QuotedName:
      return columnName();
    case TokenKind::Word:
      return wordExpression();
    default:
      break;
  }
  if (isOperator("{")) return escapedLiteral();
  if (!isOperator("(")) fail();
  if (beginsQuery(1)) {
    auto result = make(ExpressionKind::Subquery);
    ++at_;
    result->query = query();
    expectOperator(")");
    return result;
  }
  ++at_;
  auto inner = condition();
  expectOperator(")");
  return inner;
}

// The columns of a table variable are named by an alias only; types with methods are not there.
void Parser::memberOf(const Expression& variable) const {
  if (peek(1).kind == TokenKind::Word && isOperator(2, "(")) refuse("a method of a variable");
  throw SqlError(Message::MustDeclareVariable, {variable.name}).at(lineOf(batch_, variable.token));
}

ExpressionPtr Parser::wordExpression() {
  if (isWord("NULL")) {
    auto result = make(ExpressionKind::Null);
    ++at_;
    return result;
  }
  if (isWord("DEFAULT")) {
    auto result = make(ExpressionKind::Default);
    ++at_;
    return result;
  }
  if (isWord("IDENTITY") && isOperator(1, "(")) refuse("IDENTITY() in a query");
  if (isWord("CASE")) return caseExpression();
  if ((isWord("CAST") || isWord("TRY_CAST")) && isOperator(1, "(")) return castExpression();
  if (isWord("CONVERT") || (isWord("TRY_CONVERT") && isOperator(1, "("))) return convertExpression();
  if (isWord("IIF") && isOperator(1, "(")) return immediateIf();
  if (isWord("TRIM") && isOperator(1, "(")) return trimExpression();
  if (isWord("CURRENT_TIMESTAMP") || isWord("CURRENT_USER") || isWord("USER") || isWord("SESSION_USER") ||
      isWord("SYSTEM_USER")) {
    auto result = make(ExpressionKind::Call);
    result->name = isWord("CURRENT_TIMESTAMP") ? "GETDATE" : "USER_NAME";
    ++at_;
    return result;
  }
  const bool functionWord = isWord("LEFT") || isWord("RIGHT") || isWord("COALESCE") || isWord("NULLIF");
  if (isOperator(1, "(") && (functionWord || !isReserved(here()))) {
    std::string function(here());
    for (char& c : function) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if (isRefusedFunction(function) && findFunctionRow(function) == nullptr) refuse("the function");
    return call(std::move(function));
  }
  return columnName();
}

ExpressionPtr Parser::caseExpression() {
  const Depth depth(*this);
  auto result = make(ExpressionKind::Case);
  ++at_;
  if (!isWord("WHEN")) result->operand = expression();
  while (takeWord("WHEN")) {
    result->arguments.push_back(result->operand ? expression() : requiredCondition());
    expectWord("THEN");
    result->arguments.push_back(expression());
  }
  if (result->arguments.empty()) fail();
  if (takeWord("ELSE")) result->otherwise = expression();
  expectWord("END");
  return result;
}

// IIF is the CASE that it stands for.
ExpressionPtr Parser::immediateIf() {
  const Depth depth(*this);
  auto result = make(ExpressionKind::Case);
  at_ += 2;
  result->arguments.push_back(requiredCondition());
  expectOperator(",");
  result->arguments.push_back(expression());
  expectOperator(",");
  result->otherwise = expression();
  expectOperator(")");
  return result;
}

// TRIM(text), TRIM([side] characters FROM text).
ExpressionPtr Parser::trimExpression() {
  const Depth depth(*this);
  auto result = make(ExpressionKind::Call);
  at_ += 2;
  const bool sided = (isWord("LEADING") || isWord("TRAILING") || isWord("BOTH")) && !isOperator(1, ")") &&
                     !isOperator(1, ".") && !isOperator(1, "+");
  result->name = sided && isWord("LEADING") ? "LTRIM" : sided && isWord("TRAILING") ? "RTRIM" : "TRIM";
  if (sided) ++at_;
  result->arguments.push_back(expression());
  if (sided && !isWord("FROM")) fail();
  if (takeWord("FROM")) result->arguments.insert(result->arguments.begin(), expression());
  expectOperator(")");
  return result;
}

// {d '...'}, {ts '...'} and {guid '...'}: a literal of a type that has none of its own.
ExpressionPtr Parser::escapedLiteral() {
  const bool text =
      peek(2).kind == TokenKind::Literal && batch_.literals[static_cast<std::size_t>(peek(2).literal)].type.isText();
  const bool guid = isWord(1, "GUID");
  if (!text || !isOperator(3, "}") || !(guid || isWord(1, "D") || isWord(1, "TS"))) refuse("this escape of ODBC");
  auto result = make(ExpressionKind::Cast);
  result->name = "CAST";
  result->type = Type::of(guid ? TypeKind::UniqueIdentifier : TypeKind::DateTime);
  at_ += 2;
  result->arguments.push_back(primary());
  ++at_;
  return result;
}

ExpressionPtr Parser::castExpression() {
  auto result = make(ExpressionKind::Cast);
  result->name = isWord("CAST") ? "CAST" : "TRY_CAST";
  at_ += 2;
  result->arguments.push_back(expression());
  expectWord("AS");
  result->type = type();
  if (typeRow(result->type.kind).takesLength && result->type.length == 0) result->type.length = 30;
  expectOperator(")");
  return result;
}

ExpressionPtr Parser::convertExpression() {
  auto result = make(ExpressionKind::Cast);
  result->name = isWord("CONVERT") ? "CONVERT" : "TRY_CONVERT";
  ++at_;
  expectOperator("(");
  result->type = type();
  if (typeRow(result->type.kind).takesLength && result->type.length == 0) result->type.length = 30;
  expectOperator(",");
  result->arguments.push_back(expression());
  if (takeOperator(",")) result->arguments.push_back(expression());
  expectOperator(")");
  return result;
}

ExpressionPtr Parser::call(std::string function) {
  auto result = make(ExpressionKind::Call);
  result->name = std::move(function);
  at_ += 2;
  callArguments(*result);
  return result;
}

void Parser::callArguments(Expression& call) {
  if (isOperator("*") && isOperator(1, ")") && call.name.starts_with("COUNT")) {
    call.star = true;
    ++at_;
  } else if (!isOperator(")")) {
    if (takeWord("DISTINCT")) {
      call.distinct = true;
    } else {
      takeWord("ALL");
    }
    do {
      call.arguments.push_back(expression());
    } while (takeOperator(","));
  }
  // These two are no functions to SQL Server: too few values are an error of syntax.
  if ((call.name == "COALESCE" || call.name == "NULLIF") && call.arguments.size() < 2) fail();
  expectOperator(")");
  if (isWord("WITHIN") && isWord(1, "GROUP")) withinGroup(call);
  if ((isWord("IGNORE") || isWord("RESPECT")) && isWord(1, "NULLS")) refuse("a rule for nulls");
  if (isWord("OVER")) window(call);
}

void Parser::withinGroup(Expression& call) {
  if (call.name != "STRING_AGG") refuse("WITHIN GROUP behind that function");
  at_ += 2;
  expectOperator("(");
  call.order = orderBy();
  expectOperator(")");
}

void Parser::window(Expression& call) {
  call.over = true;
  ++at_;
  expectOperator("(");
  if (takeWord("PARTITION")) {
    expectWord("BY");
    do {
      call.partition.push_back(expression());
    } while (takeOperator(","));
  }
  if (isWord("ORDER")) call.order = orderBy();
  if (isWord("ROWS") || isWord("RANGE")) call.frame = windowFrame();
  expectOperator(")");
}

// ROWS 2 PRECEDING ends at the current row.
std::unique_ptr<tree::WindowFrame> Parser::windowFrame() {
  auto result = std::make_unique<tree::WindowFrame>();
  result->token = at_;
  result->range = isWord("RANGE");
  ++at_;
  const bool between = takeWord("BETWEEN");
  const int first = at_;
  result->start = windowBound();
  if (between) {
    expectWord("AND");
    result->end = windowBound();
  }
  // How far a bound is from the rows before all.
  const auto place = [](const tree::WindowBound& bound) {
    using enum tree::WindowBound::Kind;
    return bound.kind == Current ? 0 : bound.following ? 1 : -1;
  };
  const bool unbounded = result->start.kind == tree::WindowBound::Kind::Unbounded;
  const bool endless = result->end.kind == tree::WindowBound::Kind::Unbounded;
  const bool possible = place(result->start) <= place(result->end) && !(unbounded && result->start.following) &&
                        !(endless && !result->end.following);
  if (!possible) throw notSupported(batch_, first, "such a window frame");
  return result;
}

tree::WindowBound Parser::windowBound() {
  tree::WindowBound result;
  if (takeWord("CURRENT")) {
    expectWord("ROW");
    return result;
  }
  result.kind = tree::WindowBound::Kind::Unbounded;
  if (!takeWord("UNBOUNDED")) {
    result.kind = tree::WindowBound::Kind::Rows;
    result.rows = structuralInteger();
  }
  result.following = takeWord("FOLLOWING");
  if (!result.following) expectWord("PRECEDING");
  return result;
}

// [[database.]schema.]table.column
ExpressionPtr Parser::columnName() {
  auto result = make(ExpressionKind::Column);
  result->name = name();
  while (isOperator(".") && !isOperator(1, "*")) {
    ++at_;
    if (!result->qualifier.empty() || !result->prefix.empty()) result->prefix += result->qualifier + ".";
    result->qualifier = std::move(result->name);
    result->name.clear();
    // database..table.column
    if (!isOperator(".") || !result->prefix.empty()) result->name = anyName();
  }
  if (!result->qualifier.empty() && takeOperator("(")) {
    result->kind = ExpressionKind::Call;
    callArguments(*result);
  }
  return result;
}

}  // namespace tolvane::tsql
