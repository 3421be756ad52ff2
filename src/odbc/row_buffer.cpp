#include "odbc/row_buffer.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "rowset/documents.h"

namespace tolvane::odbc {
namespace {

constexpr std::size_t smallestBlock = 1024;
constexpr std::size_t usualBlock = 256 * 1024;

}  // namespace

Cell Cell::ofInteger(std::int64_t value) {
  Cell cell;
  cell.kind = Kind::integer;
  cell.integer = value;
  return cell;
}

Cell Cell::ofReal(double value) {
  Cell cell;
  cell.kind = Kind::real;
  cell.real = value;
  return cell;
}

Cell Cell::ofText(std::string_view value) {
  Cell cell;
  cell.kind = Kind::text;
  cell.data = value.data();
  cell.size = static_cast<std::uint32_t>(value.size());
  return cell;
}

std::size_t RowBuffer::addRow() {
  const auto row = rows();
  cells_.resize(cells_.size() + columns_);
  return row;
}

const Bytes& RowBuffer::document(std::size_t row, std::size_t column) {
  auto& pieces = documents_[static_cast<std::size_t>(cell(row, column).integer)];
  if (pieces.size() != 1) pieces = {rowset::joined(pieces)};
  return pieces.front();
}

void RowBuffer::set(std::size_t row, std::size_t column, const Cell& cell) {
  auto& kept = cells_[row * columns_ + column];
  kept = cell;
  if (cell.kind == Cell::Kind::text) kept.data = keep(cell.text());
}

void RowBuffer::set(std::size_t row, std::size_t column, std::vector<Bytes> pieces) {
  auto& kept = cells_[row * columns_ + column];
  kept = Cell::ofInteger(static_cast<std::int64_t>(documents_.size()));
  kept.kind = Cell::Kind::document;
  documents_.push_back(std::move(pieces));
}

std::size_t RowBuffer::addCopy(const RowBuffer& from, std::size_t row) {
  const auto added = addRow();
  for (std::size_t i = 0; i < columns_; ++i) {
    const auto& cell = from.cell(row, i);
    if (cell.kind == Cell::Kind::document) {
      set(added, i, from.documents_[static_cast<std::size_t>(cell.integer)]);
    } else {
      set(added, i, cell);
    }
  }
  return added;
}

void RowBuffer::moveToEnd(std::size_t row) {
  const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(row * columns_);
  std::rotate(first, first + static_cast<std::ptrdiff_t>(columns_), cells_.end());
}

const char* RowBuffer::keep(std::string_view text) {
  if (blockUsed_ + text.size() > blockSize_ || blocks_.empty()) {
    const auto next = blocks_.empty() ? smallestBlock : usualBlock;
    blockSize_ = std::max(next, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
    blockUsed_ = 0;
  }
  auto* place = blocks_.back().get() + blockUsed_;
  if (!text.empty()) std::memcpy(place, text.data(), text.size());
  blockUsed_ += text.size();
  return place;
}

}  // namespace tolvane::odbc
