#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/compiler.h"
#include "tsql/tree.h"

namespace tolvane::tsql {

// Makes the tree of a batch, or of one statement of it. Throws SqlError (102, 156 and the like) at the first token that
// does not fit. `structural` collects the literals whose value the tree holds.
class Parser {
 public:
  Parser(const ShapedBatch& batch, std::vector<int>& structural) : batch_(batch), structural_(structural) {}

  // All statements up to the end of the text.
  std::vector<tree::StatementPtr> parseBatch();
  // The statement that begins at a token.
  tree::StatementPtr parseStatementAt(int token);
  // Declarations of parameters up to the end of the text.
  std::vector<FormalParameter> parseParameters();

 private:
  // Tokens.
  const Token& token() const { return batch_.tokens[static_cast<std::size_t>(at_)]; }
  std::string_view text(const Token& token) const { return batch_.text.substr(token.begin, token.end - token.begin); }
  std::string_view here() const { return text(token()); }
  // These are asked several times a token, hence here.
  const Token& peek(int ahead) const {
    return batch_.tokens[std::min(static_cast<std::size_t>(at_ + ahead), batch_.tokens.size() - 1)];
  }
  static bool equalsUpper(std::string_view word, std::string_view capitals);
  bool isWord(std::string_view upper) const { return isWord(0, upper); }
  bool isWord(int ahead, std::string_view upper) const {
    const Token& next = peek(ahead);
    return next.kind == TokenKind::Word && static_cast<std::size_t>(next.end - next.begin) == upper.size() &&
           equalsUpper(text(next), upper);
  }
  bool isOperator(std::string_view symbol) const { return isOperator(0, symbol); }
  bool isOperator(int ahead, std::string_view symbol) const {
    const Token& next = peek(ahead);
    return next.kind == TokenKind::Operator && text(next) == symbol;
  }
  bool isEnd() const { return token().kind == TokenKind::End; }
  bool takeWord(std::string_view upper);
  bool takeOperator(std::string_view symbol);
  void expectWord(std::string_view upper);
  void expectOperator(std::string_view symbol);
  [[noreturn]] void fail() const;
  [[noreturn]] void refuse(std::string_view what) const;
  void refuseNul(std::string_view name) const;
  bool isName() const;
  // A name, but no label, which no statement takes for a part of itself.
  bool isAlias() const { return isName() && !isOperator(1, ":"); }
  std::string name();
  std::string anyName();
  std::string optionalAlias();
  int structuralInteger();
  int takeSignedInteger();
  std::int64_t takeIdentityNumber();

  // Statements (parser_statement.cpp, parser_flow.cpp, parser_option.cpp, parser_definition.cpp).
  tree::StatementPtr statement();
  tree::StatementPtr simpleStatement();
  tree::StatementPtr block();
  tree::StatementPtr conditional();
  tree::StatementPtr loop();
  tree::StatementPtr begin();
  tree::StatementPtr declare();
  tree::StatementPtr set();
  tree::StatementPtr print();
  tree::StatementPtr raiseError();
  tree::StatementPtr transaction(tree::StatementKind kind);
  void transactionName(tree::StatementNode& statement);
  tree::StatementPtr blockOf(int first);
  tree::StatementPtr tryCatch();
  [[nodiscard]] bool beginsThrow() const;
  tree::StatementPtr throwError();
  tree::ExpressionPtr constantOrVariable(bool sign);
  tree::StatementPtr label();
  tree::StatementPtr goTo();
  tree::StatementPtr leaveBatch();
  tree::StatementPtr option();
  tree::StatementPtr isolationLevel();
  tree::StatementPtr statistics();
  tree::StatementPtr valuedOption();
  void declareTable(tree::Declaration& declaration);
  tree::TableName changedTable();
  tree::StatementPtr selectStatement();
  void refuseKnownStatement() const;
  [[nodiscard]] bool isFirstStatement() const;
  tree::StatementPtr procedureCall(bool execute);
  bool procedureArgument();
  tree::StatementPtr runText();
  [[nodiscard]] bool beginsCursor() const;
  tree::StatementPtr declareCursor();
  tree::StatementPtr cursorCommand();
  tree::StatementPtr fetch();
  tree::StatementPtr runTextWithParameters();
  tree::ExpressionPtr textToRun();
  tree::StatementPtr change();
  tree::StatementPtr insert();
  tree::StatementPtr update();
  tree::StatementPtr remove();
  tree::StatementPtr truncate();
  tree::StatementPtr create();
  tree::StatementPtr createTable();
  tree::StatementPtr createIndex(bool unique);
  tree::StatementPtr alter();
  tree::StatementPtr alterColumn(tree::TableName table);
  tree::StatementPtr alterDrop(tree::TableName table);
  void indexOptions();
  tree::StatementPtr drop();
  tree::StatementPtr withQuery();
  void options(tree::Query& query);
  void queryHint(tree::Query& query);
  void bracketed();
  std::vector<tree::Assignment> assignments();
  void fromAndWhere(tree::StatementNode& statement);
  void top(tree::StatementNode& statement);
  void definitionItem(tree::StatementNode& statement);
  tree::ColumnDefinition columnDefinition(int ordinal);
  bool isColumnOption() const;
  bool constraint(tree::Constraint& result);
  void foreignKey(tree::Constraint& result);
  std::vector<tree::KeyColumn> keyColumns();
  std::vector<std::string> nameList();
  tree::TableName tableName();
  [[noreturn]] void invalidLength(int length, int token) const;
  Type type();

  // Queries (parser_query.cpp).
  tree::QueryPtr query();
  std::vector<tree::CommonTable> commonTables();
  void page(tree::Query& query);
  std::unique_ptr<tree::QueryBody> setOperation();
  std::unique_ptr<tree::QueryBody> intersection();
  std::unique_ptr<tree::QueryBody> queryTerm();
  std::unique_ptr<tree::Select> select();
  tree::ExpressionPtr rowCountOfTop();
  void groups(tree::Select& select);
  void groupingItem(tree::Select& select, std::vector<std::vector<int>>& choices);
  std::vector<int> groupingKeys(tree::Select& select);
  int groupingKey(tree::Select& select, tree::ExpressionPtr key);
  tree::SelectItem selectItem();
  std::vector<std::vector<tree::ExpressionPtr>> valueRows();
  std::vector<tree::OrderItem> orderBy();
  std::vector<tree::TableReferencePtr> tableReferences();
  tree::TableReferencePtr joinedTable();
  tree::TableReferencePtr tablePrimary();
  bool joinKind(tree::JoinKind& kind);
  void refuseTableOperators();
  void tableAlias(tree::TableReference& reference);
  void tableHints();
  bool beginsQuery(int ahead) const;
  bool beginsList() const;

  // Expressions (parser_expression.cpp).
  tree::ExpressionPtr condition();
  tree::ExpressionPtr requiredCondition();
  tree::ExpressionPtr asCondition(tree::ExpressionPtr value) const;
  tree::ExpressionPtr conjunction();
  tree::ExpressionPtr negation();
  tree::ExpressionPtr predicate();
  tree::ExpressionPtr predicateTail(tree::ExpressionPtr left);
  tree::ExpressionPtr comparison(tree::ExpressionPtr left);
  tree::ExpressionPtr expression();
  tree::ExpressionPtr term();
  tree::ExpressionPtr unary();
  void collation();
  tree::ExpressionPtr primary();
  tree::ExpressionPtr wordExpression();
  [[noreturn]] void memberOf(const tree::Expression& variable) const;
  tree::ExpressionPtr caseExpression();
  tree::ExpressionPtr immediateIf();
  tree::ExpressionPtr trimExpression();
  tree::ExpressionPtr escapedLiteral();
  tree::ExpressionPtr castExpression();
  tree::ExpressionPtr convertExpression();
  tree::ExpressionPtr call(std::string name);
  void callArguments(tree::Expression& call);
  void window(tree::Expression& call);
  void withinGroup(tree::Expression& call);
  std::unique_ptr<tree::WindowFrame> windowFrame();
  tree::WindowBound windowBound();
  tree::ExpressionPtr columnName();
  tree::ExpressionPtr make(tree::ExpressionKind kind) const;

  // Nesting is bounded, so that no text can use up the stack.
  struct Depth {
    explicit Depth(Parser& parser);
    ~Depth() { --parser_.depth_; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;
    Parser& parser_;
  };

  const ShapedBatch& batch_;
  std::vector<int>& structural_;
  int at_ = 0;
  int depth_ = 0;
  int catchDepth_ = 0;      // blocks of CATCH around
  int throwMayFollow_ = 0;  // a token that begins a statement though no statement was ended before it
  std::string typedColumn_;
  int typeOrdinal_ = 0;  // of the column or variable whose type is read, 0 for others
};

// Whether T-SQL reserves the word, so that it names nothing without brackets. Letter case does not matter.
bool isReserved(std::string_view word);

// A name token without its brackets or quotes.
std::string nameOf(const ShapedBatch& batch, const Token& token);

// The 1-based line on which a token begins.
int lineOf(const ShapedBatch& batch, int token);

// The error for a construct that T-SQL has and this engine has not: 40517, with the word and what it belongs to.
SqlError notSupported(const ShapedBatch& batch, int token, std::string_view what);

tree::StatementPtr makeStatement(tree::StatementKind kind);

}  // namespace tolvane::tsql
