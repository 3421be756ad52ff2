// The rows of a result on this side: small cells, texts in blocks, documents as they came from the driver.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/bytes.h"

namespace tolvane::odbc {

/// One value of a row. Texts are kept by the buffer that the cell is in.
struct Cell {
  enum class Kind : std::uint8_t { null, integer, real, text, document };

  Kind kind = Kind::null;
  std::uint32_t size = 0;
  union {
    std::int64_t integer = 0;
    double real;
    const char* data;
  };

  [[nodiscard]] std::string_view text() const { return {data, size}; }
  [[nodiscard]] static Cell ofInteger(std::int64_t value);
  [[nodiscard]] static Cell ofReal(double value);
  /// Shows the caller's text until it is put into a buffer.
  [[nodiscard]] static Cell ofText(std::string_view value);
};

class RowBuffer {
 public:
  explicit RowBuffer(std::size_t columns) : columns_(columns) {}

  [[nodiscard]] std::size_t rows() const { return columns_ == 0 ? 0 : cells_.size() / columns_; }
  [[nodiscard]] std::size_t columns() const { return columns_; }
  /// A row of nulls behind the others; gives its number.
  std::size_t addRow();
  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column) const { return cells_[row * columns_ + column]; }
  /// Pieces are joined when the document is asked for.
  [[nodiscard]] const Bytes& document(std::size_t row, std::size_t column);
  void set(std::size_t row, std::size_t column, const Cell& cell);
  void set(std::size_t row, std::size_t column, Bytes document) {
    set(row, column, std::vector<Bytes>{std::move(document)});
  }
  void set(std::size_t row, std::size_t column, std::vector<Bytes> pieces);
  /// Copies a row of another buffer of as many columns behind the own rows.
  std::size_t addCopy(const RowBuffer& from, std::size_t row);
  /// Puts a row behind all others.
  void moveToEnd(std::size_t row);

 private:
  [[nodiscard]] const char* keep(std::string_view text);

  std::size_t columns_;
  std::vector<Cell> cells_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t blockUsed_ = 0;
  std::size_t blockSize_ = 0;
  std::vector<std::vector<Bytes>> documents_;  // in pieces; a document's cell holds its place here
};

}  // namespace tolvane::odbc
