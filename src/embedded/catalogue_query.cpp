#include "embedded/catalogue_query.h"

#include <memory>

namespace tolvane::embedded {

void query(Database& database, const char* text, std::initializer_list<std::string_view> values,
           const std::function<void(sqlite3_stmt*)>& row) {
  const Lease lease(database, std::make_shared<StatementPool>(text));
  int index = 0;
  for (const auto value : values) {
    sqlite3_bind_text(lease.get(), ++index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  }
  while (database.stepOwn(lease.get())) row(lease.get());
}

std::string columnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))) : std::string();
}

}  // namespace tolvane::embedded
