#include "embedded/batch_run.h"

#include <algorithm>
#include <map>
#include <utility>

#include "embedded/account_set_collation.h"
#include "embedded/batch_interpreter.h"
#include "embedded/constraint_explainer.h"
#include "embedded/errors.h"
#include "embedded/values.h"
#include "rowset/utf8.h"
#include "tsql/convert.h"
#include "tsql/error_reach.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {
namespace {

constexpr int userError = 50000;
constexpr int nullError = 515;
// A loop that selects would otherwise fill the memory with results that nobody can read any more.
constexpr std::size_t resultBound = 10'000;

bool sameType(const tsql::Type& a, const tsql::Type& b) {
  return a.orNull() == b.orNull();
}

Datum literalDatum(const tsql::Literal& literal) {
  if (literal.type.isInteger()) return {literal.integer};
  if (literal.type.isFloat()) return {literal.real};
  if (literal.type.isBinary())
    return {tsql::BytesView(reinterpret_cast<const std::byte*>(literal.text.data()), literal.text.size())};
  return {literal.text};
}

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

// A row that a constraint keeps out has got its identity value already.
void BatchRun::loseIdentity(const tsql::StepBody& body, bool refused) {
  const auto* execute = std::get_if<tsql::ExecuteStep>(&body);
  if (execute && execute->setsIdentity && (refused || execute->makesIdentity)) session_->lostIdentity(execute->table);
}

// The rows that are there do not allow a definition.
tsql::SqlError BatchRun::brokenDefinition(const tsql::DdlStep& step, const ConstraintFailure& failure) const {
  const bool isKey = failure.code() == SQLITE_CONSTRAINT_UNIQUE || failure.code() == SQLITE_CONSTRAINT_PRIMARYKEY;
  if (!isKey && !step.redefinitions.empty()) {
    return session_->catalogue().explain(failure, step.verb, step.redefinitions.front().table);
  }
  return {1505, 16,
          "The CREATE UNIQUE INDEX statement terminated because a duplicate key was found for the object name '" +
              step.table + "' and the index name '" + step.index + "'."};
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

// One table of the connection may have it ON.
void BatchRun::setIdentityInsert(const tsql::OptionStep& step) {
  const auto& current = session_->identityInsert();
  if (!step.on) {
    if (current == step.table) session_->setIdentityInsert({});
    return;
  }
  if (!current.empty() && current != step.table) {
    const std::string database = current.starts_with('#') ? "tempdb" : session_->databaseName();
    throw tsql::SqlError(8107, 16,
                         "IDENTITY_INSERT is already ON for table '" + database + ".dbo." + current +
                             "'. Cannot perform SET operation for table '" + step.written + "'.");
  }
  session_->setIdentityInsert(step.table);
}

void BatchRun::checkIdentityInsert(const tsql::ExecuteStep& step) const {
  using Gives = tsql::ExecuteStep::GivesIdentity;
  const bool on = session_->identityInsert() == step.table;
  if (step.givesIdentity == Gives::Yes && !on) {
    throw tsql::SqlError(544, 16,
                         "Cannot insert explicit value for identity column in table '" + step.table +
                             "' when IDENTITY_INSERT is set to OFF.");
  }
  if (step.givesIdentity == Gives::No && on) {
    throw tsql::SqlError(545, 16,
                         "Explicit value must be specified for identity column in table '" + step.table +
                             "' either when IDENTITY_INSERT is set to ON or when a replication user is inserting into "
                             "a NOT FOR REPLICATION identity column.");
  }
}

void BatchRun::runExecute(CompiledProgram& program, std::size_t index, const tsql::ExecuteStep& step) {
  refuseDoomed(step.table);
  if (step.givesIdentity != tsql::ExecuteStep::GivesIdentity::Anyhow) checkIdentityInsert(step);
  session_->beforeChange(step.table);
  auto& database = session_->database();
  if (step.truncates && ConstraintExplainer(database, session_->catalogue()).isReferenced(step.table)) {
    throw tsql::SqlError(
        4712, 16,
        "Cannot truncate table '" + step.table + "' because it is being referenced by a FOREIGN KEY constraint.");
  }
  const auto& pools = program.steps[index].pools;
  std::int64_t changed = 0;
  std::optional<std::int64_t> made;
  const auto work = [&] {
    for (std::size_t i = 0; i < step.statements.size(); ++i) {
      const auto statement = bound(pools[i], step.statements[i], SQLITE_STATIC);
      while (database.step(statement.get())) {
      }
      if (static_cast<int>(i) == step.counted) changed = sqlite3_changes64(database.get());
    }
    if (step.makesIdentity) made = session_->keepMadeIdentities();
  };
  // Alone and outside a transaction SQLite itself makes a statement whole or not at all.
  if (step.oneRow || (step.statements.size() == 1 && !step.makesIdentity && !database.inTransaction())) {
    work();
  } else {
    session_->atomically(work);
  }
  session_->setRowCount(changed);
  if (step.truncates) session_->forgetIdentity(step.table);
  if (step.verb != tsql::ExecuteStep::Verb::Insert) return;
  if (!step.setsIdentity) return session_->setIdentity({});
  if (changed == 0) return;
  if (step.makesIdentity) return session_->setIdentity(made);
  session_->setIdentity(sqlite3_last_insert_rowid(database.get()));
  session_->usedIdentity(step.table, sqlite3_last_insert_rowid(database.get()));
}

// SQLite does not say which key was broken. Where there are several, the statement runs once more with all keys judged
// at the end, and what it leaves is looked through.
tsql::SqlError BatchRun::brokenKey(const tsql::ExecuteStep& step, std::string_view verb) {
  auto& database = session_->database();
  const ConstraintExplainer explainer(database, session_->catalogue());
  const auto keys = explainer.candidates(verb, step.table);
  std::size_t found = 0;
  if (keys.size() > 1) {
    found = keys.size();
    session_->tryOut([&] {
      session_->runOwn("PRAGMA defer_foreign_keys=ON");
      for (std::size_t i = 0; i < step.statements.size(); ++i) {
        // The pragma leaves no statement that was prepared before it as it was.
        const auto fresh = std::make_shared<StatementPool>(step.statements[i].text);
        const auto statement = bound(fresh, step.statements[i], SQLITE_STATIC);
        while (database.step(statement.get())) {
        }
      }
      for (found = 0; found < keys.size(); ++found) {
        const auto check =
            session_->own("SELECT 1 FROM pragma_foreign_key_check(" + tsql::quotedText(keys[found].child) +
                          ") WHERE fkid=" + std::to_string(keys[found].number));
        if (database.stepOwn(check.get())) break;
      }
    });
  }
  if (found < keys.size()) return explainer.broken(keys[found], verb, step.table);
  return tsql::SqlError(tsql::Message::ConstraintConflict,
                        {verb, "FOREIGN KEY", "FK_" + step.table, "table \"dbo." + step.table + "\""});
}

void BatchRun::runDdl(CompiledProgram& program, std::size_t index, const tsql::DdlStep& step) {
  refuseDoomed({});
  session_->beforeDefinition();
  auto& database = session_->database();
  for (const auto& table : step.dropped) {
    if (!ConstraintExplainer(database, session_->catalogue()).isReferenced(table)) continue;
    throw tsql::SqlError(3726, 16,
                         "Could not drop object '" + table + "' because it is referenced by a FOREIGN KEY constraint.");
  }
  const auto& pools = program.steps[index].pools;
  session_->atomically([&] {
    auto pool = pools.begin();
    for (const auto& refusal : step.refusals) {
      const auto statement = bound(*pool++, refusal.query, SQLITE_STATIC);
      if (database.step(statement.get())) throw tsql::SqlError(refusal.number, 16, refusal.message);
    }
    const auto run = [&](const std::vector<tsql::Statement>& statements) {
      for (const auto& each : statements) {
        const auto statement = bound(*pool++, each, SQLITE_STATIC);
        while (database.step(statement.get())) {
        }
      }
    };
    run(step.preparations);
    for (const auto& change : step.redefinitions) database.redefine(change.table, change.temporary, change.text);
    run(step.statements);
    (void)session_->keepMadeIdentities();
  });
  for (const auto& table : step.dropped) session_->forgetTable(table);
  session_->setDefinitionsChanged();
  session_->setRowCount(0);
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

Lease BatchRun::bound(const std::shared_ptr<StatementPool>& pool, const tsql::Statement& statement,
                      sqlite3_destructor_type lifetime) {
  Lease lease(session_->database(), pool);
  int position = 0;
  for (const auto& parameter : statement.parameters) bind(lease.get(), ++position, parameter, lifetime);
  return lease;
}

void BatchRun::bind(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter,
                    sqlite3_destructor_type lifetime) {
  using Source = tsql::Parameter::Source;
  const auto index = static_cast<std::size_t>(parameter.index);
  const auto bindValue = [&](const Datum& value, sqlite3_destructor_type life) {
    if (!parameter.column.empty()) {
      const auto assigned = tsql::assign(value, parameter.from, parameter.to, parameter.column, accountSetCollation());
      return bindDatum(statement, position, assigned.datum(), SQLITE_TRANSIENT);
    }
    if (sameType(parameter.from, parameter.to)) return bindDatum(statement, position, value, life);
    const auto converted = tsql::convert(value, parameter.from, parameter.to, std::nullopt, accountSetCollation());
    bindDatum(statement, position, converted.datum(), SQLITE_TRANSIENT);
  };
  switch (parameter.source) {
    case Source::Literal:
      return bindValue(literalDatum(batch_.literals[index]), lifetime);
    case Source::Variable:
      return bindValue(variables_[index].datum(), lifetime);
    case Source::Placeholder:
      return bindPlaceholder(statement, position, parameter, lifetime);
    case Source::RowCount:
      return bindValue(Datum(session_->rowCount()), lifetime);
    case Source::Error:
      return bindValue(Datum(session_->lastError()), lifetime);
    case Source::TranCount:
      return bindValue(Datum(session_->transactionCount()), lifetime);
    case Source::Identity:
    case Source::ScopeIdentity: {
      const auto identity = session_->identity();
      if (!identity) return bindValue(Datum(), lifetime);
      return bindValue(Datum(std::to_string(*identity)), SQLITE_TRANSIENT);
    }
    case Source::RowColumn:
      return bindValue((*row_)[index].datum(), SQLITE_TRANSIENT);
    case Source::CaughtNumber:
    case Source::CaughtMessage:
    case Source::CaughtSeverity:
    case Source::CaughtState:
    case Source::CaughtLine:
    case Source::CaughtProcedure:
      return bindCaught(statement, position, parameter);
    case Source::XactState:
      return bindValue(Datum(session_->transactionState()), lifetime);
    case Source::DateFirst:
      return bindValue(Datum(session_->dateFirst()), lifetime);
    case Source::Fetch:
      return bindValue(Datum(session_->cursors().fetchStatus()), lifetime);
  }
}

void BatchRun::bindPlaceholder(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter,
                               sqlite3_destructor_type lifetime) {
  const auto& value = placeholders_[static_cast<std::size_t>(parameter.index)];
  const Datum datum =
      value.document
          ? Datum(tsql::BytesView(reinterpret_cast<const std::byte*>(value.document->data()), value.document->size()))
          : value.value.datum();
  if (sameType(parameter.from, parameter.to) || (value.document && parameter.to.isBinary() && parameter.to.isLong())) {
    return bindDatum(statement, position, datum, lifetime);
  }
  const auto converted = tsql::convert(datum, parameter.from, parameter.to, std::nullopt, accountSetCollation());
  bindDatum(statement, position, converted.datum(), SQLITE_TRANSIENT);
}

void BatchRun::bindDatum(sqlite3_stmt* statement, int position, const Datum& value, sqlite3_destructor_type lifetime) {
  int code = SQLITE_OK;
  switch (value.kind()) {
    case tsql::Kind::Null:
      code = sqlite3_bind_null(statement, position);
      break;
    case tsql::Kind::Integer:
      code = sqlite3_bind_int64(statement, position, value.integer());
      break;
    case tsql::Kind::Real:
      code = sqlite3_bind_double(statement, position, value.real());
      break;
    case tsql::Kind::Text: {
      const auto text = value.text();
      // Without a place in memory SQLite would take an empty text for null.
      code =
          sqlite3_bind_text64(statement, position, text.empty() ? "" : text.data(), text.size(), lifetime, SQLITE_UTF8);
      break;
    }
    case tsql::Kind::Blob: {
      const auto bytes = value.blob();
      code = bytes.empty() ? sqlite3_bind_zeroblob(statement, position, 0)
                           : sqlite3_bind_blob64(statement, position, bytes.data(), bytes.size(), lifetime);
      break;
    }
  }
  if (code != SQLITE_OK) session_->database().fail(code);
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
