#include <algorithm>
#include <set>

#include "tsql/batch_compiler.h"
#include "tsql/parser.h"
#include "tsql/table_constraints.h"

// The constraints of tables that are made or altered: keys are indexes, all others stand in the table's own text.
namespace tolvane::tsql {

using tree::Constraint;

namespace {

// The form that SQL Server keeps a default in: ((0)), (N'x'), (getdate()). Empty where that form is not known.
std::string keptForm(const tree::Expression& value, const ShapedBatch& batch) {
  const Token& token = batch.tokens[static_cast<std::size_t>(value.token)];
  const std::string word(batch.text.substr(token.begin, token.end - token.begin));
  switch (value.kind) {
    case tree::ExpressionKind::Null:
      return "NULL";
    case tree::ExpressionKind::Literal: {
      const Literal& literal = batch.literals[static_cast<std::size_t>(value.literal)];
      if (literal.type.isText()) return word;
      if (literal.type.kind == TypeKind::Int) return "(" + std::to_string(literal.integer) + ")";
      return literal.type.kind == TypeKind::Decimal ? "(" + std::string(literal.text) + ")" : "";
    }
    case tree::ExpressionKind::Unary: {
      const auto inner = value.name == "-" ? keptForm(*value.arguments[0], batch) : std::string();
      return inner.starts_with("(") && inner[1] != '-' ? "(-" + inner.substr(1) : "";
    }
    case tree::ExpressionKind::Call: {
      if (!value.arguments.empty() || value.star || value.over) return {};
      return lowered(value.name) + "()";
    }
    default:
      return {};
  }
}

// A default is a value that no row is needed for.
void checkDefault(const tree::Expression& value, const ShapedBatch& batch) {
  if (value.kind == tree::ExpressionKind::Column) {
    const std::string qualifier = value.qualifier.empty() ? "" : value.qualifier + ".";
    throw SqlError(128, 15,
                   "The name \"" + qualifier + value.name +
                       "\" is not permitted in this context. Valid expressions are constants, constant expressions, "
                       "and (in some contexts) variables. Column names are not permitted.")
        .at(lineOf(batch, value.token));
  }
  if (value.query) {
    throw SqlError(1046, 15, "Subqueries are not allowed in this context. Only scalar expressions are allowed.")
        .at(lineOf(batch, value.token));
  }
  for (const auto& argument : value.arguments) {
    if (argument) checkDefault(*argument, batch);
  }
  if (value.operand) checkDefault(*value.operand, batch);
  if (value.otherwise) checkDefault(*value.otherwise, batch);
}

// Names of the columns of a condition, each once.
void collectColumns(const tree::Expression& expression, const Table& table, std::vector<std::string>& names) {
  if (expression.kind == tree::ExpressionKind::Column) {
    const int ordinal = table.find(expression.name);
    if (ordinal < 0) return;
    const std::string& name = table.columns[static_cast<std::size_t>(ordinal)].name;
    if (std::ranges::find(names, name) == names.end()) names.push_back(name);
  }
  for (const auto& argument : expression.arguments) {
    if (argument) collectColumns(*argument, table, names);
  }
  if (expression.operand) collectColumns(*expression.operand, table, names);
  if (expression.otherwise) collectColumns(*expression.otherwise, table, names);
}

std::string asWritten(const tree::TableName& name) {
  return (name.schema.empty() ? "" : name.schema + ".") + name.name;
}

const Index* primaryOf(const Table& table) {
  const auto found = std::ranges::find_if(table.indexes, &Index::primary);
  return found == table.indexes.end() ? nullptr : &*found;
}

// The keys that refer to a table, by the tables that have them.
struct Reference {
  const Table* child = nullptr;
  ForeignKeyText key;
};

std::vector<Reference> referencesOf(const std::vector<const Table*>& tables) {
  std::vector<Reference> result;
  for (const Table* table : tables) {
    const auto text = TableText::of(table->text);
    if (!text) continue;
    for (const TableClause& clause : text->constraints) {
      if (auto key = foreignKeyOf(clause)) result.push_back({table, std::move(*key)});
    }
  }
  return result;
}

bool cascades(const std::string& action) {
  return !action.empty() && action != "NO ACTION";
}

// Tables that changes of one reach through the actions of keys, itself among them.
using Edge = std::pair<std::string, std::string>;
std::set<std::string> reach(const std::string& from, const std::vector<Edge>& edges, bool forward) {
  std::set<std::string> found{from};
  std::vector<std::string> open{from};
  while (!open.empty()) {
    const std::string table = open.back();
    open.pop_back();
    for (const auto& [parent, child] : edges) {
      const std::string& begin = forward ? parent : child;
      const std::string& end = forward ? child : parent;
      if (begin == table && found.insert(end).second) open.push_back(end);
    }
  }
  return found;
}

// Whether one more edge would make a table reach another, or itself, on two ways.
bool makesSecondWay(const std::vector<Edge>& edges, const Edge& added) {
  const auto above = reach(added.first, edges, false);
  const auto below = reach(added.second, edges, true);
  if (below.contains(added.first)) return true;
  return std::ranges::any_of(above, [&](const std::string& table) {
    const auto reached = reach(table, edges, true);
    return std::ranges::any_of(below, [&](const std::string& end) { return reached.contains(end); });
  });
}

}  // namespace

std::string schemaOf(const Table& table) {
  return table.temporary ? "temp." : "";
}

std::string givenIdentity(const std::string& sql, std::string_view table, const Column& column) {
  const std::string made = identityDefault(table, column.type, column.seed, column.increment);
  return "ts_identity_given(" + sql + "," + made.substr(made.find('(') + 1);
}

// Tables and constraints share their names.
bool BatchCompiler::isObject(const std::string& name) const {
  const auto isNamed = [&](const TableConstraint& constraint) { return sameName(constraint.name, name); };
  return std::ranges::any_of(catalogue_.tables(), [&](const Table* table) {
    if (sameName(table->name, name)) return true;
    return !table->temporary && std::ranges::any_of(constraintsOf(*table), isNamed);
  });
}

// The name that a constraint has or gets.
std::string BatchCompiler::nameFor(Definition& whole, const Constraint& constraint, std::string_view kind,
                                   std::string_view column) {
  const auto taken = [&](const std::string& name) {
    const auto same = [&](const std::string& other) { return sameName(other, name); };
    if (sameName(name, whole.table.name) || std::ranges::any_of(whole.names, same)) return true;
    return !whole.table.temporary && isObject(name);
  };
  std::string name = constraint.name;
  if (!name.empty() && taken(name)) writer_.fail(constraint.token, Message::ObjectExists, {name});
  for (std::size_t number = 0; name.empty() || (constraint.name.empty() && taken(name)); ++number) {
    name = madeUpName(kind, whole.table.name, column, number);
  }
  whole.names.push_back(name);
  return name;
}

// A table as messages about constraints tell it.
std::string BatchCompiler::place(const Table& table, const std::vector<std::string>& columns) const {
  std::string text =
      "database \"" + (table.temporary ? "tempdb" : writer_.database()) + "\", table \"dbo." + table.name + "\"";
  if (columns.size() == 1) text += ", column '" + columns.front() + "'";
  return text;
}

// Keys come first, whatever the order of the text: a foreign key may refer to its own table.
void BatchCompiler::addConstraints(Definition& whole, const tree::StatementNode& node) {
  for (const bool keys : {true, false}) {
    const auto isKey = [](const Constraint& constraint) {
      return constraint.kind == Constraint::Kind::PrimaryKey || constraint.kind == Constraint::Kind::Unique;
    };
    for (const auto& definition : node.definitions) {
      for (const auto& constraint : definition.constraints) {
        if (isKey(constraint) == keys) addConstraint(whole, constraint, definition.name);
      }
    }
    for (const auto& constraint : node.constraints) {
      if (isKey(constraint) == keys) addConstraint(whole, constraint, {});
    }
  }
}

// `ofColumn` is the column that it stands behind, if it does.
void BatchCompiler::addConstraint(Definition& whole, const Constraint& constraint, std::string_view ofColumn) {
  switch (constraint.kind) {
    case Constraint::Kind::Default:
      return addDefault(whole, constraint, ofColumn);
    case Constraint::Kind::Check:
      return addCheck(whole, constraint, ofColumn);
    case Constraint::Kind::ForeignKey:
      return addForeignKey(whole, constraint, ofColumn);
    case Constraint::Kind::PrimaryKey:
    case Constraint::Kind::Unique: {
      auto columns = constraint.columns;
      if (columns.empty()) columns.push_back({std::string(ofColumn), false});
      return addKey(whole, constraint, std::move(columns));
    }
  }
}

void BatchCompiler::addDefault(Definition& whole, const Constraint& constraint, std::string_view ofColumn) {
  const std::string name = ofColumn.empty() ? constraint.forColumn : std::string(ofColumn);
  Table& table = whole.table;
  if (name.empty() || whole.before == nullptr) {
    // CREATE TABLE takes it behind its column only.
    if (ofColumn.empty()) throw notSupported(batch_, constraint.token, "DEFAULT as a constraint of the table");
  }
  const int ordinal = table.find(name);
  if (ordinal < 0) {
    writer_.fail(constraint.token, 1752,
                 "Column '" + name + "' in table '" + table.name + "' is invalid for creating a default constraint.");
  }
  const Column& column = table.columns[static_cast<std::size_t>(ordinal)];
  if (column.identity) {
    writer_.fail(constraint.token, 1754,
                 "Defaults cannot be created on columns with an IDENTITY attribute. Table '" + table.name +
                     "', column '" + column.name + "'.");
  }
  ColumnText* text = whole.text.find(column.name);
  if (text == nullptr) throw notSupported(batch_, constraint.token, "a default of that table");
  if (text->find("DEFAULT") != nullptr) {
    if (ofColumn.empty()) writer_.fail(constraint.token, 1781, "Column already has a DEFAULT bound to it.");
    writer_.fail(constraint.token, 8148,
                 "More than one column DEFAULT constraint specified for column '" + column.name + "', table '" +
                     table.name + "'.");
  }
  checkDefault(*constraint.expression, batch_);
  TableClause clause{nameFor(whole, constraint, "DF", column.name),
                     "DEFAULT " + defaultText(*constraint.expression, table, column),
                     keptForm(*constraint.expression, batch_)};
  if (!clause.note.empty()) clause.note = "(" + clause.note + ")";
  // The words must not end the comment that they are kept in.
  if (clause.note.find("*/") != std::string::npos) clause.note.clear();
  const bool isNew = whole.before == nullptr || whole.before->find(column.name) < 0;
  // A row that was stored before the column came shows the column's default; its null is written into it first.
  if (!isNew) {
    whole.step.preparations.push_back(
        {"UPDATE " + schemaOf(table) + quoted(table.name) + " SET " + quoted(column.name) + "=" + quoted(column.name),
         {}});
  }
  text->clauses.push_back(std::move(clause));
}

std::string BatchCompiler::checkText(const tree::Expression& condition, const Table& table) {
  Scope scope;
  Source source;
  source.name = table.name;
  for (const Column& column : table.columns) {
    source.columns.push_back({column.name, column.type, quoted(column.name), {}, {}, false});
  }
  scope.sources.push_back(std::move(source));
  const Writer::InlineLiterals inlined(writer_);
  const std::string text = writer_.condition(condition, &scope);
  if (text.find("SELECT") != std::string::npos) {
    writer_.fail(condition.token, 1046,
                 "Subqueries are not allowed in this context. Only scalar expressions are allowed.");
  }
  return "CHECK (" + text + ")";
}

void BatchCompiler::addCheck(Definition& whole, const Constraint& constraint, std::string_view ofColumn) {
  const std::string name = nameFor(whole, constraint, "CK", ofColumn);
  const Table& table = whole.table;
  const std::string text = checkText(*constraint.expression, table);
  whole.text.constraints.push_back({name, text, {}});
  // A column that is just being added has no values that could be looked at yet.
  std::vector<std::string> columns;
  collectColumns(*constraint.expression, table, columns);
  if (!ofColumn.empty() &&
      std::ranges::any_of(columns, [&](const auto& column) { return !sameName(column, ofColumn); })) {
    writer_.fail(constraint.token, 8141,
                 "Column CHECK constraint for column '" + std::string(ofColumn) +
                     "' references another column, table '" + table.name + "'.");
  }
  if (whole.before == nullptr || whole.unchecked) return;
  if (std::ranges::any_of(columns, [&](const auto& column) { return whole.before->find(column) < 0; })) return;
  whole.step.refusals.push_back({{"SELECT 1 FROM " + schemaOf(table) + quoted(table.name) + " WHERE NOT " +
                                      text.substr(text.find('(')) + " LIMIT 1",
                                  {}},
                                 547,
                                 "The ALTER TABLE statement conflicted with the CHECK constraint \"" + name +
                                     "\". The conflict occurred in " + place(table, columns) + "."});
}

// --- keys

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
    if (std::ranges::find(result, ordinal) != result.end()) {
      writer_.fail(token, 1909,
                   "Cannot use duplicate column names in index. Column name '" + key.name + "' listed more than once.");
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

void BatchCompiler::addKey(Definition& whole, const Constraint& constraint, std::vector<tree::KeyColumn> columns) {
  Table& table = whole.table;
  const bool primary = constraint.kind == Constraint::Kind::PrimaryKey;
  const auto ordinalsOfKey = ordinals(columns, table, constraint.token);
  if (primary && primaryOf(table) != nullptr) {
    if (whole.before != nullptr) {
      writer_.fail(constraint.token, 1779, "Table '" + table.name + "' already has a primary key defined on it.");
    }
    writer_.fail(constraint.token, 8110, "Cannot add multiple PRIMARY KEY constraints to table '" + table.name + "'.");
  }
  for (const int ordinal : ordinalsOfKey) {
    if (primary && table.columns[static_cast<std::size_t>(ordinal)].type.nullable) {
      writer_.fail(constraint.token, 8111,
                   "Cannot define PRIMARY KEY constraint on nullable column in table '" + table.name + "'.");
    }
  }
  Index index;
  index.name = nameFor(whole, constraint, primary ? "PK" : "UQ", {});
  index.columns = ordinalsOfKey;
  index.unique = index.constraint = true;
  index.primary = primary;
  const Column& first = table.columns[static_cast<std::size_t>(ordinalsOfKey[0])];
  if (primary && ordinalsOfKey.size() == 1 && first.identity && !first.made) {
    // SQLite's row number, which is bounded by the type that it stands for.
    ColumnText* text = whole.text.find(first.name);
    text->clauses.push_back({index.name, "PRIMARY KEY AUTOINCREMENT", {}});
    text->clauses.push_back({std::string(identityCheck), "CHECK (" + quoted(first.name) + "<=2147483647)", {}});
    table.indexes.push_back(std::move(index));
    return;
  }
  const std::string stored = index.name + std::string(primary ? primaryIndexEnd : uniqueIndexEnd);
  index.stored = stored;
  whole.step.table = "dbo." + table.name;
  whole.step.index = index.name;
  // The primary key orders the rows, so it comes first wherever it stands.
  whole.keys.insert(primary ? whole.keys.begin() : whole.keys.end(),
                    {"CREATE UNIQUE INDEX " + schemaOf(table) + quoted(stored) + " ON " + quoted(table.name) + " " +
                         keyText(columns, table, constraint.token),
                     {}});
  if (auto text = nullIndex(stored, table, ordinalsOfKey); !text.empty()) whole.keys.push_back({std::move(text), {}});
  table.indexes.push_back(std::move(index));
}

// --- foreign keys

// SQL Server looks for the key when the constraint is made.
void BatchCompiler::checkReferenced(const Constraint& constraint, const std::string& name, const Table& target,
                                    const std::vector<int>& columns) const {
  auto wanted = columns;
  std::ranges::sort(wanted);
  const auto isKey = [&](const Index& index) {
    auto key = index.columns;
    std::ranges::sort(key);
    return index.unique && key == wanted;
  };
  if (std::ranges::any_of(target.indexes, isKey)) return;
  writer_.fail(constraint.token, 1776,
               "There are no primary or candidate keys in the referenced table '" + asWritten(constraint.target) +
                   "' that match the referencing column list in the foreign key '" + name + "'.");
}

void BatchCompiler::checkPair(const Constraint& constraint, const std::string& name, const Table& table,
                              const Column& column, const Column& referenced) const {
  const std::string pair = "Column '" + asWritten(constraint.target) + "." + referenced.name + "' is not the same ";
  const std::string other = " as referencing column '" + table.name + "." + column.name + "' in foreign key '" + name;
  if (column.type.kind != referenced.type.kind) {
    writer_.fail(constraint.token, 1778, pair + "data type" + other + "'.");
  }
  if (column.type.storageLength() != referenced.type.storageLength() || column.type.scale != referenced.type.scale) {
    writer_.fail(constraint.token, 1753,
                 pair + "length or scale" + other +
                     "'. Columns participating in a foreign key relationship must be defined with the same length and "
                     "scale.");
  }
}

void BatchCompiler::checkActions(const Constraint& constraint, const std::string& name, const Table& table,
                                 const std::vector<int>& columns, const Table& target) const {
  for (const int ordinal : columns) {
    const Column& column = table.columns[static_cast<std::size_t>(ordinal)];
    const bool sets = constraint.onDelete == "SET NULL" || constraint.onUpdate == "SET NULL";
    if (!sets || column.type.nullable) continue;
    writer_.fail(constraint.token, 1761,
                 "Cannot create the foreign key \"" + name +
                     "\" with the SET NULL referential action, because one or more referencing columns are not "
                     "nullable.");
  }
  const Edge added{lowered(target.name), lowered(table.name)};
  std::vector<Edge> ofDelete;
  std::vector<Edge> ofUpdate;
  for (const Reference& reference : referencesOf(catalogue_.tables())) {
    const Edge edge{lowered(reference.key.table), lowered(reference.child->name)};
    if (cascades(reference.key.onDelete)) ofDelete.push_back(edge);
    if (cascades(reference.key.onUpdate)) ofUpdate.push_back(edge);
  }
  const bool twice = (cascades(constraint.onDelete) && makesSecondWay(ofDelete, added)) ||
                     (cascades(constraint.onUpdate) && makesSecondWay(ofUpdate, added));
  if (!twice) return;
  writer_.fail(constraint.token, 1785,
               "Introducing FOREIGN KEY constraint '" + name + "' on table '" + table.name +
                   "' may cause cycles or multiple cascade paths. Specify ON DELETE NO ACTION or ON UPDATE NO ACTION, "
                   "or modify other FOREIGN KEY constraints.");
}

// SQLite compares the values of a foreign key by the collation of the column that is referred to.
void BatchCompiler::compareAs(Definition& whole, const Table& target, const Column& column) {
  const std::string collation = Writer::collation(column.type);
  if (collation.empty()) return;
  const auto add = [&](TableText& text) {
    ColumnText* found = text.find(column.name);
    if (found == nullptr || found->find("COLLATE") != nullptr) return;
    found->clauses.insert(found->clauses.begin(), {{}, collation.substr(1), {}});
  };
  if (sameName(target.name, whole.table.name)) return add(whole.text);
  const auto same = [&](const Redefinition& other) { return sameName(other.table, target.name); };
  auto parent = std::ranges::find_if(whole.parents, same);
  auto text = TableText::of(parent == whole.parents.end() ? target.text : parent->text);
  if (!text) return;
  add(*text);
  if (parent != whole.parents.end()) {
    parent->text = text->text();
  } else if (text->find(column.name) != nullptr) {
    whole.parents.push_back({target.name, target.temporary, text->text()});
  }
}

void BatchCompiler::addForeignKey(Definition& whole, const Constraint& constraint, std::string_view ofColumn) {
  const Table& table = whole.table;
  // SQL Server warns and leaves it away.
  if (table.temporary) return;
  auto own = constraint.columns;
  if (own.empty()) own.push_back({std::string(ofColumn), false});
  const std::string name = nameFor(whole, constraint, "FK", own.front().name);
  std::vector<int> columns;
  for (const auto& column : own) {
    columns.push_back(table.find(column.name));
    if (columns.back() >= 0) continue;
    writer_.fail(constraint.token, 1769,
                 "Foreign key '" + name + "' references invalid column '" + column.name + "' in referencing table '" +
                     table.name + "'.");
  }
  const bool same = sameName(constraint.target.name, table.name);
  const Table* target = !isOwn(constraint.target) ? nullptr : same ? &table : catalogue_.find(constraint.target.name);
  if (target == nullptr || target->view) {
    writer_.fail(constraint.token, 1767,
                 "Foreign key '" + name + "' references invalid table '" + asWritten(constraint.target) + "'.");
  }
  if (target->temporary) {
    writer_.fail(constraint.token, 1763,
                 "Cross-database foreign key references are not supported. Foreign key '" + name + "'.");
  }
  std::vector<int> referenced;
  for (const auto& column : constraint.targetColumns) {
    referenced.push_back(target->find(column));
    if (referenced.back() >= 0) continue;
    writer_.fail(constraint.token, 1770,
                 "Foreign key '" + name + "' references invalid column '" + column + "' in referenced table '" +
                     asWritten(constraint.target) + "'.");
  }
  if (referenced.empty()) {
    const Index* primary = primaryOf(*target);
    if (primary == nullptr) {
      writer_.fail(constraint.token, 1773,
                   "Foreign key '" + name + "' has implicit reference to object '" + asWritten(constraint.target) +
                       "' which does not have a primary key defined on it.");
    }
    referenced = primary->columns;
  }
  if (referenced.size() != columns.size()) {
    writer_.fail(constraint.token, 8139,
                 "Number of referencing columns in foreign key differs from number of referenced columns, table '" +
                     table.name + "'.");
  }
  checkReferenced(constraint, name, *target, referenced);
  std::string from;
  std::string to;
  std::string given;
  std::string found;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Column& column = table.columns[static_cast<std::size_t>(columns[i])];
    const Column& key = target->columns[static_cast<std::size_t>(referenced[i])];
    checkPair(constraint, name, table, column, key);
    names.push_back(key.name);
    from += (i > 0 ? "," : "") + quoted(column.name);
    to += (i > 0 ? "," : "") + quoted(key.name);
    given += " AND c." + quoted(column.name) + " IS NOT NULL";
    found += " AND p." + quoted(key.name) + "=c." + quoted(column.name) + Writer::collation(key.type);
  }
  checkActions(constraint, name, table, columns, *target);
  for (const int ordinal : referenced) compareAs(whole, *target, target->columns[static_cast<std::size_t>(ordinal)]);
  std::string text = "FOREIGN KEY (" + from + ") REFERENCES " + quoted(target->name) + "(" + to + ")";
  if (!constraint.onDelete.empty()) text += " ON DELETE " + constraint.onDelete;
  if (!constraint.onUpdate.empty()) text += " ON UPDATE " + constraint.onUpdate;
  whole.text.constraints.push_back({name, std::move(text), {}});
  const auto isNew = [&](int ordinal) {
    return whole.before->find(table.columns[static_cast<std::size_t>(ordinal)].name) < 0;
  };
  if (whole.before == nullptr || whole.unchecked || std::ranges::any_of(columns, isNew)) return;
  whole.step.refusals.push_back(
      {{"SELECT 1 FROM " + quoted(table.name) + " AS c WHERE 1" + given + " AND NOT EXISTS (SELECT 1 FROM " +
            quoted(target->name) + " AS p WHERE 1" + found + ") LIMIT 1",
        {}},
       547,
       "The ALTER TABLE statement conflicted with the FOREIGN KEY " + std::string(same ? "SAME TABLE " : "") +
           "constraint \"" + name + "\". The conflict occurred in " + place(*target, names) + "."});
}

}  // namespace tolvane::tsql
