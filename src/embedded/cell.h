// One stored value of a row, as SQLite keeps it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "embedded/sqlite_handles.h"

namespace tolvane::embedded {

/// Shows a value that a statement's row, a row buffer or a caller keeps.
struct Cell {
  enum class Kind : std::uint8_t {
    null,
    integer,
    real,
    text,
    bytes,
    unread,  ///< a long value that is still in the database only
  };

  Kind kind = Kind::null;
  std::uint32_t size = 0;
  union {
    std::int64_t integer = 0;
    double real;
    const char* data;
  };

  [[nodiscard]] bool isNull() const { return kind == Kind::null; }
  [[nodiscard]] std::string_view text() const { return {data, size}; }
  [[nodiscard]] std::span<const std::uint8_t> bytes() const {
    return {reinterpret_cast<const std::uint8_t*>(data), size};
  }

  [[nodiscard]] static Cell ofInteger(std::int64_t value) {
    Cell cell;
    cell.kind = Kind::integer;
    cell.integer = value;
    return cell;
  }
  [[nodiscard]] static Cell ofReal(double value) {
    Cell cell;
    cell.kind = Kind::real;
    cell.real = value;
    return cell;
  }
  [[nodiscard]] static Cell ofText(std::string_view value) {
    Cell cell;
    cell.kind = Kind::text;
    cell.data = value.data();
    cell.size = static_cast<std::uint32_t>(value.size());
    return cell;
  }
  [[nodiscard]] static Cell ofBytes(std::span<const std::uint8_t> value) {
    Cell cell;
    cell.kind = Kind::bytes;
    cell.data = reinterpret_cast<const char*>(value.data());
    cell.size = static_cast<std::uint32_t>(value.size());
    return cell;
  }

  /// A column of a statement's current row; valid until the statement's next step.
  [[nodiscard]] static Cell of(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
      case SQLITE_INTEGER:
        return ofInteger(sqlite3_column_int64(statement, column));
      case SQLITE_FLOAT:
        return ofReal(sqlite3_column_double(statement, column));
      case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return ofText({text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
      }
      case SQLITE_BLOB: {
        const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, column));
        return ofBytes({bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
      }
      default:
        return {};
    }
  }
};

}  // namespace tolvane::embedded
