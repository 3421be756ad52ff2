// Common table expressions. A plain one stands as text where its name is used; one that refers to itself becomes
// SQLite's WITH RECURSIVE there, with a column more that counts the steps.
#include <algorithm>

#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::ExpressionKind;
using tree::JoinKind;
using tree::SetOperator;
using tree::TableReference;

namespace {

bool names(const TableReference& reference, const std::string& name);

bool names(const tree::Query& query, const std::string& name);

bool names(const tree::QueryBody& body, const std::string& name) {
  const auto in = [&](const auto& reference) { return names(*reference, name); };
  return (body.select && std::ranges::any_of(body.select->from, in)) || (body.nested && names(*body.nested, name)) ||
         (body.left && names(*body.left, name)) || (body.right && names(*body.right, name));
}

bool names(const tree::Query& query, const std::string& name) {
  return names(*query.body, name);
}

bool names(const TableReference& reference, const std::string& name) {
  if (reference.kind == TableReference::Kind::Named) {
    return reference.schema.empty() && sameName(reference.name, name);
  }
  return (reference.query && names(*reference.query, name)) || (reference.left && names(*reference.left, name)) ||
         (reference.right && names(*reference.right, name));
}

// Whether a sub-query of an expression reads the table.
bool readsInside(const tree::Expression& expression, const std::string& name) {
  const auto inside = [&](const auto& part) { return part && readsInside(*part, name); };
  return (expression.query && names(*expression.query, name)) || std::ranges::any_of(expression.arguments, inside) ||
         inside(expression.operand) || inside(expression.otherwise);
}

bool readsInside(const tree::QueryBody& body, const std::string& name) {
  if (body.left) return readsInside(*body.left, name) || readsInside(*body.right, name);
  if (!body.select) return false;
  const auto inItem = [&](const tree::SelectItem& item) {
    return item.expression && readsInside(*item.expression, name);
  };
  const tree::Select& select = *body.select;
  return (select.where && readsInside(*select.where, name)) || (select.having && readsInside(*select.having, name)) ||
         std::ranges::any_of(select.items, inItem);
}

bool joinsOutside(const TableReference& reference) {
  if (reference.kind != TableReference::Kind::Join) return false;
  const bool outside = reference.join == JoinKind::Left || reference.join == JoinKind::Right ||
                       reference.join == JoinKind::Full || reference.join == JoinKind::OuterApply;
  return outside || joinsOutside(*reference.left) || joinsOutside(*reference.right);
}

bool readsDirectly(const TableReference& reference, const std::string& name) {
  if (reference.kind == TableReference::Kind::Derived) return false;
  if (reference.kind == TableReference::Kind::Named) return names(reference, name);
  return readsDirectly(*reference.left, name) ||
         (reference.right->kind == TableReference::Kind::Named && names(*reference.right, name));
}

}  // namespace

void Writer::defineCommonTables(const std::vector<tree::CommonTable>& tables, int maxRecursion) {
  if (tables.empty()) return;
  commonTables_.emplace_back();
  for (const auto& table : tables) {
    const auto& known = commonTables_.back();
    if (std::ranges::any_of(known, [&](const auto& other) { return sameName(other->name, table.name); })) {
      fail(table.token, 239, "Duplicate common table expression name '" + table.name + "' was specified.");
    }
    if (names(*table.query, table.name) || readsInside(*table.query->body, table.name)) {
      defineRecursive(table, maxRecursion);
      continue;
    }
    const BoundQuery inner = bind(*table.query, nullptr, true);
    const BoundBody& body = *inner.body;
    auto text = std::make_unique<CommonTableText>();
    text->name = table.name;
    if (keepsRows_ && body.operation == SetOperator::None) text->base = body.updatable;
    text->sql = render(inner, true, text->base != nullptr ? "," + body.rowAlias + ".rowid AS rowid" : "");
    nameColumns(table, inner.outputs, *text);
    commonTables_.back().push_back(std::move(text));
  }
}

void Writer::nameColumns(const tree::CommonTable& table, const std::vector<Output>& outputs,
                         CommonTableText& text) const {
  if (!table.columns.empty() && table.columns.size() != outputs.size()) {
    const bool more = outputs.size() > table.columns.size();
    fail(table.token, more ? 8158 : 8159,
         "'" + table.name + "' has " + (more ? "more" : "fewer") + " columns than were specified in the column list.");
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const Output& output = outputs[i];
    const std::string& name = table.columns.empty() ? output.name : table.columns[i];
    if (name.empty()) {
      fail(table.token, 8155,
           "No column name was specified for column " + std::to_string(i + 1) + " of '" + table.name + "'.");
    }
    if (std::ranges::any_of(text.columns, [&](const SourceColumn& other) { return sameName(other.name, name); })) {
      fail(table.token, 8156, "The column '" + name + "' was specified multiple times for '" + table.name + "'.");
    }
    text.columns.push_back({name, output.value.type, {}, output.table, output.column, output.identity});
  }
}

// The part after the last UNION ALL reads what the step before it has found.
void Writer::checkRecursivePart(const tree::CommonTable& table, const tree::QueryBody& body) const {
  if (!body.select || !body.select->values.empty()) refuse(table.token, "such a recursion");
  const tree::Select& select = *body.select;
  const std::string part = " in the recursive part of a recursive common table expression '" + table.name + "'.";
  if (select.distinct) fail(table.token, 460, "DISTINCT operator is not allowed" + part);
  if (select.top) fail(table.token, 461, "TOP operator is not allowed" + part);
  if (!select.groupBy.empty() || !select.groupings.empty() || select.having) {
    fail(table.token, 467, "GROUP BY, HAVING, or aggregate functions are not allowed" + part);
  }
  const auto outside = [](const auto& reference) { return joinsOutside(*reference); };
  if (std::ranges::any_of(select.from, outside)) fail(table.token, 462, "Outer join is not allowed" + part);
  const auto direct = [&](const auto& reference) { return readsDirectly(*reference, table.name); };
  const bool reads =
      std::ranges::any_of(select.from, [&](const auto& reference) { return names(*reference, table.name); });
  if (!reads || readsInside(body, table.name))
    fail(table.token, 465, "Recursive references are not allowed in subqueries.");
  const bool mixed = select.from.size() > 1 && std::ranges::any_of(select.from, [](const auto& reference) {
                       return reference->kind == TableReference::Kind::Join;
                     });
  if (mixed || std::ranges::none_of(select.from, direct)) refuse(table.token, "such a recursion");
}

void Writer::defineRecursive(const tree::CommonTable& table, int maxRecursion) {
  const tree::QueryBody& body = *table.query->body;
  if (body.operation != SetOperator::UnionAll) {
    fail(table.token, 252,
         "Recursive common table expression '" + table.name + "' does not contain a top-level UNION ALL operator.");
  }
  const bool before = names(*body.left, table.name) || readsInside(*body.left, table.name);
  if (before || !table.query->order.empty()) refuse(table.token, "such a recursion");
  checkRecursivePart(table, *body.right);

  Scope anchorScope;
  auto anchor = bindBody(*body.left, *table.query, anchorScope, nullptr);
  BoundQuery first;
  first.outputs = unify(*anchor);
  for (Output& output : first.outputs) {
    if (output.value.type.kind == TypeKind::Null) output.value.type = Type::of(TypeKind::Int);
    output.value.type.nullable = true;
    output.identity = false;
  }
  convertOutputs(*anchor, first.outputs);
  first.body = std::move(anchor);

  auto defined = std::make_unique<CommonTableText>();
  defined->name = table.name;
  nameColumns(table, first.outputs, *defined);
  defined->recursion = nextAlias();
  CommonTableText* text = defined.get();
  commonTables_.back().push_back(std::move(defined));
  const auto step = bindBody(*body.right, *table.query, anchorScope, nullptr);
  if (text->uses != 1) {
    fail(table.token, 253,
         "Recursive member of a common table expression '" + table.name + "' has multiple recursive references.");
  }
  if (step->singleRow) {
    fail(table.token, 467,
         "GROUP BY, HAVING, or aggregate functions are not allowed in the recursive part of a recursive common table "
         "expression '" +
             table.name + "'.");
  }
  if (step->outputs.size() != first.outputs.size()) fail(body.token, Message::UnionColumnCount);
  std::string columns;
  std::string found;
  for (std::size_t i = 0; i < first.outputs.size(); ++i) {
    const Type& type = first.outputs[i].value.type;
    const Type& next = step->outputs[i].value.type;
    if (next.kind != TypeKind::Null && next.orNull() != type.orNull()) {
      fail(table.token, 240,
           "Types don't match between the anchor and the recursive part in column \"" + text->columns[i].name +
               "\" of recursive query \"" + table.name + "\".");
    }
    columns += (i > 0 ? ",c" : "c") + std::to_string(i + 1);
    found += (i > 0 ? "," : "") + step->outputs[i].value.sql;
  }
  const std::string depth = "ts_depth(" + text->usedAs + ".d+1," + std::to_string(maxRecursion) + ")";
  text->sql = "WITH RECURSIVE " + text->recursion + "(" + columns + ",d) AS (SELECT " + columns + ",0 FROM (" +
              render(first, true) + ") UNION ALL SELECT " + found + "," + depth + step->tail + ") SELECT " + columns +
              " FROM " + text->recursion;
  text->recursion.clear();
}

}  // namespace tolvane::tsql
