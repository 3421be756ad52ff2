#include "tsql/batch_compiler.h"

#include <algorithm>
#include <utility>

#include "tsql/parser.h"
#include "tsql/system_tables.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementNode;

namespace {

bool isDefinition(StatementKind kind) {
  return kind == StatementKind::CreateTable || kind == StatementKind::CreateIndex || kind == StatementKind::AlterAdd ||
         kind == StatementKind::AlterDrop || kind == StatementKind::AlterColumn || kind == StatementKind::DropTable ||
         kind == StatementKind::DropIndex;
}

bool defines(const StatementNode& node) {
  if (isDefinition(node.kind)) return true;
  if (node.kind == StatementKind::Select && tree::intoOf(*node.query->body) != nullptr) return true;
  return std::ranges::any_of(node.statements, [](const auto& inner) { return defines(*inner); });
}

bool runsText(const StatementNode& node) {
  return node.kind == StatementKind::RunText ||
         std::ranges::any_of(node.statements, [](const auto& inner) { return runsText(*inner); });
}

// Statements that say nothing about tables are compiled at once, whatever came before them.
bool namesTables(StatementKind kind) {
  switch (kind) {
    case StatementKind::Select:
    case StatementKind::Insert:
    case StatementKind::Update:
    case StatementKind::Delete:
    case StatementKind::Truncate:
    case StatementKind::If:
    case StatementKind::Set:
    case StatementKind::Declare:
    case StatementKind::Print:
    case StatementKind::Cursor:
      return true;
    default:
      return isDefinition(kind);
  }
}

// Statements that define name a missing table in words of their own.
SqlError noObject(StatementKind kind, const std::string& name) {
  const bool changes = kind == StatementKind::Insert || kind == StatementKind::Update || kind == StatementKind::Delete;
  const auto point = name.find('.');
  const std::string schema = point == std::string::npos ? "" : name.substr(0, point);
  const std::string table = name.substr(point == std::string::npos ? 0 : point + 1);
  const bool isSystem = findSystemTable(schema, table) != nullptr || isKnownSystemTable(schema, table);
  if (changes && isSystem && !sameName(schema, "INFORMATION_SCHEMA")) {
    return {259, 16, "Ad hoc updates to system catalogs are not allowed."};
  }
  int number = 0;
  if (kind == StatementKind::Truncate) number = 4701;
  if (kind == StatementKind::AlterAdd || kind == StatementKind::AlterDrop || kind == StatementKind::AlterColumn) {
    number = 4902;
  }
  if (kind == StatementKind::CreateIndex || kind == StatementKind::IdentityInsert) number = 1088;
  if (number == 0) return SqlError(Message::InvalidObject, {name});
  return {number, 16,
          "Cannot find the object \"" + name + "\" because it does not exist or you do not have permissions."};
}

bool usesVariable(const tree::Expression& expression, const std::string& name) {
  if (expression.kind == tree::ExpressionKind::Variable && sameName(expression.name, name)) return true;
  const auto uses = [&](const tree::ExpressionPtr& part) { return part && usesVariable(*part, name); };
  return std::ranges::any_of(expression.arguments, uses) || uses(expression.operand) || uses(expression.otherwise);
}

}  // namespace

void BatchCompiler::declareNames(const std::vector<tree::StatementPtr>& statements) {
  std::vector<int> blocks;
  collectNames(statements, blocks);
  for (const auto& [node, around] : jumps_) checkJump(*node, around);
}

void BatchCompiler::collectNames(const std::vector<tree::StatementPtr>& statements, std::vector<int>& blocks) {
  for (const auto& node : statements) {
    if (node->kind == StatementKind::Try) {
      for (const auto& block : node->statements) {
        blocks.push_back(block->token);
        collectNames(block->statements, blocks);
        blocks.pop_back();
      }
      continue;
    }
    collectNames(node->statements, blocks);
    noteTemporaryTable(*node);
    for (const auto& declaration : node->declarations) declareVariable(declaration);
    if (node->kind == StatementKind::Label) declareLabel(*node, blocks);
    if (node->kind == StatementKind::GoTo) jumps_.emplace_back(node.get(), blocks);
  }
}

void BatchCompiler::declareVariable(const tree::Declaration& declaration) {
  const auto sameVariable = [&](const Variable& other) { return sameName(other.name, declaration.name); };
  const auto sameTable = [&](const TableVariable& other) { return sameName(other.table->name, declaration.name); };
  if (std::ranges::any_of(program_.variables, sameVariable) || std::ranges::any_of(program_.tableVariables, sameTable))
    throw SqlError(Message::VariableDeclaredTwice, {declaration.name}).at(lineOf(batch_, declaration.token));
  if (!declaration.table) {
    program_.variables.push_back({declaration.name, declaration.type, declaration.token});
    return;
  }
  writer_.beginStatement();
  Definition definition = definitionOf(*declaration.table);
  TableVariable variable;
  variable.table = std::make_shared<Table>(definition.table);
  variable.token = declaration.token;
  DdlStep step = finish(std::move(definition));
  for (auto* statements : {&step.preparations, &step.statements}) {
    for (auto& statement : *statements) variable.definition.push_back(std::move(statement.text));
  }
  program_.tableVariables.push_back(std::move(variable));
}

// A batch makes a temporary table of a name in one place only, even if that place is left out or the table is dropped
// in between.
void BatchCompiler::noteTemporaryTable(const StatementNode& node) {
  std::string name;
  if (node.kind == StatementKind::CreateTable) name = node.table.name;
  if (node.kind == StatementKind::Select && node.query->body->select) name = node.query->body->select->into;
  if (!name.starts_with("#")) return;
  const auto same = [&](const std::string& other) { return sameName(other, name); };
  if (std::ranges::any_of(temporaryTables_, same)) {
    throw SqlError(Message::ObjectExists, {name}).at(lineOf(batch_, node.token));
  }
  temporaryTables_.push_back(std::move(name));
}

int BatchCompiler::labelNumber(const std::string& name) const {
  const auto same = [&](const Label& label) { return sameName(label.name, name); };
  const auto found = std::ranges::find_if(program_.labels, same);
  return found == program_.labels.end() ? -1 : static_cast<int>(found - program_.labels.begin());
}

void BatchCompiler::declareLabel(const StatementNode& node, const std::vector<int>& blocks) {
  if (labelNumber(node.name) >= 0) throw SqlError(Message::LabelTwice, {node.name}).at(lineOf(batch_, node.token));
  program_.labels.push_back({node.name, Label::elsewhere, blocks});
}

// A jump may leave handlers, not enter them.
void BatchCompiler::checkJump(const StatementNode& node, const std::vector<int>& blocks) const {
  const int number = labelNumber(node.name);
  if (number < 0) throw SqlError(Message::LabelMissing, {node.name}).at(lineOf(batch_, node.token));
  const auto& around = program_.labels[static_cast<std::size_t>(number)].blocks;
  const bool entered = around.size() > blocks.size() || !std::equal(around.begin(), around.end(), blocks.begin());
  if (entered) throw SqlError(Message::JumpIntoHandler).at(lineOf(batch_, node.token));
}

// A label inside a statement that waits until it is reached cannot be jumped to before.
void BatchCompiler::checkLabels() const {
  for (const auto& [node, around] : jumps_) {
    const auto& label = program_.labels[static_cast<std::size_t>(labelNumber(node->name))];
    if (label.step == Label::elsewhere) {
      throw notSupported(batch_, node->token, "a jump to a label beside statements that define tables");
    }
  }
}

void BatchCompiler::compileAll(const std::vector<tree::StatementPtr>& statements) {
  for (const auto& node : statements) statement(*node, false);
}

void BatchCompiler::compileBatch(const std::vector<tree::StatementPtr>& statements) {
  declareNames(statements);
  compileAll(statements);
  checkLabels();
}

void BatchCompiler::compileReached(const StatementNode& node, bool insideLoop) {
  insideLoop_ = insideLoop;
  statement(node, true);
}

// A statement on tables that are not there yet, or whose tables the batch may have changed by then, waits until it is
// reached.
void BatchCompiler::statement(const StatementNode& node, bool reached) {
  const std::size_t steps = program_.steps.size();
  const std::size_t handlers = program_.handlers.size();
  const auto defer = [&] {
    program_.steps.resize(steps);
    program_.handlers.resize(handlers);
    program_.returnsRows = program_.returnsRows || node.kind == StatementKind::Select || node.kind == StatementKind::If;
    DeferredStep later{node.token, node.endToken};
    if (!loops_.empty()) {
      later.continueTo = loops_.back().begin;
      loops_.back().breaks.push_back(next());
    } else if (insideLoop_) {
      later.breakTo = JumpStep::breakOuter;
      later.continueTo = JumpStep::continueOuter;
    }
    add(node, later);
  };
  const bool later = (definitionsSeen_ || textSeen_) && !reached && namesTables(node.kind);
  if (definitionsSeen_ && later && isDefinition(node.kind)) return defer();
  try {
    dispatch(node);
    // What is wrong with the tables that are there is wrong whatever the batch may have done by then; what is right has
    // to be compiled once more.
    if (later) return defer();
  } catch (const UnknownTable& unknown) {
    if (reached) throw noObject(node.kind, unknown.name).at(lineOf(batch_, unknown.token));
    defer();
  } catch (SqlError& failure) {
    if (failure.line() == 0) failure.at(lineOf(batch_, node.token));
    // Definitions are judged when they run; what is not supported is refused before anything runs.
    if (reached || !isDefinition(node.kind) || failure.number() == notSupportedNumber) throw;
    program_.steps.resize(steps);
    error(node, failure);
  }
  if (defines(node)) definitionsSeen_ = true;
  if (node.kind == StatementKind::RunText) textSeen_ = true;
}

int BatchCompiler::lineAt(int token) {
  const auto begin = static_cast<std::size_t>(batch_.tokens[static_cast<std::size_t>(token)].begin);
  if (begin < countedTo_) {
    countedTo_ = 0;
    line_ = 1;
  }
  const std::string_view passed = std::string_view(batch_.text).substr(countedTo_, begin - countedTo_);
  line_ += static_cast<int>(std::count(passed.begin(), passed.end(), '\n'));
  countedTo_ = begin;
  return line_;
}

int BatchCompiler::add(const StatementNode& node, StepBody body) {
  program_.steps.push_back({lineAt(node.token), std::move(body)});
  return next() - 1;
}

void BatchCompiler::sendTo(int step, int target) {
  auto& body = program_.steps[static_cast<std::size_t>(step)].body;
  if (auto* jump = std::get_if<JumpStep>(&body)) jump->target = target;
  if (auto* jump = std::get_if<JumpUnlessStep>(&body)) jump->target = target;
  if (auto* later = std::get_if<DeferredStep>(&body)) later->breakTo = target;
}

// What depends on the catalogue only fails when the statement is reached: it may stand behind an IF that keeps it from
// that.
void BatchCompiler::error(const StatementNode& node, const SqlError& failure) {
  add(node, ErrorStep{failure.number(), failure.message()});
}

void BatchCompiler::written(const Table& table) {
  auto& tables = program_.tablesWritten;
  if (std::ranges::find(tables, table.name) == tables.end()) tables.push_back(table.name);
}

void BatchCompiler::dispatch(const StatementNode& node) {
  writer_.beginStatement();
  writer_.keepRows(node.kind == StatementKind::Update || node.kind == StatementKind::Delete);
  writer_.defineCommonTables(node.with, node.maxRecursion);
  switch (node.kind) {
    case StatementKind::Select:
      return select(node);
    case StatementKind::Insert:
      return insert(node);
    case StatementKind::Update:
      return update(node);
    case StatementKind::Delete:
      return remove(node);
    case StatementKind::Truncate:
      return truncate(node);
    case StatementKind::CreateTable:
      return createTable(node);
    case StatementKind::CreateIndex:
      return createIndex(node);
    case StatementKind::AlterAdd:
      return alterAdd(node);
    case StatementKind::AlterDrop:
      return alterDrop(node);
    case StatementKind::AlterColumn:
      return alterColumn(node);
    case StatementKind::DropTable:
      return dropTable(node);
    case StatementKind::DropIndex:
      return dropIndex(node);
    case StatementKind::If:
      return conditional(node);
    case StatementKind::While:
      return loop(node);
    case StatementKind::Block:
      return compileAll(node.statements);
    case StatementKind::Break:
    case StatementKind::Continue:
      return leaveLoop(node);
    case StatementKind::Return:
      add(node, JumpStep{JumpStep::endOfBatch});
      return;
    case StatementKind::Declare:
      return declare(node);
    case StatementKind::Set:
      return assignVariable(node, node.name, *node.value, node.operation, node.token);
    case StatementKind::Print:
      return print(node);
    case StatementKind::RaiseError:
      return raise(node);
    case StatementKind::Throw:
      return throwError(node);
    case StatementKind::Try:
      return tryCatch(node);
    case StatementKind::Label:
      program_.labels[static_cast<std::size_t>(labelNumber(node.name))].step = next();
      return;
    case StatementKind::GoTo:
      add(node, JumpStep{JumpStep::toLabel(labelNumber(node.name))});
      return;
    case StatementKind::Begin:
      return transaction(node, TransactionStep::Verb::Begin);
    case StatementKind::Commit:
      return transaction(node, TransactionStep::Verb::Commit);
    case StatementKind::Rollback:
      return transaction(node, TransactionStep::Verb::Rollback);
    case StatementKind::Cursor:
      return cursor(node);
    case StatementKind::RunText:
      return runText(node);
    case StatementKind::Save:
      return transaction(node, TransactionStep::Verb::Save);
    case StatementKind::Call:
      return error(node, SqlError(Message::ProcedureNotFound, {node.name}));
    case StatementKind::Option:
      return option(node);
    case StatementKind::IdentityInsert: {
      const Table& table = changedTable(node.table);
      const std::string written = (node.table.schema.empty() ? "" : node.table.schema + ".") + node.table.name;
      if (table.identityColumn() < 0) {
        return error(node, SqlError(8106, 16,
                                    "Table '" + written +
                                        "' does not have the identity property. Cannot perform SET operation."));
      }
      add(node, OptionStep{"IDENTITY_INSERT", node.on, {}, table.name, written});
      return;
    }
  }
}

int BatchCompiler::conditionStep(const StatementNode& node, const tree::Expression& condition) {
  writer_.beginStatement();
  Query query;
  query.statement = writer_.finish("SELECT " + writer_.condition(condition, nullptr));
  query.columns.push_back({"", Type::of(TypeKind::Bit), "", "", false});
  return add(node, JumpUnlessStep{std::move(query), 0});
}

void BatchCompiler::conditional(const StatementNode& node) {
  const int test = conditionStep(node, *node.where);
  statement(*node.statements[0], false);
  if (node.statements.size() == 1) return sendTo(test, next());
  const int end = add(node, JumpStep{});
  sendTo(test, next());
  // The ELSE branch does not run after the other one, so definitions there do not reach it.
  const bool seen = std::exchange(definitionsSeen_, false);
  statement(*node.statements[1], false);
  definitionsSeen_ = definitionsSeen_ || seen;
  sendTo(end, next());
}

void BatchCompiler::loop(const StatementNode& node) {
  if (defines(node)) definitionsSeen_ = true;
  textSeen_ = textSeen_ || runsText(node);
  loops_.push_back({next(), {}});
  const int test = conditionStep(node, *node.where);
  statement(*node.statements[0], false);
  add(node, JumpStep{loops_.back().begin});
  sendTo(test, next());
  for (const int step : loops_.back().breaks) sendTo(step, next());
  loops_.pop_back();
}

void BatchCompiler::leaveLoop(const StatementNode& node) {
  const bool leaves = node.kind == StatementKind::Break;
  if (loops_.empty() && insideLoop_) {
    add(node, JumpStep{leaves ? JumpStep::breakOuter : JumpStep::continueOuter});
    return;
  }
  if (loops_.empty()) {
    throw SqlError(leaves ? 135 : 136, 15,
                   std::string("Cannot use a ") + (leaves ? "BREAK" : "CONTINUE") +
                       " statement outside the scope of a WHILE statement.")
        .at(lineOf(batch_, node.token));
  }
  const int step = add(node, JumpStep{loops_.back().begin});
  if (leaves) loops_.back().breaks.push_back(step);
}

void BatchCompiler::declare(const StatementNode& node) {
  for (const auto& declaration : node.declarations) {
    if (declaration.value) assignVariable(node, declaration.name, *declaration.value, {}, declaration.token);
  }
}

void BatchCompiler::assignVariable(const StatementNode& node, const std::string& name, const tree::Expression& value,
                                   const std::string& operation, int token) {
  writer_.beginStatement();
  const int slot = writer_.variableSlot(name, token);
  const Type type = program_.variables[static_cast<std::size_t>(slot)].type;
  Typed result;
  if (operation.empty()) {
    result = writer_.expression(value, nullptr);
  } else {
    result = writer_.compound(operation, name, value, node.token);
  }
  AssignStep step;
  step.slots.push_back(slot);
  step.query.statement = writer_.finish("SELECT " + writer_.convert(std::move(result), type, Writer::When::Late).sql);
  step.query.columns.push_back({"", type, "", "", false});
  add(node, std::move(step));
}

void BatchCompiler::select(const StatementNode& node) {
  const auto& body = *node.query->body;
  if (const tree::Select* into = tree::intoOf(body)) return selectInto(node, *into);
  const bool assigns =
      body.select && std::ranges::any_of(body.select->items, [](const auto& item) { return !item.variable.empty(); });
  if (assigns) return selectVariables(node, *body.select);
  const BoundQuery query = writer_.bind(*node.query, nullptr, false);
  program_.returnsRows = true;
  add(node, QueryStep{writer_.finishQuery(query)});
}

void BatchCompiler::selectVariables(const StatementNode& node, const tree::Select& select) {
  AssignStep step;
  bool grows = false;
  for (const auto& item : select.items) {
    if (item.variable.empty()) failMixed(item.token);
  }
  for (const auto& item : select.items) {
    step.slots.push_back(writer_.variableSlot(item.variable, item.token));
    const auto uses = [&](const auto& other) { return usesVariable(*other.expression, item.variable); };
    grows = grows || std::ranges::any_of(select.items, uses);
  }
  if (grows && select.from.empty() && !select.where && !select.having) return selectInTurn(node, select);
  if (grows && select.from.empty())
    throw notSupported(batch_, node.token, "a condition beside variables that use each other");
  if (grows) return selectRowByRow(node, std::move(step));
  BoundQuery query = writer_.bind(*node.query, nullptr, false);
  for (std::size_t i = 0; i < step.slots.size(); ++i) {
    const Type& type = program_.variables[static_cast<std::size_t>(step.slots[i])].type;
    Typed& value = query.body->outputs[i].value;
    value = writer_.convert(std::move(value), type, Writer::When::Late);
    step.query.columns.push_back({"", type, "", "", false});
  }
  step.query.statement = writer_.finish(writer_.render(query, false));
  add(node, std::move(step));
}

// Without rows, each variable has its value before the next one is looked at.
void BatchCompiler::selectInTurn(const StatementNode& node, const tree::Select& select) {
  for (const auto& item : select.items) {
    assignVariable(node, item.variable, *item.expression, {}, item.token);
  }
}

void BatchCompiler::failMixed(int token) const {
  throw SqlError(
      141, 15,
      "A SELECT statement that assigns a value to a variable must not be combined with data-retrieval operations.")
      .at(lineOf(batch_, token));
}

void BatchCompiler::selectRowByRow(const StatementNode& node, AssignStep step) {
  const auto& items = node.query->body->select->items;
  Scope scope;
  step.query = writer_.bindRows(*node.query, scope);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Type& type = program_.variables[static_cast<std::size_t>(step.slots[i])].type;
    Typed value = writer_.convert(writer_.expression(*items[i].expression, &scope), type, Writer::When::Late);
    step.forRow.push_back(writer_.finish("SELECT " + value.sql));
  }
  add(node, std::move(step));
}

void BatchCompiler::print(const StatementNode& node) {
  Typed value = writer_.expression(*node.value, nullptr);
  if (!value.type.isText()) value = writer_.convert(std::move(value), Type::text(TypeKind::NVarChar, 4000));
  PrintStep step;
  step.query.statement = writer_.finish("SELECT " + value.sql);
  step.query.columns.push_back({"", value.type, "", "", false});
  add(node, std::move(step));
}

Program compile(const ShapedBatch& batch, const Catalogue& catalogue, const CompileOptions& options) {
  Program program;
  program.placeholders = batch.placeholders;
  program.variables = options.parameters;
  Parser parser(batch, program.structuralLiterals);
  const auto statements = parser.parseBatch();
  BatchCompiler compiler(batch, catalogue, program, options);
  compiler.compileBatch(statements);
  auto& structural = program.structuralLiterals;
  std::ranges::sort(structural);
  structural.erase(std::unique(structural.begin(), structural.end()), structural.end());
  return program;
}

std::vector<FormalParameter> formalParameters(const ShapedBatch& text) {
  std::vector<int> structural;
  return Parser(text, structural).parseParameters();
}

Program compileDeferred(const ShapedBatch& batch, const Program& program, const DeferredStep& step,
                        const Catalogue& catalogue, const CompileOptions& options) {
  Program result;
  result.variables = program.variables;
  result.tableVariables = program.tableVariables;
  result.labels = program.labels;
  for (auto& label : result.labels) label.step = Label::elsewhere;
  result.placeholders = program.placeholders;
  Parser parser(batch, result.structuralLiterals);
  const auto statement = parser.parseStatementAt(step.firstToken);
  BatchCompiler compiler(batch, catalogue, result, options);
  compiler.compileReached(*statement, step.breakTo != DeferredStep::noLoop);
  return result;
}

}  // namespace tolvane::tsql
