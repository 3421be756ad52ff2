#include "odbc/session.h"

#include <algorithm>
#include <array>
#include <utility>

#include "odbc/keys.h"
#include "odbc/wide_text.h"

namespace tolvane::odbc {
namespace {

constexpr std::size_t keptStatements = 2;

SQLPOINTER asPointer(std::int64_t number) {
  return reinterpret_cast<SQLPOINTER>(static_cast<std::intptr_t>(number));
}

// An error may have ended the transaction on the server's side already.
bool hadNoTransaction(const std::vector<Diagnostic>& diagnostics) {
  constexpr std::int32_t noCorrespondingBegin = 3903;
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](const Diagnostic& diagnostic) { return diagnostic.nativeNumber == noCorrespondingBegin; });
}

}  // namespace

Session::Session(const DataSourceName& name)
    : options_(connectionOptions(name)), publicName_(name.publicText()), dialect_(&Dialect::of("")) {
  SQLRETURN result = SQL_SUCCESS;
  environment_ = EnvironmentHandle(SQL_NULL_HANDLE, result);
  if (!environment_) throw AutomationError(RuntimeError::outOfMemory, std::string(applicationName));
  SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, asPointer(SQL_OV_ODBC3), 0);
  connect();
}

Session::~Session() {
  disconnect();
}

void Session::connect() {
  SQLRETURN result = SQL_SUCCESS;
  connection_ = ConnectionHandle(environment_.get(), result);
  if (!connection_) throw AutomationError(RuntimeError::outOfMemory, std::string(applicationName));
  // Drivers may not know these; those that do not are asked for nothing that they could get wrong.
  SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, asPointer(options_.loginTimeout), SQL_IS_UINTEGER);
  if (options_.networkTimeout > 0) {
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_TIMEOUT, asPointer(options_.networkTimeout),
                       SQL_IS_UINTEGER);
  }
  lost_ = false;
  const auto text = toWideOrRefuse(options_.text, "data-source name");
  result = SQLDriverConnectW(connection_.get(), nullptr, sqlText(text), static_cast<SQLSMALLINT>(text.size()), nullptr,
                             0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(result)) {
    auto error = connectionError("");
    connection_ = {};
    throw AutomationError(error.number(), error.source(),
                          "Cannot open the data source " + publicName_ + ": " + error.description())
        .withDatabase(error.database());
  }
  connected_ = true;
  lost_ = false;
  unproven_ = false;
  readFacts();
  prepareServer();
}

// A driver's own settings may have the server cut long values, which nobody would notice.
void Session::prepareServer() {
  if (!dialect_->cutsLongValues) return;
  auto statement = newStatement(options_.loginTimeout);
  const std::u16string uncut = u"SET TEXTSIZE 2147483647";
  // A server that does not know the option has nothing to cut by.
  SQLExecDirectW(statement.get(), sqlText(uncut), SQL_NTS);
  giveBack(std::move(statement));
}

void Session::disconnect() noexcept {
  idle_.clear();
  if (connected_) {
    // A driver does not disconnect in a transaction.
    if (inTransaction_ && !lost_) SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
    if (!SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) {
      // The driver manager itself may still believe in a transaction, and then keeps the connection.
      SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
      SQLDisconnect(connection_.get());
    }
  }
  connected_ = false;
  connection_ = {};
}

void Session::readFacts() {
  std::array<char16_t, 128> product{};
  SQLSMALLINT bytes = 0;
  SQLGetInfoW(connection_.get(), SQL_DBMS_NAME, product.data(), sizeof product, &bytes);
  dialect_ = &Dialect::of(toUtf8(std::u16string_view(product.data())).value_or(""));
  std::array<char16_t, 128> driver{};
  SQLGetInfoW(connection_.get(), SQL_DRIVER_NAME, driver.data(), sizeof driver, &bytes);
  // This one begins a transaction on the server at once; others when the first statement is sent.
  beginningAsksServer_ = toUtf8(std::u16string_view(driver.data())).value_or("").find("tdsodbc") != std::string::npos;
  SQLUINTEGER extensions = 0;
  SQLGetInfoW(connection_.get(), SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr);
  readsAnyColumn_ = (extensions & SQL_GD_ANY_COLUMN) != 0;
  readsBoundColumns_ = readsAnyColumn_ && (extensions & SQL_GD_BOUND) != 0;
}

AutomationError Session::connectionError(std::string_view what) {
  const auto diagnostics = diagnosticsOf(SQL_HANDLE_DBC, connection_.get());
  noteLoss(diagnostics);
  return toAutomationError(diagnostics, dialect_->numbers, what);
}

// A driver may report no more than "unknown error" for whatever is tried on a connection that has ended.
void Session::noteLoss(const std::vector<Diagnostic>& diagnostics) {
  lost_ = lost_ || saysConnectionLost(diagnostics) || (connected_ && isDead());
}

bool Session::isDead() const {
  SQLUINTEGER dead = SQL_CD_FALSE;
  const auto known = SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
  return SQL_SUCCEEDED(known) && dead == SQL_CD_TRUE;
}

void Session::fail(const StatementHandle& statement, std::string_view sql) {
  const auto diagnostics = diagnosticsOf(SQL_HANDLE_STMT, statement.get());
  noteLoss(diagnostics);
  throw toAutomationError(diagnostics, dialect_->numbers, sql);
}

void Session::failIfReported(const StatementHandle& statement, std::string_view sql) {
  const auto diagnostics = diagnosticsOf(SQL_HANDLE_STMT, statement.get());
  if (!hidesFailure(diagnostics)) return;
  noteLoss(diagnostics);
  throw toAutomationError(diagnostics, dialect_->numbers, sql);
}

void Session::requireUsable(std::string_view sql) {
  if (inTransaction_ && doomed_) throw transactionIsOver(sql);
  if (std::exchange(unproven_, false) && !answers()) reconnect();
  // A rollback that did not go through has ended the connection; nothing of it is left to be lost.
  if (!connected_ && !lost_ && !inTransaction_) connect();
  if (!lost_ && connected_) return;
  AutomationError error(oledb::unspecified, std::string(rowset::databaseSource),
                        "The connection to " + publicName_ + " is lost. The next call opens it anew.");
  error.withDatabase({std::string(sql), "08S01", 0});
  throw error;
}

void Session::recordFailure() {
  ++failures_;
  doomed_ = inTransaction_;
}

bool Session::tryAutoCommit(bool on) {
  return SQL_SUCCEEDED(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                                          asPointer(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
}

void Session::setAutoCommit(bool on) {
  if (!tryAutoCommit(on)) throw connectionError(on ? "COMMIT TRANSACTION" : "BEGIN TRANSACTION");
}

void Session::begin() {
  constexpr std::string_view what = "BEGIN TRANSACTION";
  if (inTransaction_) throw AutomationError(AdoError::illegalOperation, std::string(rowset::connectionSource));
  // Nothing has been done on the connection yet, so whatever was lost with it is only the connection.
  if (std::exchange(unproven_, false) && !tryAutoCommit(false)) reconnect();
  guarded(what, [&] { setAutoCommit(false); });
  inTransaction_ = true;
  doomed_ = false;
}

void Session::commit() {
  constexpr std::string_view what = "COMMIT TRANSACTION";
  if (!inTransaction_) {
    ++failures_;
    AutomationError error(rowset::oledbNumber(3902), std::string(rowset::databaseSource),
                          "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
    error.withDatabase({std::string(what), std::string(rowset::sqlState(3902)), 3902});
    throw error;
  }
  guarded(what, [&] {
    if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_COMMIT))) throw connectionError(what);
  });
  inTransaction_ = false;
  guarded(what, [&] { setAutoCommit(true); });
}

void Session::rollback() noexcept {
  if (!inTransaction_) return;
  inTransaction_ = false;
  doomed_ = false;
  forgetTables();
  // With the connection everything in the transaction has gone; there is nothing left to undo.
  if (lost_) return;
  const bool undone = SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK)) ||
                      hadNoTransaction(diagnosticsOf(SQL_HANDLE_DBC, connection_.get()));
  const bool asBefore = undone && SQL_SUCCEEDED(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                                                                   asPointer(SQL_AUTOCOMMIT_ON), SQL_IS_UINTEGER));
  // Whatever the server still holds of the transaction must not be committed with what comes next: without its
  // connection it is undone.
  if (!asBefore) disconnect();
}

bool Session::answers() {
  if (lost_ || !connected_ || isDead()) return false;
  // Drivers know of a lost connection only when they use it.
  auto statement = newStatement(options_.loginTimeout);
  const std::u16string ping = u"SELECT 1";
  const bool answered = SQL_SUCCEEDED(SQLExecDirectW(statement.get(), sqlText(ping), SQL_NTS));
  if (answered) giveBack(std::move(statement));
  return answered;
}

void Session::ensureConnected() {
  if (inTransaction_) return;
  if (lost_ || !connected_ || isDead()) return reconnect();
  unproven_ = beginningAsksServer_;
  if (!unproven_ && !answers()) reconnect();
}

void Session::reconnect() {
  disconnect();
  forgetTables();
  doomed_ = false;
  connect();
}

StatementHandle Session::newStatement(std::int32_t timeout) {
  StatementHandle statement;
  if (idle_.empty()) {
    SQLRETURN result = SQL_SUCCESS;
    statement = StatementHandle(connection_.get(), result);
    if (!statement) throw connectionError("");
  } else {
    statement = std::move(idle_.back());
    idle_.pop_back();
  }
  // A driver that cannot stop a statement in time runs it to its end.
  SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT, asPointer(timeout), SQL_IS_UINTEGER);
  return statement;
}

void Session::giveBack(StatementHandle statement) {
  if (!statement || lost_ || idle_.size() >= keptStatements) return;
  SQLFreeStmt(statement.get(), SQL_CLOSE);
  SQLFreeStmt(statement.get(), SQL_UNBIND);
  SQLFreeStmt(statement.get(), SQL_RESET_PARAMS);
  SQLSetStmtAttrW(statement.get(), SQL_ATTR_ROW_ARRAY_SIZE, asPointer(1), SQL_IS_UINTEGER);
  idle_.push_back(std::move(statement));
}

const std::vector<std::string>& Session::keyOf(const std::string& table) {
  const auto known = keys_.find(table);
  if (known != keys_.end()) return known->second;
  auto key = readKey(*this, table);
  return keys_.insert_or_assign(table, std::move(key)).first->second;
}

const std::string& Session::identityOf(const std::string& table) {
  const auto known = identities_.find(table);
  if (known != identities_.end()) return known->second;
  auto identity = readIdentity(*this, table);
  return identities_.insert_or_assign(table, std::move(identity)).first->second;
}

void Session::forgetTables() {
  keys_.clear();
  identities_.clear();
}

}  // namespace tolvane::odbc
