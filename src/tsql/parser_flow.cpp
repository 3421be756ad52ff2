// What a batch does between its queries: handlers of errors, jumps, transactions, raised errors.
#include <algorithm>

#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementPtr;

// The statements up to an END, which is left to the caller.
StatementPtr Parser::blockOf(int first) {
  auto block = makeStatement(StatementKind::Block);
  block->token = first;
  while (takeOperator(";")) {
  }
  throwMayFollow_ = at_;
  while (!isWord("END")) {
    if (isEnd()) fail();
    block->statements.push_back(statement());
  }
  block->endToken = at_;
  return block;
}

// BEGIN TRY ... END TRY BEGIN CATCH ... END CATCH. The first needs a statement, the second does not.
StatementPtr Parser::tryCatch() {
  auto result = makeStatement(StatementKind::Try);
  at_ += 2;
  result->statements.push_back(blockOf(at_));
  if (result->statements.front()->statements.empty()) fail();
  ++at_;
  expectWord("TRY");
  expectWord("BEGIN");
  expectWord("CATCH");
  ++catchDepth_;
  result->statements.push_back(blockOf(at_));
  --catchDepth_;
  ++at_;
  expectWord("CATCH");
  return result;
}

// THROW is no reserved word: it begins a statement only where a statement must begin.
bool Parser::beginsThrow() const {
  if (!isWord("THROW")) return false;
  if (at_ == 0) return true;
  const Token& before = batch_.tokens[static_cast<std::size_t>(at_ - 1)];
  if (text(before) == ";" || text(before) == ":") return true;
  return throwMayFollow_ == at_;
}

StatementPtr Parser::throwError() {
  auto result = makeStatement(StatementKind::Throw);
  const int word = at_++;
  const bool again = isEnd() || isOperator(";") || isWord("END") || isWord("ELSE");
  if (again) {
    if (catchDepth_ > 0) return result;
    throw SqlError(10704, 15,
                   "To rethrow an error, a THROW statement must be used inside a CATCH block. Insert the THROW "
                   "statement inside a CATCH block, or add error parameters to the THROW statement.")
        .at(lineOf(batch_, word));
  }
  for (int i = 0; i < 3; ++i) {
    if (i > 0) expectOperator(",");
    result->arguments.push_back(constantOrVariable(false));
  }
  return result;
}

// What RAISERROR and THROW take: a literal or a variable, no computation.
tree::ExpressionPtr Parser::constantOrVariable(bool sign) {
  if (sign && isOperator("-") && peek(1).kind == TokenKind::Literal) {
    auto result = make(tree::ExpressionKind::Unary);
    result->name = "-";
    ++at_;
    result->arguments.push_back(primary());
    return result;
  }
  const bool value = token().kind == TokenKind::Literal || token().kind == TokenKind::Variable ||
                     token().kind == TokenKind::Placeholder || isWord("NULL");
  if (!value) fail();
  return primary();
}

// RAISERROR (message, severity, state [, value ...]) [WITH LOG | NOWAIT | SETERROR, ...]
StatementPtr Parser::raiseError() {
  auto result = makeStatement(StatementKind::RaiseError);
  ++at_;
  expectOperator("(");
  do {
    result->arguments.push_back(constantOrVariable(true));
  } while (takeOperator(","));
  if (result->arguments.size() < 3) fail();
  constexpr std::size_t most = 3 + 20;
  if (result->arguments.size() > most) {
    throw SqlError(2747, 16,
                   "Too many substitution parameters for RAISERROR. Cannot exceed 20 substitution parameters.")
        .at(lineOf(batch_, at_));
  }
  expectOperator(")");
  if (!takeWord("WITH")) return result;
  do {
    if (takeWord("SETERROR")) {
      result->operation = "SETERROR";
    } else if (takeWord("LOG")) {
      result->on = true;
    } else if (!takeWord("NOWAIT")) {
      fail();
    }
  } while (takeOperator(","));
  return result;
}

StatementPtr Parser::label() {
  auto result = makeStatement(StatementKind::Label);
  result->name = name();
  expectOperator(":");
  return result;
}

StatementPtr Parser::goTo() {
  auto result = makeStatement(StatementKind::GoTo);
  ++at_;
  result->name = name();
  return result;
}

// RETURN takes a value in procedures only.
StatementPtr Parser::leaveBatch() {
  auto result = makeStatement(StatementKind::Return);
  ++at_;
  const bool value = token().kind == TokenKind::Literal || token().kind == TokenKind::Variable ||
                     token().kind == TokenKind::Placeholder || isOperator("(") || isOperator("-") || isOperator("+") ||
                     isOperator("~") || isWord("NULL") || isWord("CASE") || isWord("CAST") || isWord("CONVERT") ||
                     (isName() && isOperator(1, "("));
  if (!value) return result;
  const int first = at_;
  (void)expression();
  throw SqlError(178, 15, "A RETURN statement with a return value cannot be used in this context.")
      .at(lineOf(batch_, first));
}

// BEGIN/COMMIT/ROLLBACK [TRAN[SACTION] | WORK] [name], SAVE TRAN[SACTION] name.
StatementPtr Parser::transaction(StatementKind kind) {
  auto result = makeStatement(kind);
  if (kind != StatementKind::Begin) ++at_;
  if (isWord("TRAN") || isWord("TRANSACTION")) {
    ++at_;
    transactionName(*result);
  } else if (kind == StatementKind::Save) {
    fail();
  } else {
    takeWord("WORK");
  }
  return result;
}

void Parser::transactionName(tree::StatementNode& statement) {
  if (isAlias()) {
    if (here().size() > 32 && token().kind == TokenKind::Word) {
      throw SqlError(103, 15,
                     "The identifier that starts with '" + std::string(here().substr(0, 32)) +
                         "' is too long. Maximum length is 32.")
          .at(lineOf(batch_, at_));
    }
    statement.name = name();
  } else if (token().kind == TokenKind::Variable) {
    statement.value = primary();
  } else if (statement.kind == StatementKind::Save) {
    fail();
  }
  const bool named = !statement.name.empty() || statement.value;
  if (statement.kind != StatementKind::Begin || !named || !isWord("WITH") || !isWord(1, "MARK")) return;
  at_ += 2;
  if (token().kind == TokenKind::Literal) ++at_;
}

// EXEC ('text' + @variable + ...)
StatementPtr Parser::runText() {
  auto result = makeStatement(StatementKind::RunText);
  ++at_;
  result->value = textToRun();
  expectOperator(")");
  if (isWord("AS") || isWord("AT")) refuse("EXEC of a text as somebody else or elsewhere");
  return result;
}

// Texts and variables, joined; nothing else is computed there.
tree::ExpressionPtr Parser::textToRun() {
  auto left = constantOrVariable(false);
  int chain = 0;
  while (isOperator("+")) {
    if (++chain > 400) fail();
    auto result = make(tree::ExpressionKind::Binary);
    result->name = "+";
    ++at_;
    result->arguments.push_back(std::move(left));
    result->arguments.push_back(constantOrVariable(false));
    left = std::move(result);
  }
  return left;
}

// sp_executesql [@stmt =] text [, [@params =] declarations [, [@parameter =] value [OUTPUT], ...]]
StatementPtr Parser::runTextWithParameters() {
  auto result = makeStatement(StatementKind::RunText);
  bool named = false;
  do {
    tree::Argument argument;
    if (token().kind == TokenKind::Variable && isOperator(1, "=")) {
      argument.name = here();
      at_ += 2;
    } else if (named) {
      throw SqlError(119, 15,
                     "Must pass parameter number " + std::to_string(result->passed.size() + 1) +
                         " and subsequent parameters as '@name = value'. After the form '@name = value' has been used, "
                         "all subsequent parameters must be passed in the form '@name = value'.")
          .at(lineOf(batch_, at_));
    }
    // The names of the first two are their own.
    const bool own = result->passed.size() < 2;
    named = named || (!argument.name.empty() && !own);
    argument.value = constantOrVariable(true);
    if (isWord("OUTPUT") || isWord("OUT")) {
      if (argument.value->kind != tree::ExpressionKind::Variable || own) fail();
      ++at_;
      argument.output = true;
    }
    result->passed.push_back(std::move(argument));
  } while (takeOperator(","));
  return result;
}

std::vector<FormalParameter> Parser::parseParameters() {
  std::vector<FormalParameter> result;
  while (!isEnd()) {
    if (!result.empty()) expectOperator(",");
    if (token().kind != TokenKind::Variable) fail();
    FormalParameter parameter;
    parameter.variable.name = here();
    ++at_;
    takeWord("AS");
    typeOrdinal_ = static_cast<int>(result.size()) + 1;
    parameter.variable.type = type();
    typeOrdinal_ = 0;
    Type& type = parameter.variable.type;
    if (typeRow(type.kind).takesLength && type.length == 0) type.length = 1;
    if (isOperator("=")) refuse("a default of a parameter");
    if (isWord("READONLY")) refuse("a table as a parameter");
    parameter.output = takeWord("OUTPUT") || takeWord("OUT");
    result.push_back(std::move(parameter));
  }
  return result;
}

}  // namespace tolvane::tsql
