// UTF-8 of the system, UTF-16 of ODBC's wide functions: the one place where text changes its form.
#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqltypes.h>
#include <sqlucode.h>

#include <optional>
#include <string>
#include <string_view>

namespace tolvane::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the driver manager's wide characters are UTF-16");

/// Nothing when the text is not UTF-8.
[[nodiscard]] std::optional<std::u16string> toWide(std::string_view text);

/// The same for texts that go to the driver as they are (statements, connection texts): error 5 that says what text it
/// was and at which byte it stops being UTF-8.
[[nodiscard]] std::u16string toWideOrRefuse(std::string_view text, std::string_view what);

/// Nothing when the text holds half a surrogate pair.
[[nodiscard]] std::optional<std::string> toUtf8(std::u16string_view text);

/// Appends to `to`; false, with `to` as far as it came, when the text holds half a surrogate pair.
[[nodiscard]] bool appendUtf8(std::u16string_view text, std::string& to);

/// The text as ODBC's functions take it: they ask for writable text and do not write.
[[nodiscard]] inline SQLWCHAR* sqlText(const std::u16string& text) {
  return reinterpret_cast<SQLWCHAR*>(const_cast<char16_t*>(text.c_str()));
}

}  // namespace tolvane::odbc
