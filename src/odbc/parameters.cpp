#include "odbc/parameters.h"

#include <sqlucode.h>

#include <algorithm>
#include <array>

#include "odbc/errors.h"
#include "odbc/wide_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"

namespace tolvane::odbc {
namespace {

constexpr SQLULEN longestShortText = 4000;
constexpr SQLULEN longestShortBytes = 8000;
// Beyond it a document is handed over while the statement runs, in the pieces in which it came.
constexpr std::size_t longestBound = 64 * 1024;
constexpr SQLULEN timestampDigits = 23;
constexpr SQLSMALLINT timestampScale = 3;

SQLSMALLINT sqlTypeOf(const Column& column) {
  switch (column.type) {
    case DataType::boolean:
      return SQL_BIT;
    case DataType::unsignedTinyInt:
      return SQL_TINYINT;
    case DataType::smallInt:
      return SQL_SMALLINT;
    case DataType::integer:
      return SQL_INTEGER;
    case DataType::bigInt:
      return SQL_BIGINT;
    case DataType::single:
      return SQL_REAL;
    case DataType::real:
      return SQL_DOUBLE;
    case DataType::currency:
    case DataType::numeric:
      return SQL_DECIMAL;
    case DataType::date:
    case DataType::timestamp:
      return SQL_TYPE_TIMESTAMP;
    case DataType::binary:
    case DataType::varBinary:
      return SQL_VARBINARY;
    case DataType::longVarBinary:
      return SQL_LONGVARBINARY;
    case DataType::longVarChar:
    case DataType::longVarWChar:
      return SQL_WLONGVARCHAR;
    default:
      return SQL_WVARCHAR;
  }
}

SQL_TIMESTAMP_STRUCT timestampOf(Date date) {
  const auto time = toCalendar(date);
  SQL_TIMESTAMP_STRUCT result{};
  result.year = static_cast<SQLSMALLINT>(time.year);
  result.month = static_cast<SQLUSMALLINT>(time.month);
  result.day = static_cast<SQLUSMALLINT>(time.day);
  result.hour = static_cast<SQLUSMALLINT>(time.hour);
  result.minute = static_cast<SQLUSMALLINT>(time.minute);
  result.second = static_cast<SQLUSMALLINT>(time.second);
  result.fraction = static_cast<SQLUINTEGER>(time.millisecond) * 1000000U;
  return result;
}

}  // namespace

std::size_t ParameterValue::documentSize() const {
  std::size_t size = 0;
  for (const auto& chunk : chunks) size += chunk.size();
  return size;
}

BoundParameters::BoundParameters(const std::vector<ParameterValue>& values) {
  for (const auto& value : values) fill(forms_.emplace_back(), value);
}

void BoundParameters::fillNull(Form& form) {
  form.cType = form.sqlType == SQL_VARBINARY || form.sqlType == SQL_LONGVARBINARY ? SQL_C_BINARY : SQL_C_WCHAR;
  form.size = 1;
  form.indicator = SQL_NULL_DATA;
  form.data = &form.integer;
  if (form.sqlType == SQL_DECIMAL) form.size = 28;
  if (form.sqlType == SQL_TYPE_TIMESTAMP) {
    form.cType = SQL_C_TYPE_TIMESTAMP;
    form.size = timestampDigits;
    form.scale = timestampScale;
    form.data = &form.time;
  }
}

void BoundParameters::fillDocument(Form& form, const ParameterValue& value) {
  const auto size = value.documentSize();
  const bool isShort = form.sqlType == SQL_VARBINARY && size <= longestShortBytes;
  form.cType = SQL_C_BINARY;
  form.sqlType = isShort ? SQL_VARBINARY : SQL_LONGVARBINARY;
  form.size = std::max<SQLULEN>(size, 1);
  const bool inOnePiece = value.chunks.size() <= 1 && size <= longestBound;
  if (inOnePiece) {
    form.indicator = static_cast<SQLLEN>(size);
    form.dataSize = form.indicator;
    // A document without bytes is not null, so it needs an address.
    form.data =
        size == 0 ? static_cast<SQLPOINTER>(&form.integer) : const_cast<std::uint8_t*>(value.chunks.front().data());
    return;
  }
  form.indicator = SQL_LEN_DATA_AT_EXEC(static_cast<SQLLEN>(size));
  form.data = &form;
}

void BoundParameters::fillText(Form& form, const std::string& text) {
  auto wide = toWide(text);
  if (!wide) throw AutomationError(AdoError::dataConversion, std::string(rowset::recordsetSource));
  form.text = std::move(*wide);
  form.cType = SQL_C_WCHAR;
  if (form.text.size() > longestShortText) form.sqlType = SQL_WLONGVARCHAR;
  form.size = std::max<SQLULEN>(form.text.size(), 1);
  form.dataSize = static_cast<SQLLEN>(form.text.size() * sizeof(char16_t));
  form.indicator = form.dataSize;
  form.data = sqlText(form.text);
}

void BoundParameters::fill(Form& form, const ParameterValue& value) {
  form.source = &value;
  form.sqlType = sqlTypeOf(value.column);
  if (value.isDocument) return fillDocument(form, value);
  if (value.value.isNull() || value.value.isEmpty()) return fillNull(form);
  switch (value.column.type) {
    case DataType::boolean:
      form.integer = toBoolean(value.value) ? 1 : 0;
      form.cType = SQL_C_BIT;
      form.size = 1;
      form.data = &form.integer;  // the low byte comes first
      break;
    case DataType::unsignedTinyInt:
    case DataType::smallInt:
    case DataType::integer:
    case DataType::bigInt:
      form.integer = toInt64(value.value);
      form.cType = SQL_C_SBIGINT;
      form.size = 19;
      form.data = &form.integer;
      break;
    case DataType::single:
    case DataType::real:
      form.real = toDouble(value.value);
      form.cType = SQL_C_DOUBLE;
      form.size = 15;
      form.data = &form.real;
      break;
    case DataType::currency:
    case DataType::numeric: {
      const auto decimal = toDecimal(value.value);
      form.digits = exactText(decimal);
      form.cType = SQL_C_CHAR;
      form.size = value.column.type == DataType::currency ? 19
                  : value.column.precision > 0            ? static_cast<SQLULEN>(value.column.precision)
                                                          : 28;
      form.scale = value.column.type == DataType::currency ? 4 : static_cast<SQLSMALLINT>(decimal.scale);
      form.data = form.digits.data();
      form.indicator = static_cast<SQLLEN>(form.digits.size());
      break;
    }
    case DataType::date:
    case DataType::timestamp:
      form.time = timestampOf(toDate(value.value));
      form.cType = SQL_C_TYPE_TIMESTAMP;
      form.size = timestampDigits;
      form.scale = timestampScale;
      form.data = &form.time;
      break;
    case DataType::guid: {
      auto text = toText(value.value);
      if (text.starts_with('{') && text.size() == 38) text = text.substr(1, 36);
      fillText(form, text);
      break;
    }
    default:
      fillText(form, toText(value.value));
      break;
  }
}

void BoundParameters::bind(Session& session, const StatementHandle& statement, std::string_view sql) {
  SQLUSMALLINT number = 0;
  for (auto& form : forms_) {
    const auto result = SQLBindParameter(statement.get(), ++number, SQL_PARAM_INPUT, form.cType, form.sqlType,
                                         form.size, form.scale, form.data, form.dataSize, &form.indicator);
    if (!SQL_SUCCEEDED(result)) session.fail(statement, sql);
  }
}

SQLRETURN BoundParameters::put(const StatementHandle& statement, const Form& form) {
  SQLRETURN result = SQL_SUCCESS;
  for (const auto& chunk : form.source->chunks) {
    if (chunk.empty() && form.source->chunks.size() > 1) continue;
    result = SQLPutData(statement.get(), const_cast<std::uint8_t*>(chunk.data()), static_cast<SQLLEN>(chunk.size()));
    if (!SQL_SUCCEEDED(result)) return result;
  }
  return result;
}

SQLRETURN BoundParameters::execute(const StatementHandle& statement, const std::u16string& text) {
  auto result = SQLExecDirectW(statement.get(), sqlText(text), static_cast<SQLINTEGER>(text.size()));
  while (result == SQL_NEED_DATA) {
    SQLPOINTER asked = nullptr;
    result = SQLParamData(statement.get(), &asked);
    if (result != SQL_NEED_DATA) break;
    const auto put = BoundParameters::put(statement, *static_cast<const Form*>(asked));
    if (SQL_SUCCEEDED(put)) {
      result = SQL_NEED_DATA;
      continue;
    }
    return put;
  }
  return result;
}

}  // namespace tolvane::odbc
