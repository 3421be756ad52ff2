// The one place where errors of the T-SQL engine and of SQLite become automation errors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/error.h"
#include "rowset/server_errors.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {

using rowset::commandSource;
using rowset::connectionSource;
using rowset::databaseSource;
using rowset::doesNotFit;
using rowset::fieldSource;
using rowset::oledbNumber;
using rowset::recordsetSource;
using rowset::sqlState;
using rowset::timeoutError;

/// A server error as automation sees it; `sql` is the batch that was sent.
[[nodiscard]] AutomationError toAutomationError(const tsql::SqlError& error, std::string_view sql);

/// A failure of SQLite itself that no SQL Server error stands for: disk full, file locked, read-only, corrupt.
/// `dataSource` is the file, `resultCode` SQLite's extended result code, `message` its own words.
[[nodiscard]] AutomationError storageError(std::string_view dataSource, int resultCode, std::string_view message,
                                           std::string_view sql = {});

/// A data source that cannot be opened: which one, and why, in a sentence that says what to do.
[[nodiscard]] AutomationError openError(std::string_view dataSource, std::string_view why);

}  // namespace tolvane::embedded
