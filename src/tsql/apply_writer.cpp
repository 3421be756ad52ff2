// CROSS APPLY and OUTER APPLY. SQLite's FROM does not let a table see its neighbours, so what is applied becomes a join
// whose condition sees them, or values that stand where the columns are used.
#include <algorithm>

#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::JoinKind;
using tree::TableReference;

namespace {

constexpr std::size_t fromWord = 6;  // " FROM "

bool readsTablesOnly(const TableReference& reference) {
  if (reference.kind == TableReference::Kind::Named) return true;
  if (reference.kind == TableReference::Kind::Derived) return false;
  return reference.join < JoinKind::CrossApply && readsTablesOnly(*reference.left) && readsTablesOnly(*reference.right);
}

std::string_view joinWord(const TableReference& reference) {
  return reference.join == JoinKind::OuterApply ? " LEFT JOIN " : " JOIN ";
}

std::string orderText(const BoundQuery& query) {
  std::string text;
  for (const OrderKey& key : query.order) {
    const std::string& sql = key.position > 0 ? query.outputs[key.position - 1].value.sql : key.sql;
    text += (text.empty() ? " ORDER BY " : ",") + sql + key.suffix;
  }
  return text;
}

// Whether an output is a column of the query's own tables, which is null by itself where the row is missing.
bool isOwnColumn(const BoundQuery& query, const Output& output) {
  const auto owns = [&](const Source& source) {
    return std::ranges::any_of(source.columns,
                               [&](const SourceColumn& column) { return &column == output.value.column; });
  };
  return output.value.column != nullptr && std::ranges::any_of(query.scope->sources, owns);
}

// A value is null where the row that it belongs to is missing.
void takeValues(Source& source, const BoundQuery& query, const std::string& marker) {
  for (std::size_t i = 0; i < source.columns.size(); ++i) {
    const Typed& value = query.body->outputs[i].value;
    const bool itself = marker.empty() || isOwnColumn(query, query.body->outputs[i]);
    source.columns[i].sql = itself ? value.sql : "(CASE WHEN " + marker + " IS NOT NULL THEN " + value.sql + " END)";
  }
}

}  // namespace

std::string Writer::applied(const TableReference& reference, Scope& scope, std::size_t first) {
  const TableReference& right = *reference.right;
  if (right.kind == TableReference::Kind::Join) refuse(reference.token - 1, "APPLY of a join");
  const bool outer = reference.join == JoinKind::OuterApply;
  std::string text;
  if (right.kind == TableReference::Kind::Named) {
    addTable(right, scope, text);
    text = std::string(joinWord(reference)) + text + " ON 1";
  } else {
    const std::size_t visible = scope.firstVisible;
    scope.firstVisible = first;
    ++scope.insideGroupKey;
    Source source;
    source.name = right.alias;
    source.renamed = true;
    source.objectName = right.alias;
    source.sqlAlias = nextAlias();
    text = appliedText(reference, scope, source);
    --scope.insideGroupKey;
    scope.firstVisible = visible;
    addSource(std::move(source), right.token, scope);
  }
  for (SourceColumn& column : scope.sources.back().columns) column.type.nullable = column.type.nullable || outer;
  return text;
}

std::string Writer::appliedText(const TableReference& reference, Scope& scope, Source& source) {
  const TableReference& right = *reference.right;
  const bool used = scope.usedInside;
  scope.usedInside = false;
  const BoundQuery query = bind(*right.query, &scope, true);
  const bool correlated = scope.usedInside;
  scope.usedInside = used || correlated;
  nameColumns(right, query.outputs, source);
  if (!correlated) {
    return std::string(joinWord(reference)) + "(" + render(query, true) + ") AS " + source.sqlAlias + " ON 1";
  }
  source.computed = true;
  const BoundBody& body = *query.body;
  if (!body.rows.empty()) return appliedRows(body, source);
  const tree::Select* select = right.query->body->select.get();
  const bool plain = select != nullptr && right.query->with.empty() && select->groupBy.empty() &&
                     select->groupings.empty() && !select->having && !body.distinct && !body.percent && !body.ties &&
                     query.page.empty() && !query.scope->windowed;
  if (!plain) refuse(reference.token - 1, "APPLY of such a query");
  if (!body.limit.empty()) return appliedTop(reference, scope, query, source);
  if (body.singleRow) {
    // One row whatever there is: each column is a query of its own.
    for (std::size_t i = 0; i < source.columns.size(); ++i) {
      source.columns[i].sql = "(SELECT " + body.outputs[i].value.sql + body.tail + ")";
    }
    return {};
  }
  return appliedQuery(reference, query, source);
}

// A VALUES list: as many rows as it has, numbered, and the values chosen by number.
std::string Writer::appliedRows(const BoundBody& body, Source& source) {
  std::string numbers;
  for (std::size_t row = 0; row < body.rows.size(); ++row) {
    numbers += (row == 0 ? "SELECT " : " UNION ALL SELECT ") + std::to_string(row) + (row == 0 ? " AS n" : "");
  }
  for (std::size_t i = 0; i < source.columns.size(); ++i) {
    std::string& sql = source.columns[i].sql;
    sql = "(CASE " + source.sqlAlias + ".n";
    for (std::size_t row = 0; row < body.rows.size(); ++row) {
      sql += " WHEN " + std::to_string(row) + " THEN " + body.rows[row][i].sql;
    }
    sql += " END)";
  }
  return " JOIN (" + numbers + ") AS " + source.sqlAlias + " ON 1";
}

// TOP: the rows of the table whose numbers the sub-query gives.
std::string Writer::appliedTop(const TableReference& reference, Scope& scope, const BoundQuery& query, Source& source) {
  const BoundBody& body = *query.body;
  if (body.updatable == nullptr) refuse(reference.token - 1, "APPLY of TOP from several tables");
  const BoundQuery rows = bind(*reference.right->query, &scope, true);
  const std::string number = rows.body->rowAlias + ".rowid";
  takeValues(source, rows, reference.join == JoinKind::OuterApply ? number : "");
  return std::string(joinWord(reference)) + rows.body->from.substr(fromWord) + " ON " + number + " IN (SELECT " +
         body.rowAlias + ".rowid" + body.tail + orderText(query) + " LIMIT " + body.limit + ")";
}

// Rows that a condition chooses: a join on this condition.
std::string Writer::appliedQuery(const TableReference& reference, const BoundQuery& query, Source& source) {
  const BoundBody& body = *query.body;
  const auto& from = reference.right->query->body->select->from;
  if (!std::ranges::all_of(from, [](const auto& each) { return readsTablesOnly(*each); })) {
    refuse(reference.token - 1, "APPLY of a query over a derived table");
  }
  const bool outer = reference.join == JoinKind::OuterApply;
  const auto isColumn = [&](const Output& output) { return isOwnColumn(query, output); };
  const bool marked = outer && !std::ranges::all_of(body.outputs, isColumn);
  std::string marker;
  std::string rows = "(SELECT 1 AS n) AS " + source.sqlAlias;
  if (!from.empty()) {
    rows = body.from.substr(fromWord);
    if (marked && body.updatable == nullptr) refuse(reference.token - 1, "OUTER APPLY of values beside several tables");
    marker = body.rowAlias + ".rowid";
    if (query.scope->sources.size() > 1) rows = "(" + rows + ")";
  } else {
    marker = source.sqlAlias + ".n";
  }
  takeValues(source, query, marked ? marker : "");
  return std::string(joinWord(reference)) + rows + " ON " + (body.where.empty() ? "1" : body.where);
}

}  // namespace tolvane::tsql
