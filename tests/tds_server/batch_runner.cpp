#include "tds_server/batch_runner.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "tds_server/batch_text.h"

namespace tolvane::tds {
namespace {

using embedded::PlaceholderValue;

// Errors that end their statement only; the statements behind it still run.
bool endsStatementOnly(std::int32_t number) {
  static constexpr std::array<std::int32_t, 8> numbers{515, 547, 2601, 2627, 8134, 8115, 8152, 220};
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool changesRows(std::string_view text) {
  const auto words = firstWords(text, 1);
  return !words.empty() && (words[0] == "insert" || words[0] == "update" || words[0] == "delete");
}

}  // namespace

Outcome BatchRunner::run(std::string_view text, std::vector<PlaceholderValue> values, Answer& answer) {
  outcome_ = Outcome::answered;
  answer.limitLong(textSize_);
  const auto fault = state_.takeFault(text);
  if (fault && fault->when == Fault::When::beforeRunning) return Outcome::dropped;
  for (const auto& statement : statementsOf(text)) {
    const auto count = std::min(markCount(statement), values.size());
    const auto end = values.begin() + static_cast<std::ptrdiff_t>(count);
    const std::vector<PlaceholderValue> own(values.begin(), end);
    values.erase(values.begin(), end);
    if (runOne(statement, own, answer, fault) == Step::stop) break;
  }
  if (fault && fault->when == Fault::When::afterRunning) return Outcome::dropped;
  return outcome_;
}

BatchRunner::Step BatchRunner::runOne(const std::string& text, const std::vector<PlaceholderValue>& values,
                                      Answer& answer, const std::optional<Fault>& fault) {
  try {
    if (runOwn(text, answer)) return outcome_ == Outcome::answered ? Step::next : Step::stop;
    const auto result = embedded::runBatch(session_, text, values, embedded::FirstRead::now);
    const auto changed = session_->rowCount();
    for (const auto& set : result.rowSets) {
      if (answer.rows(*set, fault)) continue;
      outcome_ = Outcome::dropped;
      return Step::stop;
    }
    if (!result.rowSets.empty()) return Step::next;
    changesRows(text) ? answer.counted(static_cast<std::uint64_t>(changed)) : answer.ended();
    return Step::next;
  } catch (const AutomationError& error) {
    answer.failed(error);
    undoAfterError(answer);
    return endsStatementOnly(error.database().nativeNumber) ? Step::next : Step::stop;
  }
}

void BatchRunner::undoAfterError(Answer& answer) {
  if (!state_.imitation().errorsUndoTransactions) return;
  session_->rollbackIfAny();
  announceTransaction(answer.tokens());
}

bool BatchRunner::runOwn(const std::string& text, Answer& answer) {
  const auto words = firstWords(text, 2);
  const auto begins = [&](std::string_view first, std::string_view second) {
    return words.size() >= 2 && words[0] == first && words[1] == second;
  };
  if (begins("create", "database")) {
    state_.createDatabase(databaseIn(text));
  } else if (begins("drop", "database")) {
    state_.dropDatabase(databaseIn(text));
  } else if (begins("waitfor", "delay")) {
    if (!waitFor(text)) outcome_ = Outcome::attention;
  } else if (begins("set", "textsize")) {
    textSize_ = static_cast<std::uint32_t>(std::strtoul(firstWords(text, 3).back().c_str(), nullptr, 10));
  } else if (begins("alter", "database")) {
    // Nothing to be done: dropping a database ends its connections.
  } else {
    return false;
  }
  answer.ended();
  return true;
}

// False when the client has said something meanwhile.
bool BatchRunner::waitFor(const std::string& text) {
  const auto quote = text.find('\'');
  int seconds = 0;
  if (quote != std::string::npos) {
    for (std::size_t at = quote + 1; at + 1 < text.size() && at < quote + 8; at += 3) {
      seconds = seconds * 60 + std::atoi(text.substr(at, 2).c_str());
    }
  }
  return !stream_.waits(seconds * 1000);
}

void BatchRunner::announceTransaction(TokenWriter& tokens) {
  const bool open = session_->transactionCount() > 0;
  if (open == announced_) return;
  announced_ = open;
  if (open) ++transaction_;
  tokens.transaction(open ? Environment::beginTransaction : Environment::rollbackTransaction, transaction_);
}

}  // namespace tolvane::tds
