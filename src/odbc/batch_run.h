// Sends a batch and steps through everything that comes back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "odbc/columns.h"
#include "odbc/parameters.h"
#include "odbc/row_buffer.h"
#include "odbc/session.h"

namespace tolvane::odbc {

/// One result with rows, all of them on this side.
struct RowSet {
  explicit RowSet(Shape described) : shape(std::move(described)), rows(shape.columns.size()) {}

  Shape shape;
  RowBuffer rows;
  std::string sql;
};

struct BatchResult {
  std::vector<std::shared_ptr<RowSet>> rowSets;  ///< in the order of the statements that gave them
  std::int64_t changed = -1;                     ///< rows of the first statement that counted its rows; -1 without one
};

/// How a batch is run.
struct BatchOptions {
  std::vector<ParameterValue> parameters;
  std::int32_t timeout = defaultCommandTimeout;
  /// The first rows are those of this source, so that they can be posted to.
  const Source* source = nullptr;

  [[nodiscard]] bool hasDocument() const;
};

/// Runs the text as it is. The driver may allow one open statement a connection, so all rows of all results are read
/// before this returns. Every result is stepped through: the first error of any statement is raised, after the
/// statements behind it have run.
[[nodiscard]] BatchResult runBatch(Session& session, const std::string& sql, const BatchOptions& options = {});

}  // namespace tolvane::odbc
