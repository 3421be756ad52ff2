// A thread's connection to one server: its handle, its transaction, what has gone wrong on it.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "odbc/connection_text.h"
#include "odbc/dialect.h"
#include "odbc/handles.h"
#include "platform/engine.h"

namespace tolvane::odbc {

/// Seconds that a statement may take unless its command says otherwise; 0 waits for ever.
inline constexpr std::int32_t defaultCommandTimeout = 30;

class Session {
 public:
  /// Raises what the server or the driver manager says, with the data source's name in front.
  explicit Session(const DataSourceName& name);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  [[nodiscard]] const Dialect& dialect() const { return *dialect_; }
  /// SQLGetData may be called for columns before a bound one, and for bound ones.
  [[nodiscard]] bool readsAnyColumn() const { return readsAnyColumn_; }
  [[nodiscard]] bool readsBoundColumns() const { return readsBoundColumns_; }

  void begin();
  /// Raises the server's error 3902 without a transaction, and the transaction's own end after an error in it.
  void commit();
  /// Raises nothing: a transaction that cannot be rolled back goes with its connection.
  void rollback() noexcept;
  [[nodiscard]] bool inTransaction() const { return inTransaction_; }

  /// Makes sure that the connection still stands before anything is done on it, and opens it anew when not. In a
  /// transaction it does nothing: there the loss must be an error. Where beginning a transaction asks the server, the
  /// first thing done on the connection is what finds out.
  void ensureConnected();

  /// A statement handle ready for a text, with the time it may take.
  [[nodiscard]] StatementHandle newStatement(std::int32_t timeout);
  /// Takes a handle back for the next statement.
  void giveBack(StatementHandle statement);

  /// Runs `work`, the whole of one operation. A failure of the database is counted, and in a transaction it is the
  /// last operation but the rollback: an error may have undone everything on the server's side, and what would be sent
  /// after it would be committed on its own.
  template <typename Work>
  auto guarded(std::string_view sql, Work&& work) {
    requireUsable(sql);
    try {
      return work();
    } catch (const AutomationError&) {
      recordFailure();
      throw;
    }
  }

  /// Raises the error that a function reported for a statement.
  [[noreturn]] void fail(const StatementHandle& statement, std::string_view sql);
  /// Raises what a function reported that did not fail, if there is an error in it.
  void failIfReported(const StatementHandle& statement, std::string_view sql);

  /// Columns of a table's primary key, or else of its first unique index without nullable columns; empty without one.
  [[nodiscard]] const std::vector<std::string>& keyOf(const std::string& table);
  /// The table's identity column as the driver's catalogue knows it, for servers that do not say it of a result; empty
  /// without one.
  [[nodiscard]] const std::string& identityOf(const std::string& table);
  /// Statements that may change tables make what is known about them old.
  void forgetTables();

  [[nodiscard]] std::uint64_t failures() const { return failures_; }
  /// The server is gone; nothing more can come from a statement.
  [[nodiscard]] bool isLost() const { return lost_; }

 private:
  void connect();
  void disconnect() noexcept;
  void readFacts();
  void prepareServer();
  void setAutoCommit(bool on);
  [[nodiscard]] bool tryAutoCommit(bool on);
  void reconnect();
  void requireUsable(std::string_view sql);
  void noteLoss(const std::vector<Diagnostic>& diagnostics);
  [[nodiscard]] bool isDead() const;
  void recordFailure();
  [[nodiscard]] bool answers();
  [[nodiscard]] AutomationError connectionError(std::string_view what);

  ConnectionOptions options_;
  std::string publicName_;
  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  std::vector<StatementHandle> idle_;
  const Dialect* dialect_ = nullptr;
  bool readsAnyColumn_ = false;
  bool readsBoundColumns_ = false;
  bool connected_ = false;
  bool lost_ = false;
  bool beginningAsksServer_ = false;
  bool unproven_ = false;  // nothing has been done on the connection in this call
  bool inTransaction_ = false;
  bool doomed_ = false;
  std::uint64_t failures_ = 0;
  std::map<std::string, std::vector<std::string>> keys_;
  std::map<std::string, std::string> identities_;
};

}  // namespace tolvane::odbc
