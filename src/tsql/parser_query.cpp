#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::JoinKind;
using tree::QueryBody;
using tree::Select;
using tree::SelectItem;
using tree::SetOperator;
using tree::TableReference;
using tree::TableReferencePtr;

namespace {

// A query with several groupings is one query for each of them.
constexpr std::size_t mostGroupingParts = 6;
constexpr std::size_t mostGroupings = 64;

}  // namespace

// Whether a query begins at that token: SELECT, or brackets with a SELECT inside.
bool Parser::beginsQuery(int ahead) const {
  while (isOperator(ahead, "(")) ++ahead;
  return isWord(ahead, "SELECT");
}

tree::QueryPtr Parser::query() {
  const Depth depth(*this);
  auto result = std::make_unique<tree::Query>();
  result->token = at_;
  result->with = commonTables();
  result->body = setOperation();
  if (isWord("ORDER")) result->order = orderBy();
  if (!result->order.empty() && takeWord("OFFSET")) page(*result);
  const bool fetches = isWord("FETCH") && (isWord(1, "NEXT") || isWord(1, "FIRST")) && !isWord(2, "FROM");
  if (!result->order.empty() && !result->offset && fetches) {
    throw SqlError(153, 15, "Invalid usage of the option " + std::string(text(peek(1))) + " in the FETCH statement.")
        .at(lineOf(batch_, at_ + 1));
  }
  if (isWord("FOR")) refuse("FOR");
  if (isWord("COMPUTE")) refuse("COMPUTE");
  return result;
}

std::vector<tree::CommonTable> Parser::commonTables() {
  std::vector<tree::CommonTable> result;
  if (!takeWord("WITH")) return result;
  do {
    tree::CommonTable table;
    table.token = at_;
    table.name = name();
    if (isOperator("(")) table.columns = nameList();
    expectWord("AS");
    expectOperator("(");
    table.query = query();
    expectOperator(")");
    result.push_back(std::move(table));
  } while (takeOperator(","));
  return result;
}

// UNION and EXCEPT from left to right; INTERSECT binds tighter.
std::unique_ptr<QueryBody> Parser::setOperation() {
  auto left = intersection();
  int chain = 0;
  while (isWord("UNION") || isWord("EXCEPT")) {
    if (++chain > 200) refuse("a longer chain of set operations");
    auto result = std::make_unique<QueryBody>();
    result->token = at_;
    result->operation = isWord("EXCEPT") ? SetOperator::Except : SetOperator::Union;
    ++at_;
    if (result->operation == SetOperator::Union && takeWord("ALL")) result->operation = SetOperator::UnionAll;
    result->left = std::move(left);
    result->right = intersection();
    left = std::move(result);
  }
  return left;
}

std::unique_ptr<QueryBody> Parser::intersection() {
  auto left = queryTerm();
  int chain = 0;
  while (isWord("INTERSECT")) {
    if (++chain > 200) refuse("a longer chain of set operations");
    auto result = std::make_unique<QueryBody>();
    result->token = at_++;
    result->operation = SetOperator::Intersect;
    result->left = std::move(left);
    result->right = queryTerm();
    left = std::move(result);
  }
  return left;
}

std::unique_ptr<QueryBody> Parser::queryTerm() {
  auto result = std::make_unique<QueryBody>();
  result->token = at_;
  if (takeOperator("(")) {
    result->nested = query();
    if (!result->nested->order.empty()) {
      throw SqlError(Message::IncorrectSyntaxKeyword, {"ORDER"}).at(lineOf(batch_, result->token));
    }
    expectOperator(")");
  } else {
    result->select = select();
  }
  return result;
}

std::unique_ptr<Select> Parser::select() {
  auto result = std::make_unique<Select>();
  result->token = at_;
  expectWord("SELECT");
  if (!takeWord("ALL")) result->distinct = takeWord("DISTINCT");
  if (takeWord("TOP")) {
    result->top = rowCountOfTop();
    result->percent = takeWord("PERCENT");
    if (isWord("WITH") && isWord(1, "TIES")) {
      at_ += 2;
      result->ties = true;
    }
  }
  do {
    result->items.push_back(selectItem());
  } while (takeOperator(","));
  if (takeWord("INTO")) {
    result->intoTable = tableName();
    result->into = result->intoTable.name;
  }
  if (takeWord("FROM")) result->from = tableReferences();
  if (takeWord("WHERE")) result->where = requiredCondition();
  if (takeWord("GROUP")) groups(*result);
  if (takeWord("HAVING")) result->having = requiredCondition();
  return result;
}

// Without brackets, only a number that is written out.
tree::ExpressionPtr Parser::rowCountOfTop() {
  if (beginsQuery(1) && isOperator("(")) return primary();
  if (takeOperator("(")) {
    auto result = expression();
    expectOperator(")");
    return result;
  }
  const bool number =
      token().kind == TokenKind::Literal && batch_.literals[static_cast<std::size_t>(token().literal)].type.isNumber();
  if (!number) fail();
  return primary();
}

int Parser::groupingKey(Select& select, tree::ExpressionPtr key) {
  select.groupBy.push_back(std::move(key));
  return static_cast<int>(select.groupBy.size()) - 1;
}

// A key, or several in brackets.
std::vector<int> Parser::groupingKeys(Select& select) {
  std::vector<int> keys;
  const int begin = at_;
  if (!beginsQuery(0) && takeOperator("(")) {
    if (takeOperator(")")) return keys;
    do {
      keys.push_back(groupingKey(select, expression()));
    } while (takeOperator(","));
    // The bracket may belong to an expression that goes on behind it.
    if (takeOperator(")") && (isOperator(",") || isOperator(")") || keys.size() > 1)) return keys;
    select.groupBy.resize(select.groupBy.size() - keys.size());
    keys.clear();
    at_ = begin;
  }
  keys.push_back(groupingKey(select, expression()));
  return keys;
}

// One item of GROUP BY: the groupings that it stands for.
void Parser::groupingItem(Select& select, std::vector<std::vector<int>>& choices) {
  const bool rollup = isWord("ROLLUP") && isOperator(1, "(");
  const bool cube = isWord("CUBE") && isOperator(1, "(");
  const bool sets = isWord("GROUPING") && isWord(1, "SETS") && isOperator(2, "(");
  if (!rollup && !cube && !sets) {
    choices.push_back(groupingKeys(select));
    return;
  }
  const Depth depth(*this);
  const int word = at_;
  at_ += sets ? 3 : 2;
  std::vector<std::vector<int>> parts;
  do {
    if (sets) {
      groupingItem(select, choices);
    } else {
      parts.push_back(groupingKeys(select));
    }
    if (parts.size() > mostGroupingParts || choices.size() > mostGroupings)
      throw notSupported(batch_, word, "so many groupings");
  } while (takeOperator(","));
  expectOperator(")");
  if (sets) return;
  const std::size_t end = std::size_t{1} << parts.size();
  for (std::size_t left = end; left-- > 0;) {
    // ROLLUP leaves out from the end only.
    const bool isPrefix = ((end - 1 - left) & (end - left)) == 0;
    if (rollup && !isPrefix) continue;
    std::vector<int> keys;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if ((left >> (parts.size() - 1 - i) & 1) != 0) keys.insert(keys.end(), parts[i].begin(), parts[i].end());
    }
    choices.push_back(std::move(keys));
  }
}

void Parser::groups(Select& select) {
  expectWord("BY");
  if (isWord("ALL")) refuse("GROUP BY ALL");
  std::vector<std::vector<int>> groupings{{}};
  bool several = false;
  do {
    const bool plain = !isOperator("(") && !isWord("ROLLUP") && !isWord("CUBE") && !isWord("GROUPING");
    std::vector<std::vector<int>> choices;
    const int word = at_;
    groupingItem(select, choices);
    several = several || (!plain && (choices.size() != 1 || choices[0].empty()));
    std::vector<std::vector<int>> product;
    for (const auto& before : groupings) {
      for (const auto& choice : choices) {
        product.push_back(before);
        product.back().insert(product.back().end(), choice.begin(), choice.end());
      }
    }
    if (product.size() > mostGroupings) throw notSupported(batch_, word, "so many groupings");
    groupings = std::move(product);
  } while (takeOperator(","));
  const bool rollup = isWord("WITH") && isWord(1, "ROLLUP");
  const bool cube = isWord("WITH") && isWord(1, "CUBE");
  if (rollup || cube) {
    const auto keys = static_cast<int>(select.groupBy.size());
    if (several || (cube && keys > static_cast<int>(mostGroupingParts))) refuse("such a grouping");
    at_ += 2;
    groupings.clear();
    const std::size_t end = std::size_t{1} << (cube ? keys : 0);
    for (std::size_t left = end; cube && left-- > 0;) {
      auto& grouping = groupings.emplace_back();
      for (int i = 0; i < keys; ++i) {
        if ((left >> (keys - 1 - i) & 1) != 0) grouping.push_back(i);
      }
    }
    for (int count = keys; rollup && count >= 0; --count) {
      auto& grouping = groupings.emplace_back();
      for (int i = 0; i < count; ++i) grouping.push_back(i);
    }
    several = true;
  }
  if (several) select.groupings = std::move(groupings);
}

SelectItem Parser::selectItem() {
  SelectItem item;
  item.token = at_;
  if (takeOperator("*")) {
    item.star = true;
    return item;
  }
  if (isName()) {
    // a.*, dbo.a.* and database..a.*
    int ahead = 0;
    while (isOperator(ahead + 1, ".") && !isOperator(ahead + 2, "*")) ahead += isOperator(ahead + 2, ".") ? 3 : 2;
    if (isOperator(ahead + 1, ".") && isOperator(ahead + 2, "*")) {
      item.star = true;
      for (int part = 0; part < ahead;) {
        const bool noSchema = isOperator(part + 2, ".");
        item.prefix += nameOf(batch_, peek(part)) + (noSchema ? ".." : ".");
        part += noSchema ? 3 : 2;
      }
      item.qualifier = nameOf(batch_, peek(ahead));
      at_ += ahead + 3;
      return item;
    }
    // alias = expression
    if (isOperator(1, "=")) {
      item.alias = name();
      ++at_;
      item.expression = expression();
      return item;
    }
  }
  // 'alias' = expression
  if (token().kind == TokenKind::Literal && isOperator(1, "=") &&
      batch_.literals[static_cast<std::size_t>(token().literal)].type.isText()) {
    item.alias = optionalAlias();
    ++at_;
    item.expression = expression();
    return item;
  }
  if (token().kind == TokenKind::Variable && isOperator(1, "=") && !here().starts_with("@@")) {
    item.variable = here();
    at_ += 2;
    item.expression = expression();
    return item;
  }
  item.expression = expression();
  item.alias = optionalAlias();
  return item;
}

// [AS] name; AS takes a text in quotes too.
std::string Parser::optionalAlias() {
  const bool as = takeWord("AS");
  if (token().kind == TokenKind::Literal) {
    const int index = token().literal;
    const Literal& literal = batch_.literals[static_cast<std::size_t>(index)];
    if (!literal.type.isText()) {
      if (as) fail();
      return {};
    }
    refuseNul(literal.text);
    structural_.push_back(index);
    ++at_;
    return std::string(literal.text);
  }
  if (as || isAlias()) return name();
  return {};
}

std::vector<std::vector<tree::ExpressionPtr>> Parser::valueRows() {
  std::vector<std::vector<tree::ExpressionPtr>> rows;
  do {
    expectOperator("(");
    std::vector<tree::ExpressionPtr> row;
    do {
      row.push_back(expression());
    } while (takeOperator(","));
    expectOperator(")");
    rows.push_back(std::move(row));
  } while (takeOperator(","));
  return rows;
}

std::vector<tree::OrderItem> Parser::orderBy() {
  expectWord("ORDER");
  expectWord("BY");
  std::vector<tree::OrderItem> result;
  do {
    tree::OrderItem item;
    item.expression = expression();
    item.descending = takeWord("DESC");
    if (!item.descending) takeWord("ASC");
    result.push_back(std::move(item));
  } while (takeOperator(","));
  return result;
}

void Parser::page(tree::Query& query) {
  const auto rows = [this] {
    if (!takeWord("ROWS")) expectWord("ROW");
  };
  query.offset = expression();
  rows();
  if (!takeWord("FETCH")) return;
  if (!takeWord("NEXT")) expectWord("FIRST");
  query.fetch = expression();
  rows();
  expectWord("ONLY");
}

std::vector<TableReferencePtr> Parser::tableReferences() {
  std::vector<TableReferencePtr> result;
  do {
    result.push_back(joinedTable());
  } while (takeOperator(","));
  return result;
}

TableReferencePtr Parser::joinedTable() {
  const Depth depth(*this);
  auto left = tablePrimary();
  JoinKind kind = JoinKind::Inner;
  int chain = 0;
  while (joinKind(kind)) {
    if (++chain > 63) refuse("a longer chain of joins");
    auto join = std::make_unique<TableReference>();
    join->kind = TableReference::Kind::Join;
    join->token = at_;
    join->join = kind;
    join->left = std::move(left);
    const bool conditional = kind < JoinKind::Cross;
    join->right = conditional ? joinedTable() : tablePrimary();
    // a JOIN b JOIN c ON .. ON ..: the right side has taken what belongs to it.
    if (conditional) {
      expectWord("ON");
      join->on = requiredCondition();
    }
    left = std::move(join);
  }
  return left;
}

// Looks for the words of a join. The right side of a join is read by joinedTable, so a chain `a JOIN b ON .. JOIN c ON
// ..` must stop there: a join word belongs to the left side unless its ON is still owed, which only the brackets-free
// form `a JOIN b JOIN c ON .. ON ..` has.
bool Parser::joinKind(JoinKind& kind) {
  if ((isWord("CROSS") || isWord("OUTER")) && isWord(1, "APPLY")) {
    kind = isWord("CROSS") ? JoinKind::CrossApply : JoinKind::OuterApply;
    at_ += 2;
    return true;
  }
  if (takeWord("JOIN")) {
    kind = JoinKind::Inner;
    return true;
  }
  if (isWord("INNER")) {
    kind = JoinKind::Inner;
  } else if (isWord("CROSS")) {
    kind = JoinKind::Cross;
  } else if (isWord("LEFT")) {
    kind = JoinKind::Left;
  } else if (isWord("RIGHT")) {
    kind = JoinKind::Right;
  } else if (isWord("FULL")) {
    kind = JoinKind::Full;
  } else {
    return false;
  }
  ++at_;
  const bool cross = kind == JoinKind::Cross;
  if (kind != JoinKind::Inner && !cross) takeWord("OUTER");
  const bool hinted = !cross && (takeWord("LOOP") || takeWord("HASH") || takeWord("MERGE") || takeWord("REMOTE"));
  if (hinted && !isWord("JOIN")) fail();
  expectWord("JOIN");
  return true;
}

TableReferencePtr Parser::tablePrimary() {
  auto result = std::make_unique<TableReference>();
  result->token = at_;
  if (takeOperator("(")) {
    if (beginsQuery(0)) {
      result->kind = TableReference::Kind::Derived;
      result->query = query();
      expectOperator(")");
      tableAlias(*result);
      if (result->alias.empty()) fail();
      return result;
    }
    if (isWord("VALUES")) {
      ++at_;
      result->kind = TableReference::Kind::Derived;
      result->query = std::make_unique<tree::Query>();
      result->query->token = at_;
      result->query->body = std::make_unique<QueryBody>();
      result->query->body->select = std::make_unique<Select>();
      result->query->body->select->token = at_;
      result->query->body->select->values = valueRows();
      expectOperator(")");
      tableAlias(*result);
      if (result->alias.empty()) fail();
      return result;
    }
    result = joinedTable();
    // Brackets are for joins only.
    if (result->kind == TableReference::Kind::Named && isOperator(")")) fail();
    expectOperator(")");
    return result;
  }
  const bool variable = token().kind == TokenKind::Variable;
  if (variable && isOperator(1, ".")) refuse("a method of a variable as a table");
  for (const auto function :
       {"OPENXML", "OPENQUERY", "OPENROWSET", "OPENDATASOURCE", "CONTAINSTABLE", "FREETEXTTABLE"}) {
    if (isWord(function) && isOperator(1, "(")) refuse("a function as a table");
  }
  const auto table = changedTable();
  if (isOperator("(") && !isWord(1, "NOLOCK") && !isWord(1, "READUNCOMMITTED") && !isWord(1, "UPDLOCK") &&
      !isWord(1, "HOLDLOCK") && !isWord(1, "ROWLOCK") && !isWord(1, "TABLOCK") && !isWord(1, "TABLOCKX") &&
      !isWord(1, "READPAST") && !isWord(1, "PAGLOCK") && !isWord(1, "XLOCK") && !isWord(1, "INDEX")) {
    throw notSupported(batch_, at_ - 1, "a function as a table");
  }
  result->database = table.database;
  result->schema = table.schema;
  result->name = table.name;
  tableHints();
  tableAlias(*result);
  tableHints();
  refuseTableOperators();
  return result;
}

void Parser::tableAlias(TableReference& reference) {
  refuseTableOperators();
  if (takeWord("AS")) {
    reference.alias = name();
  } else if (isAlias()) {
    reference.alias = name();
  } else {
    return;
  }
  if (reference.kind == TableReference::Kind::Derived && isOperator("(")) reference.columnAliases = nameList();
  if (reference.kind == TableReference::Kind::Derived) refuseTableOperators();
}

void Parser::refuseTableOperators() {
  if (isWord("PIVOT") && isOperator(1, "(")) refuse("PIVOT");
  if (isWord("UNPIVOT") && isOperator(1, "(")) refuse("UNPIVOT");
  const bool samples = isWord("TABLESAMPLE") && (isOperator(1, "(") || isWord(1, "SYSTEM"));
  if (samples) refuse("TABLESAMPLE");
  if (isWord("FOR") && isWord(1, "SYSTEM_TIME")) refuse("FOR SYSTEM_TIME");
}

// WITH (NOLOCK), (NOLOCK): there is nothing to hint at.
void Parser::tableHints() {
  const bool with = isWord("WITH") && isOperator(1, "(");
  if (!with && !(isOperator("(") && peek(1).kind == TokenKind::Word)) return;
  if (with) ++at_;
  bracketed();
}

}  // namespace tolvane::tsql
