// Calls with OVER: ranks, neighbours, and aggregates over a window.
#include <algorithm>
#include <array>

#include "tsql/function_table.h"
#include "tsql/parser.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;
using tree::WindowBound;

namespace {

struct WindowRow {
  std::string_view name;
  std::string_view runtime;
  bool framed;  // takes ROWS and RANGE
};

constexpr std::array<WindowRow, 10> windowFunctions{{
    {"ROW_NUMBER", "row_number", false},
    {"RANK", "rank", false},
    {"DENSE_RANK", "dense_rank", false},
    {"NTILE", "ntile", false},
    {"PERCENT_RANK", "percent_rank", false},
    {"CUME_DIST", "cume_dist", false},
    {"LAG", "lag", false},
    {"LEAD", "lead", false},
    {"FIRST_VALUE", "first_value", true},
    {"LAST_VALUE", "last_value", true},
}};

const WindowRow* findWindowRow(std::string_view name) {
  const auto* found = std::ranges::find(windowFunctions, name, &WindowRow::name);
  return found == windowFunctions.end() ? nullptr : found;
}

std::string boundText(const WindowBound& bound) {
  if (bound.kind == WindowBound::Kind::Current) return "CURRENT ROW";
  const std::string rows = bound.kind == WindowBound::Kind::Unbounded ? "UNBOUNDED" : std::to_string(bound.rows);
  return rows + (bound.following ? " FOLLOWING" : " PRECEDING");
}

}  // namespace

bool Writer::isWindowFunction(std::string_view name) {
  return findWindowRow(name) != nullptr;
}

// A window is all rows of the partition, or those up to the current one where it is ordered, or what ROWS or RANGE
// says.
Typed Writer::windowed(const Expression& expression, Scope* scope) {
  checkWindow(expression, scope);
  scope->windowed = true;
  Typed result = isWindowFunction(expression.name) ? windowFunction(expression, scope) : aggregateOf(expression, scope);
  result.sql += " OVER (";
  ++scope->insideWindow;
  for (std::size_t i = 0; i < expression.partition.size(); ++i) {
    const Typed value = this->expression(*expression.partition[i], scope);
    comparable(value.type, expression.token);
    result.sql += (i == 0 ? "PARTITION BY " : ",") + value.sql + collation(value.type);
  }
  result.sql += windowOrder(expression, scope);
  --scope->insideWindow;
  result.sql += frameText(expression) + ")";
  return result;
}

void Writer::checkWindow(const Expression& expression, Scope* scope) const {
  const WindowRow* row = findWindowRow(expression.name);
  const std::string name = written(expression.token);
  if (row == nullptr && findAggregateRow(expression.name) == nullptr) {
    const bool isKnown = findFunctionRow(expression.name) != nullptr || expression.name == "STRING_AGG" ||
                         expression.name == "GROUPING" || expression.name == "GROUPING_ID";
    if (!isKnown) refuse(expression.token, "OVER behind that function");
    fail(expression.token, 4113,
         "The function '" + name + "' is not a valid windowing function, and cannot be used with the OVER clause.");
  }
  if (expression.distinct) {
    throw SqlError(10759, 15, "Use of DISTINCT is not allowed with the OVER clause.")
        .at(lineOf(batch_, expression.token));
  }
  if (scope != nullptr && (scope->insideWindow > 0 || scope->insideAggregate > 0)) {
    fail(expression.token, 4109,
         "Windowed functions cannot be used in the context of another windowed function or aggregate.");
  }
  if (scope == nullptr || !scope->aggregatesAllowed || scope->clause == Scope::Clause::Having) {
    fail(expression.token, 4108, "Windowed functions can only appear in the SELECT or ORDER BY clauses.");
  }
  if (row == nullptr) {
    if (expression.frame && expression.order.empty()) {
      fail(expression.frame->token, 10756, "Window frame with ROWS or RANGE must have an ORDER BY clause.");
    }
    return;
  }
  const bool plain = row->name == "ROW_NUMBER" || row->name == "RANK" || row->name == "DENSE_RANK" ||
                     row->name == "PERCENT_RANK" || row->name == "CUME_DIST";
  const std::size_t count = expression.arguments.size();
  if (plain && (count > 0 || expression.star)) {
    throw SqlError(4114, 15, "The function '" + name + "' takes exactly 0 argument(s).")
        .at(lineOf(batch_, expression.token));
  }
  const bool neighbours = row->name == "LAG" || row->name == "LEAD";
  if (neighbours ? count < 1 || count > 3 : !plain && count != 1) {
    refuse(expression.token, "that number of arguments");
  }
  if (expression.order.empty()) {
    fail(expression.token, 4112, "The function '" + name + "' must have an OVER clause with ORDER BY.");
  }
  if (expression.frame && !row->framed) {
    fail(expression.token, 10752, "The function '" + name + "' may not have a window frame.");
  }
}

Typed Writer::windowFunction(const Expression& expression, Scope* scope) {
  const WindowRow& row = *findWindowRow(expression.name);
  if (!expression.arguments.empty() && row.name != "NTILE") return neighbour(expression, scope);
  Typed result;
  const bool share = row.name == "PERCENT_RANK" || row.name == "CUME_DIST";
  result.type = Type::of(share ? TypeKind::Float : TypeKind::BigInt);
  result.sql = std::string(row.runtime) + "(";
  if (row.name == "NTILE") {
    const Typed parts = this->expression(*expression.arguments[0], scope);
    if (parts.literal < 0 || parts.type.kind != TypeKind::Int)
      refuse(expression.arguments[0]->token, "a number of parts that is no literal");
    structural(parts.literal);
    if (batch_.literals[static_cast<std::size_t>(parts.literal)].integer == 0) {
      fail(expression.token, 4116,
           "The function '" + written(expression.token) +
               "' takes only a positive int or bigint expression as its input.");
    }
    result.sql += parts.sql;
  }
  result.sql += ")";
  return result;
}

// A value of another row: the type is that of the value.
Typed Writer::neighbour(const Expression& expression, Scope* scope) {
  ++scope->insideWindow;
  Typed value = this->expression(*expression.arguments[0], scope);
  measure(value);
  if (value.type.kind == TypeKind::Null) refuse(expression.arguments[0]->token, "a window of the word NULL");
  Typed result;
  result.type = value.type.orNull();
  result.subquery = value.subquery;
  result.sql = std::string(findWindowRow(expression.name)->runtime) + "(" + value.sql;
  if (expression.arguments.size() > 1) {
    const Typed offset = this->expression(*expression.arguments[1], scope);
    if (offset.digitsOf >= 0) {
      fail(expression.token, 8730, "Offset parameter for Lag and Lead functions cannot be a negative value.");
    }
    if (offset.literal < 0 || offset.type.kind != TypeKind::Int)
      refuse(expression.arguments[1]->token, "a distance that is no literal");
    result.sql += "," + offset.sql;
  }
  if (expression.arguments.size() > 2) {
    result.sql += "," + convert(this->expression(*expression.arguments[2], scope), value.type).sql;
  }
  result.sql += ")";
  --scope->insideWindow;
  return result;
}

std::string Writer::windowOrder(const Expression& expression, Scope* scope) {
  std::string text;
  for (const auto& item : expression.order) {
    const Expression& key = *item.expression;
    const Typed value = this->expression(key, scope);
    comparable(value.type, expression.token);
    // A constant orders nothing, and SQLite would take a number for a position.
    if (isConstant(key)) {
      const bool position = key.kind == ExpressionKind::Literal && value.type.kind == TypeKind::Int;
      fail(expression.token, position ? 5308 : 5309,
           std::string("Windowed functions, aggregates and NEXT VALUE FOR functions do not support ") +
               (position ? "integer indices" : "constants") + " as ORDER BY clause expressions.");
    }
    text += (text.empty() ? (expression.partition.empty() ? "ORDER BY " : " ORDER BY ") : ",") + value.sql +
            collation(value.type) + (item.descending ? " DESC" : "");
  }
  return text;
}

std::string Writer::frameText(const Expression& expression) const {
  if (!expression.frame) return {};
  const auto& frame = *expression.frame;
  const bool counted = frame.start.kind == WindowBound::Kind::Rows || frame.end.kind == WindowBound::Kind::Rows;
  if (frame.range && counted) {
    fail(frame.token, 4194, "RANGE is only supported with UNBOUNDED and CURRENT ROW window frame delimiters.");
  }
  return std::string(frame.range ? " RANGE" : " ROWS") + " BETWEEN " + boundText(frame.start) + " AND " +
         boundText(frame.end);
}

}  // namespace tolvane::tsql
