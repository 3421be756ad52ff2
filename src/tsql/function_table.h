#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tolvane::tsql {

// What a function does with one argument before it is handed on.
enum class Argument : std::uint8_t {
  None,
  Any,          // as it is
  Text,         // char or nchar kind; others become varchar
  Unicode,      // becomes nvarchar
  Integer,      // becomes int, but for a bigint
  Int,          // becomes int
  Float,        // becomes float
  Number,       // a number of any type; text becomes float
  DateTime,     // becomes datetime, but for a date; a text keeps seven digits of the second
  DatePart,     // a word of datePartNames(); handed on as the full name in quotes
  TextOrBytes,  // a binary as it is, anything else as Text
  Date,         // becomes date; what is neither date nor text is refused as SQL Server does
  Refused,      // SQL Server takes one here, this engine does not
};

enum class ResultRule : std::uint8_t {
  Int,
  BigInt,
  Float,
  DateTime,
  VarChar,   // varchar(`length`)
  NVarChar,  // nvarchar(`length`)
  Char,      // char(`length`)
  NChar,     // nchar(`length`)
  Guid,
  FirstText,       // varchar or nvarchar as the first argument, same length
  FirstTextLong,   // the same with the greatest length
  LastTextLong,    // varchar or nvarchar as any text argument, the greatest length
  FirstBytes,      // as FirstText, or varbinary for a binary
  FirstNumber,     // the type of the first argument; small integers become int
  FirstWidened,    // the same, where a decimal has all digits there may be (ABS, SIGN, POWER)
  FirstRounded,    // the same, where a decimal loses its scale (FLOOR, CEILING)
  FirstScaled,     // the same, where a decimal keeps digits and scale (ROUND)
  FirstAngle,      // the same, where a decimal has eighteen digits after the point at least (DEGREES, RADIANS)
  DateOfArgument,  // DATEADD: the date type of the third argument, datetime for anything else
  Date,
  SmallDateTime,
  Numeric,  // numeric(38,0)
  SmallInt,
  Count,  // int, bigint of a `max` text (LEN, DATALENGTH: the first argument, CHARINDEX, PATINDEX: the second)
};

// Types that the SQLite function gets as further arguments after those of the text.
enum class Extra : std::uint8_t { Nothing, FirstType, ResultType };

// One scalar function of T-SQL. SQLite gets `runtime(arguments..., extra)`; optional arguments that are left out are
// left out there too, so with an `extra` the run-time function tells them apart by their number. Arguments behind the
// last one that is described are as that one.
struct FunctionRow {
  std::string_view name;     // in capitals
  std::string_view runtime;  // empty: the compiler writes it out itself (ISNULL, COALESCE, NULLIF)
  int minArguments;
  int maxArguments;
  Argument arguments[4];
  ResultRule result;
  int length;
  Extra extra;
  bool nullable;  // the result may be null though no argument is
};
std::span<const FunctionRow> functionRows();
const FunctionRow* findFunctionRow(std::string_view capitals);

constexpr int mostArguments = 254;  // of a function that takes any number

// Functions that SQL Server has and this engine has not, in capitals and in alphabetical order.
std::span<const std::string_view> refusedFunctions();
bool isRefusedFunction(std::string_view capitals);

enum class AggregateRule : std::uint8_t { Count, CountBig, Sum, Average, Least, Greatest, Spread };

// One aggregate. `runtime` gets the argument, and for Sum and Average the packed type of the argument as a second one
// unless DISTINCT stands there, and 1 as a last one where rows leave the window again; `distinct` names the
// one-argument form for DISTINCT, which sees from the value what it adds (integers add up in 64 bits, texts as
// decimals) and whose result the compiler converts.
struct AggregateRow {
  std::string_view name;
  std::string_view runtime;
  std::string_view distinct;
  AggregateRule rule;
};
std::span<const AggregateRow> aggregateRows();
const AggregateRow* findAggregateRow(std::string_view capitals);

// The arithmetic and bit operators, with the run-time function of each.
struct OperatorRow {
  std::string_view symbol;
  std::string_view name;     // as error messages call it
  std::string_view runtime;  // gets both operands, in the result's type, and the packed result type
};
std::span<const OperatorRow> operatorRows();
const OperatorRow* findOperatorRow(std::string_view symbol);

// Run-time functions that the emitter writes on its own account: conversion, assignment, LIKE and the like.
std::span<const std::string_view> emittedFunctions();

}  // namespace tolvane::tsql
