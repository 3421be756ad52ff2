#include "odbc/dialect.h"

#include "platform/names.h"

namespace tolvane::odbc {
namespace {

const Dialect sqlServer{};
const Dialect sqlite{IdentityReading::lastInsertRowId, NativeNumbers::other, '"', '"', false, false, false, false};
const Dialect postgresql{IdentityReading::returning, NativeNumbers::other, '"', '"', false, false, false, false};

}  // namespace

const Dialect& Dialect::of(std::string_view product) {
  if (product.size() >= 6 && sameName(product.substr(0, 6), "SQLite")) return sqlite;
  if (sameName(product, "PostgreSQL")) return postgresql;
  return sqlServer;
}

std::string Dialect::quoted(std::string_view name) const {
  std::string result(1, openQuote);
  for (const char c : name) {
    result += c;
    if (c == closeQuote) result += c;
  }
  return result + closeQuote;
}

}  // namespace tolvane::odbc
