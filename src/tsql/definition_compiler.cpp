#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "tsql/batch_compiler.h"
#include "tsql/convert.h"
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::Constraint;
using tree::StatementNode;

namespace {

// Defaults are numbers, dates and texts that are kept as they are, so nothing is compared or mapped here.
class BareCollation final : public Collation {
 public:
  int compare(std::string_view left, std::string_view right) const override { return left.compare(right); }
  char32_t fold(char32_t character) const override { return character; }
  int compareCharacters(char32_t left, char32_t right) const override { return left < right ? -1 : left > right; }
  char32_t upper(char32_t character) const override { return character; }
  char32_t lower(char32_t character) const override { return character; }
  std::string toCodePage(std::string_view text) const override { return std::string(text); }
  std::string fromCodePage(std::string_view bytes) const override { return std::string(bytes); }
};

std::string constantText(const Result& value) {
  switch (value.kind()) {
    case Kind::Null:
      return "NULL";
    case Kind::Integer:
      return std::to_string(value.integer());
    case Kind::Real: {
      std::array<char, 40> buffer{};
      const auto end =
          std::to_chars(buffer.data(), buffer.data() + buffer.size(), value.real(), std::chars_format::scientific);
      return std::string(buffer.data(), end.ptr);
    }
    case Kind::Text:
      return quotedText(value.text());
    case Kind::Blob: {
      static constexpr char digits[] = "0123456789ABCDEF";
      std::string text = "x'";
      for (const std::byte byte : value.blob()) {
        text += digits[std::to_integer<unsigned>(byte) >> 4];
        text += digits[std::to_integer<unsigned>(byte) & 15];
      }
      return text + "'";
    }
  }
  return {};
}

Datum datumOf(const Literal& literal) {
  if (literal.type.kind == TypeKind::Int) return Datum(literal.integer);
  if (literal.type.kind == TypeKind::Float) return Datum(literal.real);
  if (literal.type.isBinary()) {
    return Datum(BytesView(reinterpret_cast<const std::byte*>(literal.text.data()), literal.text.size()));
  }
  return Datum(literal.text);
}

}  // namespace

// The default as SQLite's schema holds it. A literal is put into the column's stored form now; anything else
// (GETDATE(), a computation, a literal that does not fit and fails when it is used) stays an expression.
std::string BatchCompiler::defaultText(const tree::Expression& value, const Table& table, const Column& column) {
  const tree::Expression* leaf = &value;
  const bool minus = value.kind == tree::ExpressionKind::Unary && value.name == "-" &&
                     value.arguments[0]->kind == tree::ExpressionKind::Literal;
  if (minus) leaf = value.arguments[0].get();
  if (leaf->kind == tree::ExpressionKind::Null) return "NULL";
  if (leaf->kind == tree::ExpressionKind::Literal) {
    writer_.structural(leaf->literal);
    const Literal& literal = batch_.literals[static_cast<std::size_t>(leaf->literal)];
    const BareCollation collation;
    const std::string negated = minus ? "-" + std::string(literal.text) : "";
    Datum datum = datumOf(literal);
    if (minus && literal.type.kind == TypeKind::Int) datum = Datum(-literal.integer);
    if (minus && literal.type.kind == TypeKind::Float) datum = Datum(-literal.real);
    if (minus && literal.type.isExactText()) datum = Datum(negated);
    try {
      if (conversionBetween(literal.type, column.type) == Conversion::Implicit) {
        return constantText(assign(datum, literal.type, column.type, column.name, collation));
      }
    } catch (const SqlError&) {
      // It is an expression, then.
    }
  }
  const Writer::InlineLiterals inlined(writer_);
  const Typed typed = writer_.expression(value, nullptr);
  return "(" + writer_.assign(typed, table, column) + ")";
}

// --- CREATE TABLE

Column BatchCompiler::columnOf(const tree::ColumnDefinition& definition) const {
  Column column;
  column.name = definition.name;
  column.identity = definition.identity;
  column.seed = definition.seed;
  column.increment = definition.increment;
  column.type = definition.type.orNull(definition.nullable.value_or(true) && !definition.identity);
  return column;
}

// The table as the catalogue will tell it, without its keys.
Table BatchCompiler::tableOf(const StatementNode& node) const {
  Table table;
  table.name = node.table.name;
  table.temporary = node.table.name.starts_with("#") || node.table.name.starts_with("@");
  if (node.table.name.starts_with("##")) throw notSupported(batch_, node.table.token, "a global temporary table");
  for (const auto& definition : node.definitions) {
    if (table.find(definition.name) >= 0) {
      writer_.fail(definition.token, 2705,
                   "Column names in each table must be unique. Column name '" + definition.name + "' in table '" +
                       table.name + "' is specified more than once.");
    }
    table.columns.push_back(columnOf(definition));
  }
  // The columns of the primary key take no nulls, unless they were said to.
  const auto makeKey = [&](const std::string& name) {
    const int ordinal = table.find(name);
    if (ordinal < 0) return;
    if (node.definitions[static_cast<std::size_t>(ordinal)].nullable.value_or(false)) return;
    table.columns[static_cast<std::size_t>(ordinal)].type.nullable = false;
  };
  const auto keyOf = [&](const Constraint& constraint, const std::string& column) {
    if (constraint.kind != Constraint::Kind::PrimaryKey) return;
    if (constraint.columns.empty()) makeKey(column);
    for (const auto& key : constraint.columns) makeKey(key.name);
  };
  for (const auto& definition : node.definitions) {
    for (const auto& constraint : definition.constraints) keyOf(constraint, definition.name);
  }
  for (const auto& constraint : node.constraints) keyOf(constraint, {});
  return table;
}

// An identity column that is the primary key and counts from 1 on is SQLite's row number.
bool BatchCompiler::isRowNumber(const StatementNode& node, const tree::ColumnDefinition& definition) {
  constexpr std::int64_t highestInt = 2147483647;
  if (definition.type.kind != TypeKind::Int || definition.increment != 1) return false;
  if (definition.seed < 1 || definition.seed >= highestInt) return false;
  const auto isKey = [&](const Constraint& constraint, bool ofColumn) {
    if (constraint.kind != Constraint::Kind::PrimaryKey) return false;
    if (constraint.columns.empty()) return ofColumn;
    return constraint.columns.size() == 1 && sameName(constraint.columns[0].name, definition.name);
  };
  int keys = 0;
  int own = 0;
  const auto count = [&](const Constraint& constraint, bool ofColumn) {
    if (constraint.kind == Constraint::Kind::PrimaryKey) ++keys;
    if (isKey(constraint, ofColumn)) ++own;
  };
  for (const auto& other : node.definitions) {
    for (const auto& constraint : other.constraints) count(constraint, &other == &definition);
  }
  for (const auto& constraint : node.constraints) count(constraint, false);
  return keys == 1 && own == 1;
}

void BatchCompiler::checkIdentity(const Definition& whole, const tree::ColumnDefinition& definition,
                                  const Column& column) const {
  const Table& table = whole.table;
  if (table.columns[static_cast<std::size_t>(table.identityColumn())].name != column.name) {
    writer_.fail(definition.token, 2744,
                 "Multiple identity columns specified for table '" + table.name +
                     "'. Only one identity column per table is allowed.");
  }
  const bool whole_ = column.type.isInteger() && column.type.kind != TypeKind::Bit;
  if (!whole_ && (column.type.kind != TypeKind::Decimal || column.type.scale != 0)) {
    writer_.fail(definition.token, 2749,
                 "Identity column '" + column.name +
                     "' must be of data type int, bigint, smallint, tinyint, or decimal or numeric with a scale of "
                     "0, unencrypted, and constrained to be nonnullable.");
  }
  if (definition.nullable.value_or(false)) {
    writer_.fail(
        definition.token, 8147,
        "Could not create IDENTITY attribute on nullable column '" + column.name + "', table '" + table.name + "'.");
  }
  if (column.increment == 0) {
    writer_.fail(definition.token, 2753, "Identity column '" + column.name + "' contains invalid INCREMENT.");
  }
}

void BatchCompiler::defineColumn(Definition& whole, const tree::ColumnDefinition& definition) {
  Column& column = whole.table.columns[static_cast<std::size_t>(whole.table.find(definition.name))];
  ColumnText text{column.name, column.type.declared(), {}};
  if (column.identity) {
    checkIdentity(whole, definition, column);
    if (column.made) {
      whole.makesIdentity = true;
      text.clauses.push_back({{}, "NOT NULL", {}});
      text.clauses.push_back(
          {{}, "DEFAULT (" + identityDefault(whole.table.name, column.type, column.seed, column.increment) + ")", {}});
    } else {
      text.type = "INTEGER";
    }
  } else if (!column.type.nullable) {
    text.clauses.push_back({{}, "NOT NULL", {}});
  }
  whole.text.columns.push_back(std::move(text));
}

// There is one database and one schema that tables can be in; those that begin with '#' are in neither.
bool BatchCompiler::isOwn(const tree::TableName& name) const {
  return name.name.starts_with("#") || (writer_.isOwnDatabase(name.database) && isOwnSchema(name.schema));
}

// Whether a table of that name can be made; says why where it cannot.
bool BatchCompiler::canMake(const StatementNode& node, const tree::TableName& name) {
  if (isOwn(name)) return true;
  if (!writer_.isOwnDatabase(name.database)) {
    error(node,
          SqlError(2702, 16,
                   "Database '" + name.database + "' does not exist. Make sure that the name is entered correctly."));
  } else {
    error(node, SqlError(2760, 16,
                         "The specified schema name \"" + name.schema +
                             "\" either does not exist or you do not have permission to use it."));
  }
  return false;
}

void BatchCompiler::createTable(const StatementNode& node) {
  if (!canMake(node, node.table)) return;
  const bool temporary = node.table.name.starts_with("#");
  if (catalogue_.find(node.table.name) != nullptr || (!temporary && isObject(node.table.name))) {
    return error(node, SqlError(Message::ObjectExists, {node.table.name}));
  }
  add(node, finish(definitionOf(node)));
}

BatchCompiler::Definition BatchCompiler::definitionOf(const StatementNode& node) {
  Definition whole;
  whole.table = tableOf(node);
  Table& table = whole.table;
  whole.text.head = "CREATE " + std::string(table.temporary ? "TEMP " : "") + "TABLE " + quoted(table.name);
  whole.text.tail = ")";
  for (const auto& definition : node.definitions) {
    Column& column = table.columns[static_cast<std::size_t>(table.find(definition.name))];
    column.made = column.identity && !isRowNumber(node, definition);
    defineColumn(whole, definition);
  }
  addConstraints(whole, node);
  const std::string schema = table.temporary ? "temp." : "main.";
  whole.step.statements.push_back({whole.text.text(), {}});
  const int identity = table.identityColumn();
  if (identity >= 0) {
    const Column& column = table.columns[static_cast<std::size_t>(identity)];
    if (!column.made && column.seed != 1) {
      whole.step.statements.push_back({"INSERT INTO " + schema + "sqlite_sequence(name,seq) VALUES(" +
                                           quotedText(table.name) + "," + std::to_string(column.seed - 1) + ")",
                                       {}});
    }
  }
  return whole;
}

// Puts the parts of a step into their order.
DdlStep BatchCompiler::finish(Definition whole) {
  DdlStep step = std::move(whole.step);
  const std::string schema = whole.table.temporary ? "temp." : "main.";
  // SQLite has its table of numbers as soon as one table counts by itself.
  if (whole.makesIdentity) {
    step.preparations.push_back(
        {"CREATE TABLE IF NOT EXISTS " + schema + "__tolvane_sequence(n INTEGER PRIMARY KEY AUTOINCREMENT)", {}});
    step.preparations.push_back(
        {"DELETE FROM " + schema + "sqlite_sequence WHERE name=" + quotedText(whole.table.name), {}});
  }
  if (whole.before != nullptr) {
    auto text = whole.text.text();
    if (text != whole.before->text) {
      step.redefinitions.insert(step.redefinitions.begin(), {whole.table.name, whole.table.temporary, std::move(text)});
    }
  }
  for (Redefinition& parent : whole.parents) step.redefinitions.push_back(std::move(parent));
  // SQLite asks the key that was made last first, SQL Server the one that comes first.
  if (whole.before == nullptr) std::ranges::reverse(whole.keys);
  for (Statement& key : whole.keys) step.statements.push_back(std::move(key));
  return step;
}

// --- indexes

void BatchCompiler::createIndex(const StatementNode& node) {
  const Table& table = changedTable(node.table);
  const auto sameIndex = [&](const Index& index) { return sameName(index.name, node.name); };
  if (std::ranges::any_of(table.indexes, sameIndex)) {
    return error(node, SqlError(1913, 16,
                                "The operation failed because an index or statistics with name '" + node.name +
                                    "' already exists on table '" + table.name + "'."));
  }
  // Index names belong to a table in T-SQL and to the database in SQLite.
  const bool taken = catalogue_.findByIndex(node.name) != nullptr || catalogue_.find(node.name) != nullptr;
  const std::string name = taken ? table.name + "." + node.name : node.name;
  for (const auto& column : node.included) {
    if (table.find(column) >= 0) continue;
    return error(node, SqlError(1911, 16, "Column name '" + column + "' does not exist in the target table or view."));
  }
  DdlStep step;
  step.table = "dbo." + table.name;
  step.index = node.name;
  step.statements.push_back({"CREATE " + std::string(node.unique ? "UNIQUE " : "") + "INDEX " + schemaOf(table) +
                                 quoted(name) + " ON " + quoted(table.name) + " " +
                                 keyText(node.keys, table, node.token),
                             {}});
  if (node.unique) {
    auto text = nullIndex(name, table, ordinals(node.keys, table, node.token));
    if (!text.empty()) step.statements.push_back({std::move(text), {}});
  }
  add(node, std::move(step));
}

// Each table is dropped by itself, whatever becomes of the others.
void BatchCompiler::dropTable(const StatementNode& node) {
  for (const auto& name : node.tables) {
    const Table* table = isOwn(name) ? catalogue_.find(name.name) : nullptr;
    if (table == nullptr) {
      const std::string database = name.database.empty() ? "" : name.database + ".";
      const std::string written = database + (name.schema.empty() ? database : name.schema + ".") + name.name;
      if (!node.ifExists) error(node, SqlError(Message::CannotDrop, {"drop", "table", written}));
      continue;
    }
    DdlStep step;
    step.dropped.push_back(table->name);
    step.statements.push_back({"DROP TABLE " + schemaOf(*table) + quoted(table->name), {}});
    const int identity = table->identityColumn();
    if (identity >= 0 && table->columns[static_cast<std::size_t>(identity)].made) {
      step.statements.push_back({"DELETE FROM " + std::string(table->temporary ? "temp." : "main.") +
                                     "sqlite_sequence WHERE name=" + quotedText(table->name),
                                 {}});
    }
    add(node, std::move(step));
  }
  if (node.ifExists) add(node, DdlStep{});
}

void BatchCompiler::dropIndex(const StatementNode& node) {
  DdlStep step;
  for (const auto& name : node.tables) {
    // The table stands where the schema of a table stands, its schema before that.
    const Table* table = isOwnSchema(name.database) ? catalogue_.find(name.schema) : nullptr;
    const Index* found = nullptr;
    if (table != nullptr) {
      for (const Index& index : table->indexes) {
        if (sameName(index.name, name.name)) found = &index;
      }
    }
    if (found == nullptr) {
      if (node.ifExists) continue;
      const std::string schema = name.database.empty() ? "" : name.database + ".";
      return error(node, SqlError(Message::CannotDrop, {"drop", "index", schema + name.schema + "." + name.name}));
    }
    if (found->constraint || found->stored.empty()) {
      return error(node, SqlError(3723, 16,
                                  "An explicit DROP INDEX is not allowed on index '" + table->name + "." + found->name +
                                      "'. It is being used for " + (found->primary ? "PRIMARY" : "UNIQUE") +
                                      " KEY constraint enforcement."));
    }
    step.statements.push_back({"DROP INDEX IF EXISTS " + schemaOf(*table) + quoted(found->stored), {}});
    step.statements.push_back({"DROP INDEX IF EXISTS " + schemaOf(*table) + quoted(found->stored + "/null"), {}});
  }
  add(node, std::move(step));
}

void BatchCompiler::selectInto(const StatementNode& node, const tree::Select& select) {
  if (!canMake(node, select.intoTable)) return;
  if (catalogue_.find(select.into) != nullptr) return error(node, SqlError(Message::ObjectExists, {select.into}));
  if (select.into.starts_with("##")) throw notSupported(batch_, node.token, "a global temporary table");
  const BoundQuery query = writer_.bind(*node.query, nullptr, false);
  Table table;
  table.name = select.into;
  table.temporary = select.into.starts_with("#");
  std::string definitions;
  bool keepsIdentity = false;
  for (const Output& output : query.outputs) {
    if (output.name.empty()) {
      writer_.fail(node.token, 1038,
                   "An object or column name is missing or empty. For SELECT INTO statements, verify each column has a "
                   "name. For other statements, look for empty alias names. Aliases defined as \"\" or [] are not "
                   "allowed. Change the alias to a valid name.");
    }
    if (table.find(output.name) >= 0) {
      writer_.fail(node.token, 2705,
                   "Column names in each table must be unique. Column name '" + output.name + "' in table '" +
                       table.name + "' is specified more than once.");
    }
    Type type = output.value.type.kind == TypeKind::Null ? Type::of(TypeKind::Int) : output.value.type;
    const bool identity = output.identity && table.identityColumn() < 0 && query.body->updatable != nullptr;
    Column column{output.name, type, identity, {}, identity};
    definitions += (definitions.empty() ? "" : ",") + quoted(output.name) + " " + type.declared() +
                   (type.nullable && !identity ? "" : " NOT NULL");
    if (identity) {
      const Table& from = *query.body->updatable;
      const Column& source = from.columns[static_cast<std::size_t>(from.identityColumn())];
      column.seed = source.seed;
      column.increment = source.increment;
      const std::string made = identityDefault(table.name, type, column.seed, column.increment);
      definitions += " DEFAULT (" + made + ")";
      // The rows keep their values, and the next ones go on from there.
      std::string& sql = query.body->outputs[table.columns.size()].value.sql;
      sql = givenIdentity(sql, table.name, column);
      keepsIdentity = true;
    }
    table.columns.push_back(std::move(column));
  }
  DdlStep create;
  if (keepsIdentity) {
    const std::string schema = table.temporary ? "temp." : "main.";
    create.preparations.push_back(
        {"CREATE TABLE IF NOT EXISTS " + schema + "__tolvane_sequence(n INTEGER PRIMARY KEY AUTOINCREMENT)", {}});
    create.preparations.push_back(
        {"DELETE FROM " + schema + "sqlite_sequence WHERE name=" + quotedText(table.name), {}});
  }
  create.statements.push_back({"CREATE " + std::string(table.temporary ? "TEMP " : "") + "TABLE " + quoted(table.name) +
                                   "(" + definitions + ")",
                               {}});
  add(node, std::move(create));
  ExecuteStep fill;
  fill.verb = ExecuteStep::Verb::Insert;
  fill.table = table.name;
  fill.makesIdentity = keepsIdentity;
  fill.statements.push_back(
      writer_.finish("INSERT INTO " + schemaOf(table) + quoted(table.name) + " " + writer_.render(query, false)));
  add(node, std::move(fill));
}

}  // namespace tolvane::tsql
