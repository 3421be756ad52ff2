#include "odbc/errors.h"

#include <algorithm>
#include <array>
#include <optional>

#include "odbc/wide_text.h"

namespace tolvane::odbc {
namespace {

struct StateRow {
  std::string_view start;
  std::uint32_t number;
};

// The longest start that fits decides; so the states of five characters stand before their classes.
constexpr std::array stateRows{
    StateRow{"42S02", oledb::noTable},           StateRow{"42P01", oledb::noTable},
    StateRow{"S0002", oledb::noTable},           StateRow{"42501", oledb::permissionDenied},
    StateRow{"28", oledb::authenticationFailed}, StateRow{"23", oledb::integrityViolation},
    StateRow{"22001", oledb::dataOverflow},      StateRow{"22003", oledb::dataOverflow},
    StateRow{"22015", oledb::dataOverflow},      StateRow{"22007", oledb::cantConvertValue},
    StateRow{"22008", oledb::cantConvertValue},  StateRow{"22018", oledb::cantConvertValue},
    StateRow{"22P02", oledb::cantConvertValue},  StateRow{"22", oledb::errorsInCommand},
    StateRow{"21", oledb::errorsInCommand},      StateRow{"HYT00", oledb::abortLimitReached},
    StateRow{"S1T00", oledb::abortLimitReached}, StateRow{"57014", oledb::abortLimitReached},
    StateRow{"57P0", oledb::unspecified},        StateRow{"08", oledb::unspecified},
    StateRow{"HYT01", oledb::unspecified},       StateRow{"IM", oledb::unspecified},
    StateRow{"40", oledb::unspecified},          StateRow{"25", oledb::unspecified},
};

struct WordsRow {
  std::string_view words;
  std::uint32_t number;
};

constexpr std::array wordsRows{
    WordsRow{"Invalid object name", oledb::noTable},
    WordsRow{"no such table", oledb::noTable},
    WordsRow{"because it does not exist or you do not have permission", oledb::noTable},
    WordsRow{"Violation of PRIMARY KEY", oledb::integrityViolation},
    WordsRow{"Violation of UNIQUE KEY", oledb::integrityViolation},
    WordsRow{"Cannot insert duplicate key", oledb::integrityViolation},
    WordsRow{"Cannot insert the value NULL", oledb::integrityViolation},
    WordsRow{"statement conflicted with", oledb::integrityViolation},
    WordsRow{"constraint failed", oledb::integrityViolation},
    WordsRow{"would be truncated", oledb::dataOverflow},
    WordsRow{"Arithmetic overflow", oledb::dataOverflow},
    WordsRow{"Conversion failed when converting", oledb::cantConvertValue},
    WordsRow{"Error converting data type", oledb::cantConvertValue},
    WordsRow{"permission was denied", oledb::permissionDenied},
    WordsRow{"Login failed", oledb::authenticationFailed},
    WordsRow{"timeout expired", oledb::abortLimitReached},
    WordsRow{"Timeout expired", oledb::abortLimitReached},
    WordsRow{"database is locked", oledb::unspecified},
    // Servers that speak TDS over another database's engine hand on that engine's words.
    WordsRow{"duplicate key value violates", oledb::integrityViolation},
    WordsRow{"violates not-null constraint", oledb::integrityViolation},
    WordsRow{"violates foreign key constraint", oledb::integrityViolation},
    WordsRow{"violates check constraint", oledb::integrityViolation},
    WordsRow{"value too long for type", oledb::dataOverflow},
    WordsRow{"out of range", oledb::dataOverflow},
    WordsRow{"invalid input syntax for type", oledb::cantConvertValue},
    WordsRow{"permission denied", oledb::permissionDenied},
};

// What servers and drivers add to an error: "The statement has been terminated.", "Changed database context ...".
constexpr std::array<std::int32_t, 3> notes{3621, 5701, 5703};

// The database cannot be opened: why a log-in failed, behind or before the report that it did.
constexpr std::array<std::int32_t, 2> logInReasons{4060, 4064};

// FreeTDS reports a connection's end by words, under states of all kinds.
constexpr std::array<std::string_view, 4> lossWords{"Unexpected EOF from the server", "Write to the server failed",
                                                    "Read from the server failed", "DBPROCESS is dead"};

std::optional<std::uint32_t> byState(std::string_view state) {
  const auto* row = std::find_if(stateRows.begin(), stateRows.end(),
                                 [&](const StateRow& candidate) { return state.starts_with(candidate.start); });
  if (row == stateRows.end()) return std::nullopt;
  return row->number;
}

std::optional<std::uint32_t> byWords(std::string_view message) {
  // "relation "t" does not exist", "table "t" does not exist"; of columns and functions the same is said.
  const bool isTable =
      message.find("relation \"") != std::string_view::npos || message.find("table \"") != std::string_view::npos;
  if (isTable && message.find("\" does not exist") != std::string_view::npos &&
      message.find("column \"") == std::string_view::npos) {
    return oledb::noTable;
  }
  const auto* row = std::find_if(wordsRows.begin(), wordsRows.end(), [&](const WordsRow& candidate) {
    return message.find(candidate.words) != std::string_view::npos;
  });
  if (row == wordsRows.end()) return std::nullopt;
  return row->number;
}

bool saysLoss(const Diagnostic& diagnostic) {
  // 57P01 to 57P03: a PostgreSQL server that is being stopped. HYT01: the connection's own time-out.
  const auto& state = diagnostic.sqlState;
  return state.starts_with("08") || state.starts_with("57P0") || state == "HYT01" ||
         std::any_of(lossWords.begin(), lossWords.end(),
                     [&](std::string_view words) { return diagnostic.message.find(words) != std::string::npos; });
}

bool isNote(const Diagnostic& diagnostic) {
  if (saysLoss(diagnostic)) return false;
  const auto& state = diagnostic.sqlState;
  return state.starts_with("00") || state.starts_with("01") || state.starts_with("02") ||
         std::find(notes.begin(), notes.end(), diagnostic.nativeNumber) != notes.end();
}

std::string messageText(std::u16string_view message) {
  if (auto text = toUtf8(message)) return std::move(*text);
  // A server's words may be cut in the middle of a character; the rest of them still says what went wrong.
  std::string text;
  (void)appendUtf8(message, text);
  return text;
}

std::optional<Diagnostic> diagnosticAt(SQLSMALLINT handleKind, SQLHANDLE handle, SQLSMALLINT number) {
  std::array<char16_t, 6> state{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  std::u16string message(1024, u'\0');
  auto ask = [&] {
    return SQLGetDiagRecW(handleKind, handle, number, reinterpret_cast<SQLWCHAR*>(state.data()), &native,
                          sqlText(message), static_cast<SQLSMALLINT>(message.size()), &length);
  };
  auto result = ask();
  if (result == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(message.size())) {
    message.resize(static_cast<std::size_t>(length) + 1);
    result = ask();
  }
  if (!SQL_SUCCEEDED(result)) return std::nullopt;
  message.resize(std::min(message.size(), static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0))));
  // Some drivers count the closing zero.
  while (!message.empty() && message.back() == u'\0') message.pop_back();
  return Diagnostic{messageText({state.data(), 5}), native, messageText(message)};
}

}  // namespace

std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleKind, SQLHANDLE handle) {
  std::vector<Diagnostic> diagnostics;
  if (handle == SQL_NULL_HANDLE) return diagnostics;
  for (SQLSMALLINT number = 1;; ++number) {
    auto diagnostic = diagnosticAt(handleKind, handle, number);
    if (!diagnostic) return diagnostics;
    diagnostics.push_back(std::move(*diagnostic));
  }
}

std::uint32_t oledbNumber(const Diagnostic& diagnostic, NativeNumbers numbers) {
  if (saysLoss(diagnostic)) return oledb::unspecified;
  if (numbers == NativeNumbers::sqlServer && rowset::knowsNumber(diagnostic.nativeNumber)) {
    return rowset::oledbNumber(diagnostic.nativeNumber);
  }
  if (const auto number = byState(diagnostic.sqlState)) return *number;
  if (const auto number = byWords(diagnostic.message)) return *number;
  const bool ofTheText = diagnostic.sqlState.starts_with("42") || diagnostic.nativeNumber != 0;
  return ofTheText ? oledb::errorsInCommand : oledb::unspecified;
}

std::string_view serverWords(std::string_view message) {
  auto words = message;
  while (words.starts_with('[')) {
    const auto close = words.find(']');
    if (close == std::string_view::npos) break;
    words.remove_prefix(close + 1);
    while (words.starts_with(' ')) words.remove_prefix(1);
  }
  return words.empty() ? message : words;
}

const Diagnostic* decisive(const std::vector<Diagnostic>& diagnostics) {
  if (diagnostics.empty()) return nullptr;
  const auto reason = std::find_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
    return std::find(logInReasons.begin(), logInReasons.end(), diagnostic.nativeNumber) != logInReasons.end();
  });
  if (reason != diagnostics.end()) return &*reason;
  const auto found = std::find_if_not(diagnostics.begin(), diagnostics.end(), isNote);
  return found == diagnostics.end() ? &diagnostics.front() : &*found;
}

bool hidesFailure(const std::vector<Diagnostic>& diagnostics) {
  return !std::all_of(diagnostics.begin(), diagnostics.end(), isNote);
}

bool saysConnectionLost(const std::vector<Diagnostic>& diagnostics) {
  return std::any_of(diagnostics.begin(), diagnostics.end(), saysLoss);
}

AutomationError toAutomationError(const std::vector<Diagnostic>& diagnostics, NativeNumbers numbers,
                                  std::string_view sql) {
  const auto* first = decisive(diagnostics);
  if (!first) {
    AutomationError error(oledb::unspecified, std::string(rowset::databaseSource),
                          "The driver reports a failure and does not say which.");
    error.withDatabase({std::string(sql), "HY000", 0});
    return error;
  }
  AutomationError error(oledbNumber(*first, numbers), std::string(rowset::databaseSource),
                        std::string(serverWords(first->message)));
  error.withDatabase({std::string(sql), first->sqlState, first->nativeNumber});
  return error;
}

AutomationError transactionIsOver(std::string_view sql) {
  AutomationError error(oledb::unspecified, std::string(rowset::databaseSource),
                        "An earlier error has ended the transaction. Nothing more is done in it; roll it back.");
  error.withDatabase({std::string(sql), "25000", 0});
  return error;
}

AutomationError rowIsGone(std::string_view sql) {
  AutomationError error(oledb::concurrencyViolation, std::string(rowset::databaseSource),
                        "Row cannot be located for updating. Some values may have been changed since it was last "
                        "read.");
  error.withDatabase({std::string(sql), "", 0});
  return error;
}

AutomationError unknownType(std::string_view column, std::string_view typeName, int typeNumber) {
  return {oledb::cantConvertValue, std::string(rowset::databaseSource),
          "The column \"" + std::string(column) + "\" has the type " +
              (typeName.empty() ? std::string() : std::string(typeName) + " ") + "(number " +
              std::to_string(typeNumber) + "), which cannot be read. Convert it in the statement."};
}

AutomationError brokenText(std::string_view column) {
  return {oledb::cantConvertValue, std::string(rowset::databaseSource),
          "A text of the column \"" + std::string(column) + "\" holds half a character and cannot be read."};
}

AutomationError longerThanSaid(std::string_view column) {
  return {oledb::dataOverflow, std::string(rowset::databaseSource),
          "The driver gives more for the column \"" + std::string(column) + "\" than it said the column can hold."};
}

}  // namespace tolvane::odbc
