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

void addKey(Table& table, const Constraint& constraint, const std::vector<tree::KeyColumn>& columns) {
  const bool primary = constraint.kind == Constraint::Kind::PrimaryKey;
  if (!primary && constraint.kind != Constraint::Kind::Unique) return;
  Index index;
  index.unique = true;
  index.primary = primary;
  for (const auto& column : columns) index.columns.push_back(table.find(column.name));
  table.indexes.push_back(std::move(index));
}

// A name as SQL Server makes one up: kind, beginnings of table and column, eight hexadecimal digits.
std::string madeUpName(std::string_view kind, const Table& table, std::string_view column, std::size_t number) {
  std::uint32_t hash = 2166136261U;
  const auto add = [&hash](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  };
  add(table.name);
  add(column);
  add(std::to_string(number));
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%08X", hash);
  return std::string(kind) + "__" + table.name.substr(0, 9) + "__" +
         (column.empty() ? "" : std::string(column.substr(0, 5)) + "__") + digits.data();
}

std::string schemaOf(const Table& table) {
  return table.temporary ? "temp." : "";
}

}  // namespace

// The default as SQLite's schema holds it. A literal is put into the column's stored form now; anything else
// (GETDATE(), a computation) stays an expression, which ALTER TABLE does not take.
std::string BatchCompiler::defaultText(const tree::Expression& value, const Column& column, bool& constant) {
  constant = true;
  const tree::Expression* leaf = &value;
  const bool minus = value.kind == tree::ExpressionKind::Unary && value.name == "-" &&
                     value.arguments[0]->kind == tree::ExpressionKind::Literal;
  if (minus) leaf = value.arguments[0].get();
  if (leaf->kind == tree::ExpressionKind::Null) return "NULL";
  if (leaf->kind == tree::ExpressionKind::Literal) {
    writer_.structural(leaf->literal);
    const Literal& literal = batch_.literals[static_cast<std::size_t>(leaf->literal)];
    if (conversionBetween(literal.type, column.type) != Conversion::Implicit) {
      writer_.fail(value.token, Message::OperandClash, {literal.type.baseName(), column.type.baseName()});
    }
    const BareCollation collation;
    const std::string negated = minus ? "-" + std::string(literal.text) : "";
    Datum datum = datumOf(literal);
    if (minus && literal.type.kind == TypeKind::Int) datum = Datum(-literal.integer);
    if (minus && literal.type.kind == TypeKind::Float) datum = Datum(-literal.real);
    if (minus && literal.type.isExactText()) datum = Datum(negated);
    try {
      return constantText(convert(datum, literal.type, column.type, std::nullopt, collation));
    } catch (const SqlError& failure) {
      // SQL Server takes any constant and fails when the default is used.
      if (literal.type.isBinary()) throw;
      throw SqlError(failure.number(), failure.severity(), failure.message()).at(lineOf(batch_, value.token));
    }
  }
  constant = false;
  writer_.inlineLiterals(true);
  const Typed typed = writer_.expression(value, nullptr);
  const std::string text = writer_.assignTo(typed, column.type, column.name);
  writer_.inlineLiterals(false);
  return "(" + text + ")";
}

std::string BatchCompiler::checkText(const tree::Expression& condition, const Table& table) {
  Scope scope;
  Source source;
  source.name = table.name;
  for (const Column& column : table.columns) {
    source.columns.push_back({column.name, column.type, quoted(column.name), {}, {}, false});
  }
  scope.sources.push_back(std::move(source));
  writer_.inlineLiterals(true);
  const std::string text = writer_.condition(condition, &scope);
  writer_.inlineLiterals(false);
  if (text.find("SELECT") != std::string::npos) {
    writer_.fail(condition.token, 1046,
                 "Subqueries are not allowed in this context. Only scalar expressions are allowed.");
  }
  return "CHECK (" + text + ")";
}

std::vector<int> BatchCompiler::ordinals(const std::vector<tree::KeyColumn>& keys, const Table& table,
                                         int token) const {
  std::vector<int> result;
  for (const auto& key : keys) {
    const int ordinal = table.find(key.name);
    if (ordinal < 0) {
      writer_.fail(token, 1911, "Column name '" + key.name + "' does not exist in the target table or view.");
    }
    if (table.columns[static_cast<std::size_t>(ordinal)].type.isLong()) {
      writer_.fail(token, 1919,
                   "Column '" + key.name + "' in table '" + table.name +
                       "' is of a type that is invalid for use as a key column in an index.");
    }
    result.push_back(ordinal);
  }
  return result;
}

std::string BatchCompiler::keyText(const std::vector<tree::KeyColumn>& keys, const Table& table, int token) const {
  std::string text = "(";
  const std::vector<int> columns = ordinals(keys, table, token);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const Column& column = table.columns[static_cast<std::size_t>(columns[i])];
    text +=
        (i > 0 ? "," : "") + quoted(column.name) + Writer::collation(column.type) + (keys[i].descending ? " DESC" : "");
  }
  return text + ")";
}

// SQL Server's unique keys hold one null, SQLite's any number. A second index over the rows with a null makes the
// difference: there, whether a column is null and what it is otherwise must be unique together.
std::string BatchCompiler::nullIndex(const std::string& name, const Table& table,
                                     const std::vector<int>& columns) const {
  std::string keys;
  std::string condition;
  for (const int ordinal : columns) {
    const Column& column = table.columns[static_cast<std::size_t>(ordinal)];
    const std::string text = quoted(column.name);
    if (!keys.empty()) keys += ',';
    if (!column.type.nullable) {
      keys += text + Writer::collation(column.type);
      continue;
    }
    keys += "(" + text + " IS NULL),ifnull(" + text + ",0)" + Writer::collation(column.type);
    condition += (condition.empty() ? "" : " OR ") + text + " IS NULL";
  }
  if (condition.empty()) return {};
  return "CREATE UNIQUE INDEX " + schemaOf(table) + quoted(name + "/null") + " ON " + quoted(table.name) + " (" + keys +
         ") WHERE " + condition;
}

std::string BatchCompiler::foreignKeyText(const Constraint& constraint, const Table& table) {
  std::string text = "FOREIGN KEY (";
  for (std::size_t i = 0; i < constraint.columns.size(); ++i) {
    const int ordinal = table.find(constraint.columns[i].name);
    if (ordinal < 0) {
      writer_.fail(constraint.token, 1769,
                   "Foreign key '" + constraint.name + "' references invalid column '" + constraint.columns[i].name +
                       "' in referencing table '" + table.name + "'.");
    }
    // SQLite compares the keys with the collation of the declared column, which is none.
    if (!table.columns[static_cast<std::size_t>(ordinal)].type.isInteger()) {
      throw notSupported(batch_, constraint.token, "a foreign key over columns other than integers");
    }
    text += (i > 0 ? "," : "") + quoted(constraint.columns[i].name);
  }
  const Table* target = sameName(constraint.target.name, table.name) ? &table : catalogue_.find(constraint.target.name);
  if (target == nullptr) {
    writer_.fail(constraint.token, 1767,
                 "Foreign key '" + constraint.name + "' references invalid table '" + constraint.target.name + "'.");
  }
  checkReferenced(constraint, *target);
  text += ") REFERENCES " + quoted(target->name);
  if (!constraint.targetColumns.empty()) {
    text += "(";
    for (std::size_t i = 0; i < constraint.targetColumns.size(); ++i) {
      text += (i > 0 ? "," : "") + quoted(constraint.targetColumns[i]);
    }
    text += ")";
  }
  if (!constraint.onDelete.empty()) text += " ON DELETE " + constraint.onDelete;
  if (!constraint.onUpdate.empty()) text += " ON UPDATE " + constraint.onUpdate;
  return text;
}

// SQLite looks for the key when a row changes; SQL Server when the constraint is made.
void BatchCompiler::checkReferenced(const Constraint& constraint, const Table& target) const {
  std::vector<int> columns;
  for (const auto& name : constraint.targetColumns) {
    columns.push_back(target.find(name));
    if (columns.back() >= 0) continue;
    writer_.fail(constraint.token, 1770,
                 "Foreign key '" + constraint.name + "' references invalid column '" + name +
                     "' in referenced table '" + target.name + "'.");
  }
  const int identity = target.identityColumn();
  const auto primary = std::ranges::find_if(target.indexes, &Index::primary);
  const bool hasPrimary = identity >= 0 || primary != target.indexes.end();
  if (columns.empty() && !hasPrimary && !target.indexes.empty()) {
    writer_.fail(constraint.token, 1773,
                 "Foreign key '" + constraint.name + "' has implicit reference to object '" + target.name +
                     "' which does not have a primary key defined on it.");
  }
  const std::size_t width = constraint.columns.size();
  const bool asWide = columns.empty() ? (primary == target.indexes.end() ? 1 : primary->columns.size()) == width
                                      : columns.size() == width;
  if (!asWide) {
    writer_.fail(constraint.token, 8139,
                 "Number of referencing columns in foreign key differs from number of referenced columns, table '" +
                     target.name + "'.");
  }
  std::ranges::sort(columns);
  const auto isKey = [&](const Index& index) {
    auto key = index.columns;
    std::ranges::sort(key);
    return index.unique && key == columns;
  };
  const bool rowNumber = columns.size() == 1 && columns[0] == identity;
  if (columns.empty() ? hasPrimary : rowNumber || std::ranges::any_of(target.indexes, isKey)) return;
  writer_.fail(constraint.token, 1776,
               "There are no primary or candidate keys in the referenced table '" + target.name +
                   "' that match the referencing column list in the foreign key '" + constraint.name + "'.");
}

// The table as the catalogue will tell it; of its indexes, those that its keys make.
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
    Column column{definition.name, definition.type, definition.identity, {}};
    column.type.nullable = definition.nullable.value_or(true) && !definition.identity;
    for (const auto& constraint : definition.constraints) {
      if (constraint.kind == Constraint::Kind::PrimaryKey) column.type.nullable = false;
    }
    table.columns.push_back(std::move(column));
    for (const auto& constraint : definition.constraints) {
      if (constraint.columns.empty()) addKey(table, constraint, {{definition.name, false}});
    }
  }
  for (const auto& constraint : node.constraints) {
    addKey(table, constraint, constraint.columns);
    if (constraint.kind != Constraint::Kind::PrimaryKey) continue;
    for (const auto& key : constraint.columns) {
      const int ordinal = table.find(key.name);
      if (ordinal >= 0) table.columns[static_cast<std::size_t>(ordinal)].type.nullable = false;
    }
  }
  return table;
}

void BatchCompiler::createTable(const StatementNode& node) {
  if (catalogue_.find(node.table.name) != nullptr) {
    return error(node, SqlError(Message::ObjectExists, {node.table.name}));
  }
  Table table = tableOf(node);
  add(node, tableDefinition(node, table));
}

// The statements that make the table. Its columns are told their defaults.
DdlStep BatchCompiler::tableDefinition(const StatementNode& node, Table& table) {
  const int identity = table.identityColumn();
  DdlStep step;
  std::string items;
  std::string constraints;
  std::vector<std::string> indexes;
  int primaryKeys = 0;
  int uniques = 0;
  const auto named = [](const Constraint& constraint) {
    return constraint.name.empty() ? std::string() : "CONSTRAINT " + quoted(constraint.name) + " ";
  };
  std::size_t madeUp = 0;
  const auto namedAnyhow = [&](const Constraint& constraint, std::string_view kind, std::string_view column) {
    if (!constraint.name.empty()) return named(constraint);
    return "CONSTRAINT " + quoted(madeUpName(kind, table, column, ++madeUp)) + " ";
  };
  const auto key = [&](const Constraint& constraint, std::vector<tree::KeyColumn> columns) {
    const bool primary = constraint.kind == Constraint::Kind::PrimaryKey;
    const auto ordinalsOfKey = ordinals(columns, table, constraint.token);
    if (primary && ++primaryKeys > 1) {
      writer_.fail(constraint.token, 8110,
                   "Cannot add multiple PRIMARY KEY constraints to table '" + table.name + "'.");
    }
    // The identity column is SQLite's row number, which is the primary key already.
    if (primary && ordinalsOfKey.size() == 1 && ordinalsOfKey[0] == identity) return;
    constraints += "," + named(constraint) + (primary && identity < 0 ? "PRIMARY KEY " : "UNIQUE ") +
                   keyText(columns, table, constraint.token);
    ++uniques;
    const std::string name = constraint.name.empty() ? table.name + "/" + std::to_string(uniques) : constraint.name;
    if (auto text = nullIndex(name, table, ordinalsOfKey); !text.empty()) indexes.push_back(std::move(text));
  };
  for (std::size_t i = 0; i < node.definitions.size(); ++i) {
    const auto& definition = node.definitions[i];
    Column column = table.columns[i];
    if (i > 0) items += ',';
    items += quoted(column.name) + " ";
    if (definition.identity) {
      if (static_cast<int>(i) != identity) {
        writer_.fail(definition.token, 2744,
                     "Multiple identity columns specified for table '" + table.name +
                         "'. Only one identity column per table is allowed.");
      }
      const bool whole = column.type.isInteger() && column.type.kind != TypeKind::Bit;
      const bool mayBe = whole || (column.type.kind == TypeKind::Decimal && column.type.scale == 0);
      if (!mayBe) {
        writer_.fail(definition.token, 2749,
                     "Identity column '" + column.name +
                         "' must be of data type int, bigint, smallint, tinyint, or decimal or numeric with a scale of "
                         "0, unencrypted, and constrained to be nonnullable.");
      }
      if (!whole || definition.increment != 1) {
        throw notSupported(batch_, definition.token, "an identity column that is no integer or grows by other than 1");
      }
      items += "INTEGER PRIMARY KEY AUTOINCREMENT";
      if (definition.seed != 1) {
        indexes.push_back("INSERT INTO " + std::string(table.temporary ? "temp." : "main.") +
                          "sqlite_sequence(name,seq) VALUES(" + quotedText(table.name) + "," +
                          std::to_string(definition.seed - 1) + ")");
      }
    } else {
      items += column.type.declared();
      if (!column.type.nullable) items += " NOT NULL";
    }
    for (const auto& constraint : definition.constraints) {
      switch (constraint.kind) {
        case Constraint::Kind::Default: {
          bool constant = false;
          table.columns[i].defaultText = defaultText(*constraint.expression, column, constant);
          items += " DEFAULT " + table.columns[i].defaultText;
          break;
        }
        case Constraint::Kind::Check:
          constraints +=
              "," + namedAnyhow(constraint, "CK", definition.name) + checkText(*constraint.expression, table);
          break;
        case Constraint::Kind::ForeignKey: {
          Constraint own;
          own.kind = constraint.kind;
          own.token = constraint.token;
          own.name = constraint.name;
          own.target = constraint.target;
          own.targetColumns = constraint.targetColumns;
          own.onDelete = constraint.onDelete;
          own.onUpdate = constraint.onUpdate;
          own.columns.push_back({definition.name, false});
          constraints += "," + namedAnyhow(constraint, "FK", definition.name) + foreignKeyText(own, table);
          break;
        }
        case Constraint::Kind::PrimaryKey:
        case Constraint::Kind::Unique:
          key(constraint,
              constraint.columns.empty() ? std::vector<tree::KeyColumn>{{definition.name, false}} : constraint.columns);
          break;
      }
    }
  }
  for (const auto& constraint : node.constraints) {
    switch (constraint.kind) {
      case Constraint::Kind::Default:
        throw notSupported(batch_, constraint.token, "DEFAULT as a constraint of the table");
      case Constraint::Kind::Check:
        constraints += "," + namedAnyhow(constraint, "CK", {}) + checkText(*constraint.expression, table);
        break;
      case Constraint::Kind::ForeignKey:
        constraints +=
            "," + namedAnyhow(constraint, "FK", constraint.columns.front().name) + foreignKeyText(constraint, table);
        break;
      case Constraint::Kind::PrimaryKey:
      case Constraint::Kind::Unique:
        key(constraint, constraint.columns);
        break;
    }
  }
  step.statements.push_back({"CREATE " + std::string(table.temporary ? "TEMP " : "") + "TABLE " + quoted(table.name) +
                                 "(" + items + constraints + ")",
                             {}});
  for (auto& index : indexes) step.statements.push_back({std::move(index), {}});
  return step;
}

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

void BatchCompiler::alterAdd(const StatementNode& node) {
  const Table& table = changedTable(node.table);
  DdlStep step;
  for (std::size_t i = 0; i < node.definitions.size(); ++i) {
    const auto& definition = node.definitions[i];
    const auto begin = node.definitions.begin();
    const bool before = std::any_of(begin, begin + static_cast<std::ptrdiff_t>(i),
                                    [&](const auto& other) { return sameName(other.name, definition.name); });
    if (before || table.find(definition.name) >= 0) {
      return error(node, SqlError(2705, 16,
                                  "Column names in each table must be unique. Column name '" + definition.name +
                                      "' in table '" + table.name + "' is specified more than once."));
    }
    const auto gives = [](const Constraint& constraint) { return constraint.kind == Constraint::Kind::Default; };
    if (!definition.nullable.value_or(true) && std::ranges::none_of(definition.constraints, gives)) {
      return error(node,
                   SqlError(4901, 16,
                            "ALTER TABLE only allows columns to be added that can contain nulls, or have a DEFAULT "
                            "definition specified, or the column being added is an identity or timestamp column, or "
                            "alternatively if none of the previous conditions are satisfied the table must be empty to "
                            "allow addition of this column. Column '" +
                                definition.name + "' cannot be added to non-empty table '" + table.name +
                                "' because it does not satisfy these conditions."));
    }
    addColumn(node, table, definition, step);
  }
  for (const auto& constraint : node.constraints) addConstraint(node, table, constraint, step);
  add(node, std::move(step));
}

void BatchCompiler::addColumn(const StatementNode&, const Table& table, const tree::ColumnDefinition& definition,
                              DdlStep& step) {
  if (definition.identity) throw notSupported(batch_, definition.token, "an identity column in ALTER TABLE");
  Column column{definition.name, definition.type.orNull(definition.nullable.value_or(true)), false, {}};
  std::string text = "ALTER TABLE " + schemaOf(table) + quoted(table.name) + " ADD COLUMN " + quoted(column.name) +
                     " " + column.type.declared();
  if (!column.type.nullable) text += " NOT NULL";
  bool leavesNull = false;
  for (const auto& constraint : definition.constraints) {
    if (constraint.kind == Constraint::Kind::Default) {
      bool constant = false;
      text += " DEFAULT " + defaultText(*constraint.expression, column, constant);
      if (!constant) throw notSupported(batch_, constraint.token, "a default that is no constant in ALTER TABLE");
      leavesNull = column.type.nullable && !constraint.withValues;
    } else if (constraint.kind == Constraint::Kind::Check) {
      Table whole = table;
      whole.columns.push_back(column);
      text += (constraint.name.empty() ? " " : " CONSTRAINT " + quoted(constraint.name) + " ") +
              checkText(*constraint.expression, whole);
    } else {
      throw notSupported(batch_, constraint.token, "a key in ALTER TABLE ... ADD of a column");
    }
  }
  step.statements.push_back({std::move(text), {}});
  // The rows that are there keep null in a column that takes it; SQLite would show them the default.
  if (leavesNull) {
    step.statements.push_back(
        {"UPDATE " + schemaOf(table) + quoted(table.name) + " SET " + quoted(column.name) + "=NULL", {}});
  }
}

void BatchCompiler::addConstraint(const StatementNode&, const Table& table, const Constraint& constraint,
                                  DdlStep& step) {
  const bool primary = constraint.kind == Constraint::Kind::PrimaryKey;
  if (!primary && constraint.kind != Constraint::Kind::Unique) {
    throw notSupported(batch_, constraint.token, "a constraint of that kind in ALTER TABLE");
  }
  const auto columns = ordinals(constraint.columns, table, constraint.token);
  for (const int ordinal : columns) {
    if (primary && table.columns[static_cast<std::size_t>(ordinal)].type.nullable) {
      writer_.fail(constraint.token, 8111,
                   "Cannot define PRIMARY KEY constraint on nullable column in table '" + table.name + "'.");
    }
  }
  const std::string name = constraint.name.empty() ? (primary ? "PK_" : "UQ_") + table.name : constraint.name;
  step.table = "dbo." + table.name;
  step.index = name;
  step.statements.push_back({"CREATE UNIQUE INDEX " + schemaOf(table) + quoted(name) + " ON " + quoted(table.name) +
                                 " " + keyText(constraint.columns, table, constraint.token),
                             {}});
  if (auto text = nullIndex(name, table, columns); !text.empty()) step.statements.push_back({std::move(text), {}});
}

void BatchCompiler::alterDrop(const StatementNode& node) {
  const Table& table = changedTable(node.table);
  DdlStep step;
  for (const auto& name : node.columns) {
    const int ordinal = table.find(name);
    if (ordinal < 0) {
      return error(node, SqlError(4924, 16,
                                  "ALTER TABLE DROP COLUMN failed because column '" + name +
                                      "' does not exist in table '" + table.name + "'."));
    }
    const auto uses = [&](const Index& index) {
      return std::ranges::find(index.columns, ordinal) != index.columns.end();
    };
    if (const auto index = std::ranges::find_if(table.indexes, uses); index != table.indexes.end()) {
      return error(node, SqlError(5074, 16, "The object '" + index->name + "' is dependent on column '" + name + "'."));
    }
    step.statements.push_back({"ALTER TABLE " + schemaOf(table) + quoted(table.name) + " DROP COLUMN " +
                                   quoted(table.columns[static_cast<std::size_t>(ordinal)].name),
                               {}});
  }
  add(node, std::move(step));
}

// Each table is dropped by itself, whatever becomes of the others.
void BatchCompiler::dropTable(const StatementNode& node) {
  for (const auto& name : node.tables) {
    const Table* table = catalogue_.find(name.name);
    if (table == nullptr) {
      const std::string written = (name.schema.empty() ? "" : name.schema + ".") + name.name;
      if (!node.ifExists) error(node, SqlError(Message::CannotDrop, {"drop", "table", written}));
      continue;
    }
    DdlStep step;
    step.dropped.push_back(table->name);
    step.statements.push_back({"DROP TABLE " + schemaOf(*table) + quoted(table->name), {}});
    add(node, std::move(step));
  }
  if (node.ifExists) add(node, DdlStep{});
}

void BatchCompiler::dropIndex(const StatementNode& node) {
  DdlStep step;
  for (const auto& name : node.tables) {
    const Table* table = catalogue_.find(name.schema);
    const Index* found = nullptr;
    if (table != nullptr) {
      for (const Index& index : table->indexes) {
        if (sameName(index.name, name.name)) found = &index;
      }
    }
    if (found == nullptr) {
      if (node.ifExists) continue;
      return error(node, SqlError(Message::CannotDrop, {"drop", "index", name.schema + "." + name.name}));
    }
    const Table* owner = catalogue_.findByIndex(found->name);
    const std::string sqliteName = owner == table ? found->name : table->name + "." + found->name;
    step.statements.push_back({"DROP INDEX IF EXISTS " + schemaOf(*table) + quoted(sqliteName), {}});
    step.statements.push_back({"DROP INDEX IF EXISTS " + schemaOf(*table) + quoted(sqliteName + "/null"), {}});
  }
  add(node, std::move(step));
}

void BatchCompiler::selectInto(const StatementNode& node, const tree::Select& select) {
  if (catalogue_.find(select.into) != nullptr) return error(node, SqlError(Message::ObjectExists, {select.into}));
  if (select.into.starts_with("##")) throw notSupported(batch_, node.token, "a global temporary table");
  const BoundQuery query = writer_.bind(*node.query, nullptr, false);
  Table table;
  table.name = select.into;
  table.temporary = select.into.starts_with("#");
  std::string definitions;
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
    definitions += (definitions.empty() ? "" : ",") + quoted(output.name) + " " +
                   (identity ? "INTEGER PRIMARY KEY AUTOINCREMENT" : type.declared()) +
                   (type.nullable || identity ? "" : " NOT NULL");
    table.columns.push_back({output.name, type, identity, {}});
  }
  DdlStep create;
  create.statements.push_back({"CREATE " + std::string(table.temporary ? "TEMP " : "") + "TABLE " + quoted(table.name) +
                                   "(" + definitions + ")",
                               {}});
  add(node, std::move(create));
  ExecuteStep fill;
  fill.verb = ExecuteStep::Verb::Insert;
  fill.table = table.name;
  fill.statements.push_back(
      writer_.finish("INSERT INTO " + schemaOf(table) + quoted(table.name) + " " + writer_.render(query, false)));
  add(node, std::move(fill));
}

}  // namespace tolvane::tsql
