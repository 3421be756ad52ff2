#include "tsql/function_table.h"

#include <algorithm>
#include <array>

namespace tolvane::tsql {
namespace {

using enum Argument;
using R = ResultRule;
constexpr auto no = Extra::Nothing;

// clang-format off
constexpr auto functions = std::to_array<FunctionRow>({
    // name         run time         least most  arguments                           result            length extra       null
    {"GETDATE",     "ts_now",            0, 0, {},                                    R::DateTime,        0, no,                false},
    {"DATEPART",    "ts_datepart",       2, 2, {DatePart, DateTime},                  R::Int,             0, no,                false},
    {"DATENAME",    "ts_datename",       2, 2, {DatePart, DateTime},                  R::NVarChar,       30, no,                false},
    {"DATEADD",     "ts_dateadd",        3, 3, {DatePart, Int, Any},                  R::DateOfArgument,  0, Extra::ResultType, false},
    {"DATEDIFF",    "ts_datediff",       3, 3, {DatePart, DateTime, DateTime},        R::Int,             0, no,                false},
    {"DATEDIFF_BIG", "ts_datediff_big",  3, 3, {DatePart, DateTime, DateTime},        R::BigInt,          0, no,                false},
    {"YEAR",        "ts_year",           1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"MONTH",       "ts_month",          1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"DAY",         "ts_day",            1, 1, {DateTime},                            R::Int,             0, no,                false},
    {"GETUTCDATE",  "ts_utc_now",        0, 0, {},                                    R::DateTime,        0, no,                false},
    {"EOMONTH",     "ts_eomonth",        1, 2, {Date, Int},                           R::Date,            0, no,                true},
    {"DATEFROMPARTS", "ts_date_from_parts", 3, 3, {Int},                              R::Date,            0, no,                true},
    {"DATETIMEFROMPARTS", "ts_datetime_from_parts", 7, 7, {Int},                      R::DateTime,        0, no,                true},
    {"SMALLDATETIMEFROMPARTS", "ts_smalldatetime_from_parts", 5, 5, {Int},            R::SmallDateTime,   0, no,                true},
    {"ISDATE",      "ts_isdate",         1, 1, {Text},                                R::Int,             0, no,                false},
    {"LEN",         "ts_len",            1, 1, {Text},                                R::Count,           0, no,                false},
    {"DATALENGTH",  "ts_datalength",     1, 1, {Any},                                 R::Count,           0, Extra::FirstType,  false},
    {"LEFT",        "ts_left",           2, 2, {Text, Integer},                       R::FirstText,       0, no,                false},
    {"RIGHT",       "ts_right",          2, 2, {Text, Integer},                       R::FirstText,       0, no,                false},
    {"SUBSTRING",   "ts_substring",      3, 3, {TextOrBytes, Integer, Integer},             R::FirstBytes,      0, no,                false},
    {"CHARINDEX",   "ts_charindex",      2, 3, {Text, Text, Integer},                 R::Count,           0, no,                false},
    {"PATINDEX",    "ts_patindex",       2, 2, {Text, Text},                          R::Count,           0, no,                false},
    {"REPLACE",     "ts_replace",        3, 3, {Text, Text, Text},                    R::LastTextLong,    0, Extra::ResultType, false},
    {"REPLICATE",   "ts_replicate",      2, 2, {Text, Integer},                       R::FirstTextLong,   0, Extra::FirstType,  true},
    {"REVERSE",     "ts_reverse",        1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"STUFF",       "ts_stuff",          4, 4, {Text, Integer, Integer, Text},        R::LastTextLong,    0, Extra::ResultType, true},
    {"SPACE",       "ts_space",          1, 1, {Integer},                             R::VarChar,      8000, no,                true},
    {"STR",         "ts_str",            1, 3, {Float, Integer, Integer},             R::VarChar,        30, no,                true},
    {"UPPER",       "ts_upper",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"LOWER",       "ts_lower",          1, 1, {Text},                                R::FirstText,       0, no,                false},
    {"LTRIM",       "ts_ltrim",          1, 2, {Text},                                R::FirstText,       0, no,                false},
    {"RTRIM",       "ts_rtrim",          1, 2, {Text},                                R::FirstText,       0, no,                false},
    {"TRIM",        "ts_trim",           1, 2, {Text},                                R::FirstText,       0, no,                false},
    {"TRANSLATE",   "ts_translate",      3, 3, {Text},                                R::FirstText,       0, no,                false},
    {"SOUNDEX",     "ts_soundex",        1, 1, {Text},                                R::VarChar,         4, no,                false},
    {"DIFFERENCE",  "ts_difference",     2, 2, {Text},                                R::Int,             0, no,                false},
    {"PARSENAME",   "ts_parsename",      2, 2, {Unicode, Integer},                    R::NVarChar,      128, no,                true},
    {"CONCAT",      "",                  2, mostArguments, {Any},                     R::VarChar,         0, no,                false},
    {"CONCAT_WS",   "",                  3, mostArguments, {Any},                     R::VarChar,         0, no,                false},
    {"ASCII",       "ts_ascii",          1, 1, {Text},                                R::Int,             0, no,                true},
    {"CHAR",        "ts_char",           1, 1, {Integer},                             R::Char,            1, no,                true},
    {"UNICODE",     "ts_unicode",        1, 1, {Unicode},                             R::Int,             0, no,                true},
    {"NCHAR",       "ts_nchar",          1, 1, {Integer},                             R::NChar,           1, no,                true},
    {"QUOTENAME",   "ts_quotename",      1, 2, {Unicode, Unicode},                    R::NVarChar,      258, no,                true},
    {"ISNULL",      "",                  2, 2, {Any, Any},                            R::Int,             0, no,                false},
    {"COALESCE",    "",                  2, mostArguments, {Any},                          R::Int,             0, no,                false},
    {"NULLIF",      "",                  2, 2, {Any, Any},                            R::Int,             0, no,                true},
    {"CHOOSE",      "",                  2, mostArguments, {Any},                     R::Int,             0, no,                true},
    {"GREATEST",    "",                  1, mostArguments, {Any},                     R::Int,             0, no,                false},
    {"LEAST",       "",                  1, mostArguments, {Any},                     R::Int,             0, no,                false},
    {"ABS",         "ts_abs",            1, 1, {Number},                              R::FirstWidened,    0, Extra::ResultType, false},
    {"ROUND",       "ts_round",          2, 3, {Number, Integer, Integer},            R::FirstScaled,     0, Extra::ResultType, false},
    {"FLOOR",       "ts_floor",          1, 1, {Number},                              R::FirstRounded,    0, Extra::ResultType, false},
    {"CEILING",     "ts_ceiling",        1, 1, {Number},                              R::FirstRounded,    0, Extra::ResultType, false},
    {"SIGN",        "ts_sign",           1, 1, {Number},                              R::FirstWidened,    0, Extra::ResultType, false},
    {"POWER",       "ts_power",          2, 2, {Number, Float},                       R::FirstWidened,    0, Extra::ResultType, false},
    {"SQRT",        "ts_sqrt",           1, 1, {Float},                               R::Float,           0, no,                false},
    {"SQUARE",      "ts_square",         1, 1, {Float},                               R::Float,           0, no,                false},
    {"EXP",         "ts_exp",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"SIN",         "ts_sin",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"COS",         "ts_cos",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"TAN",         "ts_tan",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"COT",         "ts_cot",            1, 1, {Float},                               R::Float,           0, no,                false},
    {"ASIN",        "ts_asin",           1, 1, {Float},                               R::Float,           0, no,                false},
    {"ACOS",        "ts_acos",           1, 1, {Float},                               R::Float,           0, no,                false},
    {"ATAN",        "ts_atan",           1, 1, {Float},                               R::Float,           0, no,                false},
    {"ATN2",        "ts_atn2",           2, 2, {Float},                               R::Float,           0, no,                false},
    {"DEGREES",     "ts_degrees",        1, 1, {Number},                              R::FirstAngle,      0, Extra::ResultType, false},
    {"RADIANS",     "ts_radians",        1, 1, {Number},                              R::FirstAngle,      0, Extra::ResultType, false},
    {"LOG",         "ts_log",            1, 2, {Float},                               R::Float,           0, no,                false},
    {"LOG10",       "ts_log10",          1, 1, {Float},                               R::Float,           0, no,                false},
    {"PI",          "ts_pi",             0, 0, {},                                    R::Float,           0, no,                false},
    {"RAND",        "ts_rand",           0, 1, {Int},                                 R::Float,           0, no,                false},
    {"ISNUMERIC",   "ts_isnumeric",      1, 1, {Any},                                 R::Int,             0, Extra::FirstType,  false},
    {"NEWID",       "ts_newid",          0, 0, {},                                    R::Guid,            0, no,                false},
    {"OBJECT_ID",   "ts_object_id",      1, 2, {Unicode, Unicode},                    R::Int,             0, no,                true},
    {"DB_ID",       "ts_db_id",          0, 1, {Unicode},                             R::Int,             0, no,                true},
    {"DB_NAME",     "ts_db_name",        0, 1, {Integer},                             R::NVarChar,      128, no,                false},
    {"SCHEMA_NAME", "ts_schema_name",    0, 1, {Integer},                             R::NVarChar,      128, no,                true},
    {"SCHEMA_ID",   "ts_schema_id",      0, 1, {Unicode},                             R::Int,             0, no,                true},
    {"USER_ID",     "ts_user_id",        0, 1, {Unicode},                             R::Int,             0, no,                true},
    {"TYPE_NAME",   "ts_type_name",      1, 1, {Integer},                             R::NVarChar,      128, no,                true},
    {"TYPE_ID",     "ts_type_id",        1, 1, {Unicode},                             R::Int,             0, no,                true},
    {"COL_LENGTH",  "ts_col_length",     2, 2, {Unicode},                             R::SmallInt,        0, no,                true},
    {"COL_NAME",    "ts_col_name",       2, 2, {Integer},                             R::NVarChar,      128, no,                true},
    {"COLUMNPROPERTY", "ts_columnproperty", 3, 3, {Integer, Unicode},                 R::Int,             0, no,                true},
    {"OBJECTPROPERTY", "ts_objectproperty", 2, 2, {Integer, Unicode},                 R::Int,             0, no,                true},
    {"IDENT_INCR",  "ts_ident_incr",     1, 1, {Unicode},                             R::Numeric,         0, no,                true},
    {"IDENT_SEED",  "ts_ident_seed",     1, 1, {Unicode},                             R::Numeric,         0, no,                true},
    {"USER_NAME",   "ts_user_name",      0, 1, {Integer},                             R::NVarChar,      128, no,                false},
    {"SUSER_NAME",  "ts_user_name",      0, 1, {Refused},                             R::NVarChar,      128, no,                false},
    {"SUSER_SNAME", "ts_user_name",      0, 1, {Refused},                             R::NVarChar,      128, no,                false},
    {"OBJECT_NAME", "ts_object_name",    1, 2, {Integer, Refused},                    R::NVarChar,      128, no,                true},
    {"SCOPE_IDENTITY", "",               0, 0, {},                                    R::Int,             0, no,                true},
    {"ROW_NUMBER",  "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
    {"RANK",        "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
    {"DENSE_RANK",  "",                  0, 0, {},                                    R::BigInt,          0, no,                false},
    {"ERROR_NUMBER",    "",              0, 0, {},                                    R::Int,             0, no,                true},
    {"ERROR_MESSAGE",   "",              0, 0, {},                                    R::NVarChar,     4000, no,                true},
    {"ERROR_SEVERITY",  "",              0, 0, {},                                    R::Int,             0, no,                true},
    {"ERROR_STATE",     "",              0, 0, {},                                    R::Int,             0, no,                true},
    {"ERROR_LINE",      "",              0, 0, {},                                    R::Int,             0, no,                true},
    {"ERROR_PROCEDURE", "",              0, 0, {},                                    R::NVarChar,      128, no,                true},
    {"XACT_STATE",      "",              0, 0, {},                                    R::Int,             0, no,                false},
    {"NTILE",       "",                  1, 1, {Integer},                             R::BigInt,          0, no,                false},
    {"PERCENT_RANK", "",                 0, 0, {},                                    R::Float,           0, no,                false},
    {"CUME_DIST",   "",                  0, 0, {},                                    R::Float,           0, no,                false},
    {"LAG",         "",                  1, 3, {Any, Integer, Any},                   R::FirstNumber,     0, no,                true},
    {"LEAD",        "",                  1, 3, {Any, Integer, Any},                   R::FirstNumber,     0, no,                true},
    {"FIRST_VALUE", "",                  1, 1, {Any},                                 R::FirstNumber,     0, no,                true},
    {"LAST_VALUE",  "",                  1, 1, {Any},                                 R::FirstNumber,     0, no,                true},
});

constexpr auto refused = std::to_array<std::string_view>({
    "APPLOCK_MODE", "APPLOCK_TEST", "APPROX_COUNT_DISTINCT", "APPROX_PERCENTILE_CONT", "APPROX_PERCENTILE_DISC", "APP_NAME",
    "ASSEMBLYPROPERTY", "ASYMKEYPROPERTY", "ASYMKEY_ID", "BINARY_CHECKSUM", "BIT_COUNT", "CERTENCODED",
    "CERTPRIVATEKEY", "CERTPROPERTY", "CERT_ID", "CHECKSUM", "CHECKSUM_AGG", "COLLATIONPROPERTY",
    "COLUMNS_UPDATED", "COMPRESS", "CONNECTIONPROPERTY", "CONTEXT_INFO", "CURRENT_REQUEST_ID",
    "CURRENT_TRANSACTION_ID", "CURSOR_STATUS", "DATABASEPROPERTY", "DATABASEPROPERTYEX", "DATABASE_PRINCIPAL_ID",
    "DATETIME2FROMPARTS", "DATETIMEOFFSETFROMPARTS", "DATETRUNC", "DATE_BUCKET", "DECOMPRESS", "DECRYPTBYASYMKEY",
    "DECRYPTBYCERT", "DECRYPTBYKEY", "DECRYPTBYKEYAUTOASYMKEY", "DECRYPTBYKEYAUTOCERT", "DECRYPTBYPASSPHRASE", "ENCRYPTBYASYMKEY",
    "ENCRYPTBYCERT", "ENCRYPTBYKEY", "ENCRYPTBYPASSPHRASE",
    "EVENTDATA", "FILEGROUPPROPERTY", "FILEGROUP_ID",
    "FILEGROUP_NAME", "FILEPROPERTY", "FILE_ID", "FILE_IDEX", "FILE_NAME",
    "FORMAT", "FORMATMESSAGE", "FULLTEXTCATALOGPROPERTY", "FULLTEXTSERVICEPROPERTY", "GETANSINULL", "GET_BIT",
    "GET_FILESTREAM_TRANSACTION_CONTEXT", "HASHBYTES", "HAS_DBACCESS", "HAS_PERMS_BY_NAME",
    "HOST_ID", "HOST_NAME", "IDENT_CURRENT", "INDEXKEY_PROPERTY", "INDEXPROPERTY", "INDEX_COL",
    "ISJSON", "IS_MEMBER", "IS_ROLEMEMBER", "IS_SRVROLEMEMBER", "JSON_ARRAY", "JSON_MODIFY",
    "JSON_OBJECT", "JSON_PATH_EXISTS", "JSON_QUERY", "JSON_VALUE", "KEY_GUID", "KEY_ID",
    "KEY_NAME", "LEFT_SHIFT", "LOGINPROPERTY",
    "MIN_ACTIVE_ROWVERSION", "NEWSEQUENTIALID", "OBJECTPROPERTYEX", "OBJECT_DEFINITION", "OBJECT_SCHEMA_NAME",
    "OPENJSON", "ORIGINAL_DB_NAME", "ORIGINAL_LOGIN", "PARSE", "PERCENTILE_CONT", "PERCENTILE_DISC",
    "PERMISSIONS", "PUBLISHINGSERVERNAME", "PWDCOMPARE", "PWDENCRYPT", "RIGHT_SHIFT",
    "ROWCOUNT_BIG", "SERVERPROPERTY", "SESSIONPROPERTY", "SESSION_CONTEXT", "SET_BIT", "SIGNBYASYMKEY",
    "SIGNBYCERT", "SQL_VARIANT_PROPERTY", "STATS_DATE", "STRING_ESCAPE", "STRING_SPLIT",
    "SUSER_ID", "SUSER_SID", "SWITCHOFFSET", "SYMKEYPROPERTY", "SYSDATETIME", "SYSDATETIMEOFFSET",
    "SYSUTCDATETIME", "TERTIARY_WEIGHTS", "TEXTPTR", "TEXTVALID", "TIMEFROMPARTS", "TODATETIMEOFFSET",
    "TRIGGER_NESTLEVEL", "TRY_PARSE", "TYPEPROPERTY", "VERIFYSIGNEDBYASYMKEY", "VERIFYSIGNEDBYCERT",
});
static_assert(std::ranges::is_sorted(refused));

constexpr auto aggregates = std::to_array<AggregateRow>({
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
});

constexpr auto operators = std::to_array<OperatorRow>({
    {"+", "add",      "ts_add"},
    {"-", "subtract", "ts_sub"},
    {"*", "multiply", "ts_mul"},
    {"/", "divide",   "ts_div"},
    {"%", "modulo",   "ts_mod"},
    {"&", "'&'",      "ts_and"},
    {"|", "'|'",      "ts_or"},
    {"^", "'^'",      "ts_xor"},
    {"~", "'~'",      "ts_not"},
});

constexpr auto emitted = std::to_array<std::string_view>({
    "ts_convert",        // value, packed from, packed to, style
    "ts_try_convert",    // the same, where null is what does not convert
    "ts_greatest",       // packed type, values of that type
    "ts_least",          // the same
    "ts_concat_ws",      // separator, texts
    "ts_bytes",          // a binary without the zeros at its end
    "ts_moment",         // text of a date and time, of which a part is asked for
    "ts_top",            // what TOP gives, the greatest there may be or -1; -2 for OFFSET, -3 for FETCH
    "ts_depth",          // the step of a recursion, how many there may be
    "ts_assign",         // value, packed from, packed to, 'table.column', the verb for messages unless it is INSERT
    "ts_like",           // text, pattern, escape or null, 1 for unicode text
    "ts_single",         // aggregate: the only value of a sub-query
    "ts_string_agg",     // aggregate: text, separator, packed result, then value, packed type, 1 for DESC of each key
    "ts_neg",            // value, packed type
    "ts_version",        // @@VERSION
    "ts_format_message",  // message of RAISERROR, letters for the kinds of its values, values
    "ts_identity",       // table, packed type, seed, step: the next value of its identity column
    "ts_identity_given", // value that a row brings along, then the same
    "ts_default_text",   // CREATE TABLE text of SQLite, column: its default as T-SQL tells it
    "ts_declared_type",  // declared column type of SQLite, what: 'name', 'xtype', 'length', 'xprec', 'xscale'
});
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
std::span<const std::string_view> refusedFunctions() {
  return refused;
}
bool isRefusedFunction(std::string_view capitals) {
  return std::ranges::binary_search(refused, capitals);
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
