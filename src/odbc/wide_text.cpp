#include "odbc/wide_text.h"

#include <cstdint>

#include "platform/error.h"
#include "rowset/utf8.h"

namespace tolvane::odbc {
namespace {

constexpr char32_t firstSurrogate = 0xD800;
constexpr char32_t firstLowSurrogate = 0xDC00;
constexpr char32_t lastSurrogate = 0xDFFF;
constexpr char32_t firstBeyond = 0x10000;

// The character at `at` of valid UTF-8; goes behind it.
char32_t take(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const auto first = byte(at);
  if (first < 0x80) return byte(at++);
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  char32_t character = first & (0x3FU >> more);
  for (std::size_t i = 1; i <= more; ++i) character = character << 6U | (byte(at + i) & 0x3FU);
  at += more + 1;
  return character;
}

// Writes a character beyond ASCII; gives the place behind it.
char* put(char32_t character, char* to) {
  const auto last = [](char32_t bits) { return static_cast<char>(0x80U | (bits & 0x3FU)); };
  if (character < 0x800) {
    *to++ = static_cast<char>(0xC0U | character >> 6U);
  } else if (character < firstBeyond) {
    *to++ = static_cast<char>(0xE0U | character >> 12U);
    *to++ = last(character >> 6U);
  } else {
    *to++ = static_cast<char>(0xF0U | character >> 18U);
    *to++ = last(character >> 12U);
    *to++ = last(character >> 6U);
  }
  *to++ = last(character);
  return to;
}

}  // namespace

std::optional<std::u16string> toWide(std::string_view text) {
  if (rowset::invalidUtf8(text) != std::string_view::npos) return std::nullopt;
  std::u16string wide;
  wide.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = take(text, at);
    if (character < firstBeyond) {
      wide += static_cast<char16_t>(character);
    } else {
      wide += static_cast<char16_t>(firstSurrogate + ((character - firstBeyond) >> 10U));
      wide += static_cast<char16_t>(firstLowSurrogate + ((character - firstBeyond) & 0x3FFU));
    }
  }
  return wide;
}

std::u16string toWideOrRefuse(std::string_view text, std::string_view what) {
  if (auto wide = toWide(text)) return std::move(*wide);
  throw AutomationError(
      errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
      "The " + std::string(what) + " is not UTF-8 from byte " + std::to_string(rowset::invalidUtf8(text) + 1) + " on.");
}

bool appendUtf8(std::u16string_view text, std::string& to) {
  const auto start = to.size();
  to.resize(start + text.size() * 3);
  char* place = to.data() + start;
  bool whole = true;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char32_t character = text[at];
    if (character < 0x80) {
      *place++ = static_cast<char>(character);
    } else if (character < firstSurrogate || character > lastSurrogate) {
      place = put(character, place);
    } else {
      const char32_t second = at + 1 < text.size() ? text[at + 1] : U'\0';
      whole = character < firstLowSurrogate && second >= firstLowSurrogate && second <= lastSurrogate;
      if (!whole) break;
      place = put(firstBeyond + ((character - firstSurrogate) << 10U) + (second - firstLowSurrogate), place);
      ++at;
    }
  }
  to.resize(static_cast<std::size_t>(place - to.data()));
  return whole;
}

std::optional<std::string> toUtf8(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  if (!appendUtf8(text, result)) return std::nullopt;
  return result;
}

}  // namespace tolvane::odbc
