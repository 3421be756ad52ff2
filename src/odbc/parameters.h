// Values on their way to the marks of a statement.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/columns.h"
#include "odbc/session.h"
#include "platform/bytes.h"
#include "platform/value.h"

namespace tolvane::odbc {

/// What is put in place of one mark: a value of the column's own type, or the pieces of a document, which are not
/// joined on the way.
struct ParameterValue {
  Column column;
  Value value;
  std::vector<Bytes> chunks;
  bool isDocument = false;

  [[nodiscard]] std::size_t documentSize() const;
};

/// Keeps the forms that the driver reads from until the statement has run.
class BoundParameters {
 public:
  explicit BoundParameters(const std::vector<ParameterValue>& values);
  BoundParameters(const BoundParameters&) = delete;
  BoundParameters& operator=(const BoundParameters&) = delete;

  /// Binds all of them, in order, to the statement's marks.
  void bind(Session& session, const StatementHandle& statement, std::string_view sql);
  /// Runs the text and hands over what the driver asks for while it runs. The result is SQLExecDirect's.
  [[nodiscard]] SQLRETURN execute(const StatementHandle& statement, const std::u16string& text);

 private:
  struct Form {
    SQLSMALLINT cType = SQL_C_WCHAR;
    SQLSMALLINT sqlType = SQL_WVARCHAR;
    SQLULEN size = 0;
    SQLSMALLINT scale = 0;
    SQLLEN indicator = 0;
    std::u16string text;
    std::string digits;
    std::int64_t integer = 0;
    double real = 0;
    SQL_TIMESTAMP_STRUCT time{};
    const ParameterValue* source = nullptr;
    SQLPOINTER data = nullptr;
    SQLLEN dataSize = 0;
  };

  static void fill(Form& form, const ParameterValue& value);
  static void fillNull(Form& form);
  static void fillDocument(Form& form, const ParameterValue& value);
  static void fillText(Form& form, const std::string& text);
  static SQLRETURN put(const StatementHandle& statement, const Form& form);

  std::deque<Form> forms_;
};

}  // namespace tolvane::odbc
