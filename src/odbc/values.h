// Cells and automation values, each as the other: the table of ADO's column types.
#pragma once

#include "odbc/columns.h"
#include "odbc/row_buffer.h"
#include "platform/value.h"

namespace tolvane::odbc {

/// The value that ADO hands out for a column's cell. Documents come from their buffer.
[[nodiscard]] Value toValue(const Cell& cell, const Column& column);

/// The value of a column, from a buffer.
[[nodiscard]] Value toValue(RowBuffer& rows, std::size_t row, std::size_t index, const Column& column);

/// A value as the column's own type. Raises 3421 when it cannot be converted, 80040E21h when it can but does not fit.
/// Null and Empty are Null: whether the column takes it, the table says.
[[nodiscard]] Value assigned(const Value& value, const Column& column);

/// Puts an assigned value into a row.
void store(RowBuffer& rows, std::size_t row, std::size_t index, const Value& value);

}  // namespace tolvane::odbc
