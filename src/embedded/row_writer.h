// Puts the edits of a record set into its table.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/row_set.h"
#include "platform/bytes.h"
#include "tsql/datum.h"

namespace tolvane::embedded {

/// The new content of one field: a stored value, or the pieces of a document, which are not joined on the way.
struct FieldEdit {
  tsql::Result value;
  bool isDocument = false;
  std::vector<Bytes> chunks;

  [[nodiscard]] std::size_t documentSize() const;
};

/// By column of the record set.
using RowEdits = std::map<std::size_t, FieldEdit>;

/// Inserts a row of the fields that were set and gives its number. Raises the database's error; nothing is changed
/// then.
[[nodiscard]] std::int64_t insertRow(Session& session, const ResultShape& shape, const RowEdits& edits,
                                     std::string_view sql, const OpenReader& changer);

/// Changes the fields that were set. Raises 80040E38h when the row is gone.
void updateRow(Session& session, const ResultShape& shape, std::int64_t rowNumber, const RowEdits& edits,
               std::string_view sql, const OpenReader& changer);

}  // namespace tolvane::embedded
