#pragma once

#include <string>
#include <vector>

#include "tsql/table_text.h"
#include "tsql/writer.h"

namespace tolvane::tsql {

// Turns the statements of a batch into the steps of a program.
class BatchCompiler {
 public:
  BatchCompiler(const ShapedBatch& batch, const Catalogue& catalogue, Program& program, const CompileOptions& options)
      : batch_(batch), catalogue_(catalogue), program_(program), writer_(batch, catalogue, program, options) {}

  // Gives every variable of the statements its slot or table, every label its number, and judges the jumps.
  void declareNames(const std::vector<tree::StatementPtr>& statements);
  void compileBatch(const std::vector<tree::StatementPtr>& statements);
  void compileAll(const std::vector<tree::StatementPtr>& statements);
  // One statement whose tables must be there now.
  void compileReached(const tree::StatementNode& statement, bool insideLoop);

 private:
  struct Loop {
    int begin = 0;
    std::vector<int> breaks;  // steps to be sent behind the loop
  };

  void collectNames(const std::vector<tree::StatementPtr>& statements, std::vector<int>& blocks);
  void declareVariable(const tree::Declaration& declaration);
  void declareLabel(const tree::StatementNode& node, const std::vector<int>& blocks);
  void checkJump(const tree::StatementNode& node, const std::vector<int>& blocks) const;
  void checkLabels() const;
  int labelNumber(const std::string& name) const;
  void noteTemporaryTable(const tree::StatementNode& node);
  void statement(const tree::StatementNode& node, bool reached);
  void dispatch(const tree::StatementNode& node);
  /// Steps mostly come in the order of the text, so the lines are counted on from the last one.
  int lineAt(int token);
  int add(const tree::StatementNode& node, StepBody body);
  int next() const { return static_cast<int>(program_.steps.size()); }
  void sendTo(int step, int target);
  void error(const tree::StatementNode& node, const SqlError& error);
  void written(const Table& table);

  // Control flow (batch_compiler.cpp).
  void conditional(const tree::StatementNode& node);
  void loop(const tree::StatementNode& node);
  void leaveLoop(const tree::StatementNode& node);
  void declare(const tree::StatementNode& node);
  void assignVariable(const tree::StatementNode& node, const std::string& name, const tree::Expression& value,
                      const std::string& operation, int token);
  void select(const tree::StatementNode& node);
  void selectVariables(const tree::StatementNode& node, const tree::Select& select);
  void selectInTurn(const tree::StatementNode& node, const tree::Select& select);
  [[noreturn]] void failMixed(int token) const;
  void selectRowByRow(const tree::StatementNode& node, AssignStep step);
  void print(const tree::StatementNode& node);
  void raise(const tree::StatementNode& node);
  std::string formattedMessage(const tree::StatementNode& node);
  void throwError(const tree::StatementNode& node);
  void tryCatch(const tree::StatementNode& node);
  void transaction(const tree::StatementNode& node, TransactionStep::Verb verb);
  void option(const tree::StatementNode& node);
  void runText(const tree::StatementNode& node);
  void cursor(const tree::StatementNode& node);
  void checkCursorItems(const tree::Select& select) const;
  int conditionStep(const tree::StatementNode& node, const tree::Expression& condition);

  // Changes (change_compiler.cpp).
  void insert(const tree::StatementNode& node);
  void update(const tree::StatementNode& node);
  void remove(const tree::StatementNode& node);
  void truncate(const tree::StatementNode& node);
  const Table& changedTable(const tree::TableName& name) const;
  std::vector<int> insertColumns(const tree::StatementNode& node, const Table& table);
  std::string insertValues(const tree::Select& select, const Table& table, const std::vector<int>& columns);
  std::string insertQuery(const tree::Query& query, const Table& table, const std::vector<int>& columns);
  void checkCount(const tree::StatementNode& node, const Table& table, std::size_t given, std::size_t wanted) const;
  struct Target {
    const Table* table = nullptr;
    std::string alias;
    std::string from;  // FROM text with the target in it
    bool joined = false;
    std::string name;                   // as expressions call it
    std::vector<SourceColumn> columns;  // of a query in the place of a table
  };
  void takeSource(const tree::StatementNode& node, const Source& source, Target& target) const;
  int assignedColumn(const tree::Assignment& assignment, const Target& target) const;
  Target target(const tree::StatementNode& node, Scope& scope);
  void updateInTwoPasses(const tree::StatementNode& node, const Table& table, const std::vector<int>& columns,
                         const std::string& rows);

  // Definitions (definition_compiler.cpp).
  void selectInto(const tree::StatementNode& node, const tree::Select& select);
  // A table that is made or altered: as it will be, its text in SQLite, and what has to be done besides.
  struct Definition {
    Table table;
    TableText text;
    DdlStep step;
    std::vector<Statement> keys;        // made when the table has its text
    const Table* before = nullptr;      // as it is, of one that is altered
    bool unchecked = false;             // WITH NOCHECK
    std::vector<std::string> names;     // of constraints, so far
    std::vector<Redefinition> parents;  // of foreign keys
    bool makesIdentity = false;
  };
  void createTable(const tree::StatementNode& node);
  Definition definitionOf(const tree::StatementNode& node);
  void createIndex(const tree::StatementNode& node);
  void dropTable(const tree::StatementNode& node);
  void dropIndex(const tree::StatementNode& node);
  std::string defaultText(const tree::Expression& value, const Table& table, const Column& column);
  static bool isRowNumber(const tree::StatementNode& node, const tree::ColumnDefinition& definition);
  Column columnOf(const tree::ColumnDefinition& definition) const;
  Table tableOf(const tree::StatementNode& node) const;
  void defineColumn(Definition& whole, const tree::ColumnDefinition& definition);
  void checkIdentity(const Definition& whole, const tree::ColumnDefinition& definition, const Column& column) const;

  // Constraints (constraint_compiler.cpp).
  void addConstraints(Definition& whole, const tree::StatementNode& node);
  void addConstraint(Definition& whole, const tree::Constraint& constraint, std::string_view ofColumn);
  void addKey(Definition& whole, const tree::Constraint& constraint, std::vector<tree::KeyColumn> columns);
  void addCheck(Definition& whole, const tree::Constraint& constraint, std::string_view ofColumn);
  void addForeignKey(Definition& whole, const tree::Constraint& constraint, std::string_view ofColumn);
  void addDefault(Definition& whole, const tree::Constraint& constraint, std::string_view ofColumn);
  bool isObject(const std::string& name) const;
  static bool isOwnSchema(std::string_view schema) { return schema.empty() || sameName(schema, "dbo"); }
  bool isOwn(const tree::TableName& name) const;
  bool canMake(const tree::StatementNode& node, const tree::TableName& name);
  std::string nameFor(Definition& whole, const tree::Constraint& constraint, std::string_view kind,
                      std::string_view column);
  std::string place(const Table& table, const std::vector<std::string>& columns) const;
  std::string checkText(const tree::Expression& condition, const Table& table);
  void checkReferenced(const tree::Constraint& constraint, const std::string& name, const Table& target,
                       const std::vector<int>& columns) const;
  void checkPair(const tree::Constraint& constraint, const std::string& name, const Table& table, const Column& column,
                 const Column& referenced) const;
  void checkActions(const tree::Constraint& constraint, const std::string& name, const Table& table,
                    const std::vector<int>& columns, const Table& target) const;
  void compareAs(Definition& whole, const Table& target, const Column& column);
  std::string nullIndex(const std::string& name, const Table& table, const std::vector<int>& columns) const;
  std::vector<int> ordinals(const std::vector<tree::KeyColumn>& keys, const Table& table, int token) const;
  std::string keyText(const std::vector<tree::KeyColumn>& keys, const Table& table, int token) const;

  // ALTER TABLE (alter_compiler.cpp).
  void alterAdd(const tree::StatementNode& node);
  void fillColumn(Definition& whole, const tree::StatementNode& node, const tree::ColumnDefinition& definition);
  static void writeOut(Definition& whole, const std::string& column);
  void alterDrop(const tree::StatementNode& node);
  void dropConstraint(Definition& whole, const tree::DropItem& item);
  void dropColumn(Definition& whole, const tree::DropItem& item);
  void alterColumn(const tree::StatementNode& node);
  void checkUnused(const Definition& whole, const Column& column, int token) const;
  void checkUnreferenced(const Definition& whole, const Index& key, int token) const;
  Definition altered(const Table& table) const;
  static DdlStep finish(Definition whole);

  const ShapedBatch& batch_;
  const Catalogue& catalogue_;
  Program& program_;
  Writer writer_;
  std::size_t countedTo_ = 0;  // so far the text has line_ - 1 line ends
  int line_ = 1;
  std::vector<Loop> loops_;
  std::vector<std::pair<const tree::StatementNode*, std::vector<int>>> jumps_;  // with the handlers around them
  bool insideLoop_ = false;                   // the statement stands in a loop that is compiled already
  std::vector<std::string> temporaryTables_;  // that statements of the batch make
  bool textSeen_ = false;                     // the same by a text that the batch runs
  bool definitionsSeen_ = false;              // the catalogue may have changed since the batch was compiled
};

// "temp." for a temporary table.
std::string schemaOf(const Table& table);
// A value that a row brings along for an identity column whose values the engine makes.
std::string givenIdentity(const std::string& sql, std::string_view table, const Column& column);

}  // namespace tolvane::tsql
