#include "embedded/row_set.h"

#include <algorithm>
#include <utility>

#include "embedded/errors.h"
#include "embedded/values.h"
#include "tsql/catalogue.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {
namespace {

constexpr std::size_t noRow = static_cast<std::size_t>(-1);

}  // namespace

RowSet::RowSet(std::shared_ptr<Session> session, BoundQuery query, std::string sql,
               std::function<BoundQuery()> recompile)
    : session_(std::move(session)),
      shape_(std::move(query.shape)),
      program_(std::move(query.program)),
      statement_(std::move(query.statement)),
      sql_(std::move(sql)),
      recompile_(std::move(recompile)),
      buffer_(shape_->columns.size()) {
  session_->add(*this);
}

RowSet::~RowSet() {
  finish();
}

void RowSet::finish() noexcept {
  if (session_) session_->remove(*this);
  statement_.giveBack();
}

Session& RowSet::session() const {
  if (!session_) throw AutomationError(AdoError::invalidConnection, std::string(recordsetSource));
  return *session_;
}

template <typename Work>
void RowSet::translated(Work&& work) {
  try {
    work();
  } catch (const tsql::SqlError& error) {
    throw session_->failure(error, sql_);
  } catch (const SchemaChanged&) {
    throw session_->failure(storageError(session_->database().name(), SQLITE_SCHEMA, "its tables have changed"), sql_);
  } catch (const AutomationError& error) {
    throw session_->failure(error, sql_);
  }
}

bool RowSet::has(std::size_t row) {
  if (buffer_.rows() > row) return true;
  raiseFailure();
  if (!statement_) return false;
  translated([&] {
    while (buffer_.rows() <= row && readOne()) {
    }
  });
  return buffer_.rows() > row;
}

void RowSet::raiseFailure() const {
  if (failed_) throw *failed_;
}

std::size_t RowSet::readAll() {
  raiseFailure();
  if (statement_) translated([&] { readRest(); });
  return buffer_.rows();
}

void RowSet::readFirst() {
  (void)readOne();
}

void RowSet::readRest() {
  while (readOne()) {
  }
}

bool RowSet::stepFirst() {
  session_->beginStatement();
  try {
    return session_->database().step(statement_.get());
  } catch (const SchemaChanged&) {
    if (!recompile_) throw;
  }
  auto query = recompile_();
  if (query.shape->columns.size() != shape_->columns.size()) {
    throw tsql::SqlError(tsql::Message::InsertColumnCount);
  }
  statement_ = std::move(query.statement);
  shape_ = std::move(query.shape);
  program_ = std::move(query.program);
  return session_->database().step(statement_.get());
}

bool RowSet::readOne() {
  if (!statement_) return false;
  bool more = false;
  try {
    more = begun_ ? session_->database().step(statement_.get()) : (begun_ = true, stepFirst());
  } catch (const std::exception&) {
    finish();
    throw;
  }
  if (!more) {
    finish();
    return false;
  }
  const int numberColumn = static_cast<int>(buffer_.columns());
  const auto number = shape_->hasRows() ? sqlite3_column_int64(statement_.get(), numberColumn) : 0;
  if (!own_.empty() && std::find(own_.begin(), own_.end(), number) != own_.end()) return readOne();
  fillRow(buffer_.addRow(number), statement_.get(), false);
  return true;
}

void RowSet::fillRow(std::size_t row, sqlite3_stmt* statement, bool again) {
  Cell unread;
  unread.kind = Cell::Kind::unread;
  const bool later = shape_->hasLong;
  for (std::size_t i = 0; i < buffer_.columns(); ++i) {
    if (again && shape_->columns[i].column.empty()) continue;  // a computed value stays as it was computed
    if (later && shape_->longReaders[i]) {
      buffer_.set(row, i, unread);
    } else {
      buffer_.set(row, i, Cell::of(statement, static_cast<int>(i)));
    }
  }
}

const Cell& RowSet::cell(std::size_t row, std::size_t column) {
  if (buffer_.cell(row, column).kind == Cell::Kind::unread) readLong(row, column);
  return buffer_.cell(row, column);
}

Value RowSet::value(std::size_t row, std::size_t column) {
  const auto& stored = cell(row, column);
  if (stored.kind == Cell::Kind::bytes) return buffer_.document(row, column);
  return toValue(stored, shape_->columns[column].type);
}

void RowSet::readLong(std::size_t row, std::size_t column) {
  auto& owner = session();
  auto& database = owner.database();
  const Lease lease(database, shape_->longReaders[column]);
  sqlite3_bind_int64(lease.get(), 1, buffer_.rowNumber(row));
  if (!database.stepOwn(lease.get())) throw AutomationError(AdoError::noCurrentRecord, std::string(fieldSource));
  translated([&] {
    const auto stored = Cell::of(lease.get(), 0);
    if (stored.kind != Cell::Kind::integer) return buffer_.set(row, column, stored);
    sqlite3_blob* opened = nullptr;
    const auto* schema = schemaName(shape_->table);
    int code = sqlite3_blob_open(database.get(), schema, shape_->table.c_str(), shape_->columns[column].column.c_str(),
                                 buffer_.rowNumber(row), 0, &opened);
    const BlobHandle blob(opened);
    if (code != SQLITE_OK) database.fail(code);
    const auto size = static_cast<std::size_t>(sqlite3_blob_bytes(opened));
    const auto document = Bytes::filled(size, [&](std::span<std::uint8_t> to) {
      code = sqlite3_blob_read(opened, to.data(), static_cast<int>(size), 0);
    });
    if (code != SQLITE_OK) database.fail(code);
    buffer_.set(row, column, document);
  });
}

// A record set that walks through a table of documents holds one row of them at a time.
void RowSet::setCurrent(std::size_t row) {
  if (row == current_) return;
  if (session_ && shape_->hasLong && current_ != noRow && current_ < buffer_.rows()) {
    for (std::size_t i = 0; i < buffer_.columns(); ++i) {
      if (shape_->columns[i].type.isLong()) buffer_.letGo(current_, i);
    }
  }
  current_ = row;
}

std::string RowSet::rowText() const {
  std::string text = "SELECT ";
  for (const auto& column : shape_->columns) {
    text += column.column.empty() || column.type.isLong() ? "NULL" : tsql::quoted(column.column);
    text += ',';
  }
  return text + "rowid FROM " + tsql::quoted(shape_->table) + " WHERE rowid=?1";
}

bool RowSet::reread(std::size_t row) {
  const auto lease = session().own(rowText());
  sqlite3_bind_int64(lease.get(), 1, buffer_.rowNumber(row));
  if (!session_->database().stepOwn(lease.get())) return false;
  fillRow(row, lease.get(), true);
  return true;
}

std::size_t RowSet::addOwn(std::int64_t rowNumber) {
  if (!begun_) own_.push_back(rowNumber);
  return buffer_.addRow(rowNumber);
}

std::size_t RowSet::readBeforeOwn() {
  if (own_.empty()) return 0;
  auto ownRows = std::exchange(buffer_, RowBuffer(shape_->columns.size()));
  const auto before = readAll();
  for (std::size_t row = 0; row < ownRows.rows(); ++row) {
    const auto added = buffer_.addRow(ownRows.rowNumber(row));
    for (std::size_t i = 0; i < ownRows.columns(); ++i) buffer_.set(added, i, ownRows.cell(row, i));
  }
  own_.clear();
  return before;
}

void RowSet::settle() {
  if (!own_.empty()) {
    // The own rows keep their places; the record set asks for the others by readBeforeOwn().
    return;
  }
  // A row that cannot be read is the reader's error, not the one's whose change makes it be read.
  try {
    if (shape_->hasLong && begun_ && current_ != noRow && current_ < buffer_.rows()) {
      for (std::size_t i = 0; i < buffer_.columns(); ++i) (void)cell(current_, i);
    }
    readAll();
  } catch (const AutomationError& error) {
    failed_ = error;
    finish();
  }
}

bool RowSet::reads(std::string_view table) const {
  return std::any_of(shape_->reads.begin(), shape_->reads.end(),
                     [&](const std::string& name) { return tsql::sameName(name, table); });
}

void RowSet::detach() {
  readAll();
  for (std::size_t row = 0; row < buffer_.rows(); ++row) {
    for (std::size_t i = 0; i < buffer_.columns(); ++i) (void)cell(row, i);
  }
  finish();
  session_.reset();
  recompile_ = {};
}

}  // namespace tolvane::embedded
