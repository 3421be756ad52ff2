#include "plain_sqlite.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace tolvane::bench {
namespace {

void require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

int compareBytes(void*, int sizeA, const void* a, int sizeB, const void* b) {
  const int order = std::memcmp(a, b, static_cast<std::size_t>(std::min(sizeA, sizeB)));
  return order != 0 ? order : sizeA - sizeB;
}

}  // namespace

PlainStatement::PlainStatement(sqlite3* database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  require(result == SQLITE_OK, sqlite3_errmsg(database));
  statement_.reset(statement);
}

PlainStatement& PlainStatement::bind(int index, std::int64_t value) {
  sqlite3_bind_int64(statement_.get(), index, value);
  return *this;
}

PlainStatement& PlainStatement::bind(int index, std::string_view text) {
  sqlite3_bind_text(statement_.get(), index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  return *this;
}

PlainStatement& PlainStatement::bind(int index, const std::vector<std::uint8_t>& bytes) {
  sqlite3_bind_blob64(statement_.get(), index, bytes.data(), bytes.size(), SQLITE_STATIC);
  return *this;
}

bool PlainStatement::step() {
  const int result = sqlite3_step(statement_.get());
  require(result == SQLITE_ROW || result == SQLITE_DONE, "a plain statement failed");
  return result == SQLITE_ROW;
}

void PlainStatement::run() {
  while (step()) {
  }
  reset();
}

std::string PlainStatement::text(int column) const {
  const auto* start = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  return start ? std::string(start, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)))
               : std::string();
}

std::vector<std::uint8_t> PlainStatement::bytes(int column) const {
  const auto* start = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_.get(), column));
  return {start, start + sqlite3_column_bytes(statement_.get(), column)};
}

PlainDatabase::PlainDatabase(const std::string& path) {
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  require(result == SQLITE_OK, "the plain program cannot open the file");
  for (const char* name : {"TSQL", "TSQL_DECIMAL"}) {
    sqlite3_create_collation(database, name, SQLITE_UTF8, nullptr, compareBytes);
  }
  sqlite3_busy_timeout(database, 10000);
  execute("PRAGMA journal_mode=WAL");
}

void PlainDatabase::execute(const char* sql) {
  const int result = sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr);
  require(result == SQLITE_OK, sqlite3_errmsg(database_.get()));
}

}  // namespace tolvane::bench
