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

void encodeBits(std::uint32_t bits, char* out) {
  out[0] = alphabet[bits >> 18];
  out[1] = alphabet[(bits >> 12) & 63];
  out[2] = alphabet[(bits >> 6) & 63];
  out[3] = alphabet[bits & 63];
}

/// The one or two bytes that are left at the end.
void writeRest(std::ostream& out, std::span<const std::uint8_t> bytes) {
  std::array<char, 4> group;
  const std::uint32_t second = bytes.size() > 1 ? bytes[1] : 0U;
  encodeBits(static_cast<std::uint32_t>(bytes[0]) << 16 | second << 8, group.data());
  group[3] = '=';
  if (bytes.size() == 1) group[2] = '=';
  out.write(group.data(), group.size());
}

}  // namespace

void writeBase64(std::ostream& out, std::span<const std::uint8_t> bytes) {
  std::array<char, groupsPerBlock * 4> block;
  while (bytes.size() >= 3) {
    const std::size_t groups = std::min(bytes.size() / 3, groupsPerBlock);
    const std::uint8_t* in = bytes.data();
    char* to = block.data();
    for (std::size_t i = 0; i < groups; ++i, in += 3, to += 4) {
      encodeBits(static_cast<std::uint32_t>(in[0]) << 16 | static_cast<std::uint32_t>(in[1]) << 8 | in[2], to);
    }
    out.write(block.data(), static_cast<std::streamsize>(groups * 4));
    bytes = bytes.subspan(groups * 3);
  }
  if (!bytes.empty()) writeRest(out, bytes);
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
