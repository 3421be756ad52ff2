#pragma once

#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tolvane::tsql {

// One name for each text of SQL Server that the engine can answer with; the table in sql_error.cpp holds number,
// severity and text of each, in this order. Placeholders %1 .. %4 of a text are named in the comments here.
enum class Message {
  // Statements (raised while a batch is read).
  IncorrectSyntax,         // 102: the word
  UnclosedQuotation,       // 105: the text after it
  IncorrectSyntaxKeyword,  // 156: the keyword
  NotDatepart,             // 155: the word, the kind of option
  FunctionArgumentCount,   // 174: function, number
  FunctionArgumentRange,   // 189: function, fewest, most
  NotFunction,             // 195: the word
  InvalidColumn,           // 207: column
  InvalidObject,           // 208: object
  AmbiguousColumn,         // 209: column
  InsertFewerColumns,      // 109
  InsertMoreColumns,       // 110
  InsertColumnCount,       // 213
  UnionColumnCount,        // 205
  MustDeclareVariable,     // 137: variable
  VariableDeclaredTwice,   // 134: variable
  ColumnNotGrouped,        // 8120: column
  HavingColumnNotGrouped,  // 8121: column
  OrderColumnNotGrouped,   // 8127: column
  CollateOfNoText,         // 447: type
  OperandClash,            // 206: type, type
  ImplicitConversion,      // 257: type, type
  ExplicitConversion,      // 529: type, type
  InvalidOperand,          // 8117: type, operator
  MultipartNotBound,       // 4104: name
  OrderByPosition,         // 108: number
  InvalidTop,              // 1014
  NegativeTop,             // 127
  NegativeOffset,
  EmptyFetch,
  TopPercent,         // 1031
  ProcedureNotFound,  // 2812: procedure
  ObjectExists,       // 2714: object
  CannotDrop,         // 3701: action, kind, object
  // Values.
  ArithmeticOverflow,        // 8115: what, type
  OverflowValue,             // 220: type, value
  FloatOverflow,             // 232: type, value
  DivideByZero,              // 8134
  ConversionFailed,          // 245: type, value, type
  ConversionError,           // 8114: type, type
  TextOverflowShortInteger,  // 244: type, value, INT1 or INT2
  TextOverflowInteger,       // 248: type, value
  MoneySyntax,               // 235
  SmallMoneySyntax,          // 293
  MoneyTextSpace,            // 234: type, type
  MoneyIntegerSpace,         // 237: type, type
  DateSyntax,                // 241
  DateRange,                 // 242: type, type
  SmallDateSyntax,           // 295
  DateOverflow,              // 517: type
  DatediffOverflow,          // 535: function
  InvalidStyle,              // 281: number, type
  UniqueidentifierSyntax,    // 8169
  UniqueidentifierSpace,     // 8170
  UnsupportedDatePart,       // 9810: part, function, type
  InvalidRightLength,        // 536: function
  InvalidLength,             // 537: function
  InvalidFloat,              // 3623
  InvalidEscape,             // 506: character, predicate
  SubqueryManyRows,          // 512
  Truncated,                 // 8152
  NullColumn,                // 515: column, table, verb
  DuplicateKey,              // 2627: constraint kind, constraint, table
  DuplicateIndexRow,         // 2601: table, index
  ConstraintConflict,        // 547: statement, kind, constraint, table
  // Transactions.
  CommitWithoutBegin,    // 3902
  RollbackWithoutBegin,  // 3903
  SaveWithoutBegin,      // 628
  NoSuchSavepoint,       // 6401: name
  Uncommittable,         // 3930
  UncommittableAtEnd,    // 3998
  UncommittableSave,     // 3931
  // Raised errors.
  MessageType,         // 2786: number of the value
  MessageFormat,       // 2787: what is not understood
  MessageParameter,    // 2748: type, number of the argument
  MessageNumber,       // 2732: number
  MessageNotFound,     // 18054: number, severity, state
  SeverityWithoutLog,  // 2754
  ThrownNumber,        // 35100: number
  TableVariable,       // 1087: name
  LabelTwice,          // 132: label
  LabelMissing,        // 133: label
  JumpIntoHandler,     // 1026
  Count_
};

// The number of everything that T-SQL has and this engine has not.
constexpr int notSupportedNumber = 40517;

// An error with SQL Server's number and words. A failed statement leaves its data untouched; this says what is told.
class SqlError : public std::exception {
 public:
  SqlError(Message message, std::initializer_list<std::string_view> inserts = {});
  // An error of a text that is not in the table: what the engine refuses because it does not have it.
  SqlError(int number, int severity, std::string text);

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] int severity() const noexcept { return severity_; }
  // The 1-based line of the batch where the statement or word stands; 0 where it is not known.
  [[nodiscard]] int line() const noexcept { return line_; }
  SqlError& at(int line) noexcept {
    line_ = line;
    return *this;
  }
  // What ERROR_STATE() tells.
  [[nodiscard]] int state() const noexcept;
  SqlError& withState(int state) noexcept {
    state_ = state;
    return *this;
  }
  // Raised by THROW, which ends the batch whatever the number.
  [[nodiscard]] bool thrown() const noexcept { return thrown_; }
  SqlError& asThrown() noexcept {
    thrown_ = true;
    return *this;
  }
  [[nodiscard]] const std::string& message() const noexcept { return text_; }
  [[nodiscard]] const char* what() const noexcept override { return text_.c_str(); }

 private:
  static constexpr int unknownState = -1;
  int number_;
  int severity_;
  int line_ = 0;
  int state_ = unknownState;
  bool thrown_ = false;
  std::string text_;
};

}  // namespace tolvane::tsql
