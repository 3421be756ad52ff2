#include "automation/text.h"

#include <cstddef>
#include <new>
#include <optional>
#include <stdexcept>

namespace tolvane::automation {
namespace {

int lengthOf(std::size_t size) {
  if (size > 0x7FFFFFF0) throw std::length_error("text");
  return static_cast<int>(size);
}

// Texts without characters beyond sixteen bits, and without damage, are converted here in one pass for their length and
// one for their units: the system's functions take longer than the call that brings a text. They have the rest.

/// The bytes of the text in UTF-8; nothing when there are surrogates.
std::optional<std::size_t> plainUtf8Length(std::wstring_view text) {
  std::size_t length = 0;
  for (const wchar_t unit : text) {
    if (unit >= 0xD800 && unit <= 0xDFFF) return std::nullopt;
    length += unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
  }
  return length;
}

void writePlainUtf8(std::wstring_view text, char* to) {
  for (const wchar_t unit : text) {
    if (unit < 0x80) {
      *to++ = static_cast<char>(unit);
      continue;
    }
    if (unit < 0x800) {
      *to++ = static_cast<char>(0xC0 | unit >> 6);
    } else {
      *to++ = static_cast<char>(0xE0 | unit >> 12);
      *to++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    }
    *to++ = static_cast<char>(0x80 | (unit & 0x3F));
  }
}

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

/// The units of the text in UTF-16; nothing when there are longer characters, or bytes that are no UTF-8.
std::optional<std::size_t> plainWideLength(std::string_view text) {
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = at + text.size();
  std::size_t length = 0;
  for (; at != end; ++length) {
    if (*at < 0x80) {
      ++at;
    } else if (*at >= 0xC2 && *at < 0xE0) {
      if (end - at < 2 || !isContinuation(at[1])) return std::nullopt;
      at += 2;
    } else if (*at >= 0xE0 && *at < 0xF0) {
      if (end - at < 3 || !isContinuation(at[1]) || !isContinuation(at[2])) return std::nullopt;
      if ((*at == 0xE0 && at[1] < 0xA0) || (*at == 0xED && at[1] >= 0xA0)) return std::nullopt;
      at += 3;
    } else {
      return std::nullopt;
    }
  }
  return length;
}

void writePlainWide(std::string_view text, wchar_t* to) {
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = at + text.size();
  while (at != end) {
    if (*at < 0x80) {
      *to++ = *at++;
    } else if (*at < 0xE0) {
      *to++ = static_cast<wchar_t>((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
      at += 2;
    } else {
      *to++ = static_cast<wchar_t>((at[0] & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
      at += 3;
    }
  }
}

int wideLength(std::string_view text) {
  return MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), nullptr, 0);
}
void writeWide(std::string_view text, wchar_t* to, int length) {
  MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), to, length);
}

}  // namespace

std::string utf8(std::wstring_view text) {
  if (const auto length = plainUtf8Length(text)) {
    std::string result(*length, '\0');
    writePlainUtf8(text, result.data());
    return result;
  }
  const int units = lengthOf(text.size());
  std::string result(
      static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr)),
      '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), lengthOf(result.size()), nullptr, nullptr);
  return result;
}

std::wstring wide(std::string_view text) {
  if (const auto length = plainWideLength(text)) {
    std::wstring result(*length, L'\0');
    writePlainWide(text, result.data());
    return result;
  }
  std::wstring result(static_cast<std::size_t>(wideLength(text)), L'\0');
  writeWide(text, result.data(), lengthOf(result.size()));
  return result;
}

std::wstring_view viewOf(BSTR text) {
  return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

BSTR newBstr(std::string_view text) {
  const auto plain = plainWideLength(text);
  const int length = plain ? lengthOf(*plain) : wideLength(text);
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (!result) throw std::bad_alloc();
  if (plain) {
    writePlainWide(text, result);
  } else {
    writeWide(text, result, length);
  }
  return result;
}

BSTR newBstr(std::wstring_view text) {
  BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(lengthOf(text.size())));
  if (!result) throw std::bad_alloc();
  return result;
}

}  // namespace tolvane::automation
