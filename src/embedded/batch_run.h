// The interpreter of compiled batches.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/row_set.h"
#include "embedded/session.h"
#include "platform/bytes.h"
#include "tsql/compiler.h"
#include "tsql/datum.h"

namespace tolvane::embedded {

/// The value of a command's "?" parameter: stored form and type. Documents are not copied.
struct PlaceholderValue {
  tsql::Type type;
  tsql::Result value;
  std::optional<Bytes> document;
};

/// What a batch gave: the rows of its queries, in order.
struct BatchResult {
  std::vector<std::shared_ptr<RowSet>> rowSets;
};

/// When the rows of a batch's only query begin to be read.
enum class FirstRead { now, whenAsked };

/// Runs a whole batch. An error of any of its statements is raised, the first of them, when all that SQL Server would
/// still run has run; each failed statement leaves the data as it was. Raises an error of the database for an empty
/// batch (80040E0Ch) and for a text that is not UTF-8.
[[nodiscard]] BatchResult runBatch(const std::shared_ptr<Session>& session, const std::string& sql,
                                   const std::vector<PlaceholderValue>& placeholders, FirstRead firstRead);

}  // namespace tolvane::embedded
