// ADO's connection on the standalone suite.
#pragma once

#include <memory>
#include <string>

#include "automation/dispatch_object.h"
#include "platform/engine.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {

/// A context hands it out open; a new one is opened with a data-source name as a context opens it, so that a host's
/// call takes it in. Closing it leaves the record sets that it made as they are.
///
/// `Open([ConnectionString])`, `Close`, `Execute(CommandText[, out RecordsAffected][, Options])`, `State`,
/// `ConnectionString`, `CursorLocation` (client-side at first), `BeginTrans`, `CommitTrans`, `RollbackTrans`.
/// RecordsAffected are the rows of the last statement, -1 when the result has rows of its own.
class ConnectionObject : public automation::DispatchObject {
 public:
  explicit ConnectionObject(std::shared_ptr<SuiteThread> suite, std::shared_ptr<Connection> connection = nullptr)
      : suite_(std::move(suite)), connection_(std::move(connection)) {}

  /// Error 3705 when it is open.
  void open(const std::string& dsn);
  /// The open connection; error 3709, which record sets and commands raise, when it is closed.
  [[nodiscard]] Connection& opened(std::string_view source) const;
  [[nodiscard]] CursorLocation cursorLocation() const { return cursorLocation_; }

  /// What stands in an ActiveConnection argument: a connection, the data-source name for a new one, or nothing (null).
  /// Error 3001 for others.
  [[nodiscard]] static automation::ComPtr<ConnectionObject> of(const std::shared_ptr<SuiteThread>& suite,
                                                               const Value& value, std::string_view source);

  /// The rows that a statement affected, for a result that it gave.
  [[nodiscard]] std::int32_t recordsAffected(const std::shared_ptr<Recordset>& result) const;

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  void close();
  [[nodiscard]] automation::Variant execute(const automation::MemberCall& call);
  [[nodiscard]] EngineConnection& transactions() const;
  void requireOpen() const;

  std::shared_ptr<SuiteThread> suite_;
  std::shared_ptr<Connection> connection_;
  std::string connectionString_;
  CursorLocation cursorLocation_ = CursorLocation::client;
};

}  // namespace tolvane::standalone_com
