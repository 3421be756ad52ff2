#include "tsql/function_table.h"

#include <array>

namespace tolvane::tsql {
namespace {

using enum Argument;
using R = ResultRule;
constexpr auto no = Extra::Nothing;

// clang-format off
constexpr std::array<FunctionRow, 58> functions{{
    // name         run time         least most  arguments                           result            length extra       null
    {"GETDATE",     "ts_now",            0, 0, {},                                    R::DateTime,        0, no,                false},
    {"DATEPART",    "ts_datepart",       2, 2, {DatePart, DateTime},                  R::Int,             0, no,                false},
    {"DATENAME",    "ts_datename",       2, 2, {DatePart, DateTime},                  R::NVarChar,       30, no,                false},
    {"DATEADD",     "ts_dateadd",        3, 3, {DatePart, Integer, Any},              R::DateOfArgument,  0, Extra::ResultType, false},
    {"DATEDIFF",    "ts_datediff",       3, 3, {DatePart, DateTime, DateTime},        R::Int,             0, no,                false},
    {"YEAR",        "ts_year",           1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"MONTH",       "ts_month",          1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"DAY",         "ts_day",            1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"ISDATE",      "ts_isdate",         1, 1, {Text},                                R::Int,             0, no,                false},
    {"LEN",         "ts_len",            1, 1, {Text},                                R::Int,             0, no,                false},
    {"DATALENGTH",  "ts_datalength",     1, 1, {Any},                                 R::Int,             0, Extra::FirstType,  false},
    {"LEFT",        "ts_left",           2, 2, {Text, Integer},                       R::FirstText,       0, no,                false},
    {"RIGHT",       "ts_right",          2, 2, {Text, Integer},                       R::FirstText,       0, no,                false},
    {"SUBSTRING",   "ts_substring",      3, 3, {TextOrBytes, Integer, Integer},             R::FirstBytes,      0, no,                false},
    {"CHARINDEX",   "ts_charindex",      2, 3, {Text, Text, Integer},                 R::Int,             0, no,                false},
    {"PATINDEX",    "ts_patindex",       2, 2, {Text, Text},                          R::Int,             0, no,                false},
    {"REPLACE",     "ts_replace",        3, 3, {Text, Text, Text},                    R::LastTextLong,    0, no,                false},
    {"REPLICATE",   "ts_replicate",      2, 2, {Text, Integer},                       R::FirstTextLong,   0, Extra::FirstType,  true},
    {"REVERSE",     "ts_reverse",        1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"STUFF",       "ts_stuff",          4, 4, {Text, Integer, Integer, Text},        R::LastTextLong,    0, no,                true},
    {"SPACE",       "ts_space",          1, 1, {Integer},                             R::VarChar,      8000, no,                true},
    {"STR",         "ts_str",            1, 3, {Float, Integer, Integer},             R::VarChar,        30, no,                true},
    {"UPPER",       "ts_upper",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"LOWER",       "ts_lower",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"LTRIM",       "ts_ltrim",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"RTRIM",       "ts_rtrim",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"ASCII",       "ts_ascii",          1, 1, {Text},                                R::Int,             0, no,                true},
    {"CHAR",        "ts_char",           1, 1, {Integer},                             R::Char,            1, no,                true},
    {"UNICODE",     "ts_unicode",        1, 1, {Unicode},                             R::Int,             0, no,                true},
    {"NCHAR",       "ts_nchar",          1, 1, {Integer},                             R::NChar,           1, no,                true},
    {"QUOTENAME",   "ts_quotename",      1, 2, {Unicode, Unicode},                    R::NVarChar,      258, no,                true},
    {"ISNULL",      "",                  2, 2, {Any, Any},                            R::Int,             0, no,                false},
    {"COALESCE",    "",                  2, 64, {Any, Any},                           R::Int,             0, no,                false},
    {"NULLIF",      "",                  2, 2, {Any, Any},                            R::Int,             0, no,                true},
    {"ABS",         "ts_abs",            1, 1, {Number},                              R::FirstNumber,     0, Extra::ResultType, false},
    {"ROUND",       "ts_round",          2, 3, {Number, Integer, Integer},            R::FirstScaled,     0, Extra::ResultType, false},
    {"FLOOR",       "ts_floor",          1, 1, {Number},                              R::FirstRounded,    0, Extra::ResultType, false},
    {"CEILING",     "ts_ceiling",        1, 1, {Number},                              R::FirstRounded,    0, Extra::ResultType, false},
    {"SIGN",        "ts_sign",           1, 1, {Number},                              R::FirstNumber,     0, Extra::ResultType, false},
    {"POWER",       "ts_power",          2, 2, {Number, Float},                       R::FirstNumber,     0, Extra::ResultType, false},
    {"SQRT",        "ts_sqrt",           1, 1, {Float},                               R::Float,           0, no,                false},
    {"SQUARE",      "ts_square",         1, 1, {Float},                               R::Float,           0, no,                false},
    {"EXP",         "ts_exp",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"LOG",         "ts_log",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"LOG10",       "ts_log10",          1, 1, {Float},                               R::Float,           0, no,                false},
    {"PI",          "ts_pi",             0, 0, {},                                    R::Float,           0, no,                false},
    {"RAND",        "ts_rand",           0, 1, {Integer},                             R::Float,           0, no,                false},
    {"ISNUMERIC",   "ts_isnumeric",      1, 1, {Any},                                 R::Int,             0, Extra::FirstType,  false},
    {"NEWID",       "ts_newid",          0, 0, {},                                    R::Guid,            0, no,                false},
    {"OBJECT_ID",   "ts_object_id",      1, 2, {Unicode, Unicode},                    R::Int,             0, no,                true},
    {"DB_NAME",     "ts_db_name",        0, 0, {},                                    R::NVarChar,      128, no,                false},
    {"USER_NAME",   "ts_user_name",      0, 0, {},                                    R::NVarChar,      128, no,                false},
    {"SUSER_SNAME", "ts_user_name",      0, 0, {},                                    R::NVarChar,      128, no,                false},
    {"OBJECT_NAME", "ts_object_name",    1, 1, {Integer},                             R::NVarChar,      128, no,                true},
    {"SCOPE_IDENTITY", "",               0, 0, {},                                    R::Int,             0, no,                true},
    {"ROW_NUMBER",  "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
    {"RANK",        "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
    {"DENSE_RANK",  "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
}};

constexpr std::array<AggregateRow, 10> aggregates{{
    {"COUNT",     "count",     "count",        AggregateRule::Count},
    {"COUNT_BIG", "count",     "count",        AggregateRule::CountBig},
    {"SUM",       "ts_sum",    "ts_sum", AggregateRule::Sum},
    {"AVG",       "ts_avg",    "ts_avg", AggregateRule::Average},
    {"MIN",       "min",       "min",          AggregateRule::Least},
    {"MAX",       "max",       "max",          AggregateRule::Greatest},
    {"STDEV",     "ts_stdev",  "ts_stdev",     AggregateRule::Spread},
    {"STDEVP",    "ts_stdevp", "ts_stdevp",    AggregateRule::Spread},
    {"VAR",       "ts_var",    "ts_var",       AggregateRule::Spread},
    {"VARP",      "ts_varp",   "ts_varp",      AggregateRule::Spread},
}};

constexpr std::array<OperatorRow, 9> operators{{
    {"+", "add",      "ts_add"},
    {"-", "subtract", "ts_sub"},
    {"*", "multiply", "ts_mul"},
    {"/", "divide",   "ts_div"},
    {"%", "modulo",   "ts_mod"},
    {"&", "'&'",      "ts_and"},
    {"|", "'|'",      "ts_or"},
    {"^", "'^'",      "ts_xor"},
    {"~", "'~'",      "ts_not"},
}};

constexpr std::array<std::string_view, 14> emitted{
    "ts_convert",        // value, packed from, packed to, style
    "ts_bytes",          // a binary without the zeros at its end
    "ts_moment",         // text of a date and time, of which a part is asked for
    "ts_top",            // what TOP gives, the greatest there may be or -1
    "ts_depth",          // the step of a recursion, how many there may be
    "ts_assign",         // value, packed from, packed to, 'table.column', the verb for messages unless it is INSERT
    "ts_like",           // text, pattern, escape or null, 1 for unicode text
    "ts_single",         // aggregate: the only value of a sub-query
    "ts_neg",            // value, packed type
    "ts_version",        // @@VERSION
    "ts_identity",       // table, packed type, seed, step: the next value of its identity column
    "ts_identity_given", // value that a row brings along, then the same
    "ts_default_text",   // CREATE TABLE text of SQLite, column: its default as T-SQL tells it
    "ts_declared_type",  // declared column type of SQLite, what: 'name', 'xtype', 'length', 'xprec', 'xscale'
};
// clang-format on

template <typename Rows, typename Member>
auto findRow(const Rows& rows, Member member, std::string_view key) {
  const typename Rows::value_type* found = nullptr;
  for (const auto& row : rows) {
    if (row.*member == key) found = &row;
  }
  return found;
}

}  // namespace

std::span<const FunctionRow> functionRows() {
  return functions;
}
const FunctionRow* findFunctionRow(std::string_view capitals) {
  return findRow(functions, &FunctionRow::name, capitals);
}
std::span<const AggregateRow> aggregateRows() {
  return aggregates;
}
const AggregateRow* findAggregateRow(std::string_view capitals) {
  return findRow(aggregates, &AggregateRow::name, capitals);
}
std::span<const OperatorRow> operatorRows() {
  return operators;
}
const OperatorRow* findOperatorRow(std::string_view symbol) {
  return findRow(operators, &OperatorRow::symbol, symbol);
}
std::span<const std::string_view> emittedFunctions() {
  return emitted;
}

}  // namespace tolvane::tsql
