// The one place where what a driver reports becomes an automation error.
#pragma once

#include <sql.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"
#include "rowset/server_errors.h"

namespace tolvane::odbc {

/// One record of what a driver reports about its last function.
struct Diagnostic {
  std::string sqlState;
  std::int32_t nativeNumber = 0;
  std::string message;  ///< as the driver gives it, with the driver's own prefixes
};

/// Everything that is reported for a handle, in the driver's order.
[[nodiscard]] std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleKind, SQLHANDLE handle);

/// Whose numbers a server's native numbers are.
enum class NativeNumbers { sqlServer, other };

/// The OLE DB number of a report: by the server's number, then by SQLSTATE, then by its words. Servers that speak TDS
/// may report a missing table or a syntax error as 42000 with a number of their own, so no single one is enough.
[[nodiscard]] std::uint32_t oledbNumber(const Diagnostic& diagnostic, NativeNumbers numbers);

/// The server's words without what drivers put before them: "[FreeTDS][SQL Server]Invalid ..." is "Invalid ...".
[[nodiscard]] std::string_view serverWords(std::string_view message);

/// The report that says what went wrong; notes such as "the statement has been terminated" stand behind the errors.
[[nodiscard]] const Diagnostic* decisive(const std::vector<Diagnostic>& diagnostics);

/// Whether there is an error among reports that came with a success: drivers that fetch blocks of rows report so what
/// happened behind the rows of the block.
[[nodiscard]] bool hidesFailure(const std::vector<Diagnostic>& diagnostics);

/// Whether the server is gone, so that the connection is of no more use.
[[nodiscard]] bool saysConnectionLost(const std::vector<Diagnostic>& diagnostics);

/// The error of a driver's function that failed; `sql` is the text that was sent.
[[nodiscard]] AutomationError toAutomationError(const std::vector<Diagnostic>& diagnostics, NativeNumbers numbers,
                                                std::string_view sql);

/// What every operation in a transaction raises after one has failed in it.
[[nodiscard]] AutomationError transactionIsOver(std::string_view sql);

/// A row that is not there any more, or no longer as it was read.
[[nodiscard]] AutomationError rowIsGone(std::string_view sql);

/// A column that this adapter cannot read: which one, and the driver's number of its type.
[[nodiscard]] AutomationError unknownType(std::string_view column, std::string_view typeName, int typeNumber);

/// Text that is half a character, which no UTF-8 can hold.
[[nodiscard]] AutomationError brokenText(std::string_view column);

/// A driver that gives more than it said the column can hold; nothing is ever cut.
[[nodiscard]] AutomationError longerThanSaid(std::string_view column);

}  // namespace tolvane::odbc
