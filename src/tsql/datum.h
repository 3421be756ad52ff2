#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tolvane::tsql {

using Bytes = std::vector<std::byte>;
using BytesView = std::span<const std::byte>;

// The five kinds a stored value can have. T-SQL types are finer; they map to kinds so:
//   int family, bit                                        -> Integer
//   float, real                                            -> Real
//   char, varchar, nchar, nvarchar, text, ntext            -> Text (UTF-8)
//   datetime, smalldatetime 'yyyy-mm-dd hh:mm:ss.mmm'      -> Text
//   date 'yyyy-mm-dd'                                      -> Text
//   money, smallmoney, decimal: exactly `scale` fraction digits, '-12.3400', never '-0.00', no exponent -> Text
//   uniqueidentifier, upper-case                           -> Text
//   binary, varbinary, image                               -> Blob
enum class Kind { Null, Integer, Real, Text, Blob };

// One argument of a run-time function. Does not own text and bytes: they must outlive the call.
// The accessors demand that kind() is theirs (std::bad_variant_access otherwise, which is a defect of the caller).
class Datum {
 public:
  Datum() = default;
  template <std::integral T>
  Datum(T value) : value_(static_cast<std::int64_t>(value)) {}
  Datum(double value) : value_(value) {}
  Datum(std::string_view value) : value_(value) {}
  Datum(const char* value) : value_(std::string_view(value)) {}
  Datum(const std::string& value) : value_(std::string_view(value)) {}
  Datum(BytesView value) : value_(value) {}
  Datum(const Bytes& value) : value_(BytesView(value)) {}

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(value_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::Null; }
  [[nodiscard]] std::int64_t integer() const { return std::get<std::int64_t>(value_); }
  [[nodiscard]] double real() const { return std::get<double>(value_); }
  [[nodiscard]] std::string_view text() const { return std::get<std::string_view>(value_); }
  [[nodiscard]] BytesView blob() const { return std::get<BytesView>(value_); }

 private:
  std::variant<std::monostate, std::int64_t, double, std::string_view, BytesView> value_;
};

// What a run-time function gives back. Owns its text and bytes; a receiver may move them out.
class Result {
 public:
  Result() = default;
  template <std::integral T>
  Result(T value) : value_(static_cast<std::int64_t>(value)) {}
  Result(double value) : value_(value) {}
  Result(std::string value) : value_(std::move(value)) {}
  Result(const char* value) : value_(std::string(value)) {}
  Result(Bytes value) : value_(std::move(value)) {}
  // A copy of an argument.
  explicit Result(const Datum& datum) {
    switch (datum.kind()) {
      case Kind::Null:
        break;
      case Kind::Integer:
        value_ = datum.integer();
        break;
      case Kind::Real:
        value_ = datum.real();
        break;
      case Kind::Text:
        value_ = std::string(datum.text());
        break;
      case Kind::Blob:
        value_ = Bytes(datum.blob().begin(), datum.blob().end());
        break;
    }
  }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(value_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::Null; }
  [[nodiscard]] std::int64_t integer() const { return std::get<std::int64_t>(value_); }
  [[nodiscard]] double real() const { return std::get<double>(value_); }
  [[nodiscard]] const std::string& text() const& { return std::get<std::string>(value_); }
  [[nodiscard]] std::string text() && { return std::get<std::string>(std::move(value_)); }
  [[nodiscard]] const Bytes& blob() const& { return std::get<Bytes>(value_); }
  [[nodiscard]] Bytes blob() && { return std::get<Bytes>(std::move(value_)); }

  // The result seen as an argument; valid as long as this object is neither changed nor gone.
  [[nodiscard]] Datum datum() const {
    switch (kind()) {
      case Kind::Null:
        break;
      case Kind::Integer:
        return Datum(integer());
      case Kind::Real:
        return Datum(real());
      case Kind::Text:
        return Datum(text());
      case Kind::Blob:
        return Datum(blob());
    }
    return Datum();
  }

  bool operator==(const Result&) const = default;

 private:
  std::variant<std::monostate, std::int64_t, double, std::string, Bytes> value_;
};

}  // namespace tolvane::tsql
