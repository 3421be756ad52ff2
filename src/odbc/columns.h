// The columns of a result as the driver describes them.
#pragma once

#include <sql.h>

#include <cstdint>
#include <string>
#include <vector>

#include "odbc/handles.h"
#include "odbc/session.h"
#include "odbc/source_text.h"
#include "platform/data_access.h"

namespace tolvane::odbc {

struct Column {
  DataType type = DataType::variant;
  std::int32_t size = 0;       ///< characters or bytes; -1 for long data
  std::int32_t precision = 0;  ///< decimal digits in all
  std::int32_t scale = 0;      ///< decimal digits behind the point
  bool identity = false;       ///< known for updatable sets only
  std::string base;            ///< the table's column that it is; empty for a computed one and in sets of no one table

  std::string written;  ///< the same as a statement of ours writes it

  [[nodiscard]] bool isLong() const { return size < 0; }
  [[nodiscard]] bool isBinary() const;
  [[nodiscard]] bool isText() const;
};

struct Shape {
  std::vector<FieldInfo> fields;
  std::vector<Column> columns;
  std::string table;  ///< as the statement writes it; empty when nothing can be posted
};

/// ADO's type for a type of ODBC; `variant` for one that this adapter does not know. Sizes of 0 and above what fits in
/// a row mean long data: drivers report 0 for it, or the most that it can be.
[[nodiscard]] DataType dataType(SQLSMALLINT sqlType, SQLULEN size);

/// The columns of a statement's current result. Raises an error that names the column of a type that is not known.
[[nodiscard]] Shape describe(Session& session, const StatementHandle& statement, SQLSMALLINT count,
                             std::string_view sql);

/// Says of each column which one of the source's table it is, and which is the identity. `statement` is one whose
/// current result has these columns.
void addSource(Shape& shape, const Source& source, const Dialect& dialect, const StatementHandle& statement);

}  // namespace tolvane::odbc
