#include "host/copy_command.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "host/call_runner.h"
#include "host/progress_display.h"
#include "host/row_chunks.h"
#include "host/shipped_tables.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "platform/conversions.h"
#include "standalone/account_set_builder.h"
#include "standalone/account_set_maker.h"
#include "standalone/share_folder.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

[[noreturn]] void refuse(const std::string& description) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName), description);
}

struct Job {
  ShippedTable table;
  std::vector<FieldInfo> columns;
  std::int64_t rows = 0;
};

std::vector<Job> jobsOf(Connection& source) {
  std::vector<Job> jobs;
  for (auto& table : shippedTables()) {
    Job job{table, columnsOf(source, table.name), 0};
    if (job.columns.empty() && table.older) continue;
    if (job.columns.empty()) refuse("The source has no table " + table.name + "; it is not an account set.");
    job.rows = toInt64(source.execute("Select Count(*) From " + table.name)->value(std::size_t{0}));
    jobs.push_back(std::move(job));
  }
  return jobs;
}

bool hasColumn(const std::vector<FieldInfo>& columns, const std::string& name) {
  const auto same = [](char a, char b) { return (a | 32) == (b | 32); };
  return std::any_of(columns.begin(), columns.end(), [&](const FieldInfo& column) {
    return std::equal(column.name.begin(), column.name.end(), name.begin(), name.end(), same);
  });
}

// What the services add to the tables themselves: the columns of classification standards.
void addColumns(Connection& target, const Job& job) {
  const auto there = columnsOf(target, job.table.name);
  for (const auto& column : job.columns) {
    if (hasColumn(there, column.name)) continue;
    if (column.type != DataType::smallInt) {
      refuse("The source's column " + job.table.name + "." + column.name +
             " is not a column of an account set; nothing was copied.");
    }
    target.execute("Alter Table " + job.table.name + " Add " + column.name + " smallint Not Null Default (0)");
  }
}

std::string insertText(const Job& job) {
  std::string names;
  std::string marks;
  for (const auto& column : job.columns) {
    names += (names.empty() ? "" : ", ") + column.name;
    marks += marks.empty() ? "?" : ", ?";
  }
  auto text = "Insert Into " + job.table.name + " (" + names + ") Values (" + marks + ")";
  // For the one statement only: engines differ in how long the option lasts.
  if (!job.table.identity.empty()) {
    text = "Set Identity_Insert " + job.table.name + " On " + text + " Set Identity_Insert " + job.table.name + " Off";
  }
  return text;
}

void copyRow(Recordset& rows, Connection& target, const Job& job, const std::string& text) {
  const auto command = target.newCommand();
  command->setCommandText(text);
  command->setCommandTimeout(0);
  for (std::size_t i = 0; i < job.columns.size(); ++i) {
    const auto& column = job.columns[i];
    command->appendParameter({column.type, ParameterDirection::input, std::max(column.definedSize, 0), rows.value(i)});
  }
  (void)command->execute();
}

void copyRows(Connection& source, Connection& target, const Job& job, std::int64_t& done, ProgressDisplay& progress) {
  target.execute("Delete From " + job.table.name);
  const auto text = insertText(job);
  std::string names;
  for (const auto& column : job.columns) names += (names.empty() ? "" : ", ") + column.name;
  for (const auto& chunk : rowChunks(source, job.table.name, job.columns, job.table.identity, job.rows)) {
    const auto rows = source.execute("Select " + names + " From " + job.table.name + whereText(chunk));
    for (; !rows->eof(); rows->moveNext()) {
      copyRow(*rows, target, job, text);
      progress.show(++done, job.table.name);
    }
  }
}

std::int64_t copyAll(const Environment& environment, const CopyOptions& options) {
  const auto from = DataSourceName::parse(options.from);
  const auto to = DataSourceName::parse(options.to);
  if (standalone::connectionKey(from) == standalone::connectionKey(to)) refuse("Source and target are the same.");
  const auto source = standalone::connect(environment.engines, from);
  const auto jobs = jobsOf(*source);
  std::int64_t total = 0;
  for (const auto& job : jobs) total += job.rows;
  const bool hasOlder = std::any_of(jobs.begin(), jobs.end(), [](const Job& job) { return job.table.older; });
  std::int64_t done = 0;
  standalone::makeAccountSet(environment.engines, environment.makers, to, [&](EngineConnection& target) {
    const standalone::AccountSetBuilder builder(standalone::findShared("schema"), standalone::findShared("samples"));
    builder.build(target, std::nullopt);
    if (hasOlder) builder.buildOlderLayout(target);
    ProgressDisplay progress(environment.err, total, "rows",
                             ProgressDisplay::Options{.isTerminal = options.isTerminal});
    for (const auto& job : jobs) {
      addColumns(target, job);
      copyRows(*source, target, job, done, progress);
    }
  });
  return done;
}

}  // namespace

int runCopyCommand(const Environment& environment, const CopyOptions& options) {
  if (!isUtf8(options.from) || !isUtf8(options.to)) throw UsageError("A data-source name is not UTF-8.");
  try {
    const auto rows = copyAll(environment, options);
    environment.out << grouped(rows) << " rows were copied to " << DataSourceName::parse(options.to).publicText()
                    << ".\n";
    return exitDone;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
