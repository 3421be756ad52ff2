#include "rowset/utf8.h"

#include <cstdint>
#include <cstring>

namespace tolvane::rowset {
namespace {

constexpr std::uint64_t highBits = 0x8080808080808080U;

// How many bytes the character at the front takes; 0 when it is no character.
std::size_t characterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) -> std::uint32_t {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const auto first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    if (!continues(1) || !continues(2)) return 0;
    const bool overlong = first == 0xE0 && byte(1) < 0xA0;
    const bool surrogate = first == 0xED && byte(1) > 0x9F;
    return overlong || surrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    if (!continues(1) || !continues(2) || !continues(3)) return 0;
    const bool overlong = first == 0xF0 && byte(1) < 0x90;
    const bool beyond = first == 0xF4 && byte(1) > 0x8F;
    return overlong || beyond ? 0 : 4;
  }
  return 0;
}

}  // namespace

std::size_t invalidUtf8(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    std::uint64_t word = 0;
    if (i + sizeof word <= text.size()) {
      std::memcpy(&word, text.data() + i, sizeof word);
      if ((word & highBits) == 0) {
        i += sizeof word;
        continue;
      }
    }
    const auto size = characterSize(text.substr(i));
    if (size == 0) return i;
    i += size;
  }
  return std::string_view::npos;
}

}  // namespace tolvane::rowset
