// Questions to SQLite's own catalogue.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "embedded/database.h"

namespace tolvane::embedded {

/// Calls `row` for each row; `values` are the parameters, all of them texts.
void query(Database& database, const char* text, std::initializer_list<std::string_view> values,
           const std::function<void(sqlite3_stmt*)>& row);

/// A column of the row that the statement stands on; empty for null.
[[nodiscard]] std::string columnText(sqlite3_stmt* statement, int column);

}  // namespace tolvane::embedded
