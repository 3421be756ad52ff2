#include <algorithm>
#include <iterator>

#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::Constraint;
using tree::StatementKind;
using tree::StatementPtr;

// [[server.]database.]schema.]name; `db..name` leaves the schema out.
tree::TableName Parser::tableName() {
  tree::TableName result;
  result.token = at_;
  // Names that begin so are those of table variables, and a table of that name could not be told from one.
  if (token().kind == TokenKind::QuotedName && here().size() > 1 && here()[1] == '@') {
    refuse("a table whose name begins with @");
  }
  result.name = name();
  int parts = 1;
  while (takeOperator(".")) {
    ++parts;
    if (!result.schema.empty()) result.database = std::move(result.schema);
    result.schema = std::move(result.name);
    result.name.clear();
    if (isOperator(".")) continue;
    result.name = anyName();
  }
  constexpr int most = 4;
  if (parts == most) throw notSupported(batch_, result.token, "a table of another server");
  if (parts > most) {
    const Token& first = batch_.tokens[static_cast<std::size_t>(result.token)];
    const Token& last = batch_.tokens[static_cast<std::size_t>(at_ - 1)];
    throw SqlError(117, 15,
                   "The object name '" + std::string(batch_.text.substr(first.begin, last.end - first.begin)) +
                       "' contains more than the maximum number of prefixes. The maximum is 3.")
        .at(lineOf(batch_, result.token));
  }
  return result;
}

// A table that rows are put into or taken from, which may be a variable.
tree::TableName Parser::changedTable() {
  if (token().kind != TokenKind::Variable) return tableName();
  tree::TableName result;
  result.token = at_;
  result.name = here();
  ++at_;
  return result;
}

// @x TABLE (columns and constraints): constraints have no names, and nothing refers to other tables.
void Parser::declareTable(tree::Declaration& declaration) {
  ++at_;
  auto table = makeStatement(StatementKind::CreateTable);
  table->token = declaration.token;
  table->table.token = declaration.token;
  table->table.name = declaration.name;
  expectOperator("(");
  do {
    if (isWord("CONSTRAINT")) fail();
    if (isWord("INDEX")) refuse("an index of a table variable");
    definitionItem(*table);
  } while (takeOperator(","));
  expectOperator(")");
  if (table->definitions.empty()) fail();
  const auto check = [&](const Constraint& constraint) {
    if (!constraint.name.empty()) {
      throw SqlError(Message::IncorrectSyntaxKeyword, {"CONSTRAINT"}).at(lineOf(batch_, constraint.token));
    }
    if (constraint.kind == Constraint::Kind::ForeignKey) {
      throw notSupported(batch_, constraint.token, "a foreign key of a table variable");
    }
  };
  for (const auto& constraint : table->constraints) check(constraint);
  for (const auto& column : table->definitions) {
    for (const auto& constraint : column.constraints) check(constraint);
  }
  declaration.table = std::move(table);
}

std::vector<std::string> Parser::nameList() {
  std::vector<std::string> result;
  expectOperator("(");
  do {
    result.push_back(name());
    while (takeOperator(".")) result.back() = anyName();
  } while (takeOperator(","));
  expectOperator(")");
  return result;
}

void Parser::invalidLength(int length, int token) const {
  const int line = lineOf(batch_, token);
  throw SqlError(
      1001, 15,
      "Line " + std::to_string(line) + ": Length or precision specification " + std::to_string(length) + " is invalid.")
      .at(line);
}

Type Parser::type() {
  constexpr int mostDigits = 38;
  constexpr int mostBits = 53;
  constexpr int longestOfAll = 8000;
  const int first = at_;
  if (token().kind != TokenKind::Word && token().kind != TokenKind::QuotedName) fail();
  std::string written = anyName();
  if (takeOperator(".")) written = anyName();  // dbo.sysname
  const bool national = sameName(written, "NATIONAL");
  if (national && (isWord("CHAR") || isWord("CHARACTER") || isWord("TEXT"))) written += " " + anyName();
  if (isWord("PRECISION") || isWord("VARYING")) written += " " + anyName();
  const auto found = typeNamed(written);
  if (!found) {
    const int line = lineOf(batch_, first);
    for (const std::string_view known : {"time", "datetime2", "datetimeoffset", "xml", "sql_variant", "geography",
                                         "geometry", "hierarchyid", "table", "cursor"}) {
      if (sameName(known, written)) throw notSupported(batch_, first, "the type");
    }
    if (typeOrdinal_ > 0) {
      throw SqlError(2715, 16,
                     "Column, parameter, or variable #" + std::to_string(typeOrdinal_) + ": Cannot find data type " +
                         written + ".")
          .at(line);
    }
    throw SqlError(243, 16, "Type " + written + " is not a defined system type.").at(line);
  }
  Type type = *found;
  const std::string column = typeOrdinal_ > 0 ? typedColumn_ : std::string();
  if (!isOperator("(")) {
    // Without a length: one character, but for CAST and CONVERT, which the caller adjusts by the length 0.
    if (typeRow(type.kind).takesLength && !sameName(written, "sysname")) type.length = 0;
    return type;
  }
  ++at_;
  const auto tooWide = [&](int limit) {
    if (type.kind == TypeKind::Decimal && typeOrdinal_ > 0) {
      throw SqlError(2750, 16,
                     "Column or parameter #" + std::to_string(typeOrdinal_) + ": Specified column precision " +
                         std::to_string(type.length) + " is greater than the maximum precision of 38.")
          .at(lineOf(batch_, first));
    }
    if (limit == mostDigits) invalidLength(type.length, first);
    const bool tooWideForAll = type.length > longestOfAll;
    const std::string owner = column.empty() ? "type '" + written + "'" : "column '" + column + "'";
    throw SqlError(tooWideForAll ? 131 : 2717, 15,
                   "The size (" + std::to_string(type.length) + ") given to the " + owner +
                       " exceeds the maximum allowed " + (tooWideForAll ? "for any data type " : "") + "(" +
                       std::to_string(tooWideForAll ? longestOfAll : limit) + ").")
        .at(lineOf(batch_, first));
  };
  if (typeRow(type.kind).takesLength) {
    if (takeWord("MAX")) {
      if (type.kind == TypeKind::Char || type.kind == TypeKind::NChar || type.kind == TypeKind::Binary) fail();
      type.length = maxLength;
    } else {
      type.length = structuralInteger();
      const int limit = type.isUnicode() ? 4000 : 8000;
      if (type.length > limit) tooWide(limit);
      if (type.length == 0) invalidLength(type.length, first);
    }
  } else if (type.kind == TypeKind::Decimal) {
    const int precision = structuralInteger();
    const int scale = takeOperator(",") ? structuralInteger() : 0;
    type.length = precision;
    if (precision > mostDigits) tooWide(mostDigits);
    if (precision < 1) invalidLength(precision, first);
    if (scale > precision && !column.empty()) {
      throw SqlError(183, 15,
                     "The scale (" + std::to_string(scale) + ") for column '" + column +
                         "' must be within the range 0 to " + std::to_string(precision) + ".")
          .at(lineOf(batch_, first));
    }
    if (scale > precision) {
      throw SqlError(192, 15, "The scale must be less than or equal to the precision.").at(lineOf(batch_, first));
    }
    type.length = 0;
    type.precision = static_cast<std::uint8_t>(precision);
    type.scale = static_cast<std::uint8_t>(scale);
  } else if (type.kind == TypeKind::Float) {
    const int bits = structuralInteger();
    if (bits > mostBits && typeOrdinal_ > 0) {
      throw SqlError(2750, 16,
                     "Column or parameter #" + std::to_string(typeOrdinal_) + ": Specified column precision " +
                         std::to_string(bits) + " is greater than the maximum precision of 53.")
          .at(lineOf(batch_, first));
    }
    if (bits < 1 || bits > mostBits) invalidLength(bits, first);
    type = Type::of(bits <= 24 ? TypeKind::Real : TypeKind::Float);
  } else if (isWord("MAX") || token().kind == TokenKind::Literal) {
    throw SqlError(2716, 16,
                   "Column, parameter, or variable #1: Cannot specify a column width on data type " +
                       std::string(type.baseName()) + ".")
        .at(lineOf(batch_, first));
  } else {
    fail();
  }
  expectOperator(")");
  return type;
}

StatementPtr Parser::create() {
  ++at_;
  const bool unique = takeWord("UNIQUE");
  if (isWord("CLUSTERED") || isWord("NONCLUSTERED")) ++at_;
  if (isWord("INDEX")) return createIndex(unique);
  if (unique) fail();
  if (isWord("TABLE")) return createTable();
  refuse("CREATE of that kind");
}

StatementPtr Parser::createTable() {
  auto result = makeStatement(StatementKind::CreateTable);
  ++at_;
  result->table = tableName();
  expectOperator("(");
  do {
    if (isOperator(")")) break;  // a comma may stand after the last definition
    definitionItem(*result);
  } while (takeOperator(","));
  expectOperator(")");
  if (result->definitions.empty()) fail();
  // ON [PRIMARY], TEXTIMAGE_ON [PRIMARY]: there are no file groups.
  while (isWord("ON") || isWord("TEXTIMAGE_ON")) {
    ++at_;
    if (!takeWord("PRIMARY")) name();
  }
  return result;
}

void Parser::definitionItem(tree::StatementNode& statement) {
  if (isWord("INDEX")) refuse("an index in CREATE TABLE");
  Constraint found;
  if (constraint(found)) {
    const bool needsColumns = found.kind != Constraint::Kind::Default && found.kind != Constraint::Kind::Check;
    if (needsColumns && found.columns.empty()) {
      throw SqlError(8135, 16,
                     "Table level constraint does not specify column list, table '" + statement.table.name + "'.")
          .at(lineOf(batch_, found.token));
    }
    statement.constraints.push_back(std::move(found));
  } else {
    statement.definitions.push_back(columnDefinition(static_cast<int>(statement.definitions.size()) + 1));
  }
}

// Options of columns that T-SQL has and this engine has not.
bool Parser::isColumnOption() const {
  static constexpr std::string_view words[] = {"SPARSE",    "FILESTREAM", "MASKED", "ENCRYPTED",
                                               "GENERATED", "HIDDEN",     "INDEX",  "PERSISTED"};
  return std::ranges::any_of(words, [this](std::string_view word) { return isWord(word); });
}

tree::ColumnDefinition Parser::columnDefinition(int ordinal) {
  tree::ColumnDefinition column;
  column.token = at_;
  column.name = name();
  if (isWord("AS")) refuse("a computed column");
  if (isOperator(",") || isOperator(")")) {
    throw SqlError(173, 15, "The definition for column '" + column.name + "' must include a data type.")
        .at(lineOf(batch_, column.token));
  }
  typeOrdinal_ = ordinal;
  typedColumn_ = column.name;
  column.type = type();
  typeOrdinal_ = 0;
  typedColumn_.clear();
  if (column.type.length == 0 && typeRow(column.type.kind).takesLength) column.type.length = 1;
  if (column.type.kind == TypeKind::Timestamp) refuse("timestamp");
  for (;;) {
    Constraint found;
    // NULL and NOT NULL may have a name, which is not kept.
    if (isWord("CONSTRAINT") && (isWord(2, "NULL") || (isWord(2, "NOT") && isWord(3, "NULL")))) {
      ++at_;
      name();
    }
    if (takeWord("NULL")) {
      column.nullable = true;
    } else if (isWord("NOT") && isWord(1, "NULL")) {
      at_ += 2;
      column.nullable = false;
    } else if (takeWord("IDENTITY")) {
      column.identity = true;
      if (takeOperator("(")) {
        column.seed = takeIdentityNumber();
        expectOperator(",");
        column.increment = takeIdentityNumber();
        expectOperator(")");
      }
      if (isWord("NOT") && isWord(1, "FOR")) {
        at_ += 2;
        expectWord("REPLICATION");
      }
    } else if (takeWord("ROWGUIDCOL")) {
      continue;
    } else if (isColumnOption()) {
      refuse("that option of a column");
    } else if (takeWord("COLLATE")) {
      collation();
    } else if (constraint(found)) {
      column.constraints.push_back(std::move(found));
    } else {
      return column;
    }
  }
}

// A constraint of a column or a table; false where none begins here.
bool Parser::constraint(Constraint& result) {
  result.token = at_;
  const bool named = takeWord("CONSTRAINT");
  if (named) result.name = name();
  if (takeWord("PRIMARY")) {
    expectWord("KEY");
    result.kind = Constraint::Kind::PrimaryKey;
  } else if (takeWord("UNIQUE")) {
    result.kind = Constraint::Kind::Unique;
  } else if (takeWord("DEFAULT")) {
    result.kind = Constraint::Kind::Default;
    result.expression = expression();
    if (takeWord("FOR")) result.forColumn = name();
    if (isWord("WITH") && isWord(1, "VALUES")) {
      at_ += 2;
      result.withValues = true;
    }
    return true;
  } else if (takeWord("CHECK")) {
    result.kind = Constraint::Kind::Check;
    expectOperator("(");
    result.expression = requiredCondition();
    expectOperator(")");
    return true;
  } else if (takeWord("FOREIGN")) {
    expectWord("KEY");
    // Behind a column its own name need not be told again.
    if (isOperator("(")) {
      for (auto& column : nameList()) result.columns.push_back({std::move(column), false});
    }
    foreignKey(result);
    return true;
  } else if (isWord("REFERENCES")) {
    foreignKey(result);
    return true;
  } else {
    if (named) fail();
    return false;
  }
  if (isWord("CLUSTERED") || isWord("NONCLUSTERED")) ++at_;
  if (isOperator("(")) result.columns = keyColumns();
  if (isWord("WITH") && (isOperator(1, "(") || isWord(1, "FILLFACTOR"))) indexOptions();
  if (isWord("ON") && isName()) refuse("a file group");
  if (isWord("ON") && (isWord(1, "PRIMARY") || peek(1).kind == TokenKind::QuotedName)) at_ += 2;
  return true;
}

void Parser::foreignKey(Constraint& result) {
  result.kind = Constraint::Kind::ForeignKey;
  expectWord("REFERENCES");
  result.target = tableName();
  if (isOperator("(")) result.targetColumns = nameList();
  while (isWord("ON") && (isWord(1, "DELETE") || isWord(1, "UPDATE"))) {
    std::string& action = isWord(1, "DELETE") ? result.onDelete : result.onUpdate;
    at_ += 2;
    if (takeWord("CASCADE")) {
      action = "CASCADE";
    } else if (takeWord("NO")) {
      if (!isWord("ACTION")) fail();
      ++at_;
      action = "NO ACTION";
    } else if (takeWord("SET")) {
      action = isWord("NULL") ? "SET NULL" : "SET DEFAULT";
      if (!takeWord("NULL")) expectWord("DEFAULT");
    } else {
      fail();
    }
  }
}

std::vector<tree::KeyColumn> Parser::keyColumns() {
  std::vector<tree::KeyColumn> result;
  expectOperator("(");
  do {
    tree::KeyColumn column;
    column.name = name();
    column.descending = takeWord("DESC");
    if (!column.descending) takeWord("ASC");
    result.push_back(std::move(column));
  } while (takeOperator(","));
  expectOperator(")");
  return result;
}

StatementPtr Parser::createIndex(bool unique) {
  auto result = makeStatement(StatementKind::CreateIndex);
  result->unique = unique;
  ++at_;
  result->name = name();
  expectWord("ON");
  result->table = tableName();
  result->keys = keyColumns();
  if (takeWord("INCLUDE")) result->included = nameList();
  if (isWord("WHERE")) refuse("an index with a condition");
  if (isWord("WITH")) indexOptions();
  if (isWord("ON")) {
    ++at_;
    if (!takeWord("PRIMARY")) name();
  }
  return result;
}

// WITH (option = value, ...) or the older WITH option, ...: how an index is kept, which no statement can see. Two of
// them say what happens to rows and tables.
void Parser::indexOptions() {
  static constexpr std::string_view words[] = {"PAD_INDEX",
                                               "FILLFACTOR",
                                               "SORT_IN_TEMPDB",
                                               "STATISTICS_NORECOMPUTE",
                                               "STATISTICS_INCREMENTAL",
                                               "ONLINE",
                                               "ALLOW_ROW_LOCKS",
                                               "ALLOW_PAGE_LOCKS",
                                               "MAXDOP",
                                               "OPTIMIZE_FOR_SEQUENTIAL_KEY",
                                               "IGNORE_DUP_KEY",
                                               "DROP_EXISTING"};
  expectWord("WITH");
  const bool bracket = takeOperator("(");
  do {
    const auto known = std::ranges::find_if(words, [this](std::string_view word) { return isWord(word); });
    if (known == std::end(words)) refuse("that option of an index");
    const int option = at_++;
    const bool valued = takeOperator("=");
    const bool isOn = !valued || isWord("ON");
    if (isOn && (*known == "IGNORE_DUP_KEY" || *known == "DROP_EXISTING")) {
      throw notSupported(batch_, option, "that option of an index");
    }
    if (!valued) continue;
    if (token().kind == TokenKind::Literal) {
      structuralInteger();
    } else if (!takeWord("ON")) {
      expectWord("OFF");
    }
  } while (takeOperator(","));
  if (bracket) expectOperator(")");
}

StatementPtr Parser::alter() {
  ++at_;
  if (!isWord("TABLE")) refuse("ALTER of that kind");
  ++at_;
  auto table = tableName();
  bool unchecked = false;
  if (isWord("WITH") && (isWord(1, "CHECK") || isWord(1, "NOCHECK"))) {
    unchecked = isWord(1, "NOCHECK");
    at_ += 2;
    if (!isWord("ADD")) refuse("ALTER TABLE of that kind");
  }
  if (takeWord("ADD")) {
    auto result = makeStatement(StatementKind::AlterAdd);
    result->table = std::move(table);
    result->unchecked = unchecked;
    do {
      definitionItem(*result);
    } while (takeOperator(","));
    return result;
  }
  if (takeWord("DROP")) return alterDrop(std::move(table));
  if (isWord("ALTER") && isWord(1, "COLUMN")) return alterColumn(std::move(table));
  refuse("ALTER TABLE of that kind");
}

StatementPtr Parser::alterColumn(tree::TableName table) {
  auto result = makeStatement(StatementKind::AlterColumn);
  result->table = std::move(table);
  at_ += 2;
  if (isWord(1, "ADD") || isWord(1, "DROP")) refuse("ALTER COLUMN of that kind");
  result->definitions.push_back(columnDefinition(1));
  const auto& column = result->definitions.front();
  if (!column.constraints.empty()) throw notSupported(batch_, column.constraints.front().token, "a constraint there");
  if (column.identity) throw notSupported(batch_, column.token, "IDENTITY in ALTER COLUMN");
  if (isWord("WITH")) refuse("WITH in ALTER COLUMN");
  return result;
}

// DROP [CONSTRAINT] a, b, COLUMN c, d
StatementPtr Parser::alterDrop(tree::TableName table) {
  auto result = makeStatement(StatementKind::AlterDrop);
  result->table = std::move(table);
  tree::DropItem kind;
  do {
    if (takeWord("COLUMN")) {
      kind.column = true;
    } else if (takeWord("CONSTRAINT")) {
      kind.column = false;
    } else if (isWord("PERIOD")) {
      refuse("PERIOD");
    }
    if (isWord("IF") && isWord(1, "EXISTS")) {
      at_ += 2;
      kind.ifExists = true;
    }
    auto item = kind;
    item.token = at_;
    item.name = name();
    result->drops.push_back(std::move(item));
  } while (takeOperator(","));
  if (isWord("WITH")) refuse("WITH in ALTER TABLE ... DROP");
  return result;
}

StatementPtr Parser::drop() {
  ++at_;
  const bool index = isWord("INDEX");
  if (!index && !isWord("TABLE")) refuse("DROP of that kind");
  auto result = makeStatement(index ? StatementKind::DropIndex : StatementKind::DropTable);
  ++at_;
  if (takeWord("IF")) {
    expectWord("EXISTS");
    result->ifExists = true;
  }
  do {
    // DROP INDEX table.index, or index ON table
    auto target = tableName();
    if (index && takeWord("ON")) {
      auto table = tableName();
      table.database = std::move(table.schema);
      table.schema = std::move(table.name);
      table.name = std::move(target.name);
      target = std::move(table);
    }
    if (index && target.schema.empty()) {
      throw SqlError(159, 15, "Must specify the table name and index name for the DROP INDEX statement.")
          .at(lineOf(batch_, target.token));
    }
    result->tables.push_back(std::move(target));
  } while (takeOperator(","));
  return result;
}

}  // namespace tolvane::tsql
