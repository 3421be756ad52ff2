// SQL Server's error numbers, as automation clients see them; and the Sources of errors in ADO's data access.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/error.h"

namespace tolvane::rowset {

/// The Source of every error of the database: what ADO reports on SQL Server, so that callers that look at it find the
/// same word on every engine.
inline constexpr std::string_view databaseSource = "Microsoft OLE DB Provider for SQL Server";

/// The Sources of ADO's own errors.
inline constexpr std::string_view recordsetSource = "ADODB.Recordset";
inline constexpr std::string_view fieldSource = "ADODB.Field";
inline constexpr std::string_view commandSource = "ADODB.Command";
inline constexpr std::string_view connectionSource = "ADODB.Connection";

/// Whether the table has a row for this number of the server.
[[nodiscard]] bool knowsNumber(int nativeNumber);

/// The OLE DB number under which ADO reports an error of the server with this number.
[[nodiscard]] std::uint32_t oledbNumber(int nativeNumber);

/// The five characters that SQL Server's provider reports beside a number.
[[nodiscard]] std::string_view sqlState(int nativeNumber);

/// The time that a command may take is over.
[[nodiscard]] AutomationError timeoutError(std::string_view sql);

/// ADO's "multiple-step operation" error: a value that converts but does not fit its column.
[[nodiscard]] AutomationError doesNotFit();

}  // namespace tolvane::rowset
