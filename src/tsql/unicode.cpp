#include "tsql/unicode.h"

#include <algorithm>

namespace tolvane::tsql {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool isHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char32_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

}  // namespace

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char32_t nextCharacter(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position++]);
  if (lead < 0x80) return lead;
  const std::size_t following = lead >= 0xF0 && lead <= 0xF4 ? 3 : lead >= 0xE0 && lead < 0xF0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - position < following) return replacement;
  char32_t character = lead & (0x3FU >> following);
  for (std::size_t i = 0; i < following; ++i) {
    if (!isContinuation(text[position + i])) return replacement;
    character = (character << 6) | (static_cast<unsigned char>(text[position + i]) & 0x3FU);
  }
  const char32_t least = following == 3 ? 0x10000 : following == 2 ? 0x800 : 0x80;
  if (character < least || character > 0x10FFFF) return replacement;
  position += following;
  return character;
}

void appendCharacter(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      text += static_cast<char>(0xE0 | (character >> 12));
    } else {
      text += static_cast<char>(0xF0 | (character >> 18));
      text += static_cast<char>(0x80 | ((character >> 12) & 0x3F));
    }
    text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
  }
  text += static_cast<char>(0x80 | (character & 0x3F));
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = nextCharacter(text, position);
    if (character < 0x10000) {
      units += static_cast<char16_t>(character);
    } else {
      units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
  return units;
}

std::string fromUtf16(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t character = units[i];
    if (isHighSurrogate(character) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
      character = 0x10000 + ((character - 0xD800) << 10) + (units[++i] - 0xDC00U);
    }
    appendCharacter(text, character);
  }
  return text;
}

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t position = 0; position < text.size();) {
    units += nextCharacter(text, position) < 0x10000 ? 1 : 2;
  }
  return units;
}

std::string utf16Prefix(std::string_view text, std::size_t count) {
  if (text.size() <= count) return std::string(text);
  if (isAscii(text)) return std::string(text.substr(0, count));
  return fromUtf16(std::u16string_view(toUtf16(text)).substr(0, count));
}

std::string_view withoutTrailingBlanks(std::string_view text) {
  const auto last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

}  // namespace tolvane::tsql
