#include "tsql/reference_page.h"

#include "tsql/date_part.h"
#include "tsql/function_table.h"
#include "tsql/language_table.h"
#include "tsql/system_tables.h"
#include "tsql/type_rules.h"

namespace tolvane::tsql {
namespace {

std::string_view nameOf(Argument argument) {
  switch (argument) {
    case Argument::None:
      return "";
    case Argument::Any:
      return "any";
    case Argument::Text:
      return "text";
    case Argument::Unicode:
      return "nvarchar";
    case Argument::Integer:
    case Argument::Int:
      return "int";
    case Argument::Float:
      return "float";
    case Argument::Number:
      return "number";
    case Argument::DateTime:
      return "datetime";
    case Argument::DatePart:
      return "date part";
    case Argument::TextOrBytes:
      return "text or binary";
    case Argument::Date:
      return "date";
    case Argument::Refused:
      return "";
  }
  return "";
}

std::string_view nameOf(const FunctionRow& row) {
  if (row.name == "ISNULL" || row.name == "NULLIF") return "as the first argument";
  if (row.name == "CONCAT" || row.name == "CONCAT_WS") return "nvarchar if an argument is, else varchar";
  if (row.name == "COALESCE" || row.name == "CHOOSE" || row.name == "GREATEST" || row.name == "LEAST")
    return "the highest type among the arguments";
  if (row.name == "SCOPE_IDENTITY") return "numeric(38,0)";
  if (row.name == "XACT_STATE") return "smallint";
  switch (row.result) {
    case ResultRule::Int:
      return "int";
    case ResultRule::BigInt:
      return "bigint";
    case ResultRule::Float:
      return "float";
    case ResultRule::DateTime:
      return "datetime";
    case ResultRule::VarChar:
      return "varchar";
    case ResultRule::NVarChar:
      return "nvarchar";
    case ResultRule::Char:
      return "char(1)";
    case ResultRule::NChar:
      return "nchar(1)";
    case ResultRule::Guid:
      return "uniqueidentifier";
    case ResultRule::FirstText:
    case ResultRule::FirstTextLong:
      return "varchar or nvarchar, as the first argument";
    case ResultRule::LastTextLong:
      return "nvarchar if an argument is, else varchar";
    case ResultRule::FirstBytes:
      return "text or varbinary, as the first argument";
    case ResultRule::FirstNumber:
    case ResultRule::FirstScaled:
      return "as the first argument";
    case ResultRule::FirstWidened:
    case ResultRule::FirstAngle:
      return "as the first argument, a decimal with 38 digits";
    case ResultRule::FirstRounded:
      return "as the first argument, a decimal as decimal(38,0)";
    case ResultRule::DateOfArgument:
      return "as the date, else datetime";
    case ResultRule::Date:
      return "date";
    case ResultRule::SmallDateTime:
      return "smalldatetime";
    case ResultRule::Numeric:
      return "numeric(38,0)";
    case ResultRule::SmallInt:
      return "smallint";
    case ResultRule::Count:
      return "int, bigint of a `max` text";
  }
  return "";
}

std::string constructs(std::string_view title, std::string_view words, std::span<const LanguageRow> rows) {
  std::string page =
      "\n## " + std::string(title) + "\n\n" + std::string(words) + "\n\n| Construct | Example |\n|---|---|\n";
  for (const LanguageRow& row : rows) {
    page += "| " + std::string(row.construct) + " | `" + std::string(row.example) + "` |\n";
  }
  return page;
}

std::string types() {
  std::string page =
      "\n## Types\n\nIn the order of precedence, lowest first.\n\n| Type | Stored in SQLite as |\n|---|---|\n";
  for (int kind = 1; kind < kindCount; ++kind) {
    const Type type = Type::of(static_cast<TypeKind>(kind));
    if (type.kind == TypeKind::Timestamp) continue;
    std::string_view stored = "BLOB";
    if (type.isInteger()) stored = "INTEGER";
    if (type.isFloat()) stored = "REAL";
    if (type.isText()) stored = "TEXT";
    if (type.isExactText()) stored = "TEXT with exactly as many decimals as the scale, `-12.3400`";
    if (type.isDate()) stored = "TEXT, `yyyy-mm-dd hh:mm:ss.mmm`";
    if (type.kind == TypeKind::Date) stored = "TEXT, `yyyy-mm-dd`";
    if (type.kind == TypeKind::UniqueIdentifier) stored = "TEXT, capital letters";
    page += "| `" + std::string(type.baseName()) + "` | " + std::string(stored) + " |\n";
  }
  return page;
}

std::string conversions() {
  std::string page =
      "\n## Conversions\n\nFrom the type of the row to that of the column: `i` by itself, `e` with CAST or CONVERT "
      "only, "
      "`-` not at all.\n\n|  |";
  std::string rule = "|---|";
  for (int to = 1; to < kindCount; ++to) {
    if (static_cast<TypeKind>(to) == TypeKind::Timestamp) continue;
    page += " " + std::string(typeRow(static_cast<TypeKind>(to)).name) + " |";
    rule += "---|";
  }
  page += "\n" + rule + "\n";
  for (int from = 1; from < kindCount; ++from) {
    if (static_cast<TypeKind>(from) == TypeKind::Timestamp) continue;
    page += "| " + std::string(typeRow(static_cast<TypeKind>(from)).name) + " |";
    for (int to = 1; to < kindCount; ++to) {
      if (static_cast<TypeKind>(to) == TypeKind::Timestamp) continue;
      const auto found = conversionBetween(Type::of(static_cast<TypeKind>(from)), Type::of(static_cast<TypeKind>(to)));
      page += found == Conversion::Implicit ? " i |" : found == Conversion::Explicit ? " e |" : " - |";
    }
    page += "\n";
  }
  return page;
}

std::string functions() {
  std::string page =
      "\n## Functions\n\n`CAST` and `CONVERT` take the conversions above.\n\n| Function | Arguments | Result "
      "|\n|---|---|---|\n";
  for (const FunctionRow& row : functionRows()) {
    std::string arguments;
    for (int i = 0; i < row.maxArguments && i < 4 && row.arguments[i] != Argument::None; ++i) {
      const bool optional = i >= row.minArguments;
      arguments += (i > 0 ? ", " : "") + std::string(optional ? "[" : "") + std::string(nameOf(row.arguments[i])) +
                   (optional ? "]" : "");
    }
    if (row.maxArguments > 4) arguments += ", ...";
    page += "| `" + std::string(row.name) + "` | " + arguments + " | " + std::string(nameOf(row)) + " |\n";
  }
  page += "\n## Aggregates\n\nAll of them take `DISTINCT`.\n\n";
  for (const AggregateRow& row : aggregateRows()) page += "- `" + std::string(row.name) + "`\n";
  return page;
}

}  // namespace

std::string referencePage() {
  std::string page =
      "# T-SQL of the embedded account set\n\n"
      "Made by `tsql_docs` from the engine's tables; do not edit.\n";
  page += constructs("What is taken", "Names are found without regard to letter case.", supportedConstructs());
  page += constructs("What is refused",
                     "Error 40517, with the word and its line. Unknown words are errors of syntax (102).",
                     refusedConstructs());
  page += types();
  page += conversions();
  page += "\n## Operators\n\n| Operator | Name in messages |\n|---|---|\n";
  for (const OperatorRow& row : operatorRows()) {
    page += "| `" + std::string(row.symbol == "|" ? "\\|" : row.symbol) + "` | " +
            std::string(row.name == "'|'" ? "'\\|'" : row.name) + " |\n";
  }
  page += "\n`+` on text concatenates. Comparisons: `=`, `<>`, `!=`, `<`, `>`, `<=`, `>=`, `!<`, `!>`.\n";
  page += functions();
  page += "\n## Date parts\n\n";
  for (const DatePartName& row : datePartNames()) {
    page += "- `" + std::string(row.name) + "`";
    if (row.name != tsql::nameOf(row.part)) page += ": " + std::string(tsql::nameOf(row.part));
    page += "\n";
  }
  page += "\n## Tables of the catalogue\n\n";
  for (const SystemTable& table : systemTables()) {
    page += "- `" + (table.schema.empty() ? "" : std::string(table.schema) + ".") + std::string(table.name) + "`:";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      page += (i > 0 ? ", `" : " `") + std::string(table.columns[i].name) + "`";
    }
    page += "\n";
  }
  page +=
      "\n## Where the answer differs from SQL Server\n\n"
      "- `sysobjects` and `sys.objects` tell tables, views and constraints, no objects of the server's own; `*` of a\n"
      "  table of the catalogue gives the columns that are listed above.\n"
      "- The message of a duplicate key (2627, 2601) does not tell the value.\n"
      "- A text that is too long is error 8152, as under compatibility level 140 and below, not 2628.\n";
  return page;
}

}  // namespace tolvane::tsql
