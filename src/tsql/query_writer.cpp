#include <algorithm>

#include "tsql/parser.h"
#include "tsql/semi_join.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::SetOperator;

namespace {

std::string_view word(SetOperator operation) {
  switch (operation) {
    case SetOperator::None:
      break;
    case SetOperator::Union:
      return " UNION ";
    case SetOperator::UnionAll:
      return " UNION ALL ";
    case SetOperator::Except:
      return " EXCEPT ";
    case SetOperator::Intersect:
      return " INTERSECT ";
  }
  return {};
}

}  // namespace

// --- binding

BoundQuery Writer::bind(const tree::Query& query, Scope* parent, bool subquery) {
  BoundQuery result;
  result.scope = std::make_unique<Scope>();
  result.scope->parent = parent;
  if (subquery && tree::intoOf(*query.body) != nullptr) {
    fail(query.token, Message::IncorrectSyntaxKeyword, {"into"});
  }
  const std::size_t known = commonTables_.size();
  defineCommonTables(query.with, query.maxRecursion);
  result.body = bindBody(*query.body, query, *result.scope, parent);
  result.outputs = unify(*result.body);
  convertOutputs(*result.body, result.outputs);
  if (subquery && !query.order.empty() && !query.offset && !(query.body->select && query.body->select->top)) {
    fail(query.token, 1033,
         "The ORDER BY clause is invalid in views, inline functions, derived tables, subqueries, and common table "
         "expressions, unless TOP, OFFSET or FOR XML is also specified.");
  }
  Scope& scope = *result.scope;
  if (result.body->ties && query.order.empty()) failWithoutOrder(query.body->select->top->token);
  scope.clause = Scope::Clause::OrderBy;
  bindOrder(query, result);
  bindOffset(query, result);
  const bool grouped = scope.aggregated || scope.groupKeys != nullptr;
  if (grouped && !scope.ungrouped.empty()) {
    fail(query.token,
         scope.ungroupedIn == Scope::Clause::OrderBy  ? Message::OrderColumnNotGrouped
         : scope.ungroupedIn == Scope::Clause::Having ? Message::HavingColumnNotGrouped
                                                      : Message::ColumnNotGrouped,
         {scope.ungrouped});
  }
  commonTables_.resize(known);
  return result;
}

void Writer::failWithoutOrder(int token) const {
  fail(token, 1062, "The TOP N WITH TIES clause is not allowed without a corresponding ORDER BY clause.");
}

std::unique_ptr<BoundBody> Writer::bindBody(const tree::QueryBody& body, const tree::Query& query, Scope& scope,
                                            Scope* parent) {
  if (body.nested) {
    BoundQuery nested = bind(*body.nested, parent, true);
    return std::move(nested.body);
  }
  if (body.operation == SetOperator::None) {
    if (!body.select->values.empty()) return bindValues(*body.select, parent);
    // ORDER BY may use the scope of a single SELECT; the branches of a set operation have one each.
    if (&body == query.body.get()) return bindSelect(*body.select, query, scope, query.order.empty());
    Scope own;
    own.parent = parent;
    auto result = bindSelect(*body.select, query, own, query.order.empty());
    if (result->ties) failWithoutOrder(body.select->top->token);
    if ((own.aggregated || own.groupKeys != nullptr) && !own.ungrouped.empty()) {
      fail(body.token,
           own.ungroupedIn == Scope::Clause::Having ? Message::HavingColumnNotGrouped : Message::ColumnNotGrouped,
           {own.ungrouped});
    }
    return result;
  }
  auto result = std::make_unique<BoundBody>();
  const auto intoLater = [&](const tree::QueryBody& side) { return side.select && !side.select->into.empty(); };
  if (intoLater(*body.right)) {
    fail(body.right->token, 196,
         "SELECT INTO must be the first query in a statement containing a UNION, INTERSECT or EXCEPT operator.");
  }
  result->operation = body.operation;
  result->token = body.token;
  result->left = bindBody(*body.left, query, scope, parent);
  result->right = bindBody(*body.right, query, scope, parent);
  const auto width = [](const BoundBody* side) {
    while (side->operation != SetOperator::None) side = side->left.get();
    return side->rows.empty() ? side->outputs.size() : side->rows[0].size();
  };
  if (width(result->left.get()) != width(result->right.get())) fail(body.token, Message::UnionColumnCount);
  return result;
}

std::unique_ptr<BoundBody> Writer::bindSelect(const tree::Select& select, const tree::Query& query, Scope& scope,
                                              bool unordered) {
  if (!select.groupings.empty()) return bindGroupings(select, query, scope);
  auto body = std::make_unique<BoundBody>();
  body->distinct = select.distinct;
  const bool semiJoin = bindParts(select, scope, *body, unordered);
  body->limit = limitOf(select, scope);
  body->percent = select.percent;
  body->ties = select.ties;
  const bool grouped = scope.aggregated || scope.groupKeys != nullptr;
  body->singleRow = scope.aggregated && scope.groupKeys == nullptr;
  if (select.from.empty() && !select.where && !grouped) body->singleRow = true;
  // SQLite finds the query that an aggregate belongs to from the sub-query's columns only.
  if (scope.aggregatesOutside && !body->singleRow) {
    refuse(select.token, "an aggregate of a query around it, in a sub-query of several rows,");
  }
  if (!select.distinct && !select.percent && !select.ties && !grouped && !semiJoin && scope.sources.size() == 1 &&
      scope.sources[0].table != nullptr && !scope.sources[0].table->view) {
    body->updatable = scope.sources[0].table;
    body->rowAlias = scope.sources[0].sqlAlias;
  }
  checkDistinct(select, *body);
  return body;
}

void Writer::checkDistinct(const tree::Select& select, const BoundBody& body) const {
  if (!select.distinct) return;
  for (const Output& output : body.outputs) {
    const Type& type = output.value.type;
    if (!type.isLongText() && type.kind != TypeKind::Image) continue;
    fail(select.token, 421,
         "The " + std::string(type.baseName()) +
             " data type cannot be selected as DISTINCT because it is not comparable.");
  }
}

// Everything from FROM to HAVING; says whether a derived table became a condition.
bool Writer::bindParts(const tree::Select& select, Scope& scope, BoundBody& body, bool unordered) {
  std::string text;
  const auto semiJoin = unordered ? boundSemiJoin(select, scope) : std::nullopt;
  if (semiJoin) {
    text = semiJoin->from;
    body.where = semiJoin->where;
  } else if (!select.from.empty()) {
    text = " FROM " + from(select.from, scope);
  }
  scope.insideGroupKey = 1;  // columns in WHERE need no group
  if (select.where && !semiJoin) body.where = condition(*select.where, &scope);
  body.from = text;
  if (!body.where.empty()) text += " WHERE " + body.where;
  bindGroups(select, scope, text);
  scope.insideGroupKey = 0;
  scope.aggregatesAllowed = true;
  bindItems(select, scope, body);
  const bool byKeys = std::ranges::count(scope.emptyKeys, true) < std::ranges::ssize(select.groupBy);
  const bool oneGroup = !byKeys && !scope.aggregated && (select.having || !select.groupings.empty());
  if (select.having) {
    scope.clause = Scope::Clause::Having;
    text += " HAVING " + condition(*select.having, &scope);
    scope.aggregated = true;
  }
  // SQLite sees the one group of a query by the aggregates of its columns only.
  if (oneGroup) {
    Typed& first = body.outputs[0].value;
    first.sql = "iif(count(*)>=0," + first.sql + ",NULL)";
    first.literal = -1;
    first.parameter = -1;
  }
  body.tail = std::move(text);
  return semiJoin.has_value();
}

// FROM and WHERE with EXISTS in the place of a derived table that only chooses among the rows of the others. Only
// integers are compared so: there, equal values are the same value.
std::optional<Writer::BoundSemiJoin> Writer::boundSemiJoin(const tree::Select& select, Scope& scope) {
  const auto found = findSemiJoin(select);
  if (!found) return std::nullopt;
  const BoundQuery query = bind(*select.from[found->reference]->query, scope.parent, true);
  const Typed& inner = query.outputs[0].value;
  const BoundBody& body = *query.body;
  if (!inner.type.isInteger()) return std::nullopt;
  BoundSemiJoin result;
  result.from = " FROM " + from(select.from, scope, found->reference);
  scope.insideGroupKey = 1;
  const Typed value = expression(*found->value, &scope);
  if (!value.type.isInteger()) {
    scope.sources.clear();
    return std::nullopt;
  }
  if (select.where.get() != found->equality) {
    for (const auto& each : select.where->arguments) {
      if (each.get() != found->equality) result.where += "(" + condition(*each, &scope) + ") AND ";
    }
  }
  const std::string rows = body.from + " WHERE " + (body.where.empty() ? "" : "(" + body.where + ") AND ");
  result.where += "EXISTS (SELECT 1" + rows + inner.sql + "=" + value.sql + ")";
  return result;
}

std::unique_ptr<BoundBody> Writer::bindValues(const tree::Select& select, Scope* parent) {
  auto body = std::make_unique<BoundBody>();
  Scope own;
  own.parent = parent;
  for (const auto& row : select.values) {
    std::vector<Typed> values;
    for (const auto& value : row) {
      values.push_back(expression(*value, &own));
      measure(values.back());
    }
    if (!body->rows.empty() && values.size() != body->rows[0].size()) {
      fail(select.token, 10709, "The number of columns for each row in a table value constructor must be the same.");
    }
    body->rows.push_back(std::move(values));
  }
  for (const Typed& value : body->rows[0]) body->outputs.push_back({value, nullptr, {}, {}, {}, false});
  return body;
}

void Writer::bindGroups(const tree::Select& select, Scope& scope, std::string& text) {
  if (select.groupBy.empty()) return;
  scope.groupKeys = &select.groupBy;
  scope.clause = Scope::Clause::GroupBy;
  bool first = true;
  for (std::size_t i = 0; i < select.groupBy.size(); ++i) {
    if (i < scope.emptyKeys.size() && scope.emptyKeys[i]) continue;
    const auto& key = *select.groupBy[i];
    const Typed value = expression(key, &scope);
    comparable(value.type, key.token);
    if (value.subquery) failInGroupKey(key.token);
    if (value.literal >= 0 || value.parameter >= 0) {
      fail(key.token, 164, "Each GROUP BY expression must contain at least one column that is not an outer reference.");
    }
    text += (first ? " GROUP BY " : ",") + compared(value.sql, value.type);
    first = false;
  }
  scope.clause = Scope::Clause::Select;
}

void Writer::bindItems(const tree::Select& select, Scope& scope, BoundBody& body) {
  for (const auto& item : select.items) {
    if (item.star) {
      expandStar(item, scope, body);
      continue;
    }
    Output output;
    output.value = expression(*item.expression, &scope);
    output.expression = item.expression.get();
    measure(output.value);
    if (output.value.column != nullptr) {
      output.name = output.value.column->name;
      output.table = output.value.column->table;
      output.column = output.value.column->column;
      output.identity = output.value.column->identity;
      // The name is written as in the statement, not as in the table.
      output.name = item.expression->name;
    }
    if (!item.alias.empty()) output.name = item.alias;
    body.outputs.push_back(std::move(output));
  }
}

void Writer::expandStar(const tree::SelectItem& item, Scope& scope, BoundBody& body) {
  bool found = false;
  for (const Source& source : scope.sources) {
    if (!item.qualifier.empty() && !sameName(source.name, item.qualifier)) continue;
    if (!item.prefix.empty() && !prefixFits(item.prefix, source)) continue;
    found = true;
    for (const SourceColumn& column : source.columns) {
      Output output;
      output.value.sql = column.sql;
      output.value.type = column.type;
      output.value.column = &column;
      output.name = column.name;
      output.table = column.table;
      output.column = column.column;
      output.identity = column.identity;
      const bool grouped = scope.groupKeys != nullptr && std::ranges::any_of(*scope.groupKeys, [&](const auto& key) {
                             return key->kind == tree::ExpressionKind::Column && sameName(key->name, column.name);
                           });
      if (!grouped) scope.setUngrouped(source.objectName + "." + column.name);
      body.outputs.push_back(std::move(output));
    }
  }
  if (found) return;
  if (item.qualifier.empty()) {
    throw SqlError(263, 16, "Must specify table to select from.").at(lineOf(batch_, item.token));
  }
  fail(item.token, 107,
       "The column prefix '" + item.prefix + item.qualifier +
           "' does not match with a table name or alias name used in the query.");
}

std::string Writer::limitOf(const tree::Select& select, Scope& scope) {
  if (!select.top) return {};
  Scope around;
  around.parent = &scope;
  around.rowCount = true;
  Typed value = expression(*select.top, &around);
  return rowCount(std::move(value), select.percent ? 100 : -1, select.top->token);
}

// What TOP gives, for a LIMIT. A number that no literal gives is looked at when the statement runs.
std::string Writer::rowCount(Typed value, int greatest, int token) {
  if (greatest == 100) {
    if (value.type.kind == TypeKind::Null) fail(token, Message::InvalidTop);
    return "ts_top(" + convert(std::move(value), Type::of(TypeKind::Float)).sql + ",100)";
  }
  const bool constant = value.literal >= 0 || value.digitsOf >= 0;
  const bool wide = constant && value.type.kind == TypeKind::Decimal && value.type.scale == 0;
  if (!value.type.isInteger() && !wide) {
    fail(token, 1060, "The number of rows provided for a TOP or FETCH clauses row count parameter must be an integer.");
  }
  if (value.literal >= 0 && value.type.isInteger()) return value.sql;
  return "ts_top(" + convert(std::move(value), Type::of(TypeKind::BigInt)).sql + "," + std::to_string(greatest) + ")";
}

// --- the columns of set operations

// The types that the columns of all branches have in common, with the names of the first.
std::vector<Output> Writer::unify(BoundBody& body) {
  if (body.operation == SetOperator::None) {
    std::vector<Output> outputs = body.outputs;
    for (std::size_t i = 0; body.rows.size() > 1 && i < outputs.size(); ++i) {
      std::vector<const Typed*> values;
      for (const auto& row : body.rows) values.push_back(&row[i]);
      outputs[i].value.type = commonTypeOf(values);
    }
    return outputs;
  }
  std::vector<Output> outputs = unify(*body.left);
  const std::vector<Output> right = unify(*body.right);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    Output& output = outputs[i];
    const Type type = commonTypeOf({&output.value, &right[i].value});
    // What several branches give is no literal any more.
    output.value.literal = -1;
    output.value.digitsOf = -1;
    output.value.type = type;
    if (output.table != right[i].table || output.column != right[i].column) {
      output.table.clear();
      output.column.clear();
    }
    output.identity = false;
    const bool compared = body.operation != SetOperator::UnionAll;
    if (compared && (type.isLongText() || type.kind == TypeKind::Image)) {
      fail(body.token, 5335,
           "The data type " + std::string(type.baseName()) +
               " cannot be used as an operand to the UNION, INTERSECT or EXCEPT operators because it is not "
               "comparable.");
    }
  }
  return outputs;
}

void Writer::convertOutputs(BoundBody& body, const std::vector<Output>& outputs) {
  if (body.operation != SetOperator::None) {
    convertOutputs(*body.left, outputs);
    convertOutputs(*body.right, outputs);
    return;
  }
  for (auto& row : body.rows) {
    for (std::size_t i = 0; i < outputs.size(); ++i) row[i] = convert(std::move(row[i]), outputs[i].value.type);
  }
  if (!body.rows.empty()) return;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const Type type = outputs[i].value.type.kind == TypeKind::Null ? body.outputs[i].value.type : outputs[i].value.type;
    body.outputs[i].value = convert(std::move(body.outputs[i].value), type);
  }
}

// --- ORDER BY

void Writer::bindOrder(const tree::Query& query, BoundQuery& bound) {
  const bool set = query.body->operation != SetOperator::None;
  const bool distinct = !set && query.body->select && query.body->select->distinct;
  std::vector<std::size_t> used;
  for (const auto& item : query.order) {
    const tree::Expression& key = *item.expression;
    std::size_t position = 0;
    Typed value;
    if (key.kind != tree::ExpressionKind::Literal && isConstant(key)) failConstantOrder(key.token, bound.order.size());
    if (key.kind == tree::ExpressionKind::Literal) {
      const Literal& literal = batch_.literals[static_cast<std::size_t>(key.literal)];
      if (literal.type.kind != TypeKind::Int) failConstantOrder(key.token, bound.order.size());
      structural(key.literal);
      if (literal.integer < 1 || literal.integer > static_cast<std::int64_t>(bound.outputs.size())) {
        fail(key.token, Message::OrderByPosition, {std::to_string(literal.integer)});
      }
      position = static_cast<std::size_t>(literal.integer);
    } else if (key.kind == tree::ExpressionKind::Column && key.qualifier.empty()) {
      // An alias or an output column of that name comes before the columns of the tables.
      for (std::size_t i = 0; i < bound.outputs.size(); ++i) {
        if (!sameName(bound.outputs[i].name, key.name)) continue;
        if (position == 0) {
          position = i + 1;
        } else if (bound.outputs[i].value.sql != bound.outputs[position - 1].value.sql) {
          fail(key.token, Message::AmbiguousColumn, {key.name});
        }
      }
    }
    if (position == 0) {
      if (set) checkOrderOfSet(key, bound);
      const auto& given = bound.scope->orderValues;
      const auto known = std::ranges::find_if(given, [&](const auto& entry) { return entry.first == &key; });
      value = known != given.end() ? known->second : expression(key, bound.scope.get());
      for (std::size_t i = 0; i < bound.outputs.size() && position == 0; ++i) {
        const Output& output = bound.outputs[i];
        const bool same =
            output.expression != nullptr && value.column == nullptr && sameExpression(*output.expression, key);
        if (output.value.sql == value.sql || same) position = i + 1;
      }
      // A value that is the same for all rows orders nothing.
      if (value.parameter >= 0 && position == 0) {
        fail(key.token, 1008,
             "The SELECT item identified by the ORDER BY number " + std::to_string(bound.order.size() + 1) +
                 " contains a variable as part of the expression identifying a column position. Variables are only "
                 "allowed when ordering by an expression referencing a column name.");
      }
    }
    if (position == 0 && distinct) {
      fail(key.token, 145, "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.");
    }
    const Type type = position > 0 ? bound.outputs[position - 1].value.type : value.type;
    comparable(type, key.token);
    if (position > 0 && std::ranges::find(used, position) != used.end()) {
      fail(key.token, 169,
           "A column has been specified more than once in the order by list. Columns in the order by list must be "
           "unique.");
    }
    if (position > 0) used.push_back(position);
    if (type.isBinary() && !set && !distinct) {
      value.sql = compared(position > 0 ? bound.outputs[position - 1].value.sql : value.sql, type);
      position = 0;
    }
    bound.order.push_back({position, value.sql, collation(type) + (item.descending ? " DESC" : "")});
  }
}

void Writer::failConstantOrder(int token, std::size_t before) const {
  fail(token, 408,
       "A constant expression was encountered in the ORDER BY list, position " + std::to_string(before + 1) + ".");
}

// What several queries give together has names, but no tables: names that it has not are looked at first.
void Writer::checkOrderOfSet(const tree::Expression& key, const BoundQuery& bound) const {
  const auto check = [&](const tree::Expression& part, const auto& again) -> void {
    const auto isNamed = [&](const Output& output) { return sameName(output.name, part.name); };
    if (part.kind == tree::ExpressionKind::Column) {
      if (!part.qualifier.empty()) {
        fail(part.token, Message::MultipartNotBound, {part.prefix + part.qualifier + "." + part.name});
      }
      if (std::ranges::none_of(bound.outputs, isNamed)) fail(part.token, Message::InvalidColumn, {part.name});
    }
    for (const auto& argument : part.arguments) again(*argument, again);
    if (part.operand) again(*part.operand, again);
    if (part.otherwise) again(*part.otherwise, again);
  };
  check(key, check);
  fail(key.token, 104,
       "ORDER BY items must appear in the select list if the statement contains a UNION, INTERSECT or EXCEPT "
       "operator.");
}

// OFFSET ... ROWS FETCH NEXT ... ROWS ONLY
void Writer::bindOffset(const tree::Query& query, BoundQuery& bound) {
  if (!query.offset) return;
  if (bound.body->operation == SetOperator::None && query.body->select && query.body->select->top) {
    fail(query.token, 10741, "A TOP can not be used in the same query or sub-query as a OFFSET.");
  }
  Scope around;
  around.parent = bound.scope.get();
  around.rowCount = true;
  Typed offset = expression(*query.offset, &around);
  if (offset.digitsOf >= 0) fail(query.token, Message::NegativeOffset);
  std::string fetch = "-1";
  if (query.fetch) {
    Typed count = expression(*query.fetch, &around);
    if (count.literal >= 0) structural(count.literal);
    const bool isZero = count.literal >= 0 && batch_.literals[static_cast<std::size_t>(count.literal)].integer == 0;
    if (isZero || count.digitsOf >= 0) fail(query.token, Message::EmptyFetch);
    fetch = rowCount(std::move(count), -3, query.fetch->token);
  }
  bound.page = " LIMIT " + fetch + " OFFSET " + rowCount(std::move(offset), -2, query.offset->token);
}

// --- text

std::string Writer::render(const BoundQuery& query, bool aliases, std::string_view extra, bool withoutLong) {
  return renderBody(*query.body, query, aliases, true, false, extra, withoutLong);
}

std::string Writer::renderBody(const BoundBody& body, const BoundQuery& query, bool aliases, bool top, bool collated,
                               std::string_view extra, bool withoutLong) {
  std::string text;
  if (body.operation == SetOperator::None) {
    text = renderSelect(body, aliases, collated || body.distinct, extra, withoutLong);
  } else {
    const bool compare = body.operation != SetOperator::UnionAll;
    // SQLite has no brackets around branches and takes no LIMIT in one: such a branch becomes a derived table.
    const auto branch = [&](const BoundBody& side, bool left) {
      std::string inner =
          renderBody(side, query, aliases || !side.limit.empty() || !left, false, collated || compare, {}, false);
      const bool plain = side.operation == SetOperator::None ? side.limit.empty() : left;
      if (plain) return inner;
      if (side.percent) {
        inner = renderPart(side, BoundQuery(), true);
      } else if (!side.limit.empty()) {
        inner += " LIMIT " + side.limit;
      }
      std::string columns;
      for (std::size_t i = 0; i < query.outputs.size(); ++i) {
        const std::string name = "c" + std::to_string(i + 1);
        columns += (i > 0 ? "," : "") + name + ((collated || compare) ? collation(query.outputs[i].value.type) : "") +
                   (aliases ? " AS " + name : "");
      }
      return "SELECT " + columns + " FROM (" + inner + ")";
    };
    text = branch(*body.left, true) + std::string(word(body.operation)) + branch(*body.right, false);
  }
  if (!top) return text;
  if (body.percent || body.ties) return renderPart(body, query, aliases);
  for (std::size_t i = 0; i < query.order.size(); ++i) text += (i == 0 ? " ORDER BY " : ",") + query.order[i].text();
  if (!body.limit.empty()) text += " LIMIT " + body.limit;
  return text + query.page;
}

// TOP of percents and with ties: the rows with their rank in the order, or their number, in the count of all.
std::string Writer::renderPart(const BoundBody& body, const BoundQuery& query, bool aliases) {
  std::string names;
  for (std::size_t i = 0; i < body.outputs.size(); ++i) {
    const std::string name = "c" + std::to_string(i + 1);
    names += (i > 0 ? "," : "") + name + (aliases ? " AS " + name : "");
  }
  std::string keys;
  std::string order;
  for (std::size_t i = 0; i < query.order.size(); ++i) {
    const OrderKey& key = query.order[i];
    const std::string name = key.position > 0 ? "c" + std::to_string(key.position) : "k" + std::to_string(i + 1);
    if (key.position == 0) keys += "," + key.sql + " AS " + name;
    order += (i > 0 ? "," : "ORDER BY ") + name + key.suffix;
  }
  const std::string rows = renderSelect(body, true, body.distinct, keys, false);
  const std::string part = body.percent ? "(place-1)<total*" + body.limit + "/100.0" : "place<=" + body.limit;
  return "SELECT " + names + " FROM (SELECT *," + (body.ties ? "rank()" : "row_number()") + " OVER (" + order +
         ") AS place,count(*) OVER () AS total FROM (" + rows + ")) WHERE " + part +
         (order.empty() ? "" : " ORDER BY place");
}

std::string Writer::renderSelect(const BoundBody& body, bool aliases, bool collated, std::string_view extra,
                                 bool withoutLong) {
  if (!body.rows.empty()) {
    // A VALUES list of many rows is a chain of SELECTs only where columns need names.
    std::string text;
    for (std::size_t row = 0; row < body.rows.size(); ++row) {
      text += row == 0 ? (aliases ? "SELECT " : "VALUES (") : (aliases ? " UNION ALL SELECT " : ",(");
      for (std::size_t i = 0; i < body.rows[row].size(); ++i) {
        text += (i > 0 ? "," : "") + body.rows[row][i].sql;
        if (aliases) text += " AS c" + std::to_string(i + 1);
      }
      if (!aliases) text += ')';
    }
    return text;
  }
  std::string text = body.distinct ? "SELECT DISTINCT " : "SELECT ";
  for (std::size_t i = 0; i < body.outputs.size(); ++i) {
    const Typed& value = body.outputs[i].value;
    if (i > 0) text += ',';
    if (withoutLong && value.type.isLong() && value.column != nullptr) {
      text += "NULL";
    } else {
      text += value.sql;
      if (collated) text += collation(value.type);
    }
    if (aliases) text += " AS c" + std::to_string(i + 1);
  }
  text += extra;
  text += body.tail;
  return text;
}

Query Writer::bindRows(const tree::Query& query, Scope& scope) {
  const tree::Select& select = *query.body->select;
  if (!query.with.empty() || select.distinct || !select.groupBy.empty() || select.having || select.percent ||
      select.ties) {
    refuse(query.token, "a variable that grows over the rows of such a query");
  }
  std::string tail = " FROM " + from(select.from, scope);
  if (select.where) tail += " WHERE " + condition(*select.where, &scope);
  for (std::size_t i = 0; i < query.order.size(); ++i) {
    const Typed key = expression(*query.order[i].expression, &scope);
    if (key.literal >= 0) refuse(query.order[i].expression->token, "a position in the order of such a query");
    comparable(key.type, query.order[i].expression->token);
    tail += (i == 0 ? " ORDER BY " : ",") + key.sql + collation(key.type) + (query.order[i].descending ? " DESC" : "");
  }
  if (const std::string limit = limitOf(select, scope); !limit.empty()) tail += " LIMIT " + limit;
  Query result;
  std::string columns;
  for (const Source& source : scope.sources) {
    for (const SourceColumn& column : source.columns) {
      columns += (columns.empty() ? "" : ",") + column.sql;
      result.columns.push_back({column.name, column.type, column.table, column.column, column.identity});
    }
  }
  result.statement = finish("SELECT " + columns + tail);
  beginStatement();
  int index = 0;
  for (Source& source : scope.sources) {
    for (SourceColumn& column : source.columns) {
      column.sql = addParameter({Parameter::Source::RowColumn, index++, column.type, column.type});
    }
  }
  return result;
}

Query Writer::finishQuery(const BoundQuery& query) {
  Query result;
  result.statement = finish(render(query, false));
  for (const Output& output : query.outputs) {
    Type type = output.value.type;
    if (type.kind == TypeKind::Null) type = Type::of(TypeKind::Int);
    result.columns.push_back({output.name, type, output.table, output.column, output.identity});
  }
  const BoundBody& body = *query.body;
  // A table variable is gone when a record set would write to it.
  if (body.operation == SetOperator::None && body.updatable != nullptr && !body.updatable->name.starts_with("@")) {
    RowSource rows;
    rows.table = body.updatable->name;
    const std::string row = "," + body.rowAlias + ".rowid";
    rows.textWithRow = finish(render(query, false, row)).text;
    Statement without = finish(render(query, false, row, true));
    rows.textWithoutLong = without.parameters == result.statement.parameters ? without.text : rows.textWithRow;
    result.rows = std::move(rows);
  }
  return result;
}

}  // namespace tolvane::tsql
