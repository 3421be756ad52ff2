#include "tsql/sql_error.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tolvane::tsql {
namespace {

struct Row {
  Message message;
  int number;
  int severity;
  std::string_view text;
};

// clang-format off
constexpr std::array<Row, static_cast<std::size_t>(Message::Count_)> rows{{
    {Message::IncorrectSyntax, 102, 15, "Incorrect syntax near '%1'."},
    {Message::UnclosedQuotation, 105, 15, "Unclosed quotation mark after the character string '%1'."},
    {Message::IncorrectSyntaxKeyword, 156, 15, "Incorrect syntax near the keyword '%1'."},
    {Message::NotDatepart, 155, 15, "'%1' is not a recognized %2 option."},
    {Message::FunctionArgumentCount, 174, 15, "The %1 function requires %2 argument(s)."},
    {Message::FunctionArgumentRange, 189, 15, "The %1 function requires %2 to %3 arguments."},
    {Message::NotFunction, 195, 15, "'%1' is not a recognized built-in function name."},
    {Message::InvalidColumn, 207, 16, "Invalid column name '%1'."},
    {Message::InvalidObject, 208, 16, "Invalid object name '%1'."},
    {Message::AmbiguousColumn, 209, 16, "Ambiguous column name '%1'."},
    {Message::InsertFewerColumns, 109, 15,
     "There are more columns in the INSERT statement than values specified in the VALUES clause. The number of values in "
     "the VALUES clause must match the number of columns specified in the INSERT statement."},
    {Message::InsertMoreColumns, 110, 15,
     "There are fewer columns in the INSERT statement than values specified in the VALUES clause. The number of values in "
     "the VALUES clause must match the number of columns specified in the INSERT statement."},
    {Message::InsertColumnCount, 213, 16, "Column name or number of supplied values does not match table definition."},
    {Message::UnionColumnCount, 205, 16,
     "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of expressions in their "
     "target lists."},
    {Message::MustDeclareVariable, 137, 15, "Must declare the scalar variable \"%1\"."},
    {Message::VariableDeclaredTwice, 134, 15,
     "The variable name '%1' has already been declared. Variable names must be unique within a query batch or stored "
     "procedure."},
    {Message::ColumnNotGrouped, 8120, 16,
     "Column '%1' is invalid in the select list because it is not contained in either an aggregate function or the GROUP "
     "BY clause."},
    {Message::HavingColumnNotGrouped, 8121, 16,
     "Column '%1' is invalid in the HAVING clause because it is not contained in either an aggregate function or the "
     "GROUP BY clause."},
    {Message::OrderColumnNotGrouped, 8127, 16,
     "Column \"%1\" is invalid in the ORDER BY clause because it is not contained in either an aggregate function or "
     "the GROUP BY clause."},
    {Message::CollateOfNoText, 447, 16, "Expression type %1 is invalid for COLLATE clause."},
    {Message::OperandClash, 206, 16, "Operand type clash: %1 is incompatible with %2"},
    {Message::ImplicitConversion, 257, 16,
     "Implicit conversion from data type %1 to %2 is not allowed. Use the CONVERT function to run this query."},
    {Message::ExplicitConversion, 529, 16, "Explicit conversion from data type %1 to %2 is not allowed."},
    {Message::InvalidOperand, 8117, 16, "Operand data type %1 is invalid for %2 operator."},
    {Message::MultipartNotBound, 4104, 16, "The multi-part identifier \"%1\" could not be bound."},
    {Message::OrderByPosition, 108, 15,
     "The ORDER BY position number %1 is out of range of the number of items in the select list."},
    {Message::InvalidTop, 1014, 15, "A TOP or FETCH clause contains an invalid value."},
    {Message::NegativeTop, 127, 15, "A TOP N or FETCH rowcount value may not be negative."},
    {Message::NegativeOffset, 10742, 15, "The offset specified in a OFFSET clause may not be negative."},
    {Message::EmptyFetch, 10744, 15, "The number of rows provided for a FETCH clause must be greater then zero."},
    {Message::TopPercent, 1031, 15, "Percent values must be between 0 and 100."},
    {Message::ProcedureNotFound, 2812, 16, "Could not find stored procedure '%1'."},
    {Message::ObjectExists, 2714, 16, "There is already an object named '%1' in the database."},
    {Message::CannotDrop, 3701, 11,
     "Cannot %1 the %2 '%3', because it does not exist or you do not have permission."},
    {Message::ArithmeticOverflow, 8115, 16, "Arithmetic overflow error converting %1 to data type %2."},
    {Message::OverflowValue, 220, 16, "Arithmetic overflow error for data type %1, value = %2."},
    {Message::FloatOverflow, 232, 16, "Arithmetic overflow error for type %1, value = %2."},
    {Message::DivideByZero, 8134, 16, "Divide by zero error encountered."},
    {Message::ConversionFailed, 245, 16, "Conversion failed when converting the %1 value '%2' to data type %3."},
    {Message::ConversionError, 8114, 16, "Error converting data type %1 to %2."},
    {Message::TextOverflowShortInteger, 244, 16,
     "The conversion of the %1 value '%2' overflowed an %3 column. Use a larger integer column."},
    {Message::TextOverflowInteger, 248, 16, "The conversion of the %1 value '%2' overflowed an int column."},
    {Message::MoneySyntax, 235, 16, "Cannot convert a char value to money. The char value has incorrect syntax."},
    {Message::SmallMoneySyntax, 293, 16,
     "Cannot convert a char value to smallmoney. The char value has incorrect syntax."},
    {Message::MoneyTextSpace, 234, 16, "There is insufficient result space to convert a %1 value to %2."},
    {Message::MoneyIntegerSpace, 237, 16, "There is insufficient result space to convert a %1 value to %2."},
    {Message::DateSyntax, 241, 16, "Conversion failed when converting date and/or time from character string."},
    {Message::DateRange, 242, 16,
     "The conversion of a %1 data type to a %2 data type resulted in an out-of-range value."},
    {Message::SmallDateSyntax, 295, 16, "Conversion failed when converting character string to smalldatetime data type."},
    {Message::DateOverflow, 517, 16, "Adding a value to a '%1' column caused an overflow."},
    {Message::DatediffOverflow, 535, 16,
     "The %1 function resulted in an overflow. The number of dateparts separating two date/time instances is too "
     "large. Try to use %1 with a less precise datepart."},
    {Message::InvalidStyle, 281, 16, "%1 is not a valid style number when converting from %2 to a character string."},
    {Message::UniqueidentifierSyntax, 8169, 16,
     "Conversion failed when converting from a character string to uniqueidentifier."},
    {Message::UniqueidentifierSpace, 8170, 16, "Insufficient result space to convert uniqueidentifier value to char."},
    {Message::UnsupportedDatePart, 9810, 16,
     "The datepart %1 is not supported by date function %2 for data type %3."},
    {Message::InvalidRightLength, 536, 16, "Invalid length parameter passed to the %1 function."},
    {Message::InvalidLength, 537, 16, "Invalid length parameter passed to the %1 function."},
    {Message::InvalidFloat, 3623, 16, "An invalid floating point operation occurred."},
    {Message::InvalidEscape, 506, 16, "The invalid escape character \"%1\" was specified in a %2 predicate."},
    {Message::SubqueryManyRows, 512, 16,
     "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or when the "
     "subquery is used as an expression."},
    {Message::Truncated, 8152, 16, "String or binary data would be truncated."},
    {Message::NullColumn, 515, 16,
     "Cannot insert the value NULL into column '%1', table '%2'; column does not allow nulls. %3 fails."},
    {Message::DuplicateKey, 2627, 14,
     "Violation of %1 constraint '%2'. Cannot insert duplicate key in object '%3'."},
    {Message::DuplicateIndexRow, 2601, 14,
     "Cannot insert duplicate key row in object '%1' with unique index '%2'."},
    {Message::ConstraintConflict, 547, 16,
     "The %1 statement conflicted with the %2 constraint \"%3\". The conflict occurred in %4."},
    {Message::CommitWithoutBegin, 3902, 16, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {Message::RollbackWithoutBegin, 3903, 16, "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {Message::SaveWithoutBegin, 628, 16, "Cannot issue SAVE TRANSACTION when there is no active transaction."},
    {Message::NoSuchSavepoint, 6401, 16,
     "Cannot roll back %1. No transaction or savepoint of that name was found."},
    {Message::Uncommittable, 3930, 16,
     "The current transaction cannot be committed and cannot support operations that write to the log file. Roll back "
     "the transaction."},
    {Message::UncommittableAtEnd, 3998, 16,
     "Uncommittable transaction is detected at the end of the batch. The transaction is rolled back."},
    {Message::UncommittableSave, 3931, 16,
     "The current transaction cannot be committed and cannot be rolled back to a savepoint. Roll back the entire "
     "transaction."},
    {Message::MessageType, 2786, 16,
     "The data type of substitution parameter %1 does not match the expected type of the format specification."},
    {Message::MessageFormat, 2787, 16, "Invalid format specification: '%1'."},
    {Message::MessageParameter, 2748, 16, "Cannot specify %1 data type (parameter %2) as a substitution parameter."},
    {Message::MessageNumber, 2732, 16,
     "Error number %1 is invalid. The number must be from 13000 through 2147483647 and it cannot be 50000."},
    {Message::MessageNotFound, 18054, 16,
     "Error %1, severity %2, state %3 was raised, but no message with that error number was found in sys.messages. If "
     "error is larger than 50000, make sure the user-defined message is added using sp_addmessage."},
    {Message::SeverityWithoutLog, 2754, 16,
     "Error severity levels greater than 18 can only be specified by members of the sysadmin role, using the WITH LOG "
     "option."},
    {Message::ThrownNumber, 35100, 16,
     "Error number %1 in the THROW statement is outside the valid range. Specify an error number in the valid range of "
     "50000 to 2147483647."},
    {Message::TableVariable, 1087, 15, "Must declare the table variable \"%1\"."},
    {Message::LabelTwice, 132, 15,
     "The label '%1' has already been declared. Label names must be unique within a query batch or stored procedure."},
    {Message::LabelMissing, 133, 15, "A GOTO statement references the label '%1' but the label has not been declared."},
    {Message::JumpIntoHandler, 1026, 15, "GOTO cannot be used to jump into a TRY or CATCH scope."},
}};
// clang-format on

constexpr bool inOrder() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (static_cast<std::size_t>(rows[i].message) != i || rows[i].text.empty()) return false;
  }
  return true;
}
static_assert(inOrder(), "the table must have one row for each Message, in the order of the enumeration");

const Row& rowOf(Message message) {
  return rows.at(static_cast<std::size_t>(message));
}

std::string filledIn(std::string_view text, std::initializer_list<std::string_view> inserts) {
  std::string filled;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
      const auto index = static_cast<std::size_t>(text[++i] - '1');
      if (index < inserts.size()) filled += inserts.begin()[index];
    } else {
      filled += text[i];
    }
  }
  return filled;
}

}  // namespace

SqlError::SqlError(Message message, std::initializer_list<std::string_view> inserts)
    : number_(rowOf(message).number),
      severity_(rowOf(message).severity),
      text_(filledIn(rowOf(message).text, inserts)) {}

// The states that SQL Server gives its own errors; those that are not here have 1.
int SqlError::state() const noexcept {
  if (state_ != unknownState) return state_;
  struct State {
    int number;
    int state;
  };
  static constexpr std::array states{State{220, 2},  State{235, 0},  State{241, 1},   State{242, 3},   State{515, 2},
                                     State{537, 3},  State{547, 0},  State{2714, 6},  State{2812, 62}, State{3701, 5},
                                     State{8114, 5}, State{8115, 2}, State{8152, 13}, State{8169, 2}};
  for (const auto& row : states) {
    if (row.number == number_) return row.state;
  }
  return 1;
}

SqlError::SqlError(int number, int severity, std::string text)
    : number_(number), severity_(severity), text_(std::move(text)) {}

}  // namespace tolvane::tsql
