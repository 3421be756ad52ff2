// What an expression is made of: literals, variables, columns.
#include <algorithm>
#include <array>
#include <charconv>

#include "tsql/writer.h"

namespace tolvane::tsql {

using tree::Expression;
using tree::ExpressionKind;

namespace {

std::string inlineText(const Literal& value) {
  static constexpr char digits[] = "0123456789ABCDEF";
  if (value.type.kind == TypeKind::Int) return std::to_string(value.integer);
  if (value.type.isText() || value.type.isExactText()) return quotedText(value.text);
  if (value.type.kind == TypeKind::Float) {
    std::array<char, 32> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value.real, std::chars_format::scientific);
    return std::string(buffer.data(), end.ptr);
  }
  std::string result = "x'";
  for (const char c : value.text) {
    const auto byte = static_cast<unsigned char>(c);
    result += digits[byte >> 4];
    result += digits[byte & 15];
  }
  return result + "'";
}

// What SQL Server tells of itself by a name with two signs and what never changes here; without a text it is refused.
struct FixedVariable {
  std::string_view name;
  std::string_view sql;
  Type type;
};

const FixedVariable* findFixedVariable(std::string_view name) {
  static const std::array fixed{
      FixedVariable{"@@DATEFIRST", "CAST(7 AS INTEGER)", Type::of(TypeKind::TinyInt)},
      FixedVariable{"@@LANGID", "CAST(0 AS INTEGER)", Type::of(TypeKind::SmallInt)},
      FixedVariable{"@@LANGUAGE", "'us_english'", Type::text(TypeKind::NVarChar, 128)},
      FixedVariable{"@@LOCK_TIMEOUT", "CAST(-1 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@MAX_CONNECTIONS", "CAST(32767 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@MAX_PRECISION", "CAST(38 AS INTEGER)", Type::of(TypeKind::TinyInt)},
      FixedVariable{"@@NESTLEVEL", "CAST(0 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@PROCID", "CAST(0 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@TEXTSIZE", "CAST(2147483647 AS INTEGER)", Type::of(TypeKind::Int)},
      FixedVariable{"@@CONNECTIONS", "", {}},
      FixedVariable{"@@CPU_BUSY", "", {}},
      FixedVariable{"@@CURSOR_ROWS", "", {}},
      FixedVariable{"@@DBTS", "", {}},
      FixedVariable{"@@FETCH_STATUS", "", {}},
      FixedVariable{"@@IDLE", "", {}},
      FixedVariable{"@@IO_BUSY", "", {}},
      FixedVariable{"@@MICROSOFTVERSION", "", {}},
      FixedVariable{"@@OPTIONS", "", {}},
      FixedVariable{"@@PACKET_ERRORS", "", {}},
      FixedVariable{"@@PACK_RECEIVED", "", {}},
      FixedVariable{"@@PACK_SENT", "", {}},
      FixedVariable{"@@REMSERVER", "", {}},
      FixedVariable{"@@SERVERNAME", "", {}},
      FixedVariable{"@@SERVICENAME", "", {}},
      FixedVariable{"@@SPID", "", {}},
      FixedVariable{"@@TIMETICKS", "", {}},
      FixedVariable{"@@TOTAL_ERRORS", "", {}},
      FixedVariable{"@@TOTAL_READ", "", {}},
      FixedVariable{"@@TOTAL_WRITE", "", {}},
  };
  const auto row = std::ranges::find_if(fixed, [name](const auto& each) { return sameName(each.name, name); });
  return row == fixed.end() ? nullptr : &*row;
}

}  // namespace

Typed Writer::literal(const Expression& expression) {
  const Literal& value = batch_.literals[static_cast<std::size_t>(expression.literal)];
  Typed result;
  result.type = value.type;
  result.literal = expression.literal;
  if (inline_) {
    structural(expression.literal);
    result.sql = inlineText(value);
    return result;
  }
  result.sql = addParameter({Parameter::Source::Literal, expression.literal, value.type, value.type});
  result.parameter = std::stoi(result.sql.substr(1)) - 1;
  return result;
}

Typed Writer::variable(const Expression& expression) {
  struct SystemVariable {
    std::string_view name;
    Parameter::Source source;
    Type type;
  };
  static const SystemVariable system[] = {
      {"@@ROWCOUNT", Parameter::Source::RowCount, Type::of(TypeKind::Int).orNull(false)},
      {"@@ERROR", Parameter::Source::Error, Type::of(TypeKind::Int).orNull(false)},
      {"@@TRANCOUNT", Parameter::Source::TranCount, Type::of(TypeKind::Int).orNull(false)},
      {"@@IDENTITY", Parameter::Source::Identity, Type::numericOf(38, 0)},
      {"@@FETCH_STATUS", Parameter::Source::Fetch, Type::of(TypeKind::Int).orNull(false)},
      {"@@DATEFIRST", Parameter::Source::DateFirst, Type::of(TypeKind::TinyInt).orNull(false)},
  };
  if (inline_) refuse(expression.token, "a variable in a definition");
  Typed result;
  Parameter parameter;
  if (expression.name.starts_with("@@")) {
    if (sameName(expression.name, "@@VERSION")) {
      result.sql = "ts_version()";
      result.type = Type::text(TypeKind::NVarChar, 300);
      return result;
    }
    const auto* found =
        std::ranges::find_if(system, [&](const auto& row) { return sameName(row.name, expression.name); });
    if (found != std::end(system)) {
      parameter = {found->source, 0, found->type, found->type};
    } else if (const FixedVariable* fixed = findFixedVariable(expression.name)) {
      if (fixed->sql.empty()) refuse(expression.token, "the global variable");
      result.sql = fixed->sql;
      result.type = fixed->type.orNull(false);
      return result;
    }
  }
  if (parameter.from.kind == TypeKind::Null) {
    const int slot = variableSlot(expression.name, expression.token);
    const Type& type = program_.variables[static_cast<std::size_t>(slot)].type;
    parameter = {Parameter::Source::Variable, slot, type, type};
  }
  result.type = parameter.from;
  result.sql = addParameter(parameter);
  result.parameter = std::stoi(result.sql.substr(1)) - 1;
  return result;
}

Typed Writer::column(const Expression& expression, Scope* scope) {
  const Scope* rowCountOf = nullptr;
  for (Scope* at = scope; at != nullptr; at = at->parent) {
    const SourceColumn* found = nullptr;
    const Source* owner = nullptr;
    bool qualifierKnown = false;
    if (at->rowCount) rowCountOf = at->parent;
    for (std::size_t i = at->firstVisible; i < at->sources.size(); ++i) {
      const Source& source = at->sources[i];
      if (!expression.qualifier.empty() && !sameName(source.name, expression.qualifier)) continue;
      if (!expression.prefix.empty() && !prefixFits(expression.prefix, source)) continue;
      qualifierKnown = true;
      for (const SourceColumn& candidate : source.columns) {
        if (!sameName(candidate.name, expression.name)) continue;
        if (found != nullptr) fail(expression.token, Message::AmbiguousColumn, {expression.name});
        found = &candidate;
        owner = &source;
      }
    }
    if (found != nullptr) {
      if (at != scope) at->usedInside = true;
      // SQLite does not let the ORDER BY and GROUP BY of a sub-query see the queries around it.
      for (const Scope* inner = scope; inner != at; inner = inner->parent) {
        if (inner->clause == Scope::Clause::OrderBy) refuse(expression.token, "ORDER BY a column of a query around it");
        if (inner->clause == Scope::Clause::GroupBy) refuse(expression.token, "GROUP BY a column of a query around it");
      }
      if (at == rowCountOf) {
        fail(expression.token, 4115,
             "The reference to column \"" + expression.name +
                 "\" is not allowed in an argument to a TOP, OFFSET, or FETCH clause. Only references to columns at an "
                 "outer scope or standalone expressions and subqueries are allowed here.");
      }
      if (rowCountOf != nullptr) refuse(expression.token, "a column of a query around it in a number of rows");
      // A sub-query may use what the query around it groups by.
      const int key = keyOf(expression, *at);
      const bool grouped = key >= 0;
      if (!grouped && at->insideAggregate == 0 && at->insideGroupKey == 0) {
        at->setUngrouped((owner->objectName.empty() ? "" : owner->objectName + ".") + found->name);
      }
      Typed result;
      result.sql = found->sql;
      result.type = found->type;
      result.column = found;
      const bool isKey = grouped && !at->emptyKeys.empty() && at->insideAggregate == 0 && at->insideGroupKey == 0;
      if (isKey) makeKey(result, *at, key);
      return result;
    }
    const auto isPartial = [&](const Source& source) {
      return source.partial && (expression.qualifier.empty() || sameName(source.name, expression.qualifier));
    };
    if (std::ranges::any_of(at->sources, isPartial)) {
      refuse(expression.token, "that column of a table of the catalogue");
    }
    if (qualifierKnown && !expression.qualifier.empty())
      fail(expression.token, Message::InvalidColumn, {expression.name});
  }
  if (!expression.qualifier.empty()) {
    fail(expression.token, Message::MultipartNotBound,
         {expression.prefix + expression.qualifier + "." + expression.name});
  }
  fail(expression.token, Message::InvalidColumn, {expression.name});
}

// `dbo.t.a`: an alias stands for itself, and takes nothing before it.
bool Writer::prefixFits(const std::string& prefix, const Source& source) const {
  if (source.renamed || source.schema.empty()) return false;
  const auto end = prefix.size() - 1;
  const auto before = prefix.rfind('.', end == 0 ? 0 : end - 1);
  const auto begin = before == std::string::npos ? 0 : before + 1;
  const std::string_view schema = std::string_view(prefix).substr(begin, end - begin);
  if (begin > 0 && !isOwnDatabase(std::string_view(prefix).substr(0, prefix.find('.')))) return false;
  return schema.empty() || sameName(schema, source.schema);
}

}  // namespace tolvane::tsql
