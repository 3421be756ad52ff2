#include "odbc/keys.h"

#include <algorithm>
#include <array>

#include "odbc/session.h"
#include "odbc/source_text.h"
#include "odbc/wide_text.h"

namespace tolvane::odbc {
namespace {

// Columns of the result sets of SQLPrimaryKeys, SQLColumns and SQLStatistics.
constexpr SQLUSMALLINT keyColumnName = 4;
constexpr SQLUSMALLINT typeName = 6;
constexpr SQLUSMALLINT indexName = 6;
constexpr SQLUSMALLINT indexType = 7;
constexpr SQLUSMALLINT indexColumnName = 9;

struct TableName {
  std::u16string catalogue;
  std::u16string schema;
  std::u16string table;
};

TableName wideName(const std::string& table) {
  auto parts = nameParts(table);
  const auto wide = [](const std::string& text) { return toWide(text).value_or(u""); };
  TableName name;
  if (!parts.empty()) name.table = wide(parts.back());
  if (parts.size() > 1) name.schema = wide(parts[parts.size() - 2]);
  if (parts.size() > 2) name.catalogue = wide(parts[parts.size() - 3]);
  return name;
}

SQLWCHAR* orNone(const std::u16string& text) {
  return text.empty() ? nullptr : sqlText(text);
}

std::string textOf(const StatementHandle& statement, SQLUSMALLINT column) {
  std::array<char16_t, 256> buffer{};
  SQLLEN size = 0;
  const auto result = SQLGetData(statement.get(), column, SQL_C_WCHAR, buffer.data(), sizeof buffer, &size);
  if (!SQL_SUCCEEDED(result) || size == SQL_NULL_DATA) return {};
  return toUtf8(std::u16string_view(buffer.data())).value_or("");
}

bool fetch(const StatementHandle& statement) {
  return SQL_SUCCEEDED(SQLFetch(statement.get()));
}

std::vector<std::string> primaryKey(Session& session, const TableName& name) {
  auto statement = session.newStatement(defaultCommandTimeout);
  std::vector<std::string> columns;
  if (SQL_SUCCEEDED(SQLPrimaryKeysW(statement.get(), orNone(name.catalogue), SQL_NTS, orNone(name.schema), SQL_NTS,
                                    sqlText(name.table), SQL_NTS))) {
    while (fetch(statement)) columns.push_back(textOf(statement, keyColumnName));
  }
  session.giveBack(std::move(statement));
  return columns;
}

std::vector<std::string> uniqueIndex(Session& session, const TableName& name) {
  auto statement = session.newStatement(defaultCommandTimeout);
  std::vector<std::string> columns;
  std::string chosen;
  if (SQL_SUCCEEDED(SQLStatisticsW(statement.get(), orNone(name.catalogue), SQL_NTS, orNone(name.schema), SQL_NTS,
                                   sqlText(name.table), SQL_NTS, SQL_INDEX_UNIQUE, SQL_QUICK))) {
    while (fetch(statement)) {
      const auto index = textOf(statement, indexName);
      const auto type = textOf(statement, indexType);
      if (index.empty() || type == "0") continue;
      if (chosen.empty()) chosen = index;
      if (index == chosen) columns.push_back(textOf(statement, indexColumnName));
    }
  }
  session.giveBack(std::move(statement));
  return columns;
}

std::string identityColumn(Session& session, const TableName& name) {
  auto statement = session.newStatement(defaultCommandTimeout);
  std::string column;
  if (SQL_SUCCEEDED(SQLColumnsW(statement.get(), orNone(name.catalogue), SQL_NTS, orNone(name.schema), SQL_NTS,
                                sqlText(name.table), SQL_NTS, nullptr, 0))) {
    while (fetch(statement)) {
      auto candidate = textOf(statement, keyColumnName);
      if (column.empty() && textOf(statement, typeName).find("identity") != std::string::npos) {
        column = std::move(candidate);
      }
    }
  }
  session.giveBack(std::move(statement));
  return column;
}

std::u16string lowered(std::u16string text) {
  for (auto& c : text) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  return text;
}

}  // namespace

std::vector<std::string> readKey(Session& session, const std::string& table) {
  auto name = wideName(table);
  if (name.table.empty()) return {};
  auto columns = primaryKey(session, name);
  if (columns.empty()) {
    // Servers that fold names keep them in another letter case than statements write them.
    const auto written = name.table;
    name.table = lowered(written);
    if (name.table != written) columns = primaryKey(session, name);
    name.table = written;
  }
  if (columns.empty()) columns = uniqueIndex(session, name);
  return columns;
}

std::string readIdentity(Session& session, const std::string& table) {
  auto name = wideName(table);
  if (name.table.empty()) return {};
  auto column = identityColumn(session, name);
  if (!column.empty()) return column;
  name.table = lowered(name.table);
  return identityColumn(session, name);
}

}  // namespace tolvane::odbc
