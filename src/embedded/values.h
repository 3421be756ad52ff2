// Stored values and automation values, each as the other: the table of ADO's column types.
#pragma once

#include <string>

#include "embedded/cell.h"
#include "platform/data_access.h"
#include "tsql/datum.h"
#include "tsql/type.h"

namespace tolvane::embedded {

/// How ADO describes a column of this type.
[[nodiscard]] FieldInfo fieldInfo(std::string name, const tsql::Type& type);

/// The value that ADO hands out for a stored value of a column. Bytes are copied; long ones come by other ways.
[[nodiscard]] Value toValue(const Cell& cell, const tsql::Type& type);

/// The stored form of a value that is assigned to a column. Raises 3421 when the value cannot be converted to the
/// column's type, 80040E21h when it can but does not fit. Null is stored as null; whether the column takes it, the
/// table says. Bytes are not accepted here: they are stored as they are.
[[nodiscard]] tsql::Result toStored(const Value& value, const tsql::Type& type);

/// The type that the compiler gives to a command's "?" parameter.
[[nodiscard]] tsql::Type parameterType(const Parameter& parameter);

/// A copy of a column of the row that a statement stands on.
[[nodiscard]] tsql::Result columnResult(sqlite3_stmt* statement, int column);

}  // namespace tolvane::embedded
