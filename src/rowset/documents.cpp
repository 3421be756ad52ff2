#include "rowset/documents.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/conversions.h"

namespace tolvane::rowset {

std::optional<Bytes> bytesOf(const Value& value) {
  if (const auto* bytes = value.get<Bytes>()) return *bytes;
  if (const auto* text = value.get<std::string>(); text && text->empty()) return Bytes();
  const auto* array = value.array();
  if (!array || array->bounds.size() != 1 || array->elementType != ValueType::byte) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(array->elements.size());
  for (const auto& element : array->elements) bytes.push_back(toByte(element));
  return Bytes(std::move(bytes));
}

Bytes joined(const std::vector<Bytes>& pieces) {
  if (pieces.size() == 1) return pieces.front();
  std::size_t size = 0;
  for (const auto& piece : pieces) size += piece.size();
  return Bytes::filled(size, [&](std::span<std::uint8_t> to) {
    auto at = to.begin();
    for (const auto& piece : pieces) at = std::copy(piece.view().begin(), piece.view().end(), at);
  });
}

}  // namespace tolvane::rowset
