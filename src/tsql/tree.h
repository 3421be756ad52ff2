#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tsql/type.h"

// The tree of a batch, as the parser makes it from tokens: names as written (quotes taken off), nothing resolved.
namespace tolvane::tsql::tree {

struct Query;
struct Expression;
struct StatementNode;
using ExpressionPtr = std::unique_ptr<Expression>;
using QueryPtr = std::unique_ptr<Query>;
using StatementPtr = std::unique_ptr<StatementNode>;

struct OrderItem {
  ExpressionPtr expression;
  bool descending = false;
};

// ROWS or RANGE between two bounds: so many rows before or after the current one, or as many as there are.
struct WindowBound {
  enum class Kind { Unbounded, Rows, Current };
  Kind kind = Kind::Current;
  bool following = false;
  std::int64_t rows = 0;
};

struct WindowFrame {
  bool range = false;
  WindowBound start;
  WindowBound end;
  int token = 0;
};

enum class ExpressionKind {
  Literal,  // literal
  Null,
  Default,      // the word DEFAULT in VALUES or SET
  Variable,     // name with '@'
  Placeholder,  // literal: its number
  Column,       // prefix, qualifier, name
  Unary,        // name: - + ~; one argument
  Binary,       // name: the operator; two arguments
  Call,         // name, arguments; qualifier of a function that is no built-in one; star for COUNT(*); distinct; over
  Cast,         // arguments[0], type; CONVERT has `style` as arguments[1]; name: TRY_CAST, TRY_CONVERT too
  Case,         // operand (may be empty), then pairs in arguments, `otherwise`
  Subquery,     // query
  // Conditions.
  Compare,  // name: the operator, IS for that of values of which both may be null, IS NOT; two arguments
  And,      // any number of arguments
  Or,
  Not,         // one argument
  IsNull,      // one argument; negated
  Between,     // three arguments; negated
  InList,      // the first among the rest; negated
  InQuery,     // one argument, query; negated
  Like,        // two or three arguments; negated
  Exists,      // query
  Quantified,  // one argument, name: the operator, query; all
};

struct Expression {
  ExpressionKind kind = ExpressionKind::Null;
  int token = 0;  // where it stands, for messages
  std::string name;
  std::string qualifier;
  std::string prefix;  // of a column: database and schema as written, with the points behind them
  int literal = -1;
  bool negated = false;
  bool distinct = false;
  bool star = false;
  bool all = false;
  bool over = false;      // a window function; partition and order below
  bool collated = false;  // COLLATE stands behind it
  Type type;
  std::vector<ExpressionPtr> arguments;
  ExpressionPtr operand;
  ExpressionPtr otherwise;
  QueryPtr query;
  std::vector<ExpressionPtr> partition;
  std::vector<OrderItem> order;
  std::unique_ptr<WindowFrame> frame;
};

enum class JoinKind { Inner, Left, Right, Full, Cross, CrossApply, OuterApply };

struct TableReference {
  enum class Kind { Named, Derived, Join };
  Kind kind = Kind::Named;
  int token = 0;
  std::string database;
  std::string schema;  // as written: "dbo", "INFORMATION_SCHEMA" or empty
  std::string name;
  std::string alias;
  std::vector<std::string> columnAliases;
  QueryPtr query;
  JoinKind join = JoinKind::Inner;
  std::unique_ptr<TableReference> left;
  std::unique_ptr<TableReference> right;
  ExpressionPtr on;
};
using TableReferencePtr = std::unique_ptr<TableReference>;

struct TableName {
  std::string database;
  std::string schema;
  std::string name;
  int token = 0;
};

struct SelectItem {
  bool star = false;  // * or qualifier.*
  std::string qualifier;
  std::string prefix;  // what stands before the qualifier, with its points
  ExpressionPtr expression;
  std::string alias;
  std::string variable;  // SELECT @x = expression
  int token = 0;
};

struct Select {
  int token = 0;
  bool distinct = false;
  ExpressionPtr top;
  bool percent = false;
  bool ties = false;
  std::vector<SelectItem> items;
  std::string into;
  TableName intoTable;
  std::vector<TableReferencePtr> from;
  ExpressionPtr where;
  std::vector<ExpressionPtr> groupBy;
  // Several groupings at once, each by some of `groupBy`; empty for a single one by all of it.
  std::vector<std::vector<int>> groupings;
  ExpressionPtr having;
  std::vector<std::vector<ExpressionPtr>> values;  // a VALUES list in the place of a SELECT
};

enum class SetOperator { None, Union, UnionAll, Except, Intersect };

struct QueryBody {
  SetOperator operation = SetOperator::None;
  int token = 0;
  std::unique_ptr<Select> select;  // operation None, unless nested
  QueryPtr nested;                 // a query in brackets
  std::unique_ptr<QueryBody> left;
  std::unique_ptr<QueryBody> right;
};

// The query that says INTO, which is the first one of several; null where none does.
inline const Select* intoOf(const QueryBody& body) {
  const QueryBody* first = &body;
  while (first->left) first = first->left.get();
  return first->select && !first->select->into.empty() ? first->select.get() : nullptr;
}

struct CommonTable {
  std::string name;
  std::vector<std::string> columns;
  QueryPtr query;
  int token = 0;
};

struct Query {
  std::vector<CommonTable> with;
  std::unique_ptr<QueryBody> body;
  std::vector<OrderItem> order;
  ExpressionPtr offset;
  ExpressionPtr fetch;
  int maxRecursion = 100;
  int token = 0;
};

struct Assignment {
  std::string qualifier;
  std::string column;
  std::string variable;   // SET @x = ... in an UPDATE is refused
  std::string operation;  // "" or the operator of +=, -= ...
  ExpressionPtr value;
  int token = 0;
};

struct KeyColumn {
  std::string name;
  bool descending = false;
};

struct Constraint {
  enum class Kind { PrimaryKey, Unique, Check, ForeignKey, Default };
  Kind kind = Kind::Check;
  int token = 0;
  std::string name;
  std::vector<KeyColumn> columns;
  ExpressionPtr expression;  // check, default
  TableName target;          // foreign key
  std::vector<std::string> targetColumns;
  std::string onDelete;  // "CASCADE", "NO ACTION", ... or empty
  std::string onUpdate;
  std::string forColumn;    // DEFAULT ... FOR column
  bool withValues = false;  // DEFAULT ... WITH VALUES: for the rows that are there, too
};

struct ColumnDefinition {
  int token = 0;
  std::string name;
  Type type;
  std::optional<bool> nullable;
  bool identity = false;
  std::int64_t seed = 1;
  std::int64_t increment = 1;
  std::vector<Constraint> constraints;
};

enum class StatementKind {
  Select,
  Insert,
  Update,
  Delete,
  Truncate,
  CreateTable,
  CreateIndex,
  AlterAdd,
  AlterColumn,
  AlterDrop,
  DropTable,
  DropIndex,
  If,
  While,
  Block,
  Break,
  Continue,
  Return,
  Declare,
  Set,
  Print,
  RaiseError,
  Begin,
  Commit,
  Rollback,
  Option,
  IdentityInsert,
  Call,  // of a procedure; there are none
  Try,
  Throw,
  Label,
  GoTo,
  Save,
  Cursor,   // name, operation: the verb; query, value, columns: the variables
  RunText,  // EXEC of a text, sp_executesql
};

// What ALTER TABLE ... DROP takes off a table.
struct DropItem {
  std::string name;
  bool column = false;  // otherwise a constraint
  bool ifExists = false;
  int token = 0;
};

struct Declaration {
  std::string name;
  Type type;
  ExpressionPtr value;
  int token = 0;
  StatementPtr table;  // of a table variable: its definition
};

// A value that is handed to a procedure.
struct Argument {
  std::string name;  // of the parameter, if it is said
  ExpressionPtr value;
  bool output = false;
};

struct StatementNode {
  StatementKind kind = StatementKind::Block;
  int token = 0;                  // first
  int endToken = 0;               // one past the last
  std::vector<CommonTable> with;  // before an INSERT, UPDATE or DELETE
  int maxRecursion = 100;
  QueryPtr query;   // SELECT; the source of an INSERT
  TableName table;  // of INSERT, UPDATE, DELETE, CREATE, ALTER, DROP, TRUNCATE
  std::vector<std::string> columns;
  std::vector<Assignment> assignments;
  std::vector<TableReferencePtr> from;
  bool hasFrom = false;
  ExpressionPtr top;
  ExpressionPtr where;                   // also the condition of IF and WHILE
  bool defaultValues = false;            // INSERT ... DEFAULT VALUES
  std::vector<StatementPtr> statements;  // of a block; the two branches of IF; the body of WHILE; two blocks of TRY and
                                         // CATCH
  std::vector<ColumnDefinition> definitions;
  std::vector<Constraint> constraints;
  std::vector<Declaration> declarations;
  std::string name;  // index, option, variable, label, transaction
  std::vector<KeyColumn> keys;
  bool unique = false;
  bool on = false;
  bool ifExists = false;
  bool unchecked = false;             // ALTER TABLE ... WITH NOCHECK
  std::vector<std::string> included;  // CREATE INDEX ... INCLUDE
  std::vector<DropItem> drops;
  ExpressionPtr value;                   // SET, PRINT
  std::string operation;                 // SET @x += ...
  std::vector<ExpressionPtr> arguments;  // RAISERROR, THROW
  std::vector<Argument> passed;          // to a procedure
  std::vector<TableName> tables;         // DROP TABLE a, b
};

}  // namespace tolvane::tsql::tree
