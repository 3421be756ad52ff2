#include "embedded/row_writer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "embedded/errors.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {
namespace {

// Documents in several pieces are joined in memory up to this size; larger ones are written piece by piece.
constexpr std::size_t joinedUpTo = std::size_t{1} << 20;

bool isWrittenInPieces(const FieldEdit& edit) {
  return edit.isDocument && edit.chunks.size() > 1 && edit.documentSize() > joinedUpTo;
}

std::vector<std::uint8_t> joined(const FieldEdit& edit) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(edit.documentSize());
  for (const auto& chunk : edit.chunks) bytes.insert(bytes.end(), chunk.view().begin(), chunk.view().end());
  return bytes;
}

int bindBytes(sqlite3_stmt* statement, int position, std::span<const std::uint8_t> bytes,
              sqlite3_destructor_type life) {
  if (bytes.empty()) return sqlite3_bind_zeroblob(statement, position, 0);
  return sqlite3_bind_blob64(statement, position, bytes.data(), bytes.size(), life);
}

int bindDocument(sqlite3_stmt* statement, int position, const FieldEdit& edit) {
  if (isWrittenInPieces(edit)) return sqlite3_bind_zeroblob64(statement, position, edit.documentSize());
  if (edit.chunks.size() == 1) return bindBytes(statement, position, edit.chunks.front().view(), SQLITE_STATIC);
  return bindBytes(statement, position, joined(edit), SQLITE_TRANSIENT);
}

int bindStored(sqlite3_stmt* statement, int position, const tsql::Result& value) {
  switch (value.kind()) {
    case tsql::Kind::Null:
      return sqlite3_bind_null(statement, position);
    case tsql::Kind::Integer:
      return sqlite3_bind_int64(statement, position, value.integer());
    case tsql::Kind::Real:
      return sqlite3_bind_double(statement, position, value.real());
    case tsql::Kind::Text:
      return sqlite3_bind_text64(statement, position, value.text().data(), value.text().size(), SQLITE_STATIC,
                                 SQLITE_UTF8);
    case tsql::Kind::Blob:
      return bindBytes(statement, position,
                       {reinterpret_cast<const std::uint8_t*>(value.blob().data()), value.blob().size()},
                       SQLITE_STATIC);
  }
  return SQLITE_MISUSE;
}

class Writer {
 public:
  Writer(Session& session, const ResultShape& shape, const RowEdits& edits)
      : session_(session), shape_(shape), edits_(edits) {}

  std::int64_t insert() {
    std::string names;
    std::string marks;
    int position = 0;
    for (const auto& [column, edit] : edits_) {
      names += (position == 0 ? "" : ",") + tsql::quoted(shape_.columns[column].column);
      marks += (position == 0 ? "?" : ",?") + std::to_string(position + 1);
      ++position;
    }
    const auto table = tsql::quoted(shape_.table);
    const auto text = position == 0 ? "INSERT INTO " + table + " DEFAULT VALUES"
                                    : "INSERT INTO " + table + " (" + names + ") VALUES (" + marks + ")";
    std::int64_t number = 0;
    const auto add = [&] {
      execute(text, 0);
      number = sqlite3_last_insert_rowid(session_.database().get());
      writePieces(number);
      identity_ = session_.keepMadeIdentities();
    };
    if (makesIdentity()) {
      session_.atomically(add);
    } else {
      run(add);
    }
    return number;
  }
  /// The value that the engine made for the identity column of the new row.
  [[nodiscard]] std::optional<std::int64_t> identity() const { return identity_; }

  bool update(std::int64_t rowNumber) {
    std::string text = "UPDATE " + tsql::quoted(shape_.table) + " SET ";
    int position = 0;
    for (const auto& [column, edit] : edits_) {
      text += (position == 0 ? "" : ",") + tsql::quoted(shape_.columns[column].column) + "=?" +
              std::to_string(position + 1);
      ++position;
    }
    text += " WHERE rowid=?" + std::to_string(position + 1);
    bool found = false;
    run([&] {
      execute(text, rowNumber);
      found = sqlite3_changes64(session_.database().get()) > 0;
      if (found) writePieces(rowNumber);
    });
    return found;
  }

 private:
  // One statement alone is whole by itself; only documents in pieces need a transaction around them.
  template <typename Work>
  void run(Work&& work) {
    const bool pieces =
        std::any_of(edits_.begin(), edits_.end(), [](const auto& e) { return isWrittenInPieces(e.second); });
    if (pieces) {
      session_.atomically(work);
    } else {
      work();
    }
  }

  void execute(const std::string& text, std::int64_t rowNumber) {
    const auto lease = session_.own(text);
    int position = 0;
    for (const auto& [column, edit] : edits_) {
      ++position;
      const int code =
          edit.isDocument ? bindDocument(lease.get(), position, edit) : bindStored(lease.get(), position, edit.value);
      if (code != SQLITE_OK) session_.database().fail(code);
    }
    if (rowNumber != 0) sqlite3_bind_int64(lease.get(), position + 1, rowNumber);
    while (session_.database().stepOwn(lease.get())) {
    }
  }

  void writePieces(std::int64_t rowNumber) {
    const auto* schema = schemaName(shape_.table);
    for (const auto& [column, edit] : edits_) {
      if (!isWrittenInPieces(edit)) continue;
      sqlite3_blob* opened = nullptr;
      int code = sqlite3_blob_open(session_.database().get(), schema, shape_.table.c_str(),
                                   shape_.columns[column].column.c_str(), rowNumber, 1, &opened);
      const BlobHandle blob(opened);
      int offset = 0;
      for (const auto& chunk : edit.chunks) {
        if (code != SQLITE_OK) break;
        code = sqlite3_blob_write(opened, chunk.data(), static_cast<int>(chunk.size()), offset);
        offset += static_cast<int>(chunk.size());
      }
      if (code != SQLITE_OK) session_.database().fail(code);
    }
  }

  [[nodiscard]] bool makesIdentity() const {
    const auto* table = session_.catalogue().find(shape_.table);
    const int column = table ? table->identityColumn() : -1;
    return column >= 0 && table->columns[static_cast<std::size_t>(column)].made;
  }

  Session& session_;
  const ResultShape& shape_;
  const RowEdits& edits_;
  std::optional<std::int64_t> identity_;
};

template <typename Work>
void translated(Session& session, const ResultShape& shape, std::string_view verb, std::string_view sql, Work&& work) {
  try {
    work();
  } catch (const ConstraintFailure& failure) {
    throw session.failure(session.catalogue().explain(failure, verb, shape.table), sql);
  } catch (const tsql::SqlError& error) {
    throw session.failure(error, sql);
  } catch (const AutomationError& error) {
    throw session.failure(error, sql);
  }
}

}  // namespace

std::size_t FieldEdit::documentSize() const {
  std::size_t size = 0;
  for (const auto& chunk : chunks) size += chunk.size();
  return size;
}

std::int64_t insertRow(Session& session, const ResultShape& shape, const RowEdits& edits, std::string_view sql,
                       const OpenReader& changer) {
  std::int64_t number = 0;
  session.beforeChange(shape.table, &changer);
  std::optional<std::int64_t> made;
  translated(session, shape, "INSERT", sql, [&] {
    Writer writer(session, shape, edits);
    number = writer.insert();
    made = writer.identity();
  });
  const auto* table = session.catalogue().find(shape.table);
  if (table && table->identityColumn() >= 0) session.setIdentity(made.value_or(number));
  return number;
}

void updateRow(Session& session, const ResultShape& shape, std::int64_t rowNumber, const RowEdits& edits,
               std::string_view sql, const OpenReader& changer) {
  if (edits.empty()) return;
  session.beforeChange(shape.table, &changer);
  translated(session, shape, "UPDATE", sql, [&] {
    if (Writer(session, shape, edits).update(rowNumber)) return;
    throw AutomationError(
        oledb::concurrencyViolation, std::string(databaseSource),
        "Row cannot be located for updating. Some values may have been changed since it was last read.");
  });
}

}  // namespace tolvane::embedded
