#include <algorithm>
#include <span>

#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementPtr;

namespace {

constexpr int mostRecursion = 32767;

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
  if (isWord("SAVE")) return transaction(StatementKind::Save);
  if (isWord("RETURN")) return leaveBatch();
  if (isWord("GOTO")) return goTo();
  if (isName() && isOperator(1, ":")) return label();
  if (beginsThrow()) return throwError();
  if (isWord("FETCH")) return fetch();
  if (isWord("OPEN") || isWord("CLOSE") || isWord("DEALLOCATE")) return cursorCommand();
  refuseKnownStatement();
  const bool execute = isWord("EXEC") || isWord("EXECUTE");
  if (execute || (isName() && isFirstStatement())) return procedureCall(execute);
  fail();
}

void Parser::refuseKnownStatement() const {
  static constexpr std::string_view known[] = {
      "MERGE",      "GRANT",   "REVOKE",      "DENY",       "USE",    "WAITFOR",  "BACKUP",
      "RESTORE",    "DBCC",    "KILL",        "CHECKPOINT", "BULK",   "READTEXT", "WRITETEXT",
      "UPDATETEXT", "SETUSER", "RECONFIGURE", "SHUTDOWN",   "REVERT", "DUMP",     "LOAD"};
  for (const auto word : known) {
    if (isWord(word)) refuse("the statement");
  }
}

bool Parser::isFirstStatement() const {
  const auto before = std::span(batch_.tokens).first(static_cast<std::size_t>(at_));
  return std::ranges::all_of(before, [&](const Token& token) { return text(token) == ";"; });
}

// [EXEC[UTE] [@result =]] name [[@parameter =] value [OUTPUT]], ...: there are no procedures here but those that SQL
// Server brings along, which are refused.
StatementPtr Parser::procedureCall(bool execute) {
  auto result = makeStatement(StatementKind::Call);
  int word = at_;
  if (execute) {
    word = at_++;
    if (token().kind == TokenKind::Variable && isOperator(1, "=")) at_ += 2;
    if (isOperator("(")) return runText();
    if (!isName()) throw notSupported(batch_, word, "the statement");
  }
  const int first = at_;
  const auto procedure = tableName();
  if (sameName(procedure.name, "sp_executesql") && execute && first == word + 1) {
    return runTextWithParameters();
  }
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
  const bool value = token().kind == TokenKind::Literal || token().kind == TokenKind::Variable || isAlias() ||
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
  // Unlike that of a query it needs its brackets.
  expectOperator("(");
  statement.top = expression();
  expectOperator(")");
  if (isWord("PERCENT")) refuse("TOP ... PERCENT");
}

StatementPtr Parser::insert() {
  auto result = makeStatement(StatementKind::Insert);
  ++at_;
  if (isWord("TOP")) refuse("INSERT TOP");
  takeWord("INTO");
  result->table = changedTable();
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
    while (takeOperator(".")) {
      assignment.qualifier = std::move(assignment.column);
      assignment.column = anyName();
    }
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
  result->table = changedTable();
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
  result->table = changedTable();
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
  throwMayFollow_ = at_;
  result->statements.push_back(statement());
  if (!takeWord("ELSE")) return result;
  throwMayFollow_ = at_;
  result->statements.push_back(statement());
  return result;
}

StatementPtr Parser::loop() {
  auto result = makeStatement(StatementKind::While);
  ++at_;
  result->where = requiredCondition();
  throwMayFollow_ = at_;
  result->statements.push_back(statement());
  return result;
}

StatementPtr Parser::begin() {
  if (isWord(1, "TRAN") || isWord(1, "TRANSACTION")) {
    ++at_;
    return transaction(StatementKind::Begin);
  }
  if (isWord(1, "TRY")) return tryCatch();
  if (isWord(1, "DISTRIBUTED") || isWord(1, "DIALOG") || isWord(1, "CONVERSATION") || isWord(1, "ATOMIC")) {
    ++at_;
    refuse("BEGIN of that kind");
  }
  const int first = at_++;
  auto result = blockOf(first);
  if (result->statements.empty()) fail();
  ++at_;
  return result;
}

StatementPtr Parser::declare() {
  auto result = makeStatement(StatementKind::Declare);
  ++at_;
  if (beginsCursor()) return declareCursor();
  do {
    tree::Declaration declaration;
    declaration.token = at_;
    if (token().kind != TokenKind::Variable) fail();
    declaration.name = here();
    ++at_;
    takeWord("AS");
    typeOrdinal_ = static_cast<int>(result->declarations.size()) + 1;
    if (isWord("CURSOR")) refuse("a variable of that kind");
    if (isWord("TABLE")) {
      declareTable(declaration);
      result->declarations.push_back(std::move(declaration));
      continue;
    }
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
  return option();
}

StatementPtr Parser::print() {
  auto result = makeStatement(StatementKind::Print);
  ++at_;
  result->value = expression();
  return result;
}

}  // namespace tolvane::tsql
