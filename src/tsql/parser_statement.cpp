#include <algorithm>
#include <span>

#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementPtr;

namespace {

constexpr int mostRecursion = 32767;

StatementPtr makeStatement(StatementKind kind) {
  auto result = std::make_unique<tree::StatementNode>();
  result->kind = kind;
  return result;
}

}  // namespace

StatementPtr Parser::statement() {
  const Depth depth(*this);
  const int first = at_;
  auto result = simpleStatement();
  result->token = first;
  result->endToken = at_;
  const bool ended = isOperator(";");
  while (takeOperator(";")) {
  }
  if (!ended && isWord("WITH")) {
    throw SqlError(319, 15,
                   "Incorrect syntax near the keyword 'with'. If this statement is a common table expression, an "
                   "xmlnamespaces clause or a change tracking context clause, the previous statement must be "
                   "terminated with a semicolon.")
        .at(lineOf(batch_, at_));
  }
  return result;
}

StatementPtr Parser::simpleStatement() {
  if (beginsQuery(0)) return selectStatement();
  if (isWord("WITH")) return withQuery();
  if (isWord("INSERT") || isWord("UPDATE") || isWord("DELETE")) return change();
  if (isWord("IF")) return conditional();
  if (isWord("WHILE")) return loop();
  if (isWord("BEGIN")) return begin();
  if (isWord("DECLARE")) return declare();
  if (isWord("SET")) return set();
  if (isWord("PRINT")) return print();
  if (isWord("RAISERROR")) return raiseError();
  if (isWord("COMMIT")) return transaction(StatementKind::Commit);
  if (isWord("ROLLBACK")) return transaction(StatementKind::Rollback);
  if (isWord("CREATE")) return create();
  if (isWord("ALTER")) return alter();
  if (isWord("DROP")) return drop();
  if (isWord("TRUNCATE")) return truncate();
  if (isWord("BREAK") || isWord("CONTINUE")) {
    auto result = makeStatement(isWord("BREAK") ? StatementKind::Break : StatementKind::Continue);
    ++at_;
    return result;
  }
  if (takeWord("RETURN")) return makeStatement(StatementKind::Return);
  const bool execute = isWord("EXEC") || isWord("EXECUTE");
  if (execute || (isName() && isFirstStatement())) return procedureCall(execute);
  static constexpr std::string_view known[] = {"MERGE",   "GRANT", "REVOKE",     "DENY",  "USE",       "GOTO",
                                               "WAITFOR", "OPEN",  "FETCH",      "CLOSE", "BACKUP",    "RESTORE",
                                               "DBCC",    "KILL",  "CHECKPOINT", "SAVE",  "DEALLOCATE"};
  for (const auto word : known) {
    if (isWord(word)) refuse("the statement");
  }
  fail();
}

bool Parser::isFirstStatement() const {
  const auto before = std::span(batch_.tokens).first(static_cast<std::size_t>(at_));
  return std::ranges::all_of(before, [&](const Token& token) { return text(token) == ";"; });
}

// [EXEC[UTE] [@result =]] name [[@parameter =] value [OUTPUT]], ...: there are no procedures here but those that SQL
// Server brings along, which are refused.
StatementPtr Parser::procedureCall(bool execute) {
  auto result = makeStatement(StatementKind::Call);
  if (execute) {
    const int word = at_++;
    if (token().kind == TokenKind::Variable && isOperator(1, "=")) at_ += 2;
    if (!isName()) throw notSupported(batch_, word, "the statement");
  }
  const int first = at_;
  const auto procedure = tableName();
  if (procedure.name.starts_with("sp_") || procedure.name.starts_with("xp_")) {
    throw notSupported(batch_, first, "the procedure");
  }
  result->name = (procedure.schema.empty() ? "" : procedure.schema + ".") + procedure.name;
  while (procedureArgument()) {
    if (!takeOperator(",")) break;
  }
  return result;
}

bool Parser::procedureArgument() {
  if (token().kind == TokenKind::Variable && isOperator(1, "=")) at_ += 2;
  const bool sign = isOperator("-");
  if (sign) ++at_;
  const bool value = token().kind == TokenKind::Literal || token().kind == TokenKind::Variable || isName() ||
                     isWord("NULL") || isWord("DEFAULT");
  if (!value) {
    if (sign) fail();
    return false;
  }
  ++at_;
  if (!takeWord("OUTPUT")) takeWord("OUT");
  return true;
}

StatementPtr Parser::selectStatement() {
  auto result = makeStatement(StatementKind::Select);
  result->query = query();
  options(*result->query);
  return result;
}

// OPTION (...): of the hints, MAXRECURSION alone means something; those that choose among plans are read only.
void Parser::options(tree::Query& query) {
  if (!isWord("OPTION") || !isOperator(1, "(")) return;
  at_ += 2;
  do {
    queryHint(query);
  } while (takeOperator(","));
  expectOperator(")");
}

void Parser::queryHint(tree::Query& query) {
  if (takeWord("MAXRECURSION")) {
    query.maxRecursion = structuralInteger();
    if (query.maxRecursion > mostRecursion) {
      throw SqlError(310, 15,
                     "The value " + std::to_string(query.maxRecursion) +
                         " specified for the MAXRECURSION option exceeds the allowed maximum of 32767.")
          .at(lineOf(batch_, at_ - 1));
    }
    return;
  }
  for (const auto counted : {"MAXDOP", "FAST", "QUERYTRACEON"}) {
    if (!takeWord(counted)) continue;
    structuralInteger();
    return;
  }
  static constexpr std::string_view pairs[][2] = {{"HASH", "JOIN"},
                                                  {"LOOP", "JOIN"},
                                                  {"MERGE", "JOIN"},
                                                  {"HASH", "GROUP"},
                                                  {"ORDER", "GROUP"},
                                                  {"HASH", "UNION"},
                                                  {"MERGE", "UNION"},
                                                  {"CONCAT", "UNION"},
                                                  {"FORCE", "ORDER"},
                                                  {"KEEP", "PLAN"},
                                                  {"ROBUST", "PLAN"},
                                                  {"EXPAND", "VIEWS"},
                                                  {"KEEPFIXED", "PLAN"},
                                                  {"PARAMETERIZATION", "SIMPLE"},
                                                  {"PARAMETERIZATION", "FORCED"}};
  for (const auto& [first, second] : pairs) {
    if (!isWord(first) || !isWord(1, second)) continue;
    at_ += 2;
    return;
  }
  if (isWord("OPTIMIZE") && isWord(1, "FOR")) {
    at_ += 2;
    if (takeWord("UNKNOWN")) return;
    if (isOperator("(")) return bracketed();
  }
  if (isWord("USE") && isWord(1, "HINT") && isOperator(2, "(")) {
    at_ += 2;
    return bracketed();
  }
  if (!takeWord("RECOMPILE")) refuse("the hint");
}

// Steps over brackets with anything between them.
void Parser::bracketed() {
  int depth = 0;
  do {
    if (isEnd()) fail();
    if (isOperator("(")) ++depth;
    if (isOperator(")")) --depth;
    if (token().kind == TokenKind::Literal) structural_.push_back(token().literal);
    ++at_;
  } while (depth > 0);
}

StatementPtr Parser::withQuery() {
  const int first = at_;
  auto with = commonTables();
  if (isWord("INSERT") || isWord("UPDATE") || isWord("DELETE")) {
    auto result = change();
    result->with = std::move(with);
    return result;
  }
  if (isWord("MERGE")) refuse("the statement");
  if (!beginsQuery(0)) fail();
  auto result = selectStatement();
  result->query->token = first;
  result->query->with = std::move(with);
  return result;
}

StatementPtr Parser::change() {
  auto result = isWord("INSERT") ? insert() : isWord("UPDATE") ? update() : remove();
  tree::Query hints;
  options(hints);
  result->maxRecursion = hints.maxRecursion;
  return result;
}

void Parser::top(tree::StatementNode& statement) {
  if (!takeWord("TOP")) return;
  const bool bracket = takeOperator("(");
  statement.top = bracket ? expression() : primary();
  if (bracket) expectOperator(")");
  if (isWord("PERCENT")) refuse("TOP ... PERCENT");
}

StatementPtr Parser::insert() {
  auto result = makeStatement(StatementKind::Insert);
  ++at_;
  if (isWord("TOP")) refuse("INSERT TOP");
  takeWord("INTO");
  result->table = tableName();
  if (isWord("WITH") && isOperator(1, "(")) tableHints();
  if (isOperator("(") && !beginsQuery(0)) result->columns = nameList();
  if (isWord("OUTPUT")) refuse("OUTPUT");
  if (takeWord("DEFAULT")) {
    expectWord("VALUES");
    result->defaultValues = true;
    return result;
  }
  if (takeWord("VALUES")) {
    result->query = std::make_unique<tree::Query>();
    result->query->token = at_;
    result->query->body = std::make_unique<tree::QueryBody>();
    result->query->body->token = at_;
    result->query->body->select = std::make_unique<tree::Select>();
    result->query->body->select->token = at_;
    result->query->body->select->values = valueRows();
    return result;
  }
  if (isWord("EXEC") || isWord("EXECUTE")) refuse("INSERT ... EXEC");
  result->query = query();
  return result;
}

std::vector<tree::Assignment> Parser::assignments() {
  std::vector<tree::Assignment> result;
  do {
    tree::Assignment assignment;
    assignment.token = at_;
    if (token().kind == TokenKind::Variable) refuse("a variable in the SET of an UPDATE");
    assignment.column = name();
    while (takeOperator(".")) assignment.column = anyName();
    if (!takeOperator("=")) {
      for (const std::string_view compound : {"+=", "-=", "*=", "/=", "%=", "&=", "|=", "^="}) {
        if (isOperator(compound)) assignment.operation = compound.substr(0, 1);
      }
      if (assignment.operation.empty()) fail();
      ++at_;
    }
    assignment.value = expression();
    result.push_back(std::move(assignment));
  } while (takeOperator(","));
  return result;
}

void Parser::fromAndWhere(tree::StatementNode& statement) {
  if (isWord("OUTPUT")) refuse("OUTPUT");
  if (takeWord("FROM")) {
    statement.hasFrom = true;
    statement.from = tableReferences();
  }
  if (takeWord("WHERE")) {
    if (isWord("CURRENT") && isWord(1, "OF")) refuse("WHERE CURRENT OF");
    statement.where = requiredCondition();
  }
}

StatementPtr Parser::update() {
  auto result = makeStatement(StatementKind::Update);
  ++at_;
  top(*result);
  result->table = tableName();
  tableHints();
  expectWord("SET");
  result->assignments = assignments();
  fromAndWhere(*result);
  return result;
}

StatementPtr Parser::remove() {
  auto result = makeStatement(StatementKind::Delete);
  ++at_;
  top(*result);
  takeWord("FROM");
  result->table = tableName();
  tableHints();
  fromAndWhere(*result);
  return result;
}

StatementPtr Parser::truncate() {
  auto result = makeStatement(StatementKind::Truncate);
  ++at_;
  expectWord("TABLE");
  result->table = tableName();
  return result;
}

StatementPtr Parser::conditional() {
  auto result = makeStatement(StatementKind::If);
  ++at_;
  result->where = requiredCondition();
  result->statements.push_back(statement());
  if (takeWord("ELSE")) result->statements.push_back(statement());
  return result;
}

StatementPtr Parser::loop() {
  auto result = makeStatement(StatementKind::While);
  ++at_;
  result->where = requiredCondition();
  result->statements.push_back(statement());
  return result;
}

StatementPtr Parser::begin() {
  if (isWord(1, "TRAN") || isWord(1, "TRANSACTION")) {
    ++at_;
    return transaction(StatementKind::Begin);
  }
  if (isWord(1, "TRY") || isWord(1, "CATCH") || isWord(1, "DISTRIBUTED")) {
    ++at_;
    refuse("BEGIN of that kind");
  }
  auto result = makeStatement(StatementKind::Block);
  ++at_;
  while (takeOperator(";")) {
  }
  while (!isWord("END")) {
    if (isEnd()) fail();
    result->statements.push_back(statement());
  }
  if (result->statements.empty()) fail();
  ++at_;
  return result;
}

// BEGIN/COMMIT/ROLLBACK [TRAN[SACTION] | WORK] [name]: names mark nothing, but for ROLLBACK to a savepoint, which is
// refused together with SAVE.
StatementPtr Parser::transaction(StatementKind kind) {
  auto result = makeStatement(kind);
  if (kind != StatementKind::Begin) ++at_;
  if (isWord("TRAN") || isWord("TRANSACTION")) {
    ++at_;
    if (isName()) {
      result->name = name();
    } else if (token().kind == TokenKind::Variable) {
      ++at_;
    }
  } else {
    takeWord("WORK");
  }
  return result;
}

StatementPtr Parser::declare() {
  auto result = makeStatement(StatementKind::Declare);
  ++at_;
  do {
    tree::Declaration declaration;
    declaration.token = at_;
    if (token().kind != TokenKind::Variable || here().starts_with("@@")) {
      if (isName() && isWord(1, "CURSOR")) refuse("a cursor");
      fail();
    }
    declaration.name = here();
    ++at_;
    takeWord("AS");
    typeOrdinal_ = static_cast<int>(result->declarations.size()) + 1;
    if (isWord("TABLE") || isWord("CURSOR")) refuse("a variable of that kind");
    declaration.type = type();
    typeOrdinal_ = 0;
    if (typeRow(declaration.type.kind).takesLength && declaration.type.length == 0) declaration.type.length = 1;
    if (declaration.type.isLongText() || declaration.type.kind == TypeKind::Image) {
      throw SqlError(2739, 16, "The text, ntext, and image data types are invalid for local variables.")
          .at(lineOf(batch_, declaration.token));
    }
    if (takeOperator("=")) declaration.value = expression();
    result->declarations.push_back(std::move(declaration));
  } while (takeOperator(","));
  return result;
}

StatementPtr Parser::set() {
  ++at_;
  if (token().kind == TokenKind::Variable) {
    auto result = makeStatement(StatementKind::Set);
    result->name = here();
    ++at_;
    if (!takeOperator("=")) {
      for (const std::string_view compound : {"+=", "-=", "*=", "/=", "%=", "&=", "|=", "^="}) {
        if (isOperator(compound)) result->operation = compound.substr(0, 1);
      }
      if (result->operation.empty()) fail();
      ++at_;
    }
    result->value = expression();
    return result;
  }
  if (takeWord("IDENTITY_INSERT")) {
    auto result = makeStatement(StatementKind::IdentityInsert);
    result->table = tableName();
    result->on = takeWord("ON");
    if (!result->on) expectWord("OFF");
    return result;
  }
  if (isWord("TRANSACTION") && isWord(1, "ISOLATION")) {
    auto result = makeStatement(StatementKind::Option);
    result->name = "TRANSACTION ISOLATION LEVEL";
    at_ += 2;
    expectWord("LEVEL");
    if (takeWord("READ")) {
      if (!takeWord("COMMITTED")) expectWord("UNCOMMITTED");
    } else if (takeWord("REPEATABLE")) {
      expectWord("READ");
    } else if (!takeWord("SERIALIZABLE")) {
      expectWord("SNAPSHOT");
    }
    return result;
  }
  static constexpr std::string_view accepted[] = {"NOCOUNT",
                                                  "ANSI_NULLS",
                                                  "ANSI_WARNINGS",
                                                  "ANSI_PADDING",
                                                  "ANSI_NULL_DFLT_ON",
                                                  "ANSI_NULL_DFLT_OFF",
                                                  "ARITHABORT",
                                                  "ARITHIGNORE",
                                                  "QUOTED_IDENTIFIER",
                                                  "CONCAT_NULL_YIELDS_NULL",
                                                  "XACT_ABORT",
                                                  "NUMERIC_ROUNDABORT",
                                                  "IMPLICIT_TRANSACTIONS",
                                                  "CURSOR_CLOSE_ON_COMMIT",
                                                  "ANSI_DEFAULTS"};
  for (const auto option : accepted) {
    if (!isWord(option)) continue;
    auto result = makeStatement(StatementKind::Option);
    result->name = option;
    const int word = at_++;
    result->on = takeWord("ON");
    if (!result->on) expectWord("OFF");
    // Options that would change what later statements mean are taken only with the meaning that holds anyway.
    static constexpr std::string_view fixedOn[] = {"ANSI_NULLS", "QUOTED_IDENTIFIER", "CONCAT_NULL_YIELDS_NULL"};
    static constexpr std::string_view fixedOff[] = {"IMPLICIT_TRANSACTIONS", "NUMERIC_ROUNDABORT", "ARITHIGNORE"};
    for (const auto fixed : fixedOn) {
      if (option == fixed && !result->on) throw notSupported(batch_, word, "the option OFF");
    }
    for (const auto fixed : fixedOff) {
      if (option == fixed && result->on) throw notSupported(batch_, word, "the option ON");
    }
    return result;
  }
  if (isWord("ROWCOUNT") || isWord("DATEFORMAT") || isWord("DATEFIRST") || isWord("LANGUAGE") ||
      isWord("LOCK_TIMEOUT") || isWord("TEXTSIZE")) {
    refuse("the option");
  }
  fail();
}

StatementPtr Parser::print() {
  auto result = makeStatement(StatementKind::Print);
  ++at_;
  result->value = expression();
  return result;
}

StatementPtr Parser::raiseError() {
  auto result = makeStatement(StatementKind::RaiseError);
  ++at_;
  expectOperator("(");
  do {
    result->arguments.push_back(expression());
  } while (takeOperator(","));
  expectOperator(")");
  if (result->arguments.size() != 3) refuse("RAISERROR with values to fill in");
  if (isWord("WITH")) refuse("RAISERROR ... WITH");
  return result;
}

}  // namespace tolvane::tsql
