#include "embedded/embedded_connection.h"

#include "embedded/batch_run.h"
#include "embedded/embedded_command.h"
#include "embedded/embedded_recordset.h"
#include "embedded/errors.h"
#include "embedded/time_limit.h"

namespace tolvane::embedded {
namespace {

constexpr std::int32_t noRecords = 128;

// ADO's own limit for a connection that was given none.
constexpr std::chrono::seconds defaultTimeout{30};

template <typename Work>
void translated(Session& session, std::string_view what, Work&& work) {
  try {
    work();
  } catch (const tsql::SqlError& error) {
    throw session.failure(error, what);
  } catch (const ConstraintFailure& failure) {
    throw session.failure(session.catalogue().explain(failure, "COMMIT", {}), what);
  } catch (const AutomationError& error) {
    throw session.failure(error, what);
  }
}

}  // namespace

std::shared_ptr<Recordset> EmbeddedConnection::execute(const std::string& sql, std::int32_t options) {
  const TimeLimit limit(session_->database(), defaultTimeout);
  auto result = runBatch(session_, sql, {}, FirstRead::now);
  const bool discarded = options != unspecifiedOptions && (options & noRecords) != 0;
  if (discarded) return nullptr;
  return EmbeddedRecordset::of(session_, std::move(result));
}

std::shared_ptr<Recordset> EmbeddedConnection::newRecordset() {
  return std::make_shared<EmbeddedRecordset>(session_);
}

std::shared_ptr<Command> EmbeddedConnection::newCommand() {
  return std::make_shared<EmbeddedCommand>(session_);
}

void EmbeddedConnection::begin() {
  translated(*session_, "BEGIN TRANSACTION", [&] { session_->beginForClient(); });
}

void EmbeddedConnection::commit() {
  translated(*session_, "COMMIT TRANSACTION", [&] { session_->commit(); });
}

void EmbeddedConnection::rollback() {
  if (!inTransaction()) return;
  translated(*session_, "ROLLBACK TRANSACTION", [&] { session_->rollback(); });
}

}  // namespace tolvane::embedded
