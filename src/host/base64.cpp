#include "host/base64.h"

#include <algorithm>
#include <array>

namespace tolvane::host {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 0xFF;
constexpr std::size_t groupsPerBlock = 8192;

constexpr std::array<std::uint8_t, 256> digitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  for (std::size_t i = 0; i < alphabet.size(); ++i)
    values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  return values;
}();

/// Three bytes or fewer as four characters.
void encodeGroup(std::span<const std::uint8_t> bytes, char* out) {
  const std::uint32_t bits = static_cast<std::uint32_t>(bytes[0]) << 16 |
                             (bytes.size() > 1 ? static_cast<std::uint32_t>(bytes[1]) << 8 : 0) |
                             (bytes.size() > 2 ? bytes[2] : 0U);
  out[0] = alphabet[bits >> 18];
  out[1] = alphabet[(bits >> 12) & 63];
  out[2] = bytes.size() > 1 ? alphabet[(bits >> 6) & 63] : '=';
  out[3] = bytes.size() > 2 ? alphabet[bits & 63] : '=';
}

}  // namespace

void writeBase64(std::ostream& out, std::span<const std::uint8_t> bytes) {
  std::array<char, groupsPerBlock * 4> block;
  std::size_t used = 0;
  while (!bytes.empty()) {
    const std::size_t count = std::min<std::size_t>(bytes.size(), 3);
    encodeGroup(bytes.first(count), block.data() + used);
    bytes = bytes.subspan(count);
    used += 4;
    if (used == block.size() || bytes.empty()) {
      out.write(block.data(), static_cast<std::streamsize>(used));
      used = 0;
    }
  }
}

std::optional<std::vector<std::uint8_t>> readBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t at = 0; at < text.size(); at += 4) {
    const bool last = at + 4 == text.size();
    const std::size_t padding = last && text[at + 3] == '=' ? (text[at + 2] == '=' ? 2 : 1) : 0;
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint8_t digit =
          i < 4 - padding ? digitValues[static_cast<unsigned char>(text[at + i])] : std::uint8_t{0};
      if (digit == noDigit) return std::nullopt;
      bits = bits << 6 | digit;
    }
    const std::uint32_t unused = padding == 0 ? 0U : (padding == 1 ? 0xFFU : 0xFFFFU);
    if ((bits & unused) != 0) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(bits >> 16));
    if (padding < 2) bytes.push_back(static_cast<std::uint8_t>(bits >> 8));
    if (padding < 1) bytes.push_back(static_cast<std::uint8_t>(bits));
  }
  return bytes;
}

}  // namespace tolvane::host
