#include <algorithm>

#include "tsql/batch_compiler.h"
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementNode;

const Table& BatchCompiler::changedTable(const tree::TableName& name) const {
  writer_.checkDatabase(name.database, name.schema, name.name, name.token);
  return *writer_.findTable(name.schema, name.name, name.token);
}

// --- INSERT

std::vector<int> BatchCompiler::insertColumns(const StatementNode& node, const Table& table) {
  std::vector<int> columns;
  if (node.columns.empty()) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      if (!table.columns[i].identity) columns.push_back(static_cast<int>(i));
    }
    return columns;
  }
  for (const auto& name : node.columns) {
    const int ordinal = table.find(name);
    if (ordinal < 0) writer_.fail(node.table.token, Message::InvalidColumn, {name});
    if (std::ranges::find(columns, ordinal) != columns.end()) {
      writer_.fail(
          node.table.token, 264,
          "The column name '" + name +
              "' is specified more than once in the SET clause or column list of an INSERT. "
              "A column cannot be assigned more than one value in the same clause. Modify the clause to make sure that "
              "a column is updated only once. If this statement updates or inserts columns into a view, column "
              "aliasing can conceal the duplication in your code.");
    }
    columns.push_back(ordinal);
  }
  return columns;
}

void BatchCompiler::checkCount(const StatementNode& node, const Table& table, std::size_t given,
                               std::size_t wanted) const {
  if (given == wanted) return;
  if (node.columns.empty()) {
    if (table.identityColumn() >= 0 && given == table.columns.size()) {
      writer_.fail(node.table.token, 8101,
                   "An explicit value for the identity column in table '" + node.table.name +
                       "' can only be specified when a column list is used and IDENTITY_INSERT is ON.");
    }
    writer_.fail(node.table.token, Message::InsertColumnCount);
  }
  const bool values = node.query->body->select && !node.query->body->select->values.empty();
  if (!values) {
    writer_.fail(
        node.table.token, given < wanted ? 120 : 121,
        std::string("The select list for the INSERT statement contains ") + (given < wanted ? "fewer" : "more") +
            " items than the insert list. The number of SELECT values must match the number of INSERT columns.");
  }
  writer_.fail(node.table.token, given < wanted ? Message::InsertFewerColumns : Message::InsertMoreColumns);
}

std::string BatchCompiler::insertValues(const tree::Select& select, const Table& table,
                                        const std::vector<int>& columns) {
  std::string text = " VALUES ";
  for (std::size_t row = 0; row < select.values.size(); ++row) {
    text += row == 0 ? "(" : ",(";
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Column& column = table.columns[static_cast<std::size_t>(columns[i])];
      const tree::Expression& value = *select.values[row][i];
      if (i > 0) text += ',';
      const bool isDefault = value.kind == tree::ExpressionKind::Default;
      if (column.identity && (isDefault || value.kind == tree::ExpressionKind::Null)) {
        writer_.fail(value.token, 339, "DEFAULT or NULL are not allowed as explicit identity values.");
      }
      if (isDefault) {
        text += column.defaultText.empty() ? "NULL" : "(" + column.defaultText + ")";
      } else {
        const std::string given = writer_.assignInserted(writer_.expression(value, nullptr), table, column);
        text += column.made ? givenIdentity(given, table.name, column) : given;
      }
    }
    text += ')';
  }
  return text;
}

std::string BatchCompiler::insertQuery(const tree::Query& query, const Table& table, const std::vector<int>& columns) {
  const BoundQuery bound = writer_.bind(query, nullptr, false);
  std::string text = " SELECT ";
  for (std::size_t i = 0; i < columns.size() && i < bound.outputs.size(); ++i) {
    Typed value = bound.outputs[i].value;
    value.sql = "c" + std::to_string(i + 1);
    if (i > 0) text += ',';
    const Column& column = table.columns[static_cast<std::size_t>(columns[i])];
    const std::string given = writer_.assign(value, table, column);
    text += column.made ? givenIdentity(given, table.name, column) : given;
  }
  // SQLite would read a following ON as part of an upsert without a WHERE.
  return text + " FROM (" + writer_.render(bound, true) + ") WHERE 1";
}

void BatchCompiler::insert(const StatementNode& node) {
  const auto isTarget = [&](const tree::CommonTable& table) { return sameName(table.name, node.table.name); };
  if (node.table.schema.empty() && std::ranges::any_of(node.with, isTarget)) {
    throw notSupported(batch_, node.table.token, "adding rows to a common table expression");
  }
  const Table& table = changedTable(node.table);
  ExecuteStep step;
  step.verb = ExecuteStep::Verb::Insert;
  step.table = table.name;
  const int identity = table.identityColumn();
  step.setsIdentity = identity >= 0;
  if (identity >= 0) {
    step.makesIdentity = table.columns[static_cast<std::size_t>(identity)].made;
    step.givesIdentity = ExecuteStep::GivesIdentity::No;
  }
  step.checksKeys = true;
  std::string text = "INSERT INTO " + std::string(table.temporary ? "temp." : "") + quoted(table.name);
  if (node.defaultValues) {
    text += " DEFAULT VALUES";
  } else {
    const std::vector<int> columns = insertColumns(node, table);
    if (columns.empty()) writer_.fail(node.table.token, Message::InsertColumnCount);
    if (std::ranges::find(columns, identity) != columns.end()) step.givesIdentity = ExecuteStep::GivesIdentity::Yes;
    text += "(";
    for (std::size_t i = 0; i < columns.size(); ++i) {
      text += (i > 0 ? "," : "") + quoted(table.columns[static_cast<std::size_t>(columns[i])].name);
    }
    text += ")";
    const auto& select = node.query->body->select;
    if (select && !select->values.empty()) {
      const auto asWide = [&](const auto& row) { return row.size() == select->values[0].size(); };
      if (!std::ranges::all_of(select->values, asWide)) {
        writer_.fail(select->token, 10709,
                     "The number of columns for each row in a table value constructor must be the same.");
      }
      for (const auto& row : select->values) checkCount(node, table, row.size(), columns.size());
      text += insertValues(*select, table, columns);
      step.oneRow = select->values.size() == 1 && !step.makesIdentity;
    } else {
      const BoundQuery probe = writer_.bind(*node.query, nullptr, false);
      checkCount(node, table, probe.outputs.size(), columns.size());
      text += insertQuery(*node.query, table, columns);
    }
  }
  step.statements.push_back(writer_.finish(text));
  written(table);
  add(node, std::move(step));
}

// --- UPDATE and DELETE

// The table that is changed, and the FROM text that binds it. In T-SQL the name after UPDATE or DELETE may be an alias
// of the FROM list, a table of that list, or a table beside it.
BatchCompiler::Target BatchCompiler::target(const StatementNode& node, Scope& scope) {
  Target result;
  const auto isTarget = [&](const tree::CommonTable& table) { return sameName(table.name, node.table.name); };
  const bool common = node.table.schema.empty() && std::ranges::any_of(node.with, isTarget);
  if (!node.hasFrom) {
    if (!common) (void)changedTable(node.table);
    tree::TableReference reference;
    reference.name = node.table.name;
    reference.token = node.table.token;
    writer_.addTable(reference, scope, result.from);
    result.joined = common;
    takeSource(node, scope.sources[0], result);
    return result;
  }
  result.joined = true;
  if (!node.table.schema.empty() || !node.table.database.empty()) (void)changedTable(node.table);
  result.from = writer_.from(node.from, scope);
  const Source* found = nullptr;
  int matches = 0;
  for (const Source& source : scope.sources) {
    if (sameName(source.name, node.table.name)) found = &source;
  }
  if (found == nullptr) {
    for (const Source& source : scope.sources) {
      if (source.table == nullptr || !sameName(source.table->name, node.table.name)) continue;
      found = &source;
      ++matches;
    }
    if (matches > 1) {
      writer_.fail(node.table.token, 8154, "The table '" + node.table.name + "' is ambiguous.");
    }
  }
  if (found == nullptr) {
    if (!common) (void)changedTable(node.table);
    tree::TableReference reference;
    reference.name = node.table.name;
    reference.token = node.table.token;
    std::string text;
    writer_.addTable(reference, scope, text);
    result.from += "," + text;
    found = &scope.sources.back();
  }
  takeSource(node, *found, result);
  return result;
}

// Of a query in the place of a table, the rows of the table behind it are changed.
void BatchCompiler::takeSource(const StatementNode& node, const Source& source, Target& target) const {
  target.table = source.table != nullptr ? source.table : source.base;
  if (target.table == nullptr) throw notSupported(batch_, node.table.token, "changing what is no single table");
  target.alias = source.sqlAlias;
  target.name = source.name;
  if (source.table == nullptr) target.columns = source.columns;
}

// The table's column that an assignment means.
int BatchCompiler::assignedColumn(const tree::Assignment& assignment, const Target& target) const {
  const Table& table = *target.table;
  const std::string& qualifier = assignment.qualifier;
  if (!qualifier.empty() && !sameName(qualifier, target.name) && !sameName(qualifier, table.name)) {
    writer_.fail(assignment.token, Message::MultipartNotBound, {qualifier + "." + assignment.column});
  }
  const int ordinal = target.columns.empty() ? table.find(assignment.column) : -1;
  if (ordinal >= 0) return ordinal;
  const auto isIt = [&](const SourceColumn& column) { return sameName(column.name, assignment.column); };
  const auto found = std::ranges::find_if(target.columns, isIt);
  if (found == target.columns.end()) writer_.fail(assignment.token, Message::InvalidColumn, {assignment.column});
  if (found->column.empty()) {
    writer_.fail(assignment.token, 4406,
                 "Update or insert of view or function '" + target.name +
                     "' failed because it contains a derived or constant field.");
  }
  return table.find(found->column);
}

void BatchCompiler::update(const StatementNode& node) {
  Scope scope;
  const Target changed = target(node, scope);
  const Table& table = *changed.table;
  bool simple = !changed.joined && !node.top;
  bool keys = false;
  std::vector<int> columns;
  std::vector<std::string> values;
  scope.clause = Scope::Clause::Set;
  for (const auto& assignment : node.assignments) {
    const int ordinal = assignedColumn(assignment, changed);
    const Column& column = table.columns[static_cast<std::size_t>(ordinal)];
    if (column.identity) {
      writer_.fail(assignment.token, 8102, "Cannot update identity column '" + column.name + "'.");
    }
    if (std::ranges::find(columns, ordinal) != columns.end()) {
      writer_.fail(
          assignment.token, 264,
          "The column name '" + column.name +
              "' is specified more than once in the SET clause or column list of an "
              "INSERT. A column cannot be assigned more than one value in the same clause. Modify the clause to make "
              "sure that a column is updated only once. If this statement updates or inserts columns into a view, "
              "column aliasing can conceal the duplication in your code.");
    }
    columns.push_back(ordinal);
    if (assignment.value->kind == tree::ExpressionKind::Default) {
      values.push_back(column.defaultText.empty() ? "NULL" : "(" + column.defaultText + ")");
      continue;
    }
    const Typed value = assignment.operation.empty()
                            ? writer_.expression(*assignment.value, &scope)
                            : writer_.compoundColumn(assignment.operation, changed.name, assignment.column,
                                                     *assignment.value, &scope, assignment.token);
    // A sub-query must see the old rows, which SQLite grants only to what is read before the first row is changed.
    simple = simple && !value.subquery;
    const bool unique = std::ranges::any_of(table.indexes, [&](const Index& index) {
      return index.unique && std::ranges::find(index.columns, ordinal) != index.columns.end();
    });
    keys = keys || (unique && value.parameter < 0);
    values.push_back(writer_.assign(value, table, column, "UPDATE"));
  }
  scope.clause = Scope::Clause::Select;
  std::string where;
  if (node.where) where = " WHERE " + writer_.condition(*node.where, &scope);
  written(table);
  const std::string name = std::string(table.temporary ? "temp." : "") + quoted(table.name);
  std::string sets;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string value = simple && !keys ? values[i] : "s.c" + std::to_string(i + 1);
    sets += (i > 0 ? "," : "") + quoted(table.columns[static_cast<std::size_t>(columns[i])].name) + "=" + value;
  }
  ExecuteStep step;
  step.verb = ExecuteStep::Verb::Update;
  step.table = table.name;
  step.checksKeys = true;
  if (simple && !keys) {
    step.statements.push_back(writer_.finish("UPDATE " + name + " AS " + changed.alias + " SET " + sets + where));
    add(node, std::move(step));
    return;
  }
  std::string rows = "SELECT " + changed.alias + ".rowid AS r";
  for (std::size_t i = 0; i < values.size(); ++i) rows += "," + values[i] + " AS c" + std::to_string(i + 1);
  rows += " FROM " + changed.from + where;
  if (node.top) {
    rows += " LIMIT " + writer_.rowCount(writer_.expression(*node.top, nullptr), -1, node.top->token);
  }
  if (keys) return updateInTwoPasses(node, table, columns, rows);
  step.statements.push_back(
      writer_.finish("UPDATE " + name + " AS u SET " + sets + " FROM (" + rows + ") AS s WHERE u.rowid=s.r"));
  add(node, std::move(step));
}

// Unique keys are judged after the whole UPDATE, SQLite judges them row by row. So the new values are put aside, the
// keys of the rows are made different from everything there can be, and the values are set then. A key that is SQLite's
// row number cannot change, since identity columns cannot be updated.
void BatchCompiler::updateInTwoPasses(const StatementNode& node, const Table& table, const std::vector<int>& columns,
                                      const std::string& rows) {
  const std::string name = std::string(table.temporary ? "temp." : "") + quoted(table.name);
  ExecuteStep step;
  step.verb = ExecuteStep::Verb::Update;
  step.table = table.name;
  step.checksKeys = true;
  step.statements.push_back({"DROP TABLE IF EXISTS temp.__tolvane_update", {}});
  step.statements.push_back(writer_.finish("CREATE TEMP TABLE __tolvane_update AS " + rows));
  std::string aside;
  std::string differs;
  std::string sets;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int ordinal = columns[i];
    const std::string column = quoted(table.columns[static_cast<std::size_t>(ordinal)].name);
    const bool unique = std::ranges::any_of(table.indexes, [&](const Index& index) {
      return index.unique && std::ranges::find(index.columns, ordinal) != index.columns.end();
    });
    // A blob is equal to no text and no number, and the row number makes it differ from that of other rows.
    if (unique) {
      aside += (aside.empty() ? "" : ",") + column + "=CAST('k'||u.rowid AS BLOB)";
      differs += (differs.empty() ? "u." : " OR u.") + column + " IS NOT s.c" + std::to_string(i + 1);
    }
    sets += (i > 0 ? "," : "") + column + "=s.c" + std::to_string(i + 1);
  }
  step.statements.push_back(
      // A key that stays may be referred to.
      {"UPDATE " + name + " AS u SET " + aside + " FROM temp.__tolvane_update AS s WHERE u.rowid=s.r AND (" + differs +
           ")",
       {}});
  step.counted = static_cast<int>(step.statements.size());
  step.statements.push_back(
      {"UPDATE " + name + " AS u SET " + sets + " FROM temp.__tolvane_update AS s WHERE u.rowid=s.r", {}});
  step.statements.push_back({"DROP TABLE temp.__tolvane_update", {}});
  add(node, std::move(step));
}

void BatchCompiler::remove(const StatementNode& node) {
  Scope scope;
  const Target changed = target(node, scope);
  const std::string where = node.where ? " WHERE " + writer_.condition(*node.where, &scope) : "";
  const std::string name = std::string(changed.table->temporary ? "temp." : "") + quoted(changed.table->name);
  ExecuteStep step;
  step.verb = ExecuteStep::Verb::Delete;
  step.table = changed.table->name;
  step.checksKeys = true;
  std::string text;
  if (!changed.joined && !node.top) {
    text = "DELETE FROM " + name + " AS " + changed.alias + where;
  } else {
    text = "DELETE FROM " + name + " WHERE rowid IN (SELECT " + changed.alias + ".rowid FROM " + changed.from + where;
    if (node.top) {
      text += " LIMIT " + writer_.rowCount(writer_.expression(*node.top, nullptr), -1, node.top->token);
    }
    text += ")";
  }
  step.statements.push_back(writer_.finish(text));
  written(*changed.table);
  add(node, std::move(step));
}

void BatchCompiler::truncate(const StatementNode& node) {
  const Table& table = changedTable(node.table);
  const std::string schema = table.temporary ? "temp." : "main.";
  ExecuteStep step;
  step.verb = ExecuteStep::Verb::Delete;
  step.table = table.name;
  step.checksKeys = true;
  step.counted = -1;
  step.truncates = true;
  step.statements.push_back({"DELETE FROM " + schema + quoted(table.name), {}});
  // Identity values begin anew.
  if (table.identityColumn() >= 0) {
    step.statements.push_back({"DELETE FROM " + schema + "sqlite_sequence WHERE name=" + quotedText(table.name), {}});
  }
  written(table);
  add(node, std::move(step));
}

}  // namespace tolvane::tsql
