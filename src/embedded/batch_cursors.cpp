#include "embedded/account_set_collation.h"
#include "embedded/batch_interpreter.h"
#include "tsql/convert.h"
#include "tsql/type_rules.h"

namespace tolvane::embedded {

using Verb = tsql::CursorStep::Verb;

void BatchRun::runCursor(CompiledProgram& program, std::size_t index, const tsql::CursorStep& step) {
  auto& cursors = session_->cursors();
  const int line = program.program.steps[index].line;
  switch (step.verb) {
    case Verb::Declare:
      return declareCursor(step);
    case Verb::Open:
      return openCursor(cursors.find(step.name), step.name, line);
    case Verb::Close: {
      auto& cursor = cursors.find(step.name);
      if (!cursor.open) throw tsql::SqlError(16917, 16, "Cursor is not open.");
      cursor.open = false;
      cursor.rows.clear();
      return;
    }
    case Verb::Deallocate:
      return cursors.deallocate(step.name);
    default:
      return fetchInto(program, index, step);
  }
}

void BatchRun::declareCursor(const tsql::CursorStep& step) {
  auto& cursor = session_->cursors().declare(step.name);
  if (step.local) localCursors_.push_back(step.name);
  cursor.query = step.query;
  cursor.reads = step.reads;
  cursor.keeps = step.keeps;
  cursor.forward = step.forward;
  cursor.catalogueVersion = session_->catalogue().version();
  // Values are those of now, whenever the cursor is opened: SQLite gives back what was bound.
  std::string values;
  tsql::Statement asked;
  for (std::size_t i = 0; i < step.query.statement.parameters.size(); ++i) values += (i > 0 ? ",?" : "?");
  if (values.empty()) return;
  asked.text = "SELECT " + values;
  asked.parameters = step.query.statement.parameters;
  const auto row = bound(std::make_shared<StatementPool>(asked.text), asked, SQLITE_TRANSIENT);
  if (!session_->database().step(row.get())) return;
  for (int i = 0; i < sqlite3_column_count(row.get()); ++i) cursor.values.push_back(resultOf(row.get(), i));
}

void BatchRun::openCursor(Cursor& cursor, const std::string& name, int line) {
  if (cursor.open) throw tsql::SqlError(16905, 16, "The cursor is already open.");
  session_->catalogue().refresh();
  if (cursor.catalogueVersion != session_->catalogue().version()) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "'" + name + "' in line " + std::to_string(line) +
                             ": opening a cursor after tables have been changed is not supported.");
  }
  const Lease lease(session_->database(), std::make_shared<StatementPool>(cursor.query.statement.text));
  for (std::size_t i = 0; i < cursor.values.size(); ++i) {
    bindDatum(lease.get(), static_cast<int>(i) + 1, cursor.values[i].datum(), SQLITE_STATIC);
  }
  cursor.rows.clear();
  while (session_->database().step(lease.get())) {
    std::vector<Result> row;
    for (std::size_t i = 0; i < cursor.query.columns.size(); ++i) {
      row.push_back(resultOf(lease.get(), static_cast<int>(i)));
    }
    cursor.rows.push_back(std::move(row));
  }
  cursor.open = true;
  cursor.stale = false;
  cursor.at = 0;
}

void BatchRun::fetchInto(CompiledProgram& program, std::size_t index, const tsql::CursorStep& step) {
  auto& cursor = session_->cursors().find(step.name);
  if (!cursor.open) throw tsql::SqlError(16917, 16, "Cursor is not open.");
  const auto& columns = cursor.query.columns;
  if (columns.size() != step.slots.size()) {
    throw tsql::SqlError(16924, 16,
                         "Cursorfetch: The number of variables declared in the INTO list must match that of selected "
                         "columns.");
  }
  static constexpr std::string_view names[] = {"next", "prior", "first", "last", "absolute", "relative"};
  if (cursor.forward && step.verb != Verb::Next) {
    const auto name = names[static_cast<std::size_t>(step.verb) - static_cast<std::size_t>(Verb::Next)];
    throw tsql::SqlError(16911, 16,
                         "fetch: The fetch type " + std::string(name) + " cannot be used with forward only cursors.");
  }
  if (cursor.stale) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "'" + step.name + "' in line " + std::to_string(program.program.steps[index].line) +
                             ": a cursor over a table that has been changed is not supported.");
  }
  std::int64_t count = 0;
  if (!step.query.statement.text.empty()) {
    const auto values = valuesOf(program, index, step.query);
    if (!values[0].isNull()) count = values[0].integer();
  }
  const auto* row = session_->cursors().fetch(cursor, step.verb, count);
  session_->setRowCount(row ? 1 : 0);
  if (!row) return;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto slot = static_cast<std::size_t>(step.slots[i]);
    const auto& to = frames_.front().program->program.variables[slot].type;
    if (tsql::conversionBetween(columns[i].type, to) != tsql::Conversion::Implicit) {
      throw tsql::SqlError(16922, 16,
                           "Cursor Fetch: Implicit conversion from data type " +
                               std::string(columns[i].type.baseName()) + " to " + std::string(to.baseName()) +
                               " is not allowed.");
    }
    variables_[slot] = tsql::convert((*row)[i].datum(), columns[i].type, to, std::nullopt, accountSetCollation());
  }
}

}  // namespace tolvane::embedded
