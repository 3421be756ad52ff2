#include "tsql/semi_join.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "tsql/catalogue.h"

namespace tolvane::tsql {
namespace {

using tree::Expression;
using tree::ExpressionKind;
using tree::Select;
using tree::TableReference;

// Counts what may mean the derived table or its column.
class Mentions {
 public:
  Mentions(std::string_view table, std::string_view column) : table_(table), column_(column) {}

  int of(const Select& select, const TableReference* leftOut) {
    for (const auto& item : select.items) {
      if (item.expression) count(*item.expression);
    }
    for (const auto& reference : select.from) {
      if (reference.get() != leftOut) count(*reference);
    }
    if (select.where) count(*select.where);
    for (const auto& key : select.groupBy) count(*key);
    if (select.having) count(*select.having);
    for (const auto& row : select.values) {
      for (const auto& value : row) count(*value);
    }
    if (select.top) count(*select.top);
    return count_;
  }

 private:
  void count(const Expression& expression) {
    const bool mentions = sameName(expression.qualifier, table_) || sameName(expression.name, column_);
    if (expression.kind == ExpressionKind::Column && mentions) ++count_;
    for (const auto& argument : expression.arguments) count(*argument);
    if (expression.operand) count(*expression.operand);
    if (expression.otherwise) count(*expression.otherwise);
    if (expression.query) count(*expression.query);
    for (const auto& part : expression.partition) count(*part);
    for (const auto& item : expression.order) count(*item.expression);
  }
  void count(const TableReference& reference) {
    if (reference.query) count(*reference.query);
    if (reference.left) count(*reference.left);
    if (reference.right) count(*reference.right);
    if (reference.on) count(*reference.on);
  }
  void count(const tree::Query& query) {
    for (const auto& table : query.with) count(*table.query);
    count(*query.body);
    for (const auto& item : query.order) count(*item.expression);
  }
  void count(const tree::QueryBody& body) {
    if (body.select) of(*body.select, nullptr);
    if (body.nested) count(*body.nested);
    if (body.left) count(*body.left);
    if (body.right) count(*body.right);
  }

  std::string_view table_;
  std::string_view column_;
  int count_ = 0;
};

// The name of the only column of such a table.
std::optional<std::string_view> onlyColumn(const TableReference& reference) {
  if (reference.kind != TableReference::Kind::Derived || !reference.columnAliases.empty()) return std::nullopt;
  const tree::Query& query = *reference.query;
  const Select* select = query.body->select.get();
  const bool plain = query.with.empty() && query.order.empty() && select && select->distinct && !select->top &&
                     select->groupBy.empty() && !select->having && select->items.size() == 1 && !select->from.empty();
  if (!plain) return std::nullopt;
  const auto& item = select->items[0];
  if (item.star || !item.variable.empty() || item.expression->kind != ExpressionKind::Column) return std::nullopt;
  return item.alias.empty() ? std::string_view(item.expression->name) : std::string_view(item.alias);
}

std::optional<SemiJoin> equalityWith(const Select& select, std::string_view table, std::string_view column) {
  std::vector<const Expression*> conditions;
  if (select.where->kind == ExpressionKind::And) {
    for (const auto& each : select.where->arguments) conditions.push_back(each.get());
  } else {
    conditions.push_back(select.where.get());
  }
  const auto isColumn = [&](const Expression& side) {
    return side.kind == ExpressionKind::Column && sameName(side.qualifier, table) && sameName(side.name, column);
  };
  for (const Expression* each : conditions) {
    if (each->kind != ExpressionKind::Compare || each->name != "=") continue;
    if (isColumn(*each->arguments[1])) return SemiJoin{0, each, each->arguments[0].get()};
    if (isColumn(*each->arguments[0])) return SemiJoin{0, each, each->arguments[1].get()};
  }
  return std::nullopt;
}

}  // namespace

std::optional<SemiJoin> findSemiJoin(const Select& select) {
  if (!select.where || select.from.size() < 2) return std::nullopt;
  for (std::size_t i = 0; i < select.from.size(); ++i) {
    const TableReference& reference = *select.from[i];
    const auto column = onlyColumn(reference);
    if (!column) continue;
    const bool expanded = std::any_of(select.items.begin(), select.items.end(), [&](const tree::SelectItem& item) {
      return item.star && (item.qualifier.empty() || sameName(item.qualifier, reference.alias));
    });
    if (expanded) continue;
    auto found = equalityWith(select, reference.alias, *column);
    if (!found || Mentions(reference.alias, *column).of(select, &reference) != 1) continue;
    found->reference = i;
    return found;
  }
  return std::nullopt;
}

}  // namespace tolvane::tsql
