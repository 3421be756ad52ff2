#include "system/windows_text.h"

#include <windows.h>

#include <limits>
#include <stdexcept>

namespace tolvane::system {
namespace {

constexpr wchar_t replacement = 0xFFFD;

int sizeFor(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) throw std::length_error("a text beyond 2 GiB");
  return static_cast<int>(size);
}

// Empty when the flags ask for it and the bytes are no text of the page.
std::wstring decoded(unsigned page, DWORD flags, std::string_view bytes) {
  if (bytes.empty()) return {};
  const int size = sizeFor(bytes.size());
  // No code page makes more units than it has bytes.
  std::wstring text(bytes.size(), L'\0');
  const int made = MultiByteToWideChar(page, flags, bytes.data(), size, text.data(), size);
  text.resize(static_cast<std::size_t>(made));
  return text;
}

struct Encoded {
  std::string bytes;
  bool complete = true;
};

Encoded encoded(unsigned page, std::wstring_view text) {
  if (text.empty()) return {};
  const int size = sizeFor(text.size());
  Encoded result;
  result.bytes.resize(text.size() * 4);
  BOOL missing = FALSE;
  const int made = WideCharToMultiByte(page, WC_NO_BEST_FIT_CHARS, text.data(), size, result.bytes.data(),
                                       sizeFor(result.bytes.size()), "?", &missing);
  result.bytes.resize(static_cast<std::size_t>(made));
  result.complete = made > 0 && missing == FALSE;
  return result;
}

bool startsPair(std::wstring_view text) {
  return text.size() > 1 && IS_SURROGATE_PAIR(text[0], text[1]);
}

}  // namespace

std::wstring wideOf(std::string_view text) {
  return decoded(CP_UTF8, 0, text);
}

std::string utf8Of(std::wstring_view text) {
  if (text.empty()) return {};
  std::string bytes(text.size() * 3, '\0');
  const int made = WideCharToMultiByte(CP_UTF8, 0, text.data(), sizeFor(text.size()), bytes.data(),
                                       sizeFor(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(made));
  return bytes;
}

std::string toCodePage(unsigned page, std::wstring_view text, QuestionMarks marks) {
  if (page == CP_UTF8) return utf8Of(text);
  if (auto whole = encoded(page, text); whole.complete) return whole.bytes;
  std::string bytes;
  while (!text.empty()) {
    const std::size_t units = startsPair(text) ? 2 : 1;
    const auto one = encoded(page, text.substr(0, units));
    if (one.complete) {
      bytes += one.bytes;
    } else {
      bytes.append(marks == QuestionMarks::oneEachUnit ? units : 1, '?');
    }
    text.remove_prefix(units);
  }
  return bytes;
}

std::wstring fromCodePage(unsigned page, std::string_view bytes) {
  if (page == CP_UTF8) return wideOf(bytes);
  auto whole = decoded(page, MB_ERR_INVALID_CHARS, bytes);
  if (!whole.empty() || bytes.empty()) return whole;
  while (!bytes.empty()) {
    const bool leads = IsDBCSLeadByteEx(page, static_cast<BYTE>(bytes[0])) != FALSE;
    const std::size_t size = leads && bytes.size() > 1 ? 2 : 1;
    const auto one = leads && size == 1 ? std::wstring() : decoded(page, MB_ERR_INVALID_CHARS, bytes.substr(0, size));
    if (one.empty()) {
      whole += replacement;
      bytes.remove_prefix(1);
    } else {
      whole += one;
      bytes.remove_prefix(size);
    }
  }
  return whole;
}

}  // namespace tolvane::system
