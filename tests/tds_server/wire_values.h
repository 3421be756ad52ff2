// Columns and values of the embedded engine, in the form in which the protocol carries them.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/cell.h"
#include "tds_server/wire_bytes.h"
#include "tsql/type.h"

namespace tolvane::tds {

/// A column of an answer.
struct WireColumn {
  std::string name;
  tsql::Type type;
  std::string table;  ///< empty for an expression
  bool identity = false;
};

/// Puts the description of a column: flags, type, table, name.
void putColumn(Buffer& to, const WireColumn& column);

/// Puts a value of a column of that type.
void putValue(Buffer& to, const tsql::Type& type, const embedded::Cell& cell);

}  // namespace tolvane::tds
