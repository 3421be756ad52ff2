#include "automation/text.h"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace tolvane::automation {
namespace {

int lengthOf(std::size_t size) {
  if (size > 0x7FFFFFF0) throw std::length_error("text");
  return static_cast<int>(size);
}

bool isAscii(char unit) {
  return static_cast<unsigned char>(unit) < 0x80;
}
bool isAsciiWide(wchar_t unit) {
  return unit < 0x80;
}

int wideLength(std::string_view text) {
  return MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), nullptr, 0);
}
void writeWide(std::string_view text, wchar_t* to, int length) {
  MultiByteToWideChar(CP_UTF8, 0, text.data(), lengthOf(text.size()), to, length);
}

}  // namespace

// Most texts of a database are plain letters and digits; they need no table.
std::string utf8(std::wstring_view text) {
  if (std::all_of(text.begin(), text.end(), isAsciiWide)) return {text.begin(), text.end()};
  const int units = lengthOf(text.size());
  std::string result(
      static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr)),
      '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), lengthOf(result.size()), nullptr, nullptr);
  return result;
}

std::wstring wide(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), isAscii)) return {text.begin(), text.end()};
  std::wstring result(static_cast<std::size_t>(wideLength(text)), L'\0');
  writeWide(text, result.data(), lengthOf(result.size()));
  return result;
}

std::wstring_view viewOf(BSTR text) {
  return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

BSTR newBstr(std::string_view text) {
  const bool ascii = std::all_of(text.begin(), text.end(), isAscii);
  const int length = ascii ? lengthOf(text.size()) : wideLength(text);
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (!result) throw std::bad_alloc();
  if (ascii) {
    std::copy(text.begin(), text.end(), result);
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
