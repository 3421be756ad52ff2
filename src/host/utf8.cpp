#include "host/utf8.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <array>
#include <cstdint>
#include <cstdio>

namespace tolvane::host {
namespace {

/// The next character, negative for bytes that are none.
UChar32 next(std::string_view text, std::int32_t& at) {
  UChar32 character = 0;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  U8_NEXT(bytes, at, static_cast<std::int32_t>(text.size()), character);
  return character;
}

std::size_t columns(UChar32 character) {
  const auto category = u_charType(character);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) return 0;
  const auto width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

bool isUtf8(std::string_view text) {
  for (std::int32_t at = 0; at < static_cast<std::int32_t>(text.size());) {
    if (next(text, at) < 0) return false;
  }
  return true;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  for (std::int32_t at = 0; at < static_cast<std::int32_t>(text.size());) {
    const UChar32 character = next(text, at);
    width += character < 0 ? 1 : columns(character);
  }
  return width;
}

std::string oneLine(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      result += "\\n";
    } else if (c == '\r') {
      result += "\\r";
    } else if (c == '\t') {
      result += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      std::array<char, 8> escape;
      std::snprintf(escape.data(), escape.size(), "\\u%04x", byte);
      result += escape.data();
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace tolvane::host
