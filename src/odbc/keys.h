// What the driver's catalogue says about the rows of a table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::odbc {

class Session;

/// The columns that tell a table's rows apart: its primary key, or its first unique index. `table` is written as in a
/// statement ("t", "dbo.[t]"). Empty when the driver knows of none; catalogues may not be asked of every server.
[[nodiscard]] std::vector<std::string> readKey(Session& session, const std::string& table);

/// The column of which the driver's catalogue says that the server numbers it ("int identity"); empty without one.
[[nodiscard]] std::string readIdentity(Session& session, const std::string& table);

}  // namespace tolvane::odbc
