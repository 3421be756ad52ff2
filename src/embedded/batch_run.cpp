#include "embedded/batch_run.h"

#include <utility>

#include "embedded/batch_interpreter.h"
#include "embedded/errors.h"
#include "embedded/values.h"
#include "rowset/utf8.h"
#include "tsql/error_reach.h"

namespace tolvane::embedded {
namespace {

constexpr int userError = 50000;
constexpr int nullError = 515;
// A loop that selects would otherwise fill the memory with results that nobody can read any more.
constexpr std::size_t resultBound = 10'000;

}  // namespace

void BatchRun::compile() {
  if (const auto place = rowset::invalidUtf8(sql_); place != std::string::npos) {
    throw tsql::SqlError(102, 15, "Incorrect syntax: the text is not UTF-8 at byte " + std::to_string(place + 1) + ".");
  }
  batch_.assign(sql_);
  auto& catalogue = session_->catalogue();
  try {
    compiled_ = session_->programs().find(batch_, catalogue, options_);
  } catch (const tsql::SqlError&) {
    // Another connection may have made the table or column that is missing here.
    const auto before = catalogue.version();
    catalogue.refresh();
    if (catalogue.version() == before) throw;
    compiled_ = session_->programs().find(batch_, catalogue, options_);
  }
  const bool empty = batch_.tokens.size() == 1;  // nothing but the end
  if (empty) {
    throw AutomationError(oledb::noCommand, std::string(commandSource),
                          "Command text was not set for the command object.");
  }
  if (compiled_->program.placeholders > static_cast<int>(placeholders_.size())) {
    throw AutomationError(oledb::parameterNotOptional, std::string(databaseSource),
                          "No value given for one or more required parameters.");
  }
}

bool BatchRun::isSingleQuery() const {
  const auto& steps = compiled_->program.steps;
  return steps.size() == 1 && std::holds_alternative<tsql::QueryStep>(steps.front().body) &&
         compiled_->program.tableVariables.empty();
}

BoundQuery BatchRun::boundQuery(CompiledProgram& program, std::size_t index, const tsql::QueryStep& step) {
  const auto& prepared = program.steps[index];
  // The values of a query that is read later must outlive the text that they came from.
  return {bound(prepared.pools.front(), step.query.statement, SQLITE_TRANSIENT), prepared.shape, nullptr};
}

BoundQuery BatchRun::compileOnlyQuery() {
  session_->catalogue().refresh();
  compile();
  if (!isSingleQuery()) throw tsql::SqlError(tsql::Message::InvalidObject, {"?"});
  auto query = boundQuery(*compiled_, 0, std::get<tsql::QueryStep>(compiled_->program.steps.front().body));
  query.program = compiled_;
  return query;
}

BatchResult BatchRun::run(FirstRead firstRead) {
  compile();
  if (firstRead == FirstRead::whenAsked && isSingleQuery()) {
    auto query = boundQuery(*compiled_, 0, std::get<tsql::QueryStep>(compiled_->program.steps.front().body));
    query.program = compiled_;
    auto recompile = [session = session_, sql = sql_, placeholders = placeholders_] {
      return BatchRun(session, sql, placeholders).compileOnlyQuery();
    };
    result_.rowSets.push_back(std::make_shared<RowSet>(session_, std::move(query), sql_, std::move(recompile)));
    return std::move(result_);
  }
  if (!compiled_->program.tableVariables.empty()) beginTableVariables();
  variables_.resize(compiled_->program.variables.size());
  runSteps(compiled_);
  finish();
  if (firstError_) throw *firstError_;
  return std::move(result_);
}

void BatchRun::beginTableVariables() {
  if (tablesOutside_) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "'" + compiled_->program.tableVariables.front().table->name +
                             "' in line 1: a table variable beside those of the batch around is not supported.");
  }
  tablesBegun_ = true;
  if (session_->tableVariables().begin(compiled_->program.tableVariables)) compile();
}

void BatchRun::finish() {
  // The tables of variables are emptied when the batch ends, so their rows are read before.
  if (tablesBegun_) settleResults();
  if (!session_->doomed()) return;
  session_->rollback();
  if (!firstError_) firstError_ = tsql::SqlError(tsql::Message::UncommittableAtEnd);
}

void BatchRun::runSteps(std::shared_ptr<CompiledProgram> program) {
  // What an error leaves, a handler further out finds as it was.
  struct Running {
    BatchRun& run;
    std::size_t outer;
    explicit Running(BatchRun& batch) : run(batch), outer(std::exchange(batch.next_, 0)) { run.frames_.emplace_back(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
      run.frames_.pop_back();
      run.next_ = outer;
    }
  };
  const Running running(*this);
  while (next_ < program->program.steps.size() && !ended_) {
    const auto index = next_++;
    frames_.back() = {program.get(), index};
    session_->database().checkDeadline();
    attempt(program, index);
  }
}

// The tables have changed since the program was compiled, by this batch or by another connection. Before the batch has
// done anything it may begin anew; afterwards the rest of it is compiled again.
void BatchRun::compileRest(std::shared_ptr<CompiledProgram>& program) {
  if (program != compiled_) throw SchemaChanged();
  const auto steps = compiled_->program.steps.size();
  session_->catalogue().invalidate();
  compile();
  if (compiled_->program.steps.size() != steps) throw SchemaChanged();
  program = compiled_;
}

void BatchRun::attempt(std::shared_ptr<CompiledProgram>& program, std::size_t index) {
  const auto held = program;  // its steps stay, whatever is compiled meanwhile
  const auto& body = held->program.steps[index].body;
  try {
    settleResults();
    session_->beginStatement();
    try {
      owner_ = program;
      runStep(*program, index);
    } catch (const SchemaChanged&) {
      if (!changed_) throw;
      compileRest(program);
      owner_ = program;
      runStep(*program, index);
    }
    changed_ = changed_ || !std::holds_alternative<tsql::QueryStep>(body);
    const bool keepsError =
        std::holds_alternative<tsql::JumpStep>(body) || std::holds_alternative<tsql::RunTextStep>(body);
    const auto* raised = std::get_if<tsql::RaiseStep>(&body);
    if (!keepsError) session_->setLastError(raised && raised->setsError ? userError : 0);
  } catch (const tsql::SqlError& error) {
    loseIdentity(body, error.number() == nullError);
    handle(error);
  } catch (const ConstraintFailure& failure) {
    loseIdentity(body, true);
    if (const auto* ddl = std::get_if<tsql::DdlStep>(&body)) return handle(brokenDefinition(*ddl, failure));
    const auto* execute = std::get_if<tsql::ExecuteStep>(&body);
    const std::string_view verb = !execute                                           ? "INSERT"
                                  : execute->verb == tsql::ExecuteStep::Verb::Insert ? "INSERT"
                                  : execute->verb == tsql::ExecuteStep::Verb::Update ? "UPDATE"
                                                                                     : "DELETE";
    const std::string table = execute ? execute->table : std::string();
    if (failure.code() == SQLITE_CONSTRAINT_FOREIGNKEY && execute) {
      return handle(brokenKey(*execute, verb));
    }
    handle(session_->catalogue().explain(failure, verb, table));
  }
}

void BatchRun::runStep(CompiledProgram& program, std::size_t index) {
  const auto& body = program.program.steps[index].body;
  if (const auto* query = std::get_if<tsql::QueryStep>(&body)) {
    runQuery(program, index, *query);
  } else if (const auto* execute = std::get_if<tsql::ExecuteStep>(&body)) {
    runExecute(program, index, *execute);
  } else if (const auto* ddl = std::get_if<tsql::DdlStep>(&body)) {
    runDdl(program, index, *ddl);
  } else if (const auto* unless = std::get_if<tsql::JumpUnlessStep>(&body)) {
    if (!holds(program, index, *unless)) next_ = static_cast<std::size_t>(unless->target);
    session_->setRowCount(0);
  } else if (const auto* jump = std::get_if<tsql::JumpStep>(&body)) {
    jumpTo(jump->target);
  } else if (const auto* assign = std::get_if<tsql::AssignStep>(&body)) {
    runAssign(program, index, *assign);
  } else if (const auto* print = std::get_if<tsql::PrintStep>(&body)) {
    runPrint(program, index, *print);
    session_->setRowCount(0);
  } else if (const auto* transaction = std::get_if<tsql::TransactionStep>(&body)) {
    runTransaction(program, index, *transaction);
    session_->setRowCount(0);
  } else if (const auto* error = std::get_if<tsql::ErrorStep>(&body)) {
    throw tsql::SqlError(error->number, 16, error->message);
  } else if (const auto* raised = std::get_if<tsql::RaiseStep>(&body)) {
    runRaise(program, index, *raised);
    session_->setRowCount(0);
  } else if (const auto* thrown = std::get_if<tsql::ThrowStep>(&body)) {
    runThrow(program, index, *thrown);
  } else if (const auto* later = std::get_if<tsql::DeferredStep>(&body)) {
    runDeferred(program, index, *later);
  } else if (const auto* cursor = std::get_if<tsql::CursorStep>(&body)) {
    session_->setRowCount(0);
    runCursor(program, index, *cursor);
  } else if (const auto* text = std::get_if<tsql::RunTextStep>(&body)) {
    runText(program, index, *text);
  } else if (const auto* option = std::get_if<tsql::OptionStep>(&body)) {
    runOption(program, index, *option);
    session_->setRowCount(0);
  }
}

// The rows of earlier queries stay what they were, whatever the statements after them do.
void BatchRun::settleResults() {
  if (settled_ == result_.rowSets.size()) return;
  settled_ = result_.rowSets.size();
  result_.rowSets.back()->readRest();
  session_->setRowCount(static_cast<std::int64_t>(result_.rowSets.back()->known()));
}

void BatchRun::runQuery(CompiledProgram& program, std::size_t index, const tsql::QueryStep& step) {
  if (result_.rowSets.size() == resultBound) {
    throw tsql::SqlError(701, 17, "There is insufficient system memory to run this query.");
  }
  auto query = boundQuery(program, index, step);
  query.program = owner_;
  auto rows = std::make_shared<RowSet>(session_, std::move(query), sql_);
  rows->readFirst();
  result_.rowSets.push_back(std::move(rows));
  session_->setRowCount(static_cast<std::int64_t>(result_.rowSets.back()->known()));
}

bool BatchRun::holds(CompiledProgram& program, std::size_t index, const tsql::JumpUnlessStep& step) {
  const auto statement = bound(program.steps[index].pools.front(), step.condition.statement, SQLITE_STATIC);
  return session_->database().step(statement.get()) && sqlite3_column_int(statement.get(), 0) == 1;
}

void BatchRun::jumpTo(int target) {
  if (target >= 0) {
    next_ = static_cast<std::size_t>(target);
  } else if (target <= tsql::JumpStep::firstLabel) {
    const auto number = static_cast<std::size_t>(tsql::JumpStep::labelOf(target));
    const int step = frames_.back().program->program.labels[number].step;
    if (step != tsql::Label::elsewhere) return jumpTo(step);
    leaving_ = target;
    next_ = static_cast<std::size_t>(-1);
  } else if (target == tsql::JumpStep::endOfBatch) {
    ended_ = true;
  } else {
    leaving_ = target;
    next_ = static_cast<std::size_t>(-1);
  }
}

void BatchRun::runRowByRow(CompiledProgram& program, std::size_t index, const tsql::AssignStep& step) {
  const auto& pools = program.steps[index].pools;
  const auto query = bound(pools.front(), step.query.statement, SQLITE_STATIC);
  std::vector<Result> row(step.query.columns.size());
  row_ = &row;
  std::int64_t rows = 0;
  while (session_->database().step(query.get())) {
    ++rows;
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = columnResult(query.get(), static_cast<int>(i));
    for (std::size_t i = 0; i < step.slots.size(); ++i) {
      const auto value = bound(pools[i + 1], step.forRow[i], SQLITE_TRANSIENT);
      if (!session_->database().step(value.get())) continue;
      variables_[static_cast<std::size_t>(step.slots[i])] = columnResult(value.get(), 0);
    }
  }
  row_ = nullptr;
  session_->setRowCount(rows);
}

void BatchRun::runAssign(CompiledProgram& program, std::size_t index, const tsql::AssignStep& step) {
  if (!step.forRow.empty()) return runRowByRow(program, index, step);
  const auto statement = bound(program.steps[index].pools.front(), step.query.statement, SQLITE_STATIC);
  std::vector<Result> last;
  std::int64_t rows = 0;
  while (session_->database().step(statement.get())) {
    ++rows;
    last.clear();
    for (std::size_t i = 0; i < step.slots.size(); ++i)
      last.push_back(columnResult(statement.get(), static_cast<int>(i)));
  }
  for (std::size_t i = 0; i < last.size(); ++i)
    variables_[static_cast<std::size_t>(step.slots[i])] = std::move(last[i]);
  session_->setRowCount(rows);
}

void BatchRun::runPrint(CompiledProgram& program, std::size_t index, const tsql::PrintStep& step) {
  // Nobody listens to messages here, but the expression may fail.
  const auto statement = bound(program.steps[index].pools.front(), step.query.statement, SQLITE_STATIC);
  (void)session_->database().step(statement.get());
}

Result BatchRun::resultOf(sqlite3_stmt* statement, int column) {
  return columnResult(statement, column);
}

// The only row of a step's query.
std::vector<Result> BatchRun::valuesOf(CompiledProgram& program, std::size_t index, const tsql::Query& query) {
  std::vector<Result> values;
  const auto statement = bound(program.steps[index].pools.front(), query.statement, SQLITE_STATIC);
  if (!session_->database().step(statement.get())) return values;
  for (int i = 0; i < sqlite3_column_count(statement.get()); ++i) values.push_back(columnResult(statement.get(), i));
  return values;
}

void BatchRun::refuseDoomed(std::string_view table) const {
  if (session_->doomed() && !table.starts_with("@")) throw tsql::SqlError(tsql::Message::Uncommittable);
}

void BatchRun::runTransaction(CompiledProgram& program, std::size_t index, const tsql::TransactionStep& step) {
  std::string name = step.name;
  if (!step.query.statement.text.empty()) {
    const auto values = valuesOf(program, index, step.query);
    if (!values[0].isNull()) name = values[0].text();
  }
  switch (step.verb) {
    case tsql::TransactionStep::Verb::Begin:
      return session_->begin(name);
    case tsql::TransactionStep::Verb::Commit:
      return session_->commit();
    case tsql::TransactionStep::Verb::Rollback:
      return name.empty() ? session_->rollback() : session_->rollbackTo(name);
    case tsql::TransactionStep::Verb::Save:
      return session_->save(name);
  }
}

// Most options need nothing done: row counts are not results here, with NOCOUNT or without.
void BatchRun::runOption(CompiledProgram& program, std::size_t index, const tsql::OptionStep& step) {
  constexpr int daysOfTheWeek = 7;
  if (step.name == "IDENTITY_INSERT") return setIdentityInsert(step);
  if (step.name == "XACT_ABORT") return session_->setAbortsTransactions(step.on);
  if (step.name == "LANGUAGE") return session_->setDateFirst(daysOfTheWeek);
  if (step.name != "DATEFIRST") return;
  const auto values = valuesOf(program, index, step.query);
  const auto day = values[0].isNull() ? 0 : values[0].integer();
  if (day < 1 || day > daysOfTheWeek) {
    throw tsql::SqlError(2742, 16, "SET DATEFIRST " + std::to_string(day) + " is out of range.");
  }
  session_->setDateFirst(static_cast<int>(day));
}

void BatchRun::forget(const CompiledProgram* program) {
  for (auto i = deferred_.lower_bound({program, 0}); i != deferred_.end() && i->first.first == program;) {
    const auto inner = i->second;
    i = deferred_.erase(i);
    forget(inner.get());
    i = deferred_.lower_bound({program, 0});
  }
}

void BatchRun::runDeferred(CompiledProgram& program, std::size_t index, const tsql::DeferredStep& step) {
  auto& catalogue = session_->catalogue();
  catalogue.refresh();
  auto current = deferred_[{&program, index}];
  if (!current || current->catalogueVersion != catalogue.version()) {
    if (current) forget(current.get());
    try {
      current = std::make_shared<CompiledProgram>(
          tsql::compileDeferred(batch_, program.program, step, catalogue, options_), catalogue.version());
    } catch (const tsql::SqlError& error) {
      notCaught_ = !tsql::isRaisedByRunning(error);
      throw;
    }
    deferred_[{&program, index}] = current;
  }
  runSteps(current);
  const int leaving = std::exchange(leaving_, 0);
  if (leaving == 0) return;
  if (leaving <= tsql::JumpStep::firstLabel) return jumpTo(leaving);
  jumpTo(leaving == tsql::JumpStep::breakOuter ? step.breakTo : step.continueTo);
}

BatchResult runBatch(const std::shared_ptr<Session>& session, const std::string& sql,
                     const std::vector<PlaceholderValue>& placeholders, FirstRead firstRead) {
  constexpr int attempts = 4;
  for (int attempt = 1;; ++attempt) {
    try {
      return BatchRun(session, sql, placeholders).run(firstRead);
    } catch (const tsql::SqlError& error) {
      throw session->failure(error, sql);
    } catch (const ConstraintFailure& failure) {
      throw session->failure(session->catalogue().explain(failure, "INSERT", {}), sql);
    } catch (const SchemaChanged&) {
      session->catalogue().invalidate();
      if (attempt == attempts) {
        throw session->failure(storageError(session->database().name(), SQLITE_SCHEMA, "its tables keep changing"),
                               sql);
      }
    } catch (const AutomationError& error) {
      const bool counted = error.source() != databaseSource || !error.database().sql.empty();
      if (counted) throw;
      throw session->failure(error, sql);
    }
  }
}

}  // namespace tolvane::embedded
