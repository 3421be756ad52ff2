#include "embedded/database.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <thread>
#include <utility>

#include "embedded/account_file.h"
#include "embedded/errors.h"

namespace tolvane::embedded {
namespace {

// Marks a file as an account set, in the place that SQLite's file header has for it. The letters "Tolv".
constexpr int applicationId = 0x546F6C76;

constexpr int virtualStepsBetweenLooks = 4000;

void checkFile(const std::filesystem::path& file) {
  const auto shown = file.string();
  std::error_code problem;
  const auto status = std::filesystem::status(file, problem);
  if (status.type() == std::filesystem::file_type::not_found) {
    throw openError(shown,
                    "there is no such file. Correct the Database value of the data source, or create the account "
                    "set first.");
  }
  if (problem) throw openError(shown, problem.message() + ". Check the path and the permissions of its folders.");
  if (status.type() != std::filesystem::file_type::regular) {
    throw openError(shown, "this is not a file. Correct the Database value of the data source.");
  }
  if (!isWritable(file)) throw openError(shown, "the file is read-only. Allow writing to it and try again.");
  const auto folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
  if (!isWritable(folder)) {
    throw openError(shown,
                    "its folder is read-only, and the account set keeps its journal there. Allow writing to the "
                    "folder and try again.");
  }
}

struct ResetAtExit {
  sqlite3_stmt* statement;
  explicit ResetAtExit(sqlite3_stmt* failed) : statement(failed) {}
  ResetAtExit(const ResetAtExit&) = delete;
  ResetAtExit& operator=(const ResetAtExit&) = delete;
  ~ResetAtExit() { sqlite3_reset(statement); }
};

std::string inQuotes(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// What SQLite says of a statement that has more of something than it takes, although SQL Server takes it.
bool saysLimit(std::string_view message) {
  static constexpr std::array<std::string_view, 4> beginnings{"parser stack overflow", "Expression tree is too large",
                                                              "too many ", "at most "};
  return std::ranges::any_of(beginnings, [message](std::string_view each) { return message.starts_with(each); });
}

}  // namespace

Lease::Lease(Database& database, std::shared_ptr<StatementPool> pool) : pool_(std::move(pool)) {
  if (pool_->free_.empty()) {
    statement_ = database.prepare(pool_->text_);
  } else {
    statement_ = std::move(pool_->free_.back());
    pool_->free_.pop_back();
  }
}

Lease& Lease::operator=(Lease&& other) noexcept {
  if (this != &other) {
    giveBack();
    pool_ = std::move(other.pool_);
    statement_ = std::move(other.statement_);
  }
  return *this;
}

void Lease::giveBack() noexcept {
  if (!statement_) return;
  sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
  pool_->free_.push_back(std::move(statement_));
  pool_.reset();
}

Database::Database(const std::filesystem::path& file, std::chrono::milliseconds busyTimeout)
    : name_(file.string()), busyTimeout_(busyTimeout) {
  checkFile(file);
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(name_.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(opened);
  if (code != SQLITE_OK) {
    throw openError(name_, std::string(opened ? sqlite3_errmsg(opened) : "out of memory") +
                               ". Check the file's permissions and try again.");
  }
  sqlite3_extended_result_codes(opened, 1);
  configure();
  checkIsAccountSet();
  if (sqlite3_db_readonly(opened, "main") == 1) {
    throw openError(name_, "the file cannot be written. Allow writing to it and try again.");
  }
}

Database::~Database() = default;

void Database::configure() {
  auto* db = handle_.get();
  // Values that are bound do not change a plan, or statements that are used again would be prepared again.
  sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
  sqlite3_busy_handler(
      db,
      [](void* context, int attempts) -> int {
        auto& self = *static_cast<Database*>(context);
        const auto now = std::chrono::steady_clock::now();
        if (attempts == 0) self.waitingSince_ = now;
        if (self.deadline_ && now >= *self.deadline_) {
          self.timedOut_ = true;
          return 0;
        }
        if (now - self.waitingSince_ >= self.busyTimeout_) return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(attempts < 5 ? 1 : 5));
        return 1;
      },
      this);
  // A prepared statement whose tables somebody else has changed would silently be prepared again from its SQLite text.
  // That text was made for the old tables; refusing the new preparation lets the batch be compiled again instead. The
  // tables of columns ask a pragma while they are read; that is no new preparation of theirs.
  sqlite3_set_authorizer(
      db,
      [](void* context, int action, const char*, const char*, const char*, const char*) -> int {
        auto& self = *static_cast<Database*>(context);
        if (!self.stepping_ || action == SQLITE_PRAGMA) return SQLITE_OK;
        self.schemaChanged_ = true;
        return SQLITE_DENY;
      },
      this);
}

void Database::checkIsAccountSet() {
  StatementHandle statement;
  try {
    statement = prepare("PRAGMA application_id");
    const bool row = stepOwn(statement.get());
    if (!row || sqlite3_column_int(statement.get(), 0) != applicationId) {
      throw openError(name_, "the file is not an account set. Correct the Database value of the data source.");
    }
    statement.reset();
    // WAL lets readers go on while somebody writes. FULL, because a report that was saved is promised to be there after
    // a power cut; a save is dominated by its document, not by one more wait for the disk.
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = FULL");
    run("PRAGMA foreign_keys = ON");
    run("PRAGMA cache_size = -8192");
    run("PRAGMA mmap_size = 33554432");
    run("PRAGMA temp_store = MEMORY");
  } catch (const AutomationError& error) {
    if (error.database().sqlState.empty()) throw;
    const int code = sqlite3_errcode(handle_.get()) & 0xFF;
    if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT) {
      throw openError(name_, "the file is not an account set. Correct the Database value of the data source.");
    }
    if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
      throw openError(name_,
                      "another program keeps it locked. Wait until that program has finished, or end it, and try "
                      "again.");
    }
    throw openError(name_, error.description());
  }
}

void Database::create(const std::filesystem::path& file) {
  const auto shown = file.string();
  if (std::filesystem::exists(file)) {
    throw AutomationError(oledb::unspecified, std::string(databaseSource),
                          "Cannot create the account set " + inQuotes(shown) +
                              ": there is a file of this name already. Choose another name, or remove the file.");
  }
  sqlite3* opened = nullptr;
  int code = sqlite3_open_v2(shown.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  const DatabaseHandle handle(opened);
  if (code == SQLITE_OK) {
    const auto text = "PRAGMA journal_mode = WAL; PRAGMA application_id = " + std::to_string(applicationId) +
                      "; PRAGMA user_version = " + std::to_string(textOrder);
    code = sqlite3_exec(opened, text.c_str(), nullptr, nullptr, nullptr);
  }
  if (code != SQLITE_OK) {
    throw AutomationError(oledb::unspecified, std::string(databaseSource),
                          "Cannot create the account set " + inQuotes(shown) + ": " +
                              (opened ? sqlite3_errmsg(opened) : "out of memory") +
                              ". Check that its folder exists and can be written.");
  }
}

StatementHandle Database::prepare(const std::string& text) {
  sqlite3_stmt* statement = nullptr;
  // A run-time function may ask the catalogue in the middle of a step.
  const bool stepping = std::exchange(stepping_, false);
  const int code = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  stepping_ = stepping;
  if (code != SQLITE_OK) fail(code);
  return StatementHandle(statement);
}

void Database::run(const char* text) {
  const auto statement = prepare(text);
  while (stepOwn(statement.get())) {
  }
}

bool Database::step(sqlite3_stmt* statement) {
  stepping_ = true;
  const int code = sqlite3_step(statement);
  stepping_ = false;
  return outcome(statement, code);
}

bool Database::stepOwn(sqlite3_stmt* statement) {
  // A run-time function may ask in the middle of a step.
  const bool stepping = std::exchange(stepping_, false);
  const int code = sqlite3_step(statement);
  stepping_ = stepping;
  return outcome(statement, code);
}

bool Database::outcome(sqlite3_stmt* statement, int code) {
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  const ResetAtExit reset(statement);
  fail(code);
}

void Database::fail(int resultCode) {
  if (functionError_) {
    const auto error = *functionError_;
    functionError_.reset();
    throw error;
  }
  if (schemaChanged_) {
    schemaChanged_ = false;
    throw SchemaChanged();
  }
  const bool timedOut = std::exchange(timedOut_, false);
  if (timedOut || (resultCode & 0xFF) == SQLITE_INTERRUPT) throw timeoutError({});
  const std::string message = sqlite3_errmsg(handle_.get());
  if ((resultCode & 0xFF) == SQLITE_CONSTRAINT) throw ConstraintFailure(resultCode, message);
  if (saysLimit(message)) {
    throw tsql::SqlError(tsql::notSupportedNumber, 16,
                         "A statement of this depth or width is not supported: " + message + ".");
  }
  throw storageError(name_, resultCode, message);
}

void Database::redefine(std::string_view table, bool temporary, const std::string& text) {
  const std::string schema = temporary ? "temp." : "main.";
  std::int64_t version = 0;
  {
    const auto pragma = prepare("PRAGMA " + schema + "schema_version");
    if (stepOwn(pragma.get())) version = sqlite3_column_int64(pragma.get(), 0);
  }
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
  try {
    const auto update = prepare("UPDATE " + schema + "sqlite_schema SET sql=?1 WHERE type='table' AND name=?2");
    sqlite3_bind_text(update.get(), 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    sqlite3_bind_text(update.get(), 2, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
    while (stepOwn(update.get())) {
    }
  } catch (const std::exception&) {
    sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0, nullptr);
    throw;
  }
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0, nullptr);
  // SQLite reads its schema anew when the version has changed, here and in other connections.
  run(("PRAGMA " + schema + "schema_version=" + std::to_string(version + 1)).c_str());
  run(("SELECT 1 FROM " + schema + "sqlite_schema LIMIT 1").c_str());
}

void Database::checkDeadline() const {
  if (deadline_ && std::chrono::steady_clock::now() >= *deadline_) throw timeoutError({});
}

void Database::setDeadline(Deadline deadline) {
  if (deadline == deadline_) return;
  deadline_ = deadline;
  const auto look = [](void* context) -> int {
    auto& self = *static_cast<Database*>(context);
    self.timedOut_ = self.deadline_ && std::chrono::steady_clock::now() >= *self.deadline_;
    return self.timedOut_ ? 1 : 0;
  };
  if (deadline_) {
    sqlite3_progress_handler(handle_.get(), virtualStepsBetweenLooks, look, this);
  } else {
    sqlite3_progress_handler(handle_.get(), 0, nullptr, nullptr);
  }
}

}  // namespace tolvane::embedded
