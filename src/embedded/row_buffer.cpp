#include "embedded/row_buffer.h"

#include <algorithm>
#include <cstring>

namespace tolvane::embedded {
namespace {

constexpr std::size_t firstBlock = 1024;
constexpr std::size_t largestBlock = 256 * 1024;
// A value of this size or more gets memory of its own instead of a place in a block.
constexpr std::size_t documentSize = 4096;

Bytes copied(std::span<const std::uint8_t> bytes) {
  return Bytes::filled(bytes.size(),
                       [&](std::span<std::uint8_t> to) { std::copy(bytes.begin(), bytes.end(), to.begin()); });
}

}  // namespace

std::size_t RowBuffer::addRow(std::int64_t rowNumber) {
  cells_.resize(cells_.size() + columns_);
  rowNumbers_.push_back(rowNumber);
  return rowNumbers_.size() - 1;
}

void RowBuffer::set(std::size_t row, std::size_t column, const Cell& cell) {
  const auto place = row * columns_ + column;
  if (!documents_.empty()) documents_.erase(place);
  auto& kept = cells_[place];
  kept = cell;
  if (cell.kind == Cell::Kind::text) {
    kept.data = keep(cell.text());
  } else if (cell.kind == Cell::Kind::bytes) {
    if (cell.size >= documentSize) return set(row, column, copied(cell.bytes()));
    kept.data = keep(cell.text());
  }
}

void RowBuffer::set(std::size_t row, std::size_t column, const Bytes& document) {
  const auto place = row * columns_ + column;
  cells_[place] = Cell::ofBytes(document.view());
  documents_.insert_or_assign(place, document);
}

void RowBuffer::letGo(std::size_t row, std::size_t column) {
  const auto place = row * columns_ + column;
  if (documents_.erase(place) > 0) cells_[place].kind = Cell::Kind::unread;
}

Bytes RowBuffer::document(std::size_t row, std::size_t column) const {
  const auto found = documents_.find(row * columns_ + column);
  return found != documents_.end() ? found->second : copied(cell(row, column).bytes());
}

const char* RowBuffer::keep(std::string_view text) {
  if (text.empty()) return "";
  if (text.size() > blockSize_ - blockUsed_) {
    if (text.size() >= documentSize) {
      // A block for itself, put before the one in use.
      auto own = std::make_unique<char[]>(text.size());
      std::memcpy(own.get(), text.data(), text.size());
      const char* start = own.get();
      blocks_.insert(blocks_.empty() ? blocks_.end() : blocks_.end() - 1, std::move(own));
      return start;
    }
    blockSize_ = std::clamp(blockSize_ * 2, firstBlock, largestBlock);
    if (blockSize_ < text.size()) blockSize_ = documentSize;
    blocks_.push_back(std::make_unique<char[]>(blockSize_));
    blockUsed_ = 0;
  }
  char* start = blocks_.back().get() + blockUsed_;
  std::memcpy(start, text.data(), text.size());
  blockUsed_ += text.size();
  return start;
}

}  // namespace tolvane::embedded
