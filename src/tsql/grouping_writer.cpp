// ROLLUP, CUBE and GROUPING SETS: the query is written once for each grouping, and UNION ALL makes one of them.
#include <algorithm>

#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Select;

namespace {

std::string numbered(char letter, std::size_t number) {
  return letter + std::to_string(number + 1);
}

}  // namespace

std::unique_ptr<BoundBody> Writer::bindGroupings(const Select& select, const tree::Query& query, Scope& scope) {
  auto body = std::make_unique<BoundBody>();
  body->distinct = select.distinct;
  const bool ordered = query.body->select.get() == &select && !query.order.empty();
  const std::string alias = nextAlias();
  std::string text;
  std::string order;
  for (const auto& grouping : select.groupings) {
    Scope branch;
    branch.parent = scope.parent;
    branch.emptyKeys = keysLeftOut(select, grouping);
    BoundBody part;
    (void)bindParts(select, branch, part, false);
    std::string extra;
    if (ordered) extra = orderValues(query, branch, part);
    if (!ordered) extra = orderOfGroups(select, branch, order);
    if (branch.windowed) refuse(select.token, "a windowed function over several groupings");
    text += (text.empty() ? "" : " UNION ALL ") + renderSelect(part, true, false, extra, false);
    if (!branch.ungrouped.empty()) {
      scope.ungrouped = branch.ungrouped;
      scope.ungroupedIn = branch.ungroupedIn;
    }
    if (body->outputs.empty()) body->outputs = part.outputs;
    for (std::size_t i = 0; i < part.outputs.size(); ++i) {
      bool& nullable = body->outputs[i].value.type.nullable;
      nullable = nullable || part.outputs[i].value.type.nullable;
    }
    scope.orderValues = std::move(branch.orderValues);
  }
  for (std::size_t i = 0; i < body->outputs.size(); ++i) {
    Typed value;
    value.type = body->outputs[i].value.type;
    value.sql = alias + "." + numbered('c', i);
    body->outputs[i].value = value;
    body->outputs[i].identity = false;
  }
  for (auto& [expression, value] : scope.orderValues) value.sql = alias + "." + value.sql;
  body->from = " FROM (" + text + order + ") AS " + alias;
  body->tail = body->from;
  body->limit = limitOf(select, scope);
  body->percent = select.percent;
  body->ties = select.ties;
  scope.groupKeys = &select.groupBy;
  checkDistinct(select, *body);
  return body;
}

// A key that is written twice is left out only where both are.
std::vector<bool> Writer::keysLeftOut(const Select& select, const std::vector<int>& grouping) const {
  std::vector<bool> result(select.groupBy.size(), true);
  for (const int key : grouping) {
    for (std::size_t i = 0; i < result.size(); ++i) {
      const bool same = static_cast<int>(i) == key ||
                        sameExpression(*select.groupBy[i], *select.groupBy[static_cast<std::size_t>(key)]);
      if (same) result[i] = false;
    }
  }
  return result;
}

// What ORDER BY sorts by and the query does not select, as columns more.
std::string Writer::orderValues(const tree::Query& query, Scope& branch, const BoundBody& part) {
  std::string text;
  branch.clause = Scope::Clause::OrderBy;
  for (std::size_t i = 0; i < query.order.size(); ++i) {
    const tree::Expression& key = *query.order[i].expression;
    const auto isNamed = [&](const Output& output) { return sameName(output.name, key.name); };
    const bool plain = key.kind == tree::ExpressionKind::Column && key.qualifier.empty();
    if (key.kind == tree::ExpressionKind::Literal || isConstant(key)) continue;
    if (plain && std::ranges::any_of(part.outputs, isNamed)) continue;
    Typed value = expression(key, &branch);
    text += "," + value.sql + " AS " + numbered('k', i);
    value.sql = numbered('k', i);
    value.column = nullptr;
    value.parameter = -1;
    value.literal = -1;
    branch.orderValues.emplace_back(&key, std::move(value));
  }
  return text;
}

// Without ORDER BY, totals come behind what they are the totals of.
std::string Writer::orderOfGroups(const Select& select, Scope& branch, std::string& order) {
  std::string text;
  order.clear();
  for (std::size_t i = 0; i < select.groupBy.size(); ++i) {
    const Typed key = expression(*select.groupBy[i], &branch);
    text += std::string(branch.emptyKeys[i] ? ",1" : ",0") + " AS " + numbered('g', i) + "," + key.sql + " AS " +
            numbered('k', i);
    order += (order.empty() ? " ORDER BY " : ",") + numbered('g', i) + "," + numbered('k', i) + collation(key.type);
  }
  return text;
}

}  // namespace tolvane::tsql
