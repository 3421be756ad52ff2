// The rows of a record set that were read: small, since documents are kept elsewhere.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/cell.h"
#include "platform/bytes.h"

namespace tolvane::embedded {

/// Rows of a fixed number of cells. Texts are kept in blocks that never move, so cells stay valid as rows are added; a
/// value at least as large as a document is kept as one Bytes, handed out without another copy.
class RowBuffer {
 public:
  explicit RowBuffer(std::size_t columns) : columns_(columns) {}

  [[nodiscard]] std::size_t rows() const { return rowNumbers_.size(); }
  [[nodiscard]] std::size_t columns() const { return columns_; }

  /// Begins a row; every cell of it is null until it is set.
  std::size_t addRow(std::int64_t rowNumber);
  /// Keeps a copy of the cell.
  void set(std::size_t row, std::size_t column, const Cell& cell);
  /// Keeps the bytes themselves.
  void set(std::size_t row, std::size_t column, const Bytes& document);
  /// Gives a document back that is kept as one Bytes; its cell is unread then. Other cells stay.
  void letGo(std::size_t row, std::size_t column);

  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column) const { return cells_[row * columns_ + column]; }
  /// The document that a cell of kind bytes shows, or one that is made of it.
  [[nodiscard]] Bytes document(std::size_t row, std::size_t column) const;
  /// SQLite's number of the row; 0 when the rows have none.
  [[nodiscard]] std::int64_t rowNumber(std::size_t row) const { return rowNumbers_[row]; }

 private:
  [[nodiscard]] const char* keep(std::string_view text);

  std::size_t columns_;
  std::vector<Cell> cells_;
  std::vector<std::int64_t> rowNumbers_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t blockUsed_ = 0;
  std::size_t blockSize_ = 0;
  std::unordered_map<std::size_t, Bytes> documents_;  // by the cell's place
};

}  // namespace tolvane::embedded
