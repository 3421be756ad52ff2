#include <algorithm>
#include <set>

#include "tsql/parser.h"
#include "tsql/system_tables.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::JoinKind;
using tree::TableReference;

namespace {}  // namespace

// What an outer join leaves empty. Values that are no columns would not become null.
void Writer::makeNullable(Scope& scope, std::size_t first, std::size_t end, int token) const {
  for (std::size_t i = first; i < end; ++i) {
    if (scope.sources[i].computed) refuse(token, "an outer join of what APPLY gives");
    for (SourceColumn& column : scope.sources[i].columns) column.type.nullable = true;
  }
}

const Table* Writer::findTable(const std::string& schema, const std::string& name, int token) const {
  if (!schema.empty() && !sameName(schema, "dbo")) {
    throw UnknownTable{schema + "." + name, token};
  }
  if (name.starts_with("@")) return tableVariable(name, token);
  const Table* table = catalogue_.find(name);
  if (table == nullptr) throw UnknownTable{schema.empty() ? name : schema + "." + name, token};
  return table;
}

const Table* Writer::tableVariable(const std::string& name, int token) const {
  for (const TableVariable& variable : program_.tableVariables) {
    if (sameName(variable.table->name, name) && variable.token <= token) return variable.table.get();
  }
  throw SqlError(Message::TableVariable, {name}).at(lineOf(batch_, token));
}

bool Writer::isOwnDatabase(std::string_view database) const {
  return database.empty() || options_.database.empty() || sameName(database, options_.database);
}

// There are no other databases; tables whose names begin with '#' are in one of their own.
void Writer::checkDatabase(const std::string& database, const std::string& schema, const std::string& name,
                           int token) const {
  if (isOwnDatabase(database) || name.starts_with("#")) return;
  throw UnknownTable{database + "." + schema + "." + name, token};
}

void Writer::readTable(const Table& table) {
  auto& tables = program_.tablesRead;
  if (std::ranges::find(tables, table.name) == tables.end()) tables.push_back(table.name);
}

std::string Writer::from(const std::vector<tree::TableReferencePtr>& references, Scope& scope, std::size_t leftOut) {
  std::string text;
  for (const auto& reference : references) {
    if (leftOut != none && reference == references[leftOut]) continue;
    if (!text.empty()) text += ',';
    // Joins bind tighter than the comma.
    const bool brackets = !text.empty() && reference->kind == TableReference::Kind::Join;
    const std::string item = joinText(*reference, scope, scope.sources.size());
    text += brackets ? "(" + item + ")" : item;
  }
  return text;
}

std::string Writer::joinText(const TableReference& reference, Scope& scope, std::size_t firstVisible) {
  if (reference.kind == TableReference::Kind::Derived) return derived(reference, scope);
  if (reference.kind == TableReference::Kind::Named) {
    std::string text;
    addTable(reference, scope, text);
    return text;
  }
  const std::size_t first = scope.sources.size();
  std::string text = joinText(*reference.left, scope, firstVisible);
  const std::size_t middle = scope.sources.size();
  if (reference.join == JoinKind::CrossApply || reference.join == JoinKind::OuterApply) {
    return text + applied(reference, scope, first);
  }
  std::string right = joinText(*reference.right, scope, middle);
  if (reference.right->kind == TableReference::Kind::Join) right = "(" + right + ")";
  static constexpr std::string_view words[] = {" JOIN ", " LEFT JOIN ", " RIGHT JOIN ", " FULL JOIN ", " CROSS JOIN "};
  text += std::string(words[static_cast<std::size_t>(reference.join)]) + right;
  if (reference.on) {
    const std::size_t visible = scope.firstVisible;
    scope.firstVisible = first;
    ++scope.insideGroupKey;
    scope.clause = Scope::Clause::On;
    text += " ON " + condition(*reference.on, &scope);
    scope.clause = Scope::Clause::Select;
    --scope.insideGroupKey;
    scope.firstVisible = visible;
  }
  if (reference.join == JoinKind::Right || reference.join == JoinKind::Full)
    makeNullable(scope, first, middle, reference.token);
  if (reference.join == JoinKind::Left || reference.join == JoinKind::Full)
    makeNullable(scope, middle, scope.sources.size(), reference.token);
  return text;
}

void Writer::addSource(Source source, int token, Scope& scope) {
  for (const Source& other : scope.sources) {
    if (!sameName(other.name, source.name)) continue;
    if (source.renamed && other.renamed) {
      fail(token, 1011, "The correlation name '" + source.name + "' is specified multiple times in a FROM clause.");
    }
    if (!source.renamed && !other.renamed) {
      fail(token, 1013,
           "The objects \"" + source.objectName + "\" and \"" + other.objectName +
               "\" in the FROM clause have the same exposed names. Use correlation names to distinguish them.");
    }
    const Source& alias = source.renamed ? source : other;
    const Source& table = source.renamed ? other : source;
    fail(token, 1012,
         "The correlation name '" + alias.name + "' has the same exposed name as table '" + table.objectName + "'.");
  }
  scope.sources.push_back(std::move(source));
}

bool Writer::addTable(const TableReference& reference, Scope& scope, std::string& text) {
  if (reference.schema.empty() && addCommonTable(reference, scope, text)) return true;
  if (addSystemTable(reference, scope, text)) return true;
  if (isKnownSystemTable(reference.schema, reference.name) &&
      (!reference.schema.empty() || catalogue_.find(reference.name) == nullptr)) {
    throw notSupported(batch_, reference.token, "the table '" + reference.name + "' of the catalogue");
  }
  checkDatabase(reference.database, reference.schema, reference.name, reference.token);
  const Table* table = findTable(reference.schema, reference.name, reference.token);
  readTable(*table);
  Source source;
  source.name = reference.alias.empty() ? reference.name : reference.alias;
  source.renamed = !reference.alias.empty();
  source.objectName = (reference.schema.empty() ? "" : reference.schema + ".") + reference.name;
  source.sqlAlias = nextAlias();
  source.table = table;
  source.schema = "dbo";
  for (const Column& column : table->columns) {
    source.columns.push_back({column.name, column.type, source.sqlAlias + "." + quoted(column.name), table->name,
                              column.name, column.identity});
  }
  text += (table->temporary ? "temp." : "") + quoted(table->name) + " AS " + source.sqlAlias;
  addSource(std::move(source), reference.token, scope);
  return true;
}

bool Writer::addCommonTable(const TableReference& reference, Scope& scope, std::string& text) {
  for (auto level = commonTables_.rbegin(); level != commonTables_.rend(); ++level) {
    for (auto table = level->rbegin(); table != level->rend(); ++table) {
      if (!sameName((*table)->name, reference.name)) continue;
      Source source;
      source.name = reference.alias.empty() ? reference.name : reference.alias;
      source.renamed = !reference.alias.empty();
      source.objectName = source.name;
      source.sqlAlias = nextAlias();
      source.base = (*table)->base;
      source.columns = (*table)->columns;
      for (std::size_t i = 0; i < source.columns.size(); ++i) {
        source.columns[i].sql = source.sqlAlias + ".c" + std::to_string(i + 1);
      }
      if ((*table)->recursion.empty()) {
        text += "(" + (*table)->sql + ") AS " + source.sqlAlias;
      } else {
        text += (*table)->recursion + " AS " + source.sqlAlias;
        ++(*table)->uses;
        (*table)->usedAs = source.sqlAlias;
      }
      addSource(std::move(source), reference.token, scope);
      return true;
    }
  }
  return false;
}

bool Writer::addSystemTable(const TableReference& reference, Scope& scope, std::string& text) {
  const SystemTable* table = findSystemTable(reference.schema, reference.name);
  if (table == nullptr) return false;
  if (!isOwnDatabase(reference.database)) {
    throw notSupported(batch_, reference.token, "the catalogue of another database");
  }
  Source source;
  source.name = reference.alias.empty() ? reference.name : reference.alias;
  source.renamed = !reference.alias.empty();
  source.objectName = (reference.schema.empty() ? "" : reference.schema + ".") + reference.name;
  source.sqlAlias = nextAlias();
  source.schema = reference.schema.empty() ? "dbo" : reference.schema;
  source.partial = !table->whole;
  for (const SystemColumn& column : table->columns) {
    source.columns.push_back(
        {std::string(column.name), column.type, source.sqlAlias + "." + quoted(column.name), {}, {}, false});
  }
  text += "(" + std::string(table->sql) + ") AS " + source.sqlAlias;
  addSource(std::move(source), reference.token, scope);
  return true;
}

std::string Writer::derived(const TableReference& reference, Scope& scope) {
  const BoundQuery query = bind(*reference.query, scope.parent, true);
  Source source;
  source.name = reference.alias;
  source.renamed = true;
  source.objectName = reference.alias;
  source.sqlAlias = nextAlias();
  nameColumns(reference, query.outputs, source);
  const BoundBody& body = *query.body;
  const bool rows = keepsRows_ && body.operation == tree::SetOperator::None && body.updatable != nullptr;
  if (rows) source.base = body.updatable;
  const std::string number = rows ? "," + body.rowAlias + ".rowid AS rowid" : "";
  const std::string text = "(" + render(query, true, number) + ") AS " + source.sqlAlias;
  addSource(std::move(source), reference.token, scope);
  return text;
}

void Writer::nameColumns(const TableReference& reference, const std::vector<Output>& outputs, Source& source) const {
  const auto& names = reference.columnAliases;
  if (!names.empty() && names.size() != outputs.size()) {
    const bool more = outputs.size() > names.size();
    fail(reference.token, more ? 8158 : 8159,
         "'" + reference.alias + "' has " + (more ? "more" : "fewer") +
             " columns than were specified in the column list.");
  }
  std::set<std::string> seen;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const Output& output = outputs[i];
    const std::string& name = names.empty() ? output.name : names[i];
    if (name.empty()) {
      fail(reference.token, 8155,
           "No column name was specified for column " + std::to_string(i + 1) + " of '" + reference.alias + "'.");
    }
    if (!seen.insert(lowered(name)).second) {
      fail(reference.token, 8156,
           "The column '" + name + "' was specified multiple times for '" + reference.alias + "'.");
    }
    source.columns.push_back({name, output.value.type, source.sqlAlias + ".c" + std::to_string(i + 1), output.table,
                              output.column, output.identity});
  }
}

}  // namespace tolvane::tsql
