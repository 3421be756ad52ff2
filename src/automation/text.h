// Texts at the automation border: UTF-8 inside, UTF-16 outside.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "automation/windows_headers.h"

namespace tolvane::automation {

/// Halves of surrogate pairs become U+FFFD.
[[nodiscard]] std::string utf8(std::wstring_view text);
/// Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::wstring wide(std::string_view text);

/// The text of a BSTR; a null one is empty.
[[nodiscard]] std::wstring_view viewOf(BSTR text);

/// An automation text of its own; the caller frees it or gives it away. bad_alloc when there is no memory.
[[nodiscard]] BSTR newBstr(std::string_view text);
[[nodiscard]] BSTR newBstr(std::wstring_view text);

/// Owns a BSTR.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::string_view text) : text_(newBstr(text)) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  [[nodiscard]] BSTR get() const noexcept { return text_; }
  [[nodiscard]] BSTR* receive() noexcept {
    SysFreeString(std::exchange(text_, nullptr));
    return &text_;
  }
  /// For arguments that go by reference.
  [[nodiscard]] BSTR* reference() noexcept { return &text_; }
  [[nodiscard]] BSTR detach() noexcept { return std::exchange(text_, nullptr); }
  [[nodiscard]] std::string toUtf8() const { return utf8(viewOf(text_)); }

 private:
  BSTR text_ = nullptr;
};

}  // namespace tolvane::automation
