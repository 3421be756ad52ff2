#include "embedded/session.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <tuple>
#include <utility>

#include "embedded/errors.h"
#include "system/local_time.h"
#include "system/path_text.h"
#include "tsql/name_parts.h"
#include "tsql/sqlite_text.h"
#include "tsql/unicode.h"

namespace tolvane::embedded {
namespace {

// Own statements are few; the bound only guards against a caller that updates hundreds of tables in turn.
constexpr std::size_t ownStatementBound = 256;

}  // namespace

Session::Session(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout)
    : database_(file, busyTimeout), functions_(database_, *this), catalogue_(database_) {
  sqlite3_randomness(sizeof random_.first, &random_.first);
  random_.first &= 0x3FFFFFFF;
  if (textOrderOfFile() < textOrder) makeIndexesAnew();
}

int Session::textOrderOfFile() {
  const auto version = own("PRAGMA user_version");
  return database_.stepOwn(version.get()) ? sqlite3_column_int(version.get(), 0) : textOrder;
}

// Somebody else may have done it while this connection waited for the file.
void Session::makeIndexesAnew() {
  runOwn("BEGIN IMMEDIATE");
  try {
    if (textOrderOfFile() < textOrder) {
      runOwn("REINDEX TSQL");
      runOwn("PRAGMA user_version = " + std::to_string(textOrder));
    }
    runOwn("COMMIT");
  } catch (...) {
    if (database_.inTransaction()) runOwn("ROLLBACK");
    throw;
  }
}

Session::~Session() {
  rollbackIfAny();
}

void Session::begin(std::string_view name) {
  if (depth_ == 0) {
    // A statement in the middle of its rows keeps the state that it began with, and SQLite does not let a connection
    // write on an old state.
    settleRunning();
    runOwn("BEGIN IMMEDIATE");
    clientsOwn_ = false;
    transactionName_ = name;
  }
  ++depth_;
}

void Session::beginForClient() {
  begin();
  if (depth_ == 1) clientsOwn_ = true;
}

void Session::rollbackOfBatch() {
  if (depth_ > 0 && !clientsOwn_) rollback();
}

void Session::usedIdentity(const std::string& table, std::int64_t value) {
  if (depth_ == 0) return;
  auto& highest = usedIdentities_[table].value;
  highest = std::max(highest, value);
}

std::optional<std::int64_t> Session::writtenIdentity(std::string_view table) {
  const auto sequence = own("SELECT seq FROM " + std::string(schemaName(table)) + ".sqlite_sequence WHERE name=?1");
  sqlite3_bind_text(sequence.get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
  if (!database_.stepOwn(sequence.get())) return std::nullopt;
  return sqlite3_column_int64(sequence.get(), 0);
}

void Session::lostIdentity(const std::string& table) {
  if (made_) {
    // Values that the engine makes are counted one by one.
    try {
      (void)keepMadeIdentities();
    } catch (const std::exception&) {
      made_.reset();
    }
    return;
  }
  const auto* written = catalogue_.find(table);
  if (!written || written->temporary) return;
  const int identity = written->identityColumn();
  if (identity < 0 || written->columns[static_cast<std::size_t>(identity)].made) return;
  const std::int64_t last = writtenIdentity(table).value_or(0);
  auto& highest = usedIdentities_[table].value;
  highest = std::max(highest, last) + 1;
  keepIdentities();
}

std::optional<std::int64_t> Session::lastIdentityOf(std::string_view table) {
  if (!made_ || made_->table != table) made_ = Made{std::string(table), writtenIdentity(table), {}, false};
  return made_->last;
}

void Session::gaveIdentity(std::string_view table, std::int64_t value, bool isLast) {
  if (!made_ || made_->table != table) made_ = Made{std::string(table), writtenIdentity(table), {}, false};
  made_->given = value;
  if (!isLast) return;
  made_->last = value;
  made_->changed = true;
}

std::optional<std::int64_t> Session::keepMadeIdentities() {
  if (!made_) return std::nullopt;
  const Made made = std::move(*made_);
  made_.reset();
  if (made.changed && made.last) {
    writeIdentity(made.table, *made.last);
    if (depth_ > 0) usedIdentities_[made.table] = {*made.last, true};
  }
  return made.given;
}

void Session::writeIdentity(const std::string& table, std::int64_t value) {
  const std::string schema = schemaName(table);
  const auto update = own("UPDATE " + schema + ".sqlite_sequence SET seq=?2 WHERE name=?1");
  const auto insert =
      own("INSERT INTO " + schema + ".sqlite_sequence(name,seq) SELECT ?1,?2 WHERE EXISTS (SELECT 1 FROM " + schema +
          ".sqlite_schema WHERE name=?1) AND NOT EXISTS (SELECT 1 FROM " + schema + ".sqlite_sequence WHERE name=?1)");
  for (const auto* statement : {&update, &insert}) {
    sqlite3_bind_text(statement->get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
    sqlite3_bind_int64(statement->get(), 2, value);
    while (database_.stepOwn(statement->get())) {
    }
  }
}

// What was undone is written again: the numbers are gone.
void Session::keepIdentities() noexcept {
  try {
    for (const auto& [table, used] : usedIdentities_) {
      if (used.made || writtenIdentity(table).value_or(0) < used.value) writeIdentity(table, used.value);
    }
  } catch (const std::exception&) {
    // A value may be given once more then, which is better than to fail a second time.
  }
  if (depth_ == 0) usedIdentities_.clear();
}

void Session::commit() {
  if (depth_ == 0) throw tsql::SqlError(tsql::Message::CommitWithoutBegin);
  if (doomed_) throw tsql::SqlError(tsql::Message::Uncommittable);
  if (depth_ == 1) {
    runOwn("COMMIT");
    savepoints_.clear();
    definitionsChanged_ = false;
    usedIdentities_.clear();
  }
  --depth_;
}

void Session::rollback() {
  if (depth_ == 0) throw tsql::SqlError(tsql::Message::RollbackWithoutBegin);
  settleRunning();
  tableVariables_.keep();
  depth_ = 0;
  doomed_ = false;
  savepoints_.clear();
  // SQLite may have ended the transaction by itself, as it does when the disk is full.
  if (database_.inTransaction()) runOwn("ROLLBACK");
  if (std::exchange(definitionsChanged_, false)) catalogue_.invalidate();
  if (!usedIdentities_.empty()) keepIdentities();
  tableVariables_.putBack();
  cursors_.rolledBack();
}

void Session::save(const std::string& name) {
  if (depth_ == 0) throw tsql::SqlError(tsql::Message::SaveWithoutBegin);
  if (doomed_) throw tsql::SqlError(tsql::Message::Uncommittable);
  settleRunning();
  savepoints_.push_back(name);
  runOwn("SAVEPOINT save_" + std::to_string(savepoints_.size()));
}

void Session::rollbackTo(const std::string& name) {
  if (depth_ == 0) throw tsql::SqlError(tsql::Message::RollbackWithoutBegin);
  const auto found = std::find(savepoints_.rbegin(), savepoints_.rend(), name);
  if (found == savepoints_.rend()) {
    if (name == transactionName_ && !name.empty()) return rollback();
    throw tsql::SqlError(tsql::Message::NoSuchSavepoint, {name});
  }
  if (doomed_) throw tsql::SqlError(tsql::Message::UncommittableSave);
  settleRunning();
  tableVariables_.keep();
  savepoints_.erase(found.base(), savepoints_.end());
  runOwn("ROLLBACK TO save_" + std::to_string(savepoints_.size()));
  if (definitionsChanged_) catalogue_.invalidate();
  if (!usedIdentities_.empty()) keepIdentities();
  tableVariables_.putBack();
}

void Session::rollbackIfAny() noexcept {
  depth_ = 0;
  doomed_ = false;
  savepoints_.clear();
  if (database_.inTransaction()) sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  if (std::exchange(definitionsChanged_, false)) catalogue_.invalidate();
}

void Session::undo(bool whole) noexcept {
  if (!database_.inTransaction()) {
    depth_ = 0;
    return;
  }
  const char* text = whole ? "ROLLBACK" : "ROLLBACK TO tolvane_statement; RELEASE tolvane_statement";
  sqlite3_exec(database_.get(), text, nullptr, nullptr, nullptr);
}

void Session::beforeChange(std::string_view table, const OpenReader* changer) {
  cursors_.tableChanges(table);
  // Settling takes a reader off the list.
  const auto readers = readers_;
  for (auto* reader : readers) {
    // Outside a transaction a running reader would hold the write back, whatever it reads.
    const bool disturbed = reader == changer ? reader->running() : reader->reads(table);
    if (disturbed || (depth_ == 0 && reader->running())) reader->settle();
  }
}

void Session::beforeDefinition() {
  const auto readers = readers_;
  for (auto* reader : readers) reader->settle();
}

void Session::settleRunning() {
  const auto readers = readers_;
  for (auto* reader : readers) {
    if (reader->running()) reader->settle();
  }
}

Lease Session::own(const std::string& text) {
  auto found = ownStatements_.find(text);
  if (found == ownStatements_.end()) {
    if (ownStatements_.size() >= ownStatementBound) ownStatements_.clear();
    found = ownStatements_.emplace(text, std::make_shared<StatementPool>(text)).first;
  }
  return {database_, found->second};
}

void Session::runOwn(const std::string& text) {
  const auto statement = own(text);
  while (database_.stepOwn(statement.get())) {
  }
}

void Session::setDefinitionsChanged() {
  catalogue_.invalidate();
  definitionsChanged_ = depth_ > 0;
}

std::vector<std::string> Session::temporaryTables() {
  std::vector<std::string> names;
  const auto tables = own("SELECT name FROM temp.sqlite_schema WHERE type='table' AND name LIKE '#%'");
  while (database_.stepOwn(tables.get())) {
    names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(tables.get(), 0)));
  }
  return names;
}

void Session::dropTemporaryTables(const std::vector<std::string>& kept, const std::function<void()>& before) {
  bool dropped = false;
  for (const auto& name : temporaryTables()) {
    if (std::find(kept.begin(), kept.end(), name) != kept.end()) continue;
    if (!std::exchange(dropped, true)) {
      before();
      beforeDefinition();
    }
    runOwn("DROP TABLE temp." + tsql::quoted(name));
  }
  if (dropped) setDefinitionsChanged();
}

AutomationError Session::failure(const tsql::SqlError& error, std::string_view sql) {
  ++failures_;
  lastError_ = error.number();
  return toAutomationError(error, sql);
}

AutomationError Session::failure(AutomationError error, std::string_view sql) {
  ++failures_;
  auto detail = error.database();
  if (detail.sql.empty()) detail.sql = sql;
  error.withDatabase(std::move(detail));
  // A full disk and the like end SQLite's transaction together with the statement.
  if (!database_.inTransaction()) {
    depth_ = 0;
    doomed_ = false;
  }
  return error;
}

tsql::DateTime Session::now() const {
  if (now_) return *now_;
  const auto local = system::localTime();
  const auto ticks = tsql::ticksOf({local.hour, local.minute, local.second, local.millisecond});
  now_ = tsql::carried(tsql::daysOf({local.year, local.month, local.day}), ticks).value_or(tsql::DateTime{});
  return *now_;
}

// Zones are whole minutes from each other, so the clock is read once for both times.
tsql::DateTime Session::utcNow() const {
  using namespace std::chrono;
  const tsql::DateTime local = now();
  constexpr std::int64_t minutesPerDay = 24 * 60;
  const std::int64_t daysTo1970 = tsql::daysOf({1970, 1, 1});
  const std::int64_t world = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
  const std::int64_t here = ((local.days - daysTo1970) * minutesPerDay * 60000) +
                            std::int64_t{local.ticks} * 1000 / tsql::DateTime::ticksPerSecond;
  const auto offset = static_cast<std::int64_t>(std::llround(static_cast<double>(world - here) / 60000));
  return tsql::carried(local.days, local.ticks + offset * tsql::DateTime::ticksPerMinute).value_or(local);
}

std::string Session::databaseName() const {
  return database_.databaseName();
}

std::string Session::version() const {
  return std::string("Tolvane embedded account set, SQLite ") + sqlite3_libversion();
}

std::optional<std::int64_t> Session::objectId(std::string_view name, std::string_view type) const {
  const auto own = ownName(name);
  const auto object = own ? catalogue_.object(*own) : std::nullopt;
  if (!object || !(type.empty() || tsql::sameName(tsql::withoutTrailingBlanks(type), object->type)))
    return std::nullopt;
  return object->id;
}

const tsql::Table* Session::tableNamed(std::string_view name) const {
  const auto own = ownName(name);
  return own ? catalogue_.find(*own) : nullptr;
}

const tsql::Table* Session::tableNumbered(std::int64_t id) const {
  const auto object = catalogue_.object(id);
  return object && object->parent == 0 && !object->name.starts_with('#') ? catalogue_.find(object->name) : nullptr;
}

// Temporary tables live in a database of their own and are found by its name only, table variables by none.
std::optional<std::string> Session::ownName(std::string_view name) const {
  constexpr std::size_t mostParts = 3;
  auto parts = tsql::nameParts(name);
  if (!parts || parts->size() > mostParts) return std::nullopt;
  for (std::string& part : *parts) part.resize(tsql::withoutTrailingBlanks(part).size());
  parts->insert(parts->begin(), mostParts - parts->size(), std::string());
  const auto& [database, owner, object] = std::tie((*parts)[0], (*parts)[1], (*parts)[2]);
  if (object.empty() || object.starts_with('@') || !(owner.empty() || tsql::sameName(owner, "dbo")))
    return std::nullopt;
  const bool temporary = tsql::sameName(database, "tempdb");
  if (temporary != object.starts_with('#')) return std::nullopt;
  if (!temporary && !database.empty() && !tsql::sameName(database, databaseName())) return std::nullopt;
  return object;
}

std::array<std::byte, 16> Session::uniqueBytes() {
  std::array<std::byte, 16> bytes{};
  sqlite3_randomness(static_cast<int>(bytes.size()), bytes.data());
  return bytes;
}

}  // namespace tolvane::embedded
