#include "odbc/row_reader.h"

#include <sqlext.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <span>
#include <string>

#include "odbc/errors.h"
#include "odbc/wide_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"

namespace tolvane::odbc {
namespace {

constexpr std::size_t blockBytes = 64 * 1024;
constexpr std::size_t mostRowsInBlock = 256;
constexpr std::size_t firstPiece = 8 * 1024;
constexpr std::size_t numberTextSize = 64;
// Where sizes are no limits: longer texts are asked for again.
constexpr std::size_t usualText = 256;
constexpr double millisecondsOfDay = 86400000;

SQLPOINTER asPointer(std::size_t number) {
  return reinterpret_cast<SQLPOINTER>(number);
}

// How a column comes to this side.
struct Binding {
  SQLSMALLINT cType = SQL_C_WCHAR;
  std::size_t width = 0;  // bytes of one value in the block
  bool bound = false;
  std::vector<std::uint8_t> values;
  std::vector<SQLLEN> sizes;
};

SQLSMALLINT cTypeOf(const Column& column) {
  switch (column.type) {
    case DataType::boolean:
      return SQL_C_BIT;
    case DataType::unsignedTinyInt:
    case DataType::smallInt:
    case DataType::integer:
      return SQL_C_SLONG;
    case DataType::bigInt:
      return SQL_C_SBIGINT;
    case DataType::single:
    case DataType::real:
      return SQL_C_DOUBLE;
    case DataType::date:
    case DataType::timestamp:
      return SQL_C_TYPE_TIMESTAMP;
    case DataType::numeric:
    case DataType::currency:
    case DataType::guid:
      return SQL_C_CHAR;
    case DataType::binary:
    case DataType::varBinary:
    case DataType::longVarBinary:
      return SQL_C_BINARY;
    default:
      return SQL_C_WCHAR;
  }
}

Binding bindingOf(const Column& column, bool sizesAreLimits) {
  Binding binding;
  binding.cType = cTypeOf(column);
  switch (binding.cType) {
    case SQL_C_BIT:
      binding.width = 1;
      break;
    case SQL_C_SLONG:
      binding.width = sizeof(SQLINTEGER);
      break;
    case SQL_C_SBIGINT:
      binding.width = sizeof(SQLBIGINT);
      break;
    case SQL_C_DOUBLE:
      binding.width = sizeof(double);
      break;
    case SQL_C_TYPE_TIMESTAMP:
      binding.width = sizeof(SQL_TIMESTAMP_STRUCT);
      break;
    case SQL_C_CHAR:
      binding.width = numberTextSize;
      break;
    case SQL_C_BINARY:
      if (!column.isLong()) binding.width = static_cast<std::size_t>(column.size);
      break;
    default:
      if (!column.isLong()) {
        const auto size = static_cast<std::size_t>(column.size);
        binding.width = ((sizesAreLimits ? size : std::max(size, usualText)) + 1) * sizeof(char16_t);
      }
      break;
  }
  return binding;
}

Cell timestampCell(const std::uint8_t* data) {
  SQL_TIMESTAMP_STRUCT time{};
  std::memcpy(&time, data, sizeof time);
  const double day = dateOf(time.year, time.month, time.day).days;
  const double milliseconds =
      ((time.hour * 60.0 + time.minute) * 60.0 + time.second) * 1000.0 + std::round(time.fraction / 1e6);
  const double fraction = milliseconds / millisecondsOfDay;
  return Cell::ofReal(day < 0 ? day - fraction : day + fraction);
}

template <typename Number>
Number numberAt(const std::uint8_t* data) {
  Number number{};
  std::memcpy(&number, data, sizeof number);
  return number;
}

class Reader {
 public:
  Reader(Session& session, const StatementHandle& statement, const Shape& shape, std::string_view sql, RowBuffer& rows)
      : session_(session), statement_(statement), shape_(shape), sql_(sql), rows_(rows) {
    const bool limits = session.dialect().sizesAreLimits;
    for (const auto& column : shape.columns) bindings_.push_back(bindingOf(column, limits));
    chooseBound(limits);
    bind();
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() {
    SQLFreeStmt(statement_.get(), SQL_UNBIND);
    SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROW_ARRAY_SIZE, asPointer(1), SQL_IS_UINTEGER);
    SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, SQL_IS_POINTER);
  }

  void readAll() {
    for (;;) {
      const auto result = SQLFetch(statement_.get());
      if (result == SQL_NO_DATA) return;
      if (!SQL_SUCCEEDED(result)) session_.fail(statement_, sql_);
      const std::size_t count = block_ > 1 ? static_cast<std::size_t>(fetched_) : 1;
      // Before the rows: reading unbound columns reports anew.
      if (result == SQL_SUCCESS_WITH_INFO) session_.failIfReported(statement_, sql_);
      for (std::size_t i = 0; i < count; ++i) takeRow(i);
    }
  }

 private:
  // What may be cut must be readable again; what is not bound must be readable beside bound columns.
  void chooseBound(bool sizesAreLimits) {
    bool before = true;
    bool all = true;
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
      auto& binding = bindings_[i];
      const bool mayBeCut = !sizesAreLimits && (binding.cType == SQL_C_WCHAR || binding.cType == SQL_C_BINARY);
      const bool can = binding.width > 0 && (!mayBeCut || session_.readsBoundColumns());
      binding.bound = can && (before || session_.readsAnyColumn());
      before = before && binding.bound;
      all = all && binding.bound && !mayBeCut;
    }
    std::size_t width = 0;
    for (const auto& binding : bindings_) width += binding.width + sizeof(SQLLEN);
    if (all && !bindings_.empty()) block_ = std::clamp<std::size_t>(blockBytes / width, 1, mostRowsInBlock);
  }

  void bind() {
    if (block_ > 1) {
      SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, SQL_IS_POINTER);
      const auto set = SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROW_ARRAY_SIZE, asPointer(block_), SQL_IS_UINTEGER);
      if (set != SQL_SUCCESS) {
        SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROW_ARRAY_SIZE, asPointer(1), SQL_IS_UINTEGER);
        block_ = 1;
      }
    }
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
      auto& binding = bindings_[i];
      if (!binding.bound) continue;
      binding.values.resize(binding.width * block_);
      binding.sizes.resize(block_);
      const auto result = SQLBindCol(statement_.get(), static_cast<SQLUSMALLINT>(i + 1), binding.cType,
                                     binding.values.data(), static_cast<SQLLEN>(binding.width), binding.sizes.data());
      if (!SQL_SUCCEEDED(result)) session_.fail(statement_, sql_);
    }
  }

  void takeRow(std::size_t inBlock) {
    const auto row = rows_.addRow();
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
      const auto& binding = bindings_[i];
      if (!binding.bound) {
        readUnbound(row, i);
        continue;
      }
      const auto size = binding.sizes[inBlock];
      if (size != SQL_NULL_DATA) takeBound(row, i, binding.values.data() + inBlock * binding.width, size);
    }
  }

  void takeBound(std::size_t row, std::size_t i, const std::uint8_t* data, SQLLEN size) {
    const auto& binding = bindings_[i];
    switch (binding.cType) {
      case SQL_C_BINARY:
        if (wasCut(size, binding.width)) return readAgain(row, i);
        rows_.set(row, i, Bytes(std::vector<std::uint8_t>(data, data + size)));
        return;
      case SQL_C_WCHAR:
        if (wasCut(size, binding.width - sizeof(char16_t))) return readAgain(row, i);
        setText(row, i, {reinterpret_cast<const char16_t*>(data), static_cast<std::size_t>(size) / sizeof(char16_t)});
        return;
      default:
        setFixed(row, i, data, size);
    }
  }

  static bool wasCut(SQLLEN size, std::size_t room) { return size < 0 || static_cast<std::size_t>(size) > room; }

  void readAgain(std::size_t row, std::size_t i) {
    if (block_ > 1 || !session_.readsBoundColumns()) throw longerThanSaid(shape_.fields[i].name);
    readUnbound(row, i);
  }

  void setFixed(std::size_t row, std::size_t i, const std::uint8_t* data, SQLLEN size) {
    switch (bindings_[i].cType) {
      case SQL_C_BIT:
        return rows_.set(row, i, Cell::ofInteger(*data != 0 ? 1 : 0));
      case SQL_C_SLONG:
        return rows_.set(row, i, Cell::ofInteger(numberAt<SQLINTEGER>(data)));
      case SQL_C_SBIGINT:
        return rows_.set(row, i, Cell::ofInteger(numberAt<SQLBIGINT>(data)));
      case SQL_C_DOUBLE:
        return rows_.set(row, i, Cell::ofReal(numberAt<double>(data)));
      case SQL_C_TYPE_TIMESTAMP:
        return rows_.set(row, i, timestampCell(data));
      default:
        if (wasCut(size, numberTextSize - 1)) throw longerThanSaid(shape_.fields[i].name);
        setNumberText(row, i, {reinterpret_cast<const char*>(data), static_cast<std::size_t>(size)});
    }
  }

  void setText(std::size_t row, std::size_t i, std::u16string_view text) {
    utf8_.clear();
    if (!appendUtf8(text, utf8_)) throw brokenText(shape_.fields[i].name);
    rows_.set(row, i, Cell::ofText(utf8_));
  }

  void setNumberText(std::size_t row, std::size_t i, std::string_view text) {
    utf8_.assign(text);
    // Some drivers leave out the zero before the point.
    const auto point = utf8_.starts_with('-') ? 1U : 0U;
    if (utf8_.size() > point && utf8_[point] == '.') utf8_.insert(point, 1, '0');
    if (shape_.columns[i].type == DataType::guid) {
      std::transform(utf8_.begin(), utf8_.end(), utf8_.begin(),
                     [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
      if (!utf8_.starts_with('{')) utf8_ = "{" + utf8_ + "}";
    }
    if (shape_.columns[i].type == DataType::currency) {
      const auto amount = parseCurrency(utf8_);
      if (!amount) throw longerThanSaid(shape_.fields[i].name);
      rows_.set(row, i, Cell::ofInteger(amount->scaled));
      return;
    }
    rows_.set(row, i, Cell::ofText(utf8_));
  }

  // A column that is not bound, or did not fit where it was bound.
  void readUnbound(std::size_t row, std::size_t i) {
    switch (bindings_[i].cType) {
      case SQL_C_BINARY:
        if (auto document = readDocument(i)) rows_.set(row, i, std::move(*document));
        return;
      case SQL_C_WCHAR:
        if (readText(i)) setText(row, i, wide_);
        return;
      default: {
        std::array<std::uint8_t, numberTextSize> data{};
        const auto size = ask(i, {data.data(), data.size()});
        if (size && *size != SQL_NULL_DATA) setFixed(row, i, data.data(), *size);
      }
    }
  }

  // The next piece of a column; nothing when there is none left.
  std::optional<SQLLEN> ask(std::size_t i, std::span<std::uint8_t> to) {
    SQLLEN size = 0;
    const auto result = SQLGetData(statement_.get(), static_cast<SQLUSMALLINT>(i + 1), bindings_[i].cType, to.data(),
                                   static_cast<SQLLEN>(to.size()), &size);
    if (result == SQL_NO_DATA) return std::nullopt;
    if (!SQL_SUCCEEDED(result)) session_.fail(statement_, sql_);
    return size;
  }

  std::optional<Bytes> readDocument(std::size_t i) {
    std::array<std::uint8_t, firstPiece> first;
    const auto size = ask(i, first);
    if (!size || *size == SQL_NULL_DATA) return std::nullopt;
    const auto known = static_cast<std::size_t>(std::max<SQLLEN>(*size, 0));
    if (*size >= 0 && known <= first.size()) {
      return Bytes(std::vector<std::uint8_t>(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(known)));
    }
    if (*size == SQL_NO_TOTAL) return readDocumentOfUnknownSize(i, first);
    return Bytes::filled(known, [&](std::span<std::uint8_t> to) {
      std::copy(first.begin(), first.end(), to.begin());
      auto rest = to.subspan(first.size());
      while (!rest.empty()) {
        const auto piece = ask(i, rest);
        if (!piece || *piece <= 0) throw longerThanSaid(shape_.fields[i].name);
        rest = rest.subspan(std::min(rest.size(), static_cast<std::size_t>(*piece)));
      }
    });
  }

  Bytes readDocumentOfUnknownSize(std::size_t i, std::span<const std::uint8_t> first) {
    std::vector<std::uint8_t> document(first.begin(), first.end());
    for (;;) {
      const auto start = document.size();
      document.resize(start * 2);
      const auto piece = ask(i, std::span(document).subspan(start));
      const auto room = document.size() - start;
      const bool last = !piece || (*piece >= 0 && static_cast<std::size_t>(*piece) <= room);
      if (!last) continue;
      document.resize(start + static_cast<std::size_t>(piece.value_or(0)));
      return Bytes(std::move(document));
    }
  }

  // Puts a text into wide_; false when it is null. Every piece ends with a zero of its own.
  bool readText(std::size_t i) {
    wide_.resize(firstPiece / sizeof(char16_t));
    std::size_t read = 0;
    for (;;) {
      const auto room = wide_.size() - read;
      const auto size = ask(i, {reinterpret_cast<std::uint8_t*>(wide_.data() + read), room * sizeof(char16_t)});
      if (!size) break;
      if (*size == SQL_NULL_DATA) return false;
      const auto units = static_cast<std::size_t>(std::max<SQLLEN>(*size, 0)) / sizeof(char16_t);
      if (*size >= 0 && units < room) {
        read += units;
        break;
      }
      read += room - 1;
      wide_.resize(*size == SQL_NO_TOTAL ? wide_.size() * 2 : read + (units - (room - 1)) + 1);
    }
    wide_.resize(read);
    return true;
  }

  Session& session_;
  const StatementHandle& statement_;
  const Shape& shape_;
  std::string_view sql_;
  RowBuffer& rows_;
  std::vector<Binding> bindings_;
  std::size_t block_ = 1;
  SQLULEN fetched_ = 0;
  std::u16string wide_;
  std::string utf8_;
};

}  // namespace

void readRows(Session& session, const StatementHandle& statement, const Shape& shape, std::string_view sql,
              RowBuffer& rows) {
  Reader(session, statement, shape, sql, rows).readAll();
}

}  // namespace tolvane::odbc
