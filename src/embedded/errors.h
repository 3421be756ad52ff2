// The one place where errors of the T-SQL engine and of SQLite become automation errors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/error.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {

/// The Source of every error of the database: what ADO reports on SQL Server, so that callers that look at it find the
/// same word on both.
inline constexpr std::string_view databaseSource = "Microsoft OLE DB Provider for SQL Server";

/// The Sources of ADO's own errors.
inline constexpr std::string_view recordsetSource = "ADODB.Recordset";
inline constexpr std::string_view fieldSource = "ADODB.Field";
inline constexpr std::string_view commandSource = "ADODB.Command";
inline constexpr std::string_view connectionSource = "ADODB.Connection";

/// The OLE DB number under which ADO reports an error of the server with this number.
[[nodiscard]] std::uint32_t oledbNumber(int nativeNumber);

/// The five characters that SQL Server's provider reports beside a number.
[[nodiscard]] std::string_view sqlState(int nativeNumber);

/// A server error as automation sees it; `sql` is the batch that was sent.
[[nodiscard]] AutomationError toAutomationError(const tsql::SqlError& error, std::string_view sql);

/// A failure of SQLite itself that no SQL Server error stands for: disk full, file locked, read-only, corrupt.
/// `dataSource` is the file, `resultCode` SQLite's extended result code, `message` its own words.
[[nodiscard]] AutomationError storageError(std::string_view dataSource, int resultCode, std::string_view message,
                                           std::string_view sql = {});

/// A data source that cannot be opened: which one, and why, in a sentence that says what to do.
[[nodiscard]] AutomationError openError(std::string_view dataSource, std::string_view why);

/// The time that a command may take is over.
[[nodiscard]] AutomationError timeoutError(std::string_view sql);

/// ADO's "multiple-step operation" error: a value that converts but does not fit its column.
[[nodiscard]] AutomationError doesNotFit();

}  // namespace tolvane::embedded
