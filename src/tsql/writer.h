#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/catalogue.h"
#include "tsql/compiler.h"
#include "tsql/program.h"
#include "tsql/sqlite_text.h"
#include "tsql/tree.h"
#include "tsql/type_rules.h"

namespace tolvane::tsql {

// A column that a name can mean: of a table, a derived table or a common table expression.
struct SourceColumn {
  std::string name;
  Type type;
  std::string sql;    // as SQLite text refers to it
  std::string table;  // the table's column behind it, where it is a plain one
  std::string column;
  bool identity = false;
};

// SQLite text of a value, with its T-SQL type.
struct Typed {
  std::string sql;
  Type type;
  int literal = -1;                      // it is just this literal
  int parameter = -1;                    // it is just this parameter of the statement being written
  int digitsOf = -1;                     // it is just this literal with a minus before it
  bool subquery = false;                 // a sub-query is part of it
  char chain = '\0';                     // the operator of a call or a concatenation that may take one operand more ...
  int chained = 0;                       // ... and how many further ones it has taken
  const SourceColumn* column = nullptr;  // it is just this column
};

// One entry of a FROM list.
struct Source {
  std::string name;        // what qualifies its columns: alias or table name
  bool renamed = false;    // it has an alias
  std::string objectName;  // the same in messages about groups: the table as written, whatever its alias
  std::string sqlAlias;
  const Table* table = nullptr;
  // Of a query whose rows are rows of a table: that table. The text has the row number as one column more, `rowid`.
  const Table* base = nullptr;
  std::string schema;     // what a name may put before the table's; empty where nothing may stand there
  bool computed = false;  // its columns are no columns of a table in SQLite's FROM
  std::vector<SourceColumn> columns;
  bool partial = false;  // a table of the catalogue that has more columns on SQL Server
};

// The names that an expression may use. Scopes of sub-queries point to the one around them.
struct Scope {
  std::vector<Source> sources;
  Scope* parent = nullptr;
  std::size_t firstVisible = 0;  // while an ON clause is read: the sources of its join
  // Aggregation of this query.
  bool aggregatesAllowed = false;
  bool aggregated = false;
  int insideAggregate = 0;
  int insideGroupKey = 0;
  int insideWindow = 0;
  bool windowed = false;  // a windowed function was written
  const std::vector<tree::ExpressionPtr>* groupKeys = nullptr;
  // One of several groupings: which of the keys it does not group by. They are null in its rows.
  std::vector<bool> emptyKeys;
  // Of a query with several groupings: what its ORDER BY sorts by, written in each of them.
  std::vector<std::pair<const tree::Expression*, Typed>> orderValues;
  bool aggregatesOutside = false;  // an aggregate of a query around this one was written
  bool usedInside = false;         // a sub-query named one of its columns
  bool rowCount = false;           // the expression of a TOP, whose query is the scope around it
  enum class Clause { Select, On, Set, GroupBy, Having, OrderBy };
  Clause clause = Clause::Select;       // which one is being written
  std::string ungrouped;                // the first column that stands neither in an aggregate nor in a group key ...
  Clause ungroupedIn = Clause::Select;  // ... and where it stands
  void setUngrouped(std::string column) {
    // HAVING is judged first.
    const bool first = ungrouped.empty() || (clause == Clause::Having && ungroupedIn == Clause::Select);
    if (!first) return;
    ungrouped = std::move(column);
    ungroupedIn = clause;
  }
  // A derived table does not see its neighbours, but does see the scopes around the whole query.
  const std::map<std::string, const struct CommonTableText*>* commonTables = nullptr;
};

// One output column of a query being written.
struct Output {
  Typed value;
  const tree::Expression* expression = nullptr;  // what was written, where it was not `*`
  std::string name;
  std::string table;
  std::string column;
  bool identity = false;
};

// A query that has been bound and typed, but not yet put together: what is common to its branches may change its
// columns.
struct BoundBody {
  tree::SetOperator operation = tree::SetOperator::None;
  int token = 0;
  std::unique_ptr<BoundBody> left;
  std::unique_ptr<BoundBody> right;
  // operation None:
  bool distinct = false;
  std::vector<Output> outputs;
  std::string tail;   // FROM ... HAVING ...
  std::string from;   // its beginning: " FROM ..." ...
  std::string where;  // ... and the condition behind it
  std::string limit;  // TOP: a number of rows, or of percents
  bool percent = false;
  bool ties = false;
  bool singleRow = false;
  const Table* updatable = nullptr;      // its rows are rows of this table ...
  std::string rowAlias;                  // ... known by this name
  std::vector<std::vector<Typed>> rows;  // a VALUES list
};

// One item of an ORDER BY list.
struct OrderKey {
  std::size_t position = 0;  // of the output column, from 1; 0: none
  std::string sql;
  std::string suffix;  // collation and direction
  std::string text() const { return (position > 0 ? std::to_string(position) : sql) + suffix; }
};

struct BoundQuery {
  std::unique_ptr<BoundBody> body;
  std::vector<OrderKey> order;
  std::string page;             // OFFSET and FETCH
  std::vector<Output> outputs;  // with the types that all branches are converted to
  std::unique_ptr<Scope> scope;
};

// A common table expression: the text stands where its name is used.
struct CommonTableText {
  std::string name;
  std::string sql;
  std::vector<SourceColumn> columns;  // `sql` is c1, c2, ...
  const Table* base = nullptr;        // its rows are rows of this table, and it has their numbers
  // While its recursive part is written: its name in SQLite, how often it was read, and as what.
  std::string recursion;
  int uses = 0;
  std::string usedAs;
};

// A table of the statement does not exist: the statement is left for later.
struct UnknownTable {
  std::string name;
  int token = 0;
};

// Writes the SQLite text of expressions and queries of one batch. The changing statements, definitions and control flow
// are written by Compiler on top of it.
class Writer {
 public:
  Writer(const ShapedBatch& batch, const Catalogue& catalogue, Program& program, const CompileOptions& options)
      : batch_(batch), catalogue_(catalogue), program_(program), options_(options) {}

  // How a value is brought to another type.
  enum class When {
    Early,  // a literal is converted when it is bound, once a statement
    Late,   // only when the row needs it (branches of CASE)
  };

  // Expressions (expression_writer.cpp).
  Typed expression(const tree::Expression& expression, Scope* scope);
  std::string condition(const tree::Expression& expression, Scope* scope);
  // @x op= value
  Typed compound(const std::string& operation, const std::string& variable, const tree::Expression& value, int token);
  // column op= value
  Typed compoundColumn(const std::string& operation, const std::string& table, const std::string& column,
                       const tree::Expression& value, Scope* scope, int token);
  Typed convert(Typed value, const Type& to, When when = When::Early);
  // `tries`: what does not convert is null.
  Typed convertExplicitly(Typed value, const Type& to, const std::string& style, bool tries = false);
  // A value for a column of a table, as an INSERT or UPDATE puts it there.
  // `verb` is for messages, where it is not INSERT.
  std::string assign(const Typed& value, const Table& table, const Column& column, std::string_view verb = {});
  // The same for a row that is inserted whatever happens: a literal is made ready before it is bound, once a statement.
  std::string assignInserted(const Typed& value, const Table& table, const Column& column);
  std::string assignTo(const Typed& value, const Type& to, const std::string& name, std::string_view verb = {});
  static std::string collation(const Type& type);                         // " COLLATE ..." or empty
  static std::string compared(const std::string& sql, const Type& type);  // a value as it is compared and sorted

  // For the queries that are bound until the next statement, or until the query that they belong to is.
  void defineCommonTables(const std::vector<tree::CommonTable>& tables, int maxRecursion);
  // While set, queries in FROM keep the numbers of their table's rows, so that these can be changed.
  void keepRows(bool on) { keepsRows_ = on; }

  // Queries (query_writer.cpp).
  BoundQuery bind(const tree::Query& query, Scope* parent, bool subquery);
  // `aliases`: output columns are named c1, c2, ...; `extra` is put after the columns of a single SELECT.
  std::string render(const BoundQuery& query, bool aliases, std::string_view extra = {}, bool withoutLong = false);
  static constexpr std::size_t none = static_cast<std::size_t>(-1);
  // All of the list but one, if so wished.
  std::string from(const std::vector<tree::TableReferencePtr>& references, Scope& scope, std::size_t leftOut = none);
  bool addTable(const tree::TableReference& reference, Scope& scope, std::string& text);
  bool isOwnDatabase(std::string_view database) const;
  void checkDatabase(const std::string& database, const std::string& schema, const std::string& name, int token) const;
  void readTable(const Table& table);
  const Table* findTable(const std::string& schema, const std::string& name, int token) const;
  const Table* tableVariable(const std::string& name, int token) const;
  Query finishQuery(const BoundQuery& query);
  // All columns of a query's tables for its rows, in its order; what the query selects is left to be evaluated for each
  // row. Begins the next statement, in which the names of `scope` are parameters (Parameter::Source::RowColumn).
  Query bindRows(const tree::Query& query, Scope& scope);

  // Of a TOP, for a LIMIT; `greatest` is what ts_top wants to know.
  std::string rowCount(Typed value, int greatest, int token);

  // Statements: parameters are collected while text is written, and numbered anew when the text is complete.
  void beginStatement() {
    parameters_.clear();
    inline_ = false;
    // A statement that was left in the middle, because a table is missing, leaves its own behind.
    commonTables_.clear();
  }
  Statement finish(std::string_view text) const;
  std::string addParameter(const Parameter& parameter);

  // While one lives, literals are written into the text (definitions have no parameters) and become structural.
  class InlineLiterals {
   public:
    explicit InlineLiterals(Writer& writer) : writer_(writer) { writer_.inline_ = true; }
    ~InlineLiterals() { writer_.inline_ = false; }
    InlineLiterals(const InlineLiterals&) = delete;
    InlineLiterals& operator=(const InlineLiterals&) = delete;

   private:
    Writer& writer_;
  };
  void structural(int literal);
  [[noreturn]] void fail(int token, Message message, std::initializer_list<std::string_view> inserts = {}) const;
  [[noreturn]] void fail(int token, int number, std::string message) const;
  [[noreturn]] void refuse(int token, std::string_view what) const;
  // The type of a text literal becomes as wide as the text.
  void measure(Typed& value);
  std::string written(int token) const;  // a word as it stands in the batch
  int variableSlot(const std::string& name, int token) const;
  std::string nextAlias() { return "t" + std::to_string(++aliases_); }
  const ShapedBatch& batch() const { return batch_; }
  const std::string& database() const { return options_.database; }
  const Catalogue& catalogue() const { return catalogue_; }
  Program& program() { return program_; }

 private:
  Typed literal(const tree::Expression& expression);
  Typed variable(const tree::Expression& expression);
  Typed column(const tree::Expression& expression, Scope* scope);
  Typed unary(const tree::Expression& expression, Scope* scope);
  Typed binary(const tree::Expression& expression, Scope* scope);
  Typed combine(const tree::Expression& expression, Typed left, Typed right);
  Typed arithmetic(const tree::Expression& expression, Typed left, Typed right);
  Typed caseOf(const tree::Expression& expression, Scope* scope);
  Typed cast(const tree::Expression& expression, Scope* scope);
  Typed call(const tree::Expression& expression, Scope* scope);
  std::optional<Typed> toldByInterpreter(const tree::Expression& expression);
  Typed writtenOut(const tree::Expression& expression, Scope* scope);
  Typed aggregate(const tree::Expression& expression, Scope* scope);
  Typed aggregateOf(const tree::Expression& expression, Scope* scope);
  Scope* beginAggregate(const tree::Expression& expression, Scope* scope);
  static bool isMoving(const tree::Expression& expression);
  static bool isWindowFunction(std::string_view name);
  Scope* ownerOf(const tree::Expression& aggregate, Scope* scope) const;
  Scope* scopeOf(const tree::Expression& column, Scope* scope) const;
  Typed grouping(const tree::Expression& expression, Scope* scope);
  Typed windowed(const tree::Expression& expression, Scope* scope);
  void checkWindow(const tree::Expression& expression, Scope* scope) const;
  Typed windowFunction(const tree::Expression& expression, Scope* scope);
  Typed neighbour(const tree::Expression& expression, Scope* scope);
  std::string windowOrder(const tree::Expression& expression, Scope* scope);
  std::string frameText(const tree::Expression& expression) const;
  bool isConstant(const tree::Expression& expression) const;
  Typed joinedText(const tree::Expression& expression, Scope* scope);
  Typed scalarSubquery(const tree::Expression& expression, Scope* scope);
  std::vector<Typed> asTexts(const tree::Expression& call, std::vector<Typed> values);
  Typed joined(const tree::Expression& call, std::vector<Typed> values);
  Typed chosen(const tree::Expression& call, std::vector<Typed> values);
  Typed extreme(const tree::Expression& call, std::vector<Typed> values);
  [[noreturn]] void failOfUnknownFunction(const tree::Expression& call) const;
  Typed conditional(std::vector<std::pair<std::string, Typed>> branches, Typed otherwise);
  Typed decimalOperand(Typed value);
  std::string argument(const tree::Expression& call, std::size_t index, int code, Scope* scope, Typed& value);
  std::string compare(std::string_view op, Typed left, Typed right, int token);
  void comparable(const Type& type, int token) const;
  [[noreturn]] void invalidArgument(const tree::Expression& call, std::size_t index, const Type& type) const;
  void narrow(const tree::Expression& call, const std::vector<Typed>& values, Type& type);
  void refuseNegativeLength(const tree::Expression& call);
  std::string fullName(const Table& table) const;
  Type commonTypeOf(const std::vector<const Typed*>& values);
  Type numericLiteral(int literal) const;
  std::string inQuery(const tree::Expression& expression, Scope* scope);
  std::string quantified(const tree::Expression& expression, Scope* scope);
  std::string like(const tree::Expression& expression, Scope* scope);
  bool isGroupKey(const tree::Expression& expression, const Scope& scope) const;
  bool sameExpression(const tree::Expression& a, const tree::Expression& b) const;

  std::unique_ptr<BoundBody> bindBody(const tree::QueryBody& body, const tree::Query& query, Scope& scope,
                                      Scope* parent);
  std::unique_ptr<BoundBody> bindSelect(const tree::Select& select, const tree::Query& query, Scope& scope,
                                        bool unordered);
  std::unique_ptr<BoundBody> bindGroupings(const tree::Select& select, const tree::Query& query, Scope& scope);
  std::vector<bool> keysLeftOut(const tree::Select& select, const std::vector<int>& grouping) const;
  bool bindParts(const tree::Select& select, Scope& scope, BoundBody& body, bool unordered);
  std::string orderValues(const tree::Query& query, Scope& branch, const BoundBody& part);
  std::string orderOfGroups(const tree::Select& select, Scope& branch, std::string& order);
  struct BoundSemiJoin {
    std::string from;
    std::string where;
  };
  std::optional<BoundSemiJoin> boundSemiJoin(const tree::Select& select, Scope& scope);
  std::unique_ptr<BoundBody> bindValues(const tree::Select& select, Scope* parent);
  void bindItems(const tree::Select& select, Scope& scope, BoundBody& body);
  void expandStar(const tree::SelectItem& item, Scope& scope, BoundBody& body);
  void bindGroups(const tree::Select& select, Scope& scope, std::string& text);
  void defineRecursive(const tree::CommonTable& table, int maxRecursion);
  void checkRecursivePart(const tree::CommonTable& table, const tree::QueryBody& body) const;
  void nameColumns(const tree::CommonTable& table, const std::vector<Output>& outputs, CommonTableText& text) const;
  void bindOffset(const tree::Query& query, BoundQuery& bound);
  void bindOrder(const tree::Query& query, BoundQuery& bound);
  void checkOrderOfSet(const tree::Expression& key, const BoundQuery& bound) const;
  std::string limitOf(const tree::Select& select, Scope& scope);
  int keyOf(const tree::Expression& expression, const Scope& scope) const;
  void makeKey(Typed& value, const Scope& scope, int key) const;
  void checkDistinct(const tree::Select& select, const BoundBody& body) const;
  bool prefixFits(const std::string& prefix, const Source& source) const;
  [[noreturn]] void failInGroupKey(int token) const;
  [[noreturn]] void failWithoutOrder(int token) const;
  [[noreturn]] void failConstantOrder(int token, std::size_t before) const;
  std::vector<Output> unify(BoundBody& body);
  void convertOutputs(BoundBody& body, const std::vector<Output>& outputs);
  std::string renderBody(const BoundBody& body, const BoundQuery& query, bool aliases, bool top, bool collated,
                         std::string_view extra, bool withoutLong);
  std::string renderPart(const BoundBody& body, const BoundQuery& query, bool aliases);
  std::string renderSelect(const BoundBody& body, bool aliases, bool collated, std::string_view extra,
                           bool withoutLong);
  std::string joinText(const tree::TableReference& reference, Scope& scope, std::size_t firstVisible);
  void makeNullable(Scope& scope, std::size_t first, std::size_t end, int token) const;
  std::string derived(const tree::TableReference& reference, Scope& scope);
  std::string applied(const tree::TableReference& reference, Scope& scope, std::size_t first);
  std::string appliedText(const tree::TableReference& reference, Scope& scope, Source& source);
  std::string appliedRows(const BoundBody& body, Source& source);
  std::string appliedTop(const tree::TableReference& reference, Scope& scope, const BoundQuery& query, Source& source);
  std::string appliedQuery(const tree::TableReference& reference, const BoundQuery& query, Source& source);
  void nameColumns(const tree::TableReference& reference, const std::vector<Output>& outputs, Source& source) const;
  void addSource(Source source, int token, Scope& scope);
  bool addCommonTable(const tree::TableReference& reference, Scope& scope, std::string& text);
  bool addSystemTable(const tree::TableReference& reference, Scope& scope, std::string& text);

  const ShapedBatch& batch_;
  const Catalogue& catalogue_;
  Program& program_;
  const CompileOptions& options_;
  std::vector<Parameter> parameters_;
  std::vector<std::vector<std::unique_ptr<CommonTableText>>> commonTables_;
  int aliases_ = 0;
  bool inline_ = false;
  bool keepsRows_ = false;
};

}  // namespace tolvane::tsql
