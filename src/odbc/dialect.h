// In what servers differ, as far as this adapter writes SQL of its own: one row of facts for each.
#pragma once

#include <string>
#include <string_view>

#include "odbc/errors.h"

namespace tolvane::odbc {

/// How the identity of a row that was just inserted is asked for.
enum class IdentityReading {
  scopeIdentity,  ///< SCOPE_IDENTITY() in the insert's own batch: a trigger that inserts elsewhere does not disturb it
  lastInsertRowId,  ///< last_insert_rowid() in the next statement of the connection
  returning,        ///< the insert's RETURNING clause
};

struct Dialect {
  IdentityReading identity = IdentityReading::scopeIdentity;
  NativeNumbers numbers = NativeNumbers::sqlServer;
  char openQuote = '[';
  char closeQuote = ']';
  /// A text column never holds more than the driver says, so rows can be fetched in blocks.
  bool sizesAreLimits = true;
  /// The count of a changing statement is asked for in its batch: triggers add counts of their own to the driver's.
  bool countsInBatch = true;
  /// The driver has a type name for money, which it otherwise reports as a decimal.
  bool hasMoney = true;
  /// The server cuts long values at a size that drivers set.
  bool cutsLongValues = true;

  /// The server that the driver names. What is not known speaks TDS.
  [[nodiscard]] static const Dialect& of(std::string_view product);
  [[nodiscard]] std::string quoted(std::string_view name) const;
};

}  // namespace tolvane::odbc
