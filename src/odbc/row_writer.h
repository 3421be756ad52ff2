// Puts the edits of a record set into its table.
#pragma once

#include <cstddef>
#include <map>
#include <string_view>

#include "odbc/batch_run.h"
#include "odbc/parameters.h"

namespace tolvane::odbc {

/// By column of the record set.
using RowEdits = std::map<std::size_t, ParameterValue>;

/// Inserts a row of the fields that were set and adds it to the set's rows, with the identity that the server gave it.
/// Returns its number among the rows. Raises the database's error; nothing is changed then.
[[nodiscard]] std::size_t insertRow(Session& session, RowSet& set, const RowEdits& edits);

/// Changes the fields that were set: by the table's key where it has one, otherwise where every comparable column is as
/// it was read. A key that the set does not hold is read with the source's statement, at the row's place. Raises
/// 80040E38h, and changes nothing, unless exactly one row was met.
void updateRow(Session& session, RowSet& set, const Source& source, std::size_t row, const RowEdits& edits);

/// The set's columns that tell its rows apart: the table's key, or the identity; empty when the set has not all of it.
[[nodiscard]] std::vector<std::size_t> keyColumns(Session& session, const Shape& shape);

}  // namespace tolvane::odbc
