// The interpreter of one batch; batch_run.cpp runs its steps, batch_errors.cpp its errors and handlers, batch_texts.cpp
// the texts that it runs.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/batch_run.h"
#include "embedded/program_cache.h"
#include "embedded/row_set.h"
#include "embedded/session.h"
#include "tsql/compiler.h"
#include "tsql/datum.h"

namespace tolvane::embedded {

using tsql::Datum;
using tsql::Result;

class BatchRun {
 public:
  BatchRun(std::shared_ptr<Session> session, const std::string& sql, const std::vector<PlaceholderValue>& placeholders)
      : session_(std::move(session)), sql_(sql), placeholders_(placeholders) {
    for (const auto& placeholder : placeholders_) options_.placeholders.push_back(placeholder.type);
    options_.database = session_->databaseName();
    batch_ = session_->takeShape();
  }
  // A text that a step of another batch runs.
  BatchRun(const BatchRun& outer, const std::string& sql, const std::vector<tsql::FormalParameter>& parameters,
           std::vector<Result> values)
      : session_(outer.session_),
        sql_(sql),
        placeholders_(noPlaceholders()),
        variables_(std::move(values)),
        depth_(outer.depth_ + 1),
        handledOutside_(outer.handledOutside_ || outer.isHandled(outer.frames_.size())),
        tablesOutside_(outer.tablesBegun_ || outer.tablesOutside_) {
    for (const auto& parameter : parameters) options_.parameters.push_back(parameter.variable);
    options_.database = session_->databaseName();
    batch_ = session_->takeShape();
  }
  BatchRun(const BatchRun&) = delete;
  BatchRun& operator=(const BatchRun&) = delete;
  ~BatchRun() {
    if (tablesBegun_) session_->tableVariables().end();
    for (const auto& name : localCursors_) session_->cursors().deallocateIfAny(name);
    if (depth_ == 0 && session_->doomed()) session_->rollbackIfAny();
    session_->giveBackShape(std::move(batch_));
  }

  BatchResult run(FirstRead firstRead);
  void runInside();
  BoundQuery compileOnlyQuery();

 private:
  void compile();
  void runSteps(std::shared_ptr<CompiledProgram> program);
  void runStep(CompiledProgram& program, std::size_t index);
  void attempt(std::shared_ptr<CompiledProgram>& program, std::size_t index);
  void compileRest(std::shared_ptr<CompiledProgram>& program);
  void handle(tsql::SqlError error);
  [[nodiscard]] bool caughtHere(const tsql::SqlError& error);
  static const std::vector<PlaceholderValue>& noPlaceholders();
  [[nodiscard]] bool isHandled(std::size_t frames) const;
  [[nodiscard]] const tsql::SqlError* caughtError() const;
  void bindCaught(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter);
  void beginTableVariables();
  void finish();
  void loseIdentity(const tsql::StepBody& body, bool refused);
  [[nodiscard]] tsql::SqlError brokenDefinition(const tsql::DdlStep& step, const ConstraintFailure& failure) const;
  void checkIdentityInsert(const tsql::ExecuteStep& step) const;
  void setIdentityInsert(const tsql::OptionStep& step);

  void runQuery(CompiledProgram& program, std::size_t index, const tsql::QueryStep& step);
  void runExecute(CompiledProgram& program, std::size_t index, const tsql::ExecuteStep& step);
  [[nodiscard]] tsql::SqlError brokenKey(const tsql::ExecuteStep& step, std::string_view verb);
  void runDdl(CompiledProgram& program, std::size_t index, const tsql::DdlStep& step);
  void runAssign(CompiledProgram& program, std::size_t index, const tsql::AssignStep& step);
  void runPrint(CompiledProgram& program, std::size_t index, const tsql::PrintStep& step);
  void runRaise(CompiledProgram& program, std::size_t index, const tsql::RaiseStep& step);
  void runRaiseOfNumber(std::int64_t number, int severity, int state, int line) const;
  void runThrow(CompiledProgram& program, std::size_t index, const tsql::ThrowStep& step);
  void runTransaction(CompiledProgram& program, std::size_t index, const tsql::TransactionStep& step);
  void runOption(CompiledProgram& program, std::size_t index, const tsql::OptionStep& step);
  void runText(CompiledProgram& program, std::size_t index, const tsql::RunTextStep& step);
  void runParameterized(const tsql::RunTextStep& step, const std::vector<Result>& values);
  void takeOver(BatchRun& inner);
  void runCursor(CompiledProgram& program, std::size_t index, const tsql::CursorStep& step);
  void declareCursor(const tsql::CursorStep& step);
  void openCursor(Cursor& cursor, const std::string& name, int line);
  void fetchInto(CompiledProgram& program, std::size_t index, const tsql::CursorStep& step);
  [[nodiscard]] static Result resultOf(sqlite3_stmt* statement, int column);
  void refuseDoomed(std::string_view table) const;
  [[nodiscard]] std::vector<Result> valuesOf(CompiledProgram& program, std::size_t index, const tsql::Query& query);
  void runRowByRow(CompiledProgram& program, std::size_t index, const tsql::AssignStep& step);
  void runDeferred(CompiledProgram& program, std::size_t index, const tsql::DeferredStep& step);
  void jumpTo(int target);
  void forget(const CompiledProgram* program);
  [[nodiscard]] bool holds(CompiledProgram& program, std::size_t index, const tsql::JumpUnlessStep& step);

  [[nodiscard]] Lease bound(const std::shared_ptr<StatementPool>& pool, const tsql::Statement& statement,
                            sqlite3_destructor_type lifetime);
  void bind(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter, sqlite3_destructor_type lifetime);
  void bindDatum(sqlite3_stmt* statement, int position, const Datum& value, sqlite3_destructor_type lifetime);
  void bindPlaceholder(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter,
                       sqlite3_destructor_type lifetime);
  [[nodiscard]] BoundQuery boundQuery(CompiledProgram& program, std::size_t index, const tsql::QueryStep& step);
  [[nodiscard]] bool isSingleQuery() const;
  void settleResults();

  std::shared_ptr<Session> session_;
  const std::string& sql_;
  const std::vector<PlaceholderValue>& placeholders_;
  tsql::CompileOptions options_;
  tsql::ShapedBatch batch_;
  std::shared_ptr<CompiledProgram> compiled_;
  // What deferred steps became, by the program that they stand in and their place there.
  std::map<std::pair<const CompiledProgram*, std::size_t>, std::shared_ptr<CompiledProgram>> deferred_;
  std::shared_ptr<CompiledProgram> owner_;  // of the step that runs
  int leaving_ = 0;                         // breakOuter, continueOuter or a label on its way out of deferred steps
  // The programs that run, each inside a step of the one before it, and the places of their steps.
  struct Frame {
    const CompiledProgram* program = nullptr;
    std::size_t index = 0;
  };
  std::vector<Frame> frames_;
  // By the number of the frame and of the handler in it.
  std::map<std::pair<std::size_t, std::size_t>, tsql::SqlError> caught_;
  bool notCaught_ = false;  // the error that is on its way comes from compiling, which no handler around it sees
  const std::vector<Result>* row_ = nullptr;  // that AssignStep::forRow is run for
  std::vector<Result> variables_;
  std::optional<tsql::SqlError> firstError_;
  BatchResult result_;
  std::size_t next_ = 0;
  std::size_t settled_ = 0;  // how many of the results have been read to their end
  bool changed_ = false;     // something has run that must not run twice
  bool ended_ = false;
  bool tablesBegun_ = false;
  std::vector<std::string> localCursors_;
  bool endsAll_ = false;  // the error that has ended this batch ends those around it as well
  // Of a text that another batch runs.
  int depth_ = 0;
  bool handledOutside_ = false;
  bool tablesOutside_ = false;  // a batch around it has table variables
};

}  // namespace tolvane::embedded
