#include "odbc/columns.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>

#include "odbc/wide_text.h"
#include "platform/names.h"

namespace tolvane::odbc {
namespace {

// Types of SQL Server beyond ODBC's own; their names are in the vendor's headers only.
constexpr SQLSMALLINT xmlType = -152;

constexpr SQLULEN mostBytesInRow = 8000;
constexpr std::int32_t moneyPrecision = 19;
constexpr std::int32_t smallMoneyPrecision = 10;
constexpr std::int32_t moneyScale = 4;

bool isLongSize(SQLULEN size) {
  return size == 0 || size > mostBytesInRow;
}

std::string attributeText(const StatementHandle& statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
  std::array<char16_t, 256> buffer{};
  SQLSMALLINT bytes = 0;
  if (!SQL_SUCCEEDED(
          SQLColAttributeW(statement.get(), column, attribute, buffer.data(), sizeof buffer, &bytes, nullptr))) {
    return {};
  }
  return toUtf8(std::u16string_view(buffer.data())).value_or("");
}

bool isMoney(const StatementHandle& statement, SQLUSMALLINT column, const Column& described) {
  const bool couldBe = described.scale == moneyScale &&
                       (described.precision == moneyPrecision || described.precision == smallMoneyPrecision);
  if (!couldBe) return false;
  const auto name = attributeText(statement, column, SQL_DESC_TYPE_NAME);
  return sameName(name, "money") || sameName(name, "smallmoney");
}

std::int32_t fixedSize(DataType type) {
  switch (type) {
    case DataType::unsignedTinyInt:
      return 1;
    case DataType::boolean:
    case DataType::smallInt:
      return 2;
    case DataType::integer:
    case DataType::single:
      return 4;
    case DataType::bigInt:
    case DataType::real:
    case DataType::currency:
      return 8;
    case DataType::numeric:
      return 19;
    case DataType::date:
      return 10;
    case DataType::timestamp:
    case DataType::guid:
      return 16;
    default:
      return 0;
  }
}

}  // namespace

bool Column::isBinary() const {
  return type == DataType::binary || type == DataType::varBinary || type == DataType::longVarBinary;
}

bool Column::isText() const {
  switch (type) {
    case DataType::character:
    case DataType::wideChar:
    case DataType::varChar:
    case DataType::varWChar:
    case DataType::longVarChar:
    case DataType::longVarWChar:
      return true;
    default:
      return false;
  }
}

DataType dataType(SQLSMALLINT sqlType, SQLULEN size) {
  switch (sqlType) {
    case SQL_BIT:
      return DataType::boolean;
    case SQL_TINYINT:
      return DataType::unsignedTinyInt;
    case SQL_SMALLINT:
      return DataType::smallInt;
    case SQL_INTEGER:
      return DataType::integer;
    case SQL_BIGINT:
      return DataType::bigInt;
    case SQL_REAL:
      return DataType::single;
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return DataType::real;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return DataType::numeric;
    case SQL_TYPE_DATE:
    case SQL_DATE:
      return DataType::date;
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP:
      return DataType::timestamp;
    case SQL_GUID:
      return DataType::guid;
    case SQL_CHAR:
      return isLongSize(size) ? DataType::longVarChar : DataType::character;
    case SQL_WCHAR:
      return isLongSize(size) ? DataType::longVarWChar : DataType::wideChar;
    case SQL_VARCHAR:
      return isLongSize(size) ? DataType::longVarChar : DataType::varChar;
    case SQL_WVARCHAR:
      return isLongSize(size) ? DataType::longVarWChar : DataType::varWChar;
    case SQL_LONGVARCHAR:
      return DataType::longVarChar;
    case SQL_WLONGVARCHAR:
    case xmlType:
      return DataType::longVarWChar;
    case SQL_BINARY:
      return isLongSize(size) ? DataType::longVarBinary : DataType::binary;
    case SQL_VARBINARY:
      return isLongSize(size) ? DataType::longVarBinary : DataType::varBinary;
    case SQL_LONGVARBINARY:
      return DataType::longVarBinary;
    default:
      return DataType::variant;
  }
}

Shape describe(Session& session, const StatementHandle& statement, SQLSMALLINT count, std::string_view sql) {
  Shape shape;
  std::array<char16_t, 512> name{};
  for (SQLUSMALLINT number = 1; number <= static_cast<SQLUSMALLINT>(count); ++number) {
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT sqlType = 0;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
    const auto result =
        SQLDescribeColW(statement.get(), number, reinterpret_cast<SQLWCHAR*>(name.data()),
                        static_cast<SQLSMALLINT>(name.size()), &nameLength, &sqlType, &size, &scale, &nullable);
    if (!SQL_SUCCEEDED(result)) session.fail(statement, sql);
    const auto length =
        std::min<std::size_t>(static_cast<std::size_t>(std::max<SQLSMALLINT>(nameLength, 0)), name.size() - 1);
    auto text = toUtf8({name.data(), length}).value_or("");
    Column column;
    column.type = dataType(sqlType, size);
    if (column.type == DataType::variant) {
      throw unknownType(text, attributeText(statement, number, SQL_DESC_TYPE_NAME), sqlType);
    }
    if (column.type == DataType::numeric) {
      column.precision = static_cast<std::int32_t>(size);
      column.scale = scale;
      if (session.dialect().hasMoney && isMoney(statement, number, column)) column.type = DataType::currency;
    }
    column.size = fixedSize(column.type);
    const bool isLong = column.type == DataType::longVarChar || column.type == DataType::longVarWChar ||
                        column.type == DataType::longVarBinary;
    if (column.size == 0) column.size = isLong ? -1 : static_cast<std::int32_t>(size);
    shape.fields.push_back({std::move(text), column.type, column.size, nullable != SQL_NO_NULLS});
    shape.columns.push_back(std::move(column));
  }
  return shape;
}

void addSource(Shape& shape, const Source& source, const Dialect& dialect, const StatementHandle& statement) {
  const bool listed = source.columns.size() == shape.columns.size();
  if (source.table.empty() || (!source.allColumns && !listed)) return;
  shape.table = source.table;
  for (std::size_t i = 0; i < shape.columns.size(); ++i) {
    auto& column = shape.columns[i];
    if (source.allColumns) {
      column.base = shape.fields[i].name;
      column.written = dialect.quoted(column.base);
    } else if (!source.columns[i].empty()) {
      column.base = nameParts(source.columns[i]).front();
      column.written = source.columns[i];
    }
    SQLLEN identity = SQL_FALSE;
    const auto result = SQLColAttributeW(statement.get(), static_cast<SQLUSMALLINT>(i + 1), SQL_DESC_AUTO_UNIQUE_VALUE,
                                         nullptr, 0, nullptr, &identity);
    column.identity = SQL_SUCCEEDED(result) && identity == SQL_TRUE;
  }
}

}  // namespace tolvane::odbc
