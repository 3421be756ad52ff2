#include <algorithm>

#include "embedded/account_set_collation.h"
#include "embedded/batch_interpreter.h"
#include "tsql/convert.h"
#include "tsql/error_reach.h"

namespace tolvane::embedded {
namespace {

constexpr int userError = 50000;
constexpr int lowestMessageNumber = 13000;
constexpr int severityToLog = 19;  // and above
constexpr int fatalSeverity = 20;  // and above
constexpr int highestSeverity = 25;
constexpr int highestState = 255;
constexpr int highestMessageSeverity = 10;

}  // namespace

void BatchRun::handle(tsql::SqlError error) {
  const auto& frame = frames_.back();
  if (error.line() == 0) error.at(frame.program->program.steps[frame.index].line);
  session_->setLastError(error.number());
  session_->setRowCount(0);
  // What is refused is not what a handler is there for.
  const bool refused = error.number() == tsql::notSupportedNumber;
  const bool compiling = std::exchange(notCaught_, false);
  if (!refused && !compiling && caughtHere(error)) return;
  if (!refused && (handledOutside_ || (!compiling && isHandled(frames_.size() - 1)))) {
    notCaught_ = compiling && frames_.size() > 1;
    throw error;
  }
  if (!firstError_) firstError_ = error;
  const bool raised = error.number() == userError && !error.thrown();
  if (tsql::reachOf(error) != tsql::ErrorReach::Batch && (raised || !session_->abortsTransactions())) return;
  ended_ = true;
  endsAll_ = refused || error.thrown() || tsql::undoesTransaction(error) || session_->abortsTransactions();
  if (tsql::undoesTransaction(error) || (!raised && session_->abortsTransactions())) session_->rollbackOfBatch();
}

// Into the CATCH block of the innermost TRY block around the step, if there is one. Errors that would have ended the
// batch and undone its transaction leave one that can only be undone.
bool BatchRun::caughtHere(const tsql::SqlError& error) {
  const auto& [program, place] = frames_.back();
  const auto step = static_cast<int>(place);
  const auto& handlers = program->program.handlers;
  const auto around = std::find_if(handlers.begin(), handlers.end(), [&](const tsql::Handler& handler) {
    return handler.tryBegin <= step && step < handler.tryEnd;
  });
  if (around == handlers.end()) return false;
  if (tsql::undoesTransaction(error) || session_->abortsTransactions()) session_->doom();
  const auto number = static_cast<std::size_t>(around - handlers.begin());
  caught_.insert_or_assign({frames_.size() - 1, number}, error);
  next_ = static_cast<std::size_t>(around->catchBegin);
  return true;
}

// Whether a TRY block is around the step of one of the outermost frames.
bool BatchRun::isHandled(std::size_t frames) const {
  return std::any_of(frames_.begin(), frames_.begin() + static_cast<std::ptrdiff_t>(frames), [](const Frame& frame) {
    const auto step = static_cast<int>(frame.index);
    return std::ranges::any_of(frame.program->program.handlers, [&](const tsql::Handler& handler) {
      return handler.tryBegin <= step && step < handler.tryEnd;
    });
  });
}

// The error of the innermost CATCH block around the step that runs.
const tsql::SqlError* BatchRun::caughtError() const {
  for (auto depth = frames_.size(); depth-- > 0;) {
    const auto step = static_cast<int>(frames_[depth].index);
    const auto& handlers = frames_[depth].program->program.handlers;
    for (std::size_t i = 0; i < handlers.size(); ++i) {
      if (step < handlers[i].catchBegin || step >= handlers[i].catchEnd) continue;
      const auto found = caught_.find({depth, i});
      if (found != caught_.end()) return &found->second;
    }
  }
  return nullptr;
}

void BatchRun::bindCaught(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter) {
  using Source = tsql::Parameter::Source;
  const auto* error = caughtError();
  Result value;
  if (error && parameter.source == Source::CaughtNumber) value = error->number();
  if (error && parameter.source == Source::CaughtMessage) value = error->message();
  if (error && parameter.source == Source::CaughtSeverity) value = error->severity();
  if (error && parameter.source == Source::CaughtState) value = error->state();
  if (error && parameter.source == Source::CaughtLine) value = error->line();
  const auto converted =
      tsql::convert(value.datum(), parameter.from, parameter.to, std::nullopt, accountSetCollation());
  bindDatum(statement, position, converted.datum(), SQLITE_TRANSIENT);
}

void BatchRun::runRaise(CompiledProgram& program, std::size_t index, const tsql::RaiseStep& step) {
  const auto values = valuesOf(program, index, step.query);
  const auto number = [&](std::size_t place, int least, int other, int most) {
    const auto given = values[place].isNull() ? 0 : values[place].integer();
    return given < least ? other : static_cast<int>(std::min<std::int64_t>(given, most));
  };
  const int severity = number(1, 0, 0, highestSeverity);
  const int state = number(2, 0, 1, highestState);
  const int line = program.program.steps[index].line;
  if (severity >= severityToLog && !step.logs) throw tsql::SqlError(tsql::Message::SeverityWithoutLog);
  if (severity >= fatalSeverity) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "'RAISERROR' in line " + std::to_string(line) + ": a severity above 19 is not supported.");
  }
  if (step.numbered) runRaiseOfNumber(values[0].isNull() ? 0 : values[0].integer(), severity, state, line);
  if (severity <= highestMessageSeverity) return;
  const auto message = values[0].kind() == tsql::Kind::Text ? values[0].text() : std::string();
  throw tsql::SqlError(userError, severity, message).withState(state);
}

// There are no messages of the user; those of SQL Server are not all here.
void BatchRun::runRaiseOfNumber(std::int64_t number, int severity, int state, int line) const {
  if (number < lowestMessageNumber || number == userError) {
    throw tsql::SqlError(tsql::Message::MessageNumber, {std::to_string(number)});
  }
  if (number < userError) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "'RAISERROR' in line " + std::to_string(line) + ": a message of the server is not supported.");
  }
  throw tsql::SqlError(tsql::Message::MessageNotFound,
                       {std::to_string(number), std::to_string(severity), std::to_string(state)});
}

void BatchRun::runThrow(CompiledProgram& program, std::size_t index, const tsql::ThrowStep& step) {
  if (!step.query) {
    const auto* error = caughtError();
    if (!error) return;
    throw tsql::SqlError(*error).asThrown();
  }
  const auto values = valuesOf(program, index, *step.query);
  const auto number = values[0].isNull() ? 0 : values[0].integer();
  if (number < userError) throw tsql::SqlError(tsql::Message::ThrownNumber, {std::to_string(number)});
  const auto message = values[1].isNull() ? std::string() : values[1].text();
  const auto state = values[2].isNull() ? 0 : values[2].integer();
  throw tsql::SqlError(static_cast<int>(number), 16, message).withState(static_cast<int>(state)).asThrown();
}

}  // namespace tolvane::embedded
