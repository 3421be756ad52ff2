#include <algorithm>

#include "embedded/account_set_collation.h"
#include "embedded/batch_interpreter.h"
#include "embedded/errors.h"
#include "tsql/convert.h"

namespace tolvane::embedded {
namespace {

constexpr int deepestText = 32;

}  // namespace

const std::vector<PlaceholderValue>& BatchRun::noPlaceholders() {
  static const std::vector<PlaceholderValue> none;
  return none;
}

void BatchRun::runText(CompiledProgram& program, std::size_t index, const tsql::RunTextStep& step) {
  if (depth_ >= deepestText) {
    throw tsql::SqlError(217, 16,
                         "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit 32).");
  }
  const auto values = valuesOf(program, index, step.query);
  if (step.parameters) return runParameterized(step, values);
  if (values[0].kind() != tsql::Kind::Text) return;
  BatchRun inner(*this, values[0].text(), {}, {});
  takeOver(inner);
}

// Runs the text, and drops the temporary tables that it has made.
void BatchRun::takeOver(BatchRun& inner) {
  const bool aborts = session_->abortsTransactions();
  const int dateFirst = session_->dateFirst();
  const auto tables = session_->temporaryTables();
  const auto transactions = session_->transactionCount();
  const auto leave = [&] {
    session_->setAbortsTransactions(aborts);
    session_->setDateFirst(dateFirst);
    session_->dropTemporaryTables(tables, [&] {
      for (const auto& rows : inner.result_.rowSets) rows->detach();
    });
    for (auto& rows : inner.result_.rowSets) result_.rowSets.push_back(std::move(rows));
    settled_ = result_.rowSets.size();
    changed_ = true;
  };
  try {
    inner.runInside();
  } catch (const tsql::SqlError& error) {
    leave();
    // The text could not be compiled, or its error goes to a handler of this batch.
    const bool handled = error.number() != tsql::notSupportedNumber && (handledOutside_ || isHandled(frames_.size()));
    if (handled || error.number() == tsql::notSupportedNumber) throw;
    session_->setLastError(error.number());
    session_->setRowCount(0);
    if (!firstError_) firstError_ = error;
    return;
  } catch (const AutomationError& error) {
    leave();
    // A text of nothing runs nothing.
    if (error.number() == oledb::noCommand) return;
    throw;
  }
  leave();
  if (!firstError_) firstError_ = inner.firstError_;
  if (inner.endsAll_) ended_ = endsAll_ = true;
  const auto now = session_->transactionCount();
  if (now == transactions || ended_) return;
  throw tsql::SqlError(266, 16,
                       "Transaction count after EXECUTE indicates a mismatching number of BEGIN and COMMIT statements. "
                       "Previous count = " +
                           std::to_string(transactions) + ", current count = " + std::to_string(now) + ".");
}

// sp_executesql: text, declarations, values.
void BatchRun::runParameterized(const tsql::RunTextStep& step, const std::vector<Result>& values) {
  const auto refuse = [](const std::string& word, std::string_view what) {
    return tsql::SqlError(tsql::notSupportedNumber, 16,
                          "'" + word + "' in line 1: " + std::string(what) + " is not supported.");
  };
  static constexpr std::string_view own[] = {"@statement", "@parameters"};
  for (std::size_t i = 0; i < step.arguments.size() && i < std::size(own); ++i) {
    if (step.arguments[i].type.isUnicode()) continue;
    throw tsql::SqlError(214, 16,
                         "Procedure expects parameter '" + std::string(own[i]) + "' of type 'ntext/nchar/nvarchar'.");
  }
  if (values[0].kind() != tsql::Kind::Text) return;
  std::vector<tsql::FormalParameter> formal;
  const bool declares = values.size() > 1 && values[1].kind() == tsql::Kind::Text;
  if (declares) formal = tsql::formalParameters(tsql::shape(values[1].text()));
  std::vector<Result> given(formal.size());
  std::vector<const tsql::RunTextStep::Argument*> passed(formal.size(), nullptr);
  for (std::size_t i = std::size(own); i < step.arguments.size(); ++i) {
    const auto& argument = step.arguments[i];
    auto place = i - std::size(own);
    if (!argument.name.empty()) {
      const auto named = [&](const auto& parameter) { return tsql::sameName(parameter.variable.name, argument.name); };
      place = static_cast<std::size_t>(std::ranges::find_if(formal, named) - formal.begin());
    }
    if (place >= formal.size() || passed[place]) throw refuse("sp_executesql", "a value without a parameter");
    passed[place] = &argument;
    const auto& type = formal[place].variable.type;
    if (argument.slot != tsql::RunTextStep::notOutput && !formal[place].output) {
      throw tsql::SqlError(8162, 16,
                           "The formal parameter \"" + formal[place].variable.name +
                               "\" was not declared as an OUTPUT parameter, but the actual parameter passed in "
                               "requested output.");
    }
    if (values[i].isNull()) continue;
    try {
      given[place] = tsql::convert(values[i].datum(), argument.type, type, std::nullopt, accountSetCollation());
    } catch (const tsql::SqlError&) {
      throw tsql::SqlError(tsql::Message::ConversionError, {argument.type.baseName(), type.baseName()});
    }
  }
  for (std::size_t i = 0; i < formal.size(); ++i) {
    if (passed[i]) continue;
    throw tsql::SqlError(8178, 16,
                         "The parameterized query '(" + values[1].text() + ")" + values[0].text() +
                             "' expects the parameter '" + formal[i].variable.name + "', which was not supplied.");
  }
  BatchRun inner(*this, values[0].text(), formal, std::move(given));
  takeOver(inner);
  if (inner.variables_.size() < formal.size()) return;
  for (std::size_t i = 0; i < formal.size(); ++i) {
    if (passed[i]->slot == tsql::RunTextStep::notOutput) continue;
    const auto slot = static_cast<std::size_t>(passed[i]->slot);
    const auto& to = frames_.front().program->program.variables[slot].type;
    variables_[slot] =
        tsql::convert(inner.variables_[i].datum(), formal[i].variable.type, to, std::nullopt, accountSetCollation());
  }
}

// The same for a text of another batch, which finds errors and results here.
void BatchRun::runInside() {
  compile();
  if (!compiled_->program.tableVariables.empty()) beginTableVariables();
  variables_.resize(compiled_->program.variables.size());
  runSteps(compiled_);
  settleResults();
}

}  // namespace tolvane::embedded
