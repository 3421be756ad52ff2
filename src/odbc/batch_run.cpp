#include "odbc/batch_run.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "odbc/errors.h"
#include "odbc/row_reader.h"
#include "odbc/wide_text.h"

namespace tolvane::odbc {
namespace {

// More failing statements than a batch has is a driver that goes round in circles.
constexpr int mostFailures = 1000;

class Run {
 public:
  Run(Session& session, const std::string& sql, const std::u16string& text, const BatchOptions& options)
      : session_(session), sql_(sql), text_(text), options_(options) {}

  BatchResult run() {
    statement_ = session_.newStatement(options_.timeout);
    BoundParameters parameters(options_.parameters);
    parameters.bind(session_, statement_, sql_);
    auto outcome = parameters.execute(statement_, text_);
    while (outcome != SQL_NO_DATA || !stepped_) {
      if (SQL_SUCCEEDED(outcome)) {
        if (outcome == SQL_SUCCESS_WITH_INFO) (void)remember([&] { session_.failIfReported(statement_, sql_); });
        takeResult();
      } else if (outcome != SQL_NO_DATA) {
        if (!remember([&] { session_.fail(statement_, sql_); })) break;
      }
      // A changing statement that met no row reports "no data" as its own outcome, not as the batch's end.
      stepped_ = true;
      outcome = SQLMoreResults(statement_.get());
    }
    if (error_) throw *error_;
    // A driver keeps what a statement was given until the statement is given something else.
    if (!options_.hasDocument()) session_.giveBack(std::move(statement_));
    return std::move(result_);
  }

 private:
  // Keeps the first error; false when nothing more can come from the statement.
  template <typename Work>
  bool remember(Work&& work) {
    try {
      work();
    } catch (const AutomationError& error) {
      if (!error_) error_ = error;
      const auto& state = error.database().sqlState;
      const bool over = state.starts_with("08") || state.starts_with("57") || state.starts_with("HYT") ||
                        state == "HY010" || state == "24000" || state == "HY008";
      return !over && !session_.isLost() && ++failures_ < mostFailures;
    }
    return true;
  }

  void takeResult() {
    SQLSMALLINT columns = 0;
    if (!SQL_SUCCEEDED(SQLNumResultCols(statement_.get(), &columns))) columns = 0;
    if (columns == 0) {
      SQLLEN changed = -1;
      if (result_.changed < 0 && SQL_SUCCEEDED(SQLRowCount(statement_.get(), &changed))) result_.changed = changed;
      return;
    }
    (void)remember([&] { takeRows(columns); });
  }

  void takeRows(SQLSMALLINT columns) {
    auto set = std::make_shared<RowSet>(describe(session_, statement_, columns, sql_));
    set->sql = sql_;
    if (options_.source && result_.rowSets.empty())
      addSource(set->shape, *options_.source, session_.dialect(), statement_);
    readRows(session_, statement_, set->shape, sql_, set->rows);
    result_.rowSets.push_back(std::move(set));
  }

  Session& session_;
  const std::string& sql_;
  const std::u16string& text_;
  const BatchOptions& options_;
  StatementHandle statement_;
  BatchResult result_;
  std::optional<AutomationError> error_;
  int failures_ = 0;
  bool stepped_ = false;
};

}  // namespace

bool BatchOptions::hasDocument() const {
  return std::any_of(parameters.begin(), parameters.end(),
                     [](const ParameterValue& value) { return value.isDocument; });
}

BatchResult runBatch(Session& session, const std::string& sql, const BatchOptions& options) {
  const auto text = toWideOrRefuse(sql, "statement");
  return session.guarded(sql, [&] {
    if (mayChangeTables(sql)) session.forgetTables();
    return Run(session, sql, text, options).run();
  });
}

}  // namespace tolvane::odbc
