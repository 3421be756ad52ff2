#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tsql/catalogue.h"
#include "tsql/type.h"

// What the compiler makes of a batch: a list of steps for a small interpreter that owns an SQLite connection.
// All texts are SQLite's dialect with parameters ?1, ?2, ...; they call the functions `ts_...` of functions.h and the
// collations TSQL, TSQL_DECIMAL and TSQL_GUID.
namespace tolvane::tsql {

// Where the interpreter takes the value of one SQLite parameter from.
struct Parameter {
  enum class Source {
    Literal,        // number `index` of ShapedBatch::literals
    Variable,       // slot `index` of Program::variables
    Placeholder,    // number `index` of the command's "?" parameters
    RowCount,       // @@ROWCOUNT of the statement before
    Error,          // @@ERROR of the statement before
    TranCount,      // @@TRANCOUNT
    Identity,       // @@IDENTITY: decimal(38,0) text or null
    ScopeIdentity,  // SCOPE_IDENTITY(): the same in this engine, which has no triggers
    Fetch,          // @@FETCH_STATUS
    CaughtNumber,   // ERROR_NUMBER() and the others: of the error that brought the program to the CATCH block around;
    CaughtMessage,  // null elsewhere
    CaughtSeverity,
    CaughtState,
    CaughtLine,
    CaughtProcedure,
    XactState,  // XACT_STATE()
    DateFirst,  // @@DATEFIRST
    RowColumn,  // column `index` of the row that AssignStep::forRow is run for
  };
  Source source = Source::Literal;
  int index = 0;
  Type from;  // type of the value as it comes
  // Where it differs from `from`, the interpreter converts the value with convert() before binding it (once a statement
  // instead of once a row). The error, if any, is that statement's error.
  Type to;
  // "table.column" when the value goes into that column: assign() takes the place of convert().
  std::string column = {};

  bool operator==(const Parameter&) const = default;
};

// One SQLite statement with its parameters; parameters[0] is ?1.
struct Statement {
  std::string text;
  std::vector<Parameter> parameters;
};

struct ResultColumn {
  std::string name;  // empty for an expression without alias
  Type type;
  std::string table;   // the table and column that a plain column comes from, as the catalogue spells them;
  std::string column;  // empty for an expression
  bool identity = false;
};

// For a query whose rows are rows of one table (no join, DISTINCT, GROUP BY, aggregate, set operation, view): the same
// rows in the same order and the same columns with SQLite's row number as one more column at the end, so that a record
// set can change, delete and re-read its rows.
struct RowSource {
  std::string table;  // the catalogue's spelling
  std::string textWithRow;
  // The same, with NULL in the place of every long column (text, ntext, image, max), which the record set reads by row
  // number when it is asked for. Equal to textWithRow where there is no long column.
  std::string textWithoutLong;
  // Parameters are those of the query.
};

struct Query {
  Statement statement;
  std::vector<ResultColumn> columns;
  std::optional<RowSource> rows;
};

// A SELECT whose rows go to the caller.
struct QueryStep {
  Query query;
};

// INSERT, UPDATE, DELETE, SELECT INTO (the filling), TRUNCATE. All statements succeed or none does.
struct ExecuteStep {
  enum class Verb { Insert, Update, Delete };
  Verb verb = Verb::Insert;
  std::string table;  // the catalogue's spelling
  std::vector<Statement> statements;
  int counted = 0;             // which statement's changed rows are @@ROWCOUNT; -1: not counted
  bool setsIdentity = false;   // the table has an identity column: @@IDENTITY becomes the last row number inserted
  bool checksKeys = false;     // foreign keys may fail: error 547
  bool truncates = false;      // refused where foreign keys refer to the table
  bool oneRow = false;         // one statement that adds one row: SQLite itself makes it whole or not at all
  bool makesIdentity = false;  // the engine makes the identity values, which have to be written down with the rows
  // What SET IDENTITY_INSERT must be for the table: ON where the statement gives the values, OFF where it does not.
  enum class GivesIdentity { Anyhow, Yes, No };
  GivesIdentity givesIdentity = GivesIdentity::Anyhow;
};

// A row of the query stands against a definition.
struct Refusal {
  Statement query;
  int number = 0;
  std::string message;
};

// The text that makes a table gets another one in SQLite's schema; its rows stay as they are stored.
struct Redefinition {
  std::string table;
  bool temporary = false;
  std::string text;
};

// CREATE, ALTER, DROP: what stands against it is looked for first, then come the parts in their order. The catalogue is
// read anew afterwards.
struct DdlStep {
  std::vector<Refusal> refusals;
  std::vector<Statement> preparations;
  std::vector<Redefinition> redefinitions;
  std::vector<Statement> statements;
  std::string verb;  // for messages about the rows that are there: ALTER TABLE; empty: CREATE UNIQUE INDEX
  // Of a unique index, for the message when the rows that are there do not allow it.
  std::string table;
  std::string index;
  std::vector<std::string> dropped;  // tables that go; refused where foreign keys refer to one of them
};

// Goes to step `target` unless the query's only value is 1.
struct JumpUnlessStep {
  Query condition;
  int target = 0;
};

struct JumpStep {
  // Targets that are no steps. The last two stand in deferred statements only, whose loop is outside of them.
  static constexpr int endOfBatch = -1;
  static constexpr int breakOuter = -2;
  static constexpr int continueOuter = -3;
  // And below: the step of a label that may stand in the program around, which the interpreter looks up.
  static constexpr int firstLabel = -4;
  static constexpr int toLabel(int number) { return firstLabel - number; }
  static constexpr int labelOf(int target) { return firstLabel - target; }
  int target = 0;  // may be steps.size()
};

// SET @x = ..., SELECT @x = ..., DECLARE @x ... = ...: column i of the query goes to variable slots[i]; the values are
// of the variable's type already. Several rows: the last one. No row: the variables stay as they are.
//
// Where a value depends on what the row before it assigned (SELECT @s = @s + c), `forRow` is not empty: then each row
// of the query is read in turn, and for each of them statement i of `forRow` gives the value of variable slots[i], with
// the variables as they are by then and the row's columns as parameters.
struct AssignStep {
  Query query;
  std::vector<int> slots;
  std::vector<Statement> forRow;
};

// The text of the query's only value is the message. A null prints nothing.
struct PrintStep {
  Query query;
};

struct TransactionStep {
  enum class Verb { Begin, Commit, Rollback, Save };
  Verb verb = Verb::Begin;
  std::string name;  // as written, or ...
  Query query;       // ... the only value of the query, where it has a text
};

// The error is raised when the step is reached.
struct ErrorStep {
  int number = 0;
  std::string message;
};

// RAISERROR: the query's three values are message, severity and state; severity above 10 is error 50000, otherwise a
// message.
struct RaiseStep {
  Query query;
  bool setsError = false;  // @@ERROR is 50000 even after a message
  bool logs = false;       // severities above 18 are allowed
  // The number of a message in the place of the message itself.
  bool numbered = false;
};

// THROW: the query's values are number, message and state. Without a query: the error that the CATCH block around has
// caught, once more.
struct ThrowStep {
  std::optional<Query> query;
};

// EXEC of a text: the query's first value. With `parameters` (sp_executesql) the second one declares parameters, and
// the others are their values.
struct RunTextStep {
  struct Argument {
    std::string name;  // empty: by position
    Type type;
    int slot = notOutput;  // the variable that takes the value back
  };
  static constexpr int notOutput = -1;
  Query query;
  bool parameters = false;
  std::vector<Argument> arguments;
};

// DECLARE, OPEN, FETCH INTO, CLOSE, DEALLOCATE of a cursor. The query is that of DECLARE, or the number of an ABSOLUTE
// or RELATIVE one.
struct CursorStep {
  enum class Verb { Declare, Open, Close, Deallocate, Next, Prior, First, Last, Absolute, Relative };
  Verb verb = Verb::Declare;
  std::string name;
  Query query;
  std::vector<std::string> reads;  // tables of the query
  std::vector<int> slots;          // variables of INTO
  bool keeps = false;              // STATIC
  bool forward = false;            // NEXT only
  bool local = false;              // ends with the batch
};

// SET NOCOUNT ON and others that only have to be accepted; the name is in capitals ("NOCOUNT").
struct OptionStep {
  std::string name;
  bool on = false;
  Query query = {};          // its value, where it has one: a text that is not empty
  std::string table = {};    // of IDENTITY_INSERT, the catalogue's spelling ...
  std::string written = {};  // ... and as it was written
};

// A statement that names tables which did not exist, or may have changed, when the batch was compiled: it is compiled
// with compileDeferred() when it is reached, and the steps found are run in its place.
struct DeferredStep {
  int firstToken = 0;
  int endToken = 0;
  // Inside a loop: where BREAK and CONTINUE among its own steps go to, as JumpStep::target.
  static constexpr int noLoop = -1;
  int breakTo = noLoop;
  int continueTo = noLoop;
};

using StepBody =
    std::variant<QueryStep, ExecuteStep, DdlStep, JumpUnlessStep, JumpStep, AssignStep, PrintStep, TransactionStep,
                 ErrorStep, RaiseStep, ThrowStep, OptionStep, RunTextStep, CursorStep, DeferredStep>;

struct Step {
  int line = 1;  // where the statement begins in the batch
  StepBody body;
};

struct Variable {
  std::string name;  // with the '@', as declared
  Type type;         // starts as null
  int token = 0;     // where it is declared
};

// A TRY block with its CATCH block, as ranges of steps: an error of a step in [tryBegin, tryEnd) goes to catchBegin, if
// no narrower range holds the step. The error is what the steps of [catchBegin, catchEnd) are told of.
struct Handler {
  int tryBegin = 0;
  int tryEnd = 0;
  int catchBegin = 0;
  int catchEnd = 0;
};

// DECLARE @t TABLE: a table in SQLite's temp schema under the name with the '@'. It is there, empty, when the batch
// begins.
struct TableVariable {
  std::shared_ptr<const Table> table;
  std::vector<std::string> definition;  // statements that make it
  int token = 0;                        // where it is declared
};

// A label of the batch. The step is unknown in the programs of deferred statements that it stands outside of.
struct Label {
  static constexpr int elsewhere = -1;
  std::string name;
  int step = elsewhere;
  std::vector<int> blocks;  // the TRY and CATCH blocks around it, by their first tokens
};

struct Program {
  std::vector<Step> steps;
  std::vector<Handler> handlers;
  std::vector<TableVariable> tableVariables;
  std::vector<Label> labels;
  std::vector<Variable> variables;
  std::vector<int> structuralLiterals;  // literals whose value or width the program depends on, for structuralKey()
  std::vector<std::string> tablesRead;  // the catalogue's spelling, each once, deferred statements left out
  std::vector<std::string> tablesWritten;
  int placeholders = 0;      // number of "?" in the text
  bool returnsRows = false;  // some step is a QueryStep (or deferred and may be one)
};

}  // namespace tolvane::tsql
