// Reads the rows of a statement's current result to this side.
#pragma once

#include <string_view>

#include "odbc/columns.h"
#include "odbc/row_buffer.h"

namespace tolvane::odbc {

/// Reads every row behind the last one that was read. Short columns are bound; blocks of rows where nothing can be cut;
/// long ones are asked for piece by piece, straight into the buffer that the caller gets in the end. Raises the
/// database's error with `rows` as far as they came.
void readRows(Session& session, const StatementHandle& statement, const Shape& shape, std::string_view sql,
              RowBuffer& rows);

}  // namespace tolvane::odbc
