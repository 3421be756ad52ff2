// Statements of a batch that change rows or tables, and what their failures are told as.
#include <algorithm>
#include <utility>

#include "embedded/batch_interpreter.h"
#include "embedded/constraint_explainer.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {

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

}  // namespace tolvane::embedded
