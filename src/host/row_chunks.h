// A table's rows in portions, so that what reads a whole table never holds all of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/data_access.h"

namespace tolvane::host {

/// Conditions that every row of a table satisfies exactly one of, in the order of the column that they are about. One
/// that is empty stands for all rows.
///
/// The column is the identity, or else, in a table of many rows, the whole number with the most different values; where
/// there is none, and in small tables without documents, the rows are one portion. Rows of one value stay together.
[[nodiscard]] std::vector<std::string> rowChunks(Connection& connection, const std::string& table,
                                                 const std::vector<FieldInfo>& columns, const std::string& identity,
                                                 std::int64_t rows);

/// " Where " and the condition; nothing for an empty one.
[[nodiscard]] std::string whereText(const std::string& condition);

}  // namespace tolvane::host
