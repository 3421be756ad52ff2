// ODBC's handles, freed with their owners.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <utility>

namespace tolvane::odbc {

/// One handle of a kind (SQL_HANDLE_ENV, _DBC, _STMT). Empty after a move.
template <SQLSMALLINT HandleKind>
class Handle {
 public:
  static constexpr SQLSMALLINT kind = HandleKind;

  Handle() = default;
  /// `result` is what the driver manager answered; the handle is empty when there was none to be had.
  Handle(SQLHANDLE parent, SQLRETURN& result) {
    result = SQLAllocHandle(kind, parent, &handle_);
    if (!SQL_SUCCEEDED(result)) handle_ = SQL_NULL_HANDLE;
  }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(kind, handle_);
  }

  [[nodiscard]] SQLHANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != SQL_NULL_HANDLE; }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

}  // namespace tolvane::odbc
