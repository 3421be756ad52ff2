// One connection to an account set from the inside: the open file, what T-SQL knows of it, its transaction, and the
// record sets that still read from it.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/cursors.h"
#include "embedded/database.h"
#include "embedded/function_bridge.h"
#include "embedded/program_cache.h"
#include "embedded/schema_catalogue.h"
#include "embedded/table_variables.h"
#include "platform/error.h"
#include "tsql/functions.h"

namespace tolvane::embedded {

/// Something that still reads rows by a running statement.
class OpenReader {
 public:
  virtual ~OpenReader() = default;
  /// Reads what is left, so that nothing that happens to the tables from now on can be seen in the rows.
  virtual void settle() = 0;
  /// Whether rows of the table are among those that are read.
  [[nodiscard]] virtual bool reads(std::string_view table) const = 0;
  /// Whether a statement of it is in the middle of its rows.
  [[nodiscard]] virtual bool running() const = 0;

 protected:
  OpenReader() = default;
  OpenReader(const OpenReader&) = default;
  OpenReader& operator=(const OpenReader&) = default;
};

/// Used by one thread. Record sets and commands hold it alive.
class Session final : public tsql::Session {
 public:
  Session(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout);
  ~Session() override;

  [[nodiscard]] Database& database() { return database_; }
  [[nodiscard]] SchemaCatalogue& catalogue() { return catalogue_; }
  [[nodiscard]] ProgramCache& programs() { return programs_; }

  // Transactions. The depth is @@TRANCOUNT.
  /// Begins one, or counts one more. Waits for writers of other connections. The outermost one has a name if it was
  /// given one.
  void begin(std::string_view name = {});
  /// The same for the client, whose transaction no failing batch ends.
  void beginForClient();
  /// Ends the innermost; the outermost one writes. Raises 3902 without one, 3930 for one that may only be undone.
  void commit();
  /// Undoes everything, whatever the depth. Raises 3903 without one.
  void rollback();
  /// SAVE TRANSACTION: a place to which changes can be undone. Raises 628 without a transaction.
  void save(const std::string& name);
  /// Undoes what came after the savepoint of that name, or everything if it is that of the outermost transaction.
  /// Raises 3903 without a transaction, 6401 for another name, 3931 where the transaction may only be undone.
  void rollbackTo(const std::string& name);
  /// An error that a handler has caught leaves the transaction readable, to be undone as a whole. Not that of the
  /// client.
  void doom() { doomed_ = depth_ > 0 && !clientsOwn_; }
  [[nodiscard]] bool doomed() const { return doomed_; }
  /// XACT_STATE()
  [[nodiscard]] int transactionState() const { return depth_ == 0 ? 0 : doomed_ ? -1 : 1; }
  /// The same, for want of a transaction without an error.
  void rollbackIfAny() noexcept;
  /// What an error that ends the batch does to a transaction that a batch has begun.
  void rollbackOfBatch();
  /// SET XACT_ABORT: whether every error ends the batch.
  [[nodiscard]] bool abortsTransactions() const { return abortsTransactions_; }
  void setAbortsTransactions(bool on) { abortsTransactions_ = on; }

  /// Runs `work` so that all of its changes are made or none.
  template <typename Work>
  void atomically(Work&& work) {
    const bool whole = depth_ == 0;
    runOwn(whole ? "BEGIN IMMEDIATE" : "SAVEPOINT tolvane_statement");
    try {
      work();
      runOwn(whole ? "COMMIT" : "RELEASE tolvane_statement");
    } catch (const std::exception&) {
      undo(whole);
      throw;
    }
  }

  /// Runs `work` and undoes whatever it did; what it throws is lost.
  template <typename Work>
  void tryOut(Work&& work) noexcept {
    try {
      const bool whole = depth_ == 0;
      runOwn(whole ? "BEGIN IMMEDIATE" : "SAVEPOINT tolvane_statement");
      try {
        work();
      } catch (const std::exception&) {
        undo(whole);
        return;
      }
      undo(whole);
    } catch (const std::exception&) {
      return;
    }
  }

  /// Settles the record sets that a change of the table's rows would disturb. `changer` is the one that makes the
  /// change, which need not read what it has not begun to read.
  void beforeChange(std::string_view table, const OpenReader* changer = nullptr);
  /// Settles all, because tables are about to be made or to go.
  void beforeDefinition();
  void add(OpenReader& reader) { readers_.push_back(&reader); }
  void remove(OpenReader& reader) noexcept { std::erase(readers_, &reader); }

  /// A prepared form of one of the engine's own texts.
  [[nodiscard]] Lease own(const std::string& text);
  void runOwn(const std::string& text);

  /// The memory of the batch that was cut into tokens last, for the next one.
  [[nodiscard]] tsql::ShapedBatch takeShape() { return std::move(shape_); }
  void giveBackShape(tsql::ShapedBatch shape) noexcept { shape_ = std::move(shape); }

  // What the running batch tells the next statement.
  void beginStatement() {
    now_.reset();
    made_.reset();
  }
  void setRowCount(std::int64_t rows) { rowCount_ = rows; }
  void setLastError(std::int32_t number) { lastError_ = number; }
  void setIdentity(std::optional<std::int64_t> identity) { identity_ = identity; }
  /// SET IDENTITY_INSERT: the table that is ON for it; empty without one.
  [[nodiscard]] const std::string& identityInsert() const { return identityInsert_; }
  void setIdentityInsert(std::string table) { identityInsert_ = std::move(table); }
  /// A new connection has the options of the server.
  void forgetOptions() {
    abortsTransactions_ = false;
    identityInsert_.clear();
  }
  /// The identity values that the running statement has made are written down, with its rows or after it has failed;
  /// gives the last one, if it made any.
  std::optional<std::int64_t> keepMadeIdentities();
  // Identity values are never given twice, whatever becomes of the rows that got them.
  /// The rows of the table have got values up to this one.
  void usedIdentity(const std::string& table, std::int64_t value);
  /// A row of the table has got a value and failed.
  void lostIdentity(const std::string& table);
  /// The values begin anew.
  void forgetIdentity(const std::string& table) { usedIdentities_.erase(table); }
  /// The table is gone.
  void forgetTable(const std::string& table) {
    forgetIdentity(table);
    if (identityInsert_ == table) identityInsert_.clear();
  }
  void setDefinitionsChanged();
  [[nodiscard]] std::vector<std::string> temporaryTables();
  /// Drops all temporary tables but these; `before` runs if there is one to drop.
  void dropTemporaryTables(const std::vector<std::string>& kept, const std::function<void()>& before);
  [[nodiscard]] Cursors& cursors() { return cursors_; }
  [[nodiscard]] TableVariables& tableVariables() { return tableVariables_; }
  void setDateFirst(int day) { dateFirst_ = day; }

  /// Counts an error of the database and hands it on as automation sees it.
  [[nodiscard]] AutomationError failure(const tsql::SqlError& error, std::string_view sql);
  [[nodiscard]] AutomationError failure(AutomationError error, std::string_view sql);
  [[nodiscard]] std::uint64_t failures() const { return failures_; }

  // tsql::Session
  [[nodiscard]] tsql::DateTime now() const override;
  [[nodiscard]] tsql::DateTime utcNow() const override;
  [[nodiscard]] std::int64_t rowCount() const override { return rowCount_; }
  [[nodiscard]] std::int32_t lastError() const override { return lastError_; }
  [[nodiscard]] std::int32_t transactionCount() const override { return depth_; }
  [[nodiscard]] std::optional<std::int64_t> identity() const override { return identity_; }
  [[nodiscard]] std::optional<std::int64_t> scopeIdentity() const override { return identity_; }
  [[nodiscard]] std::optional<std::int64_t> lastIdentityOf(std::string_view table) override;
  void gaveIdentity(std::string_view table, std::int64_t value, bool isLast) override;
  [[nodiscard]] std::string databaseName() const override;
  [[nodiscard]] std::string userName() const override { return "dbo"; }
  [[nodiscard]] std::string version() const override;
  [[nodiscard]] std::optional<std::int64_t> objectId(std::string_view name, std::string_view type) const override;
  [[nodiscard]] std::vector<std::int64_t> constraints() const override { return catalogue_.constraints(); }
  [[nodiscard]] std::optional<tsql::DatabaseObject> object(std::int64_t id) const override {
    return catalogue_.object(id);
  }
  [[nodiscard]] const tsql::Table* tableNamed(std::string_view name) const override;
  [[nodiscard]] const tsql::Table* tableNumbered(std::int64_t id) const override;
  [[nodiscard]] int dateFirst() const override { return dateFirst_; }
  [[nodiscard]] tsql::RandomState& random() override { return random_; }
  [[nodiscard]] std::array<std::byte, 16> uniqueBytes() override;

 private:
  /// The name in the catalogue of what a name with or without owner and database means; nothing where it means an
  /// object that another owner or database would have.
  [[nodiscard]] std::optional<std::string> ownName(std::string_view name) const;
  [[nodiscard]] int textOrderOfFile();
  void makeIndexesAnew();
  void undo(bool whole) noexcept;
  void keepIdentities() noexcept;
  [[nodiscard]] std::optional<std::int64_t> writtenIdentity(std::string_view table);
  void writeIdentity(const std::string& table, std::int64_t value);
  void settleRunning();

  Database database_;
  FunctionBridge functions_;
  SchemaCatalogue catalogue_;
  ProgramCache programs_;
  tsql::ShapedBatch shape_;
  std::unordered_map<std::string, std::shared_ptr<StatementPool>> ownStatements_;
  std::vector<OpenReader*> readers_;
  std::int32_t depth_ = 0;
  bool clientsOwn_ = false;  // the client began the outermost transaction
  bool abortsTransactions_ = false;
  bool doomed_ = false;
  std::string transactionName_;
  std::vector<std::string> savepoints_;  // of the open transaction; SQLite knows them by their places here, from 1
  TableVariables tableVariables_{*this};
  Cursors cursors_;
  int dateFirst_ = 7;
  struct Used {
    std::int64_t value = 0;
    bool made = false;  // by the engine, up or down; otherwise by SQLite, which counts up
  };
  std::map<std::string, Used> usedIdentities_;  // by tables that the open transaction has written
  // What the running statement has made of the values of one table; no statement adds rows to two.
  struct Made {
    std::string table;
    std::optional<std::int64_t> last;   // from which the next one is counted
    std::optional<std::int64_t> given;  // the last that a row got
    bool changed = false;
  };
  std::optional<Made> made_;
  std::string identityInsert_;
  bool definitionsChanged_ = false;
  std::int64_t rowCount_ = 0;
  std::int32_t lastError_ = 0;
  std::optional<std::int64_t> identity_;
  std::uint64_t failures_ = 0;
  mutable std::optional<tsql::DateTime> now_;
  tsql::RandomState random_;
};

}  // namespace tolvane::embedded
