// The automation variant, portable.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/bytes.h"

namespace tolvane {

/// Kinds of values, under automation's own type numbers.
enum class ValueType : std::uint16_t {
  empty = 0,
  null = 1,
  int16 = 2,
  int32 = 3,
  single = 4,
  real = 5,
  currency = 6,
  date = 7,
  string = 8,
  object = 9,
  error = 10,
  boolean = 11,
  variant = 12,  ///< as an array's element type only
  decimal = 14,
  byte = 17,
  int64 = 20,
};
inline constexpr std::uint16_t arrayFlag = 0x2000;

struct Empty {
  friend bool operator==(Empty, Empty) = default;
};
struct Null {
  friend bool operator==(Null, Null) = default;
};

/// A status code carried as a value.
struct ErrorCode {
  std::uint32_t code = 0;
  friend bool operator==(ErrorCode, ErrorCode) = default;
};
/// The code that stands for an optional argument which was not given.
inline constexpr ErrorCode missingArgument{0x80020004};

/// A fixed-point number with four decimals: `scaled` is the value times 10,000.
struct Currency {
  std::int64_t scaled = 0;
  friend auto operator<=>(Currency, Currency) = default;
};

/// Days since 1899-12-30; the fraction is the time of day. Before that day the fraction still counts forward from
/// midnight, as automation has it: -1.25 is 1899-12-29 06:00.
struct Date {
  double days = 0;
  friend bool operator==(Date, Date) = default;
};

/// A 96-bit magnitude with a power of ten below it (scale 0 to 28) and a sign.
struct Decimal {
  std::uint32_t high = 0;
  std::uint64_t low = 0;
  std::uint8_t scale = 0;
  bool negative = false;
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// Anything that is handed out by reference: property bags, row lists, record sets.
class Object {
 public:
  virtual ~Object() = default;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};
/// Null stands for "nothing", the reference to no object.
using ObjectRef = std::shared_ptr<Object>;

struct Array;

/// One automation value. Copies are cheap: texts apart, everything large is shared and read-only.
class Value {
 public:
  using Storage =
      std::variant<Empty, Null, bool, std::uint8_t, std::int16_t, std::int32_t, std::int64_t, float, double, Currency,
                   Date, Decimal, std::string, Bytes, std::shared_ptr<const Array>, ErrorCode, ObjectRef>;

  Value() = default;
  Value(Empty) {}                                                    // NOLINT(google-explicit-constructor)
  Value(Null v) : storage_(v) {}                                     // NOLINT
  Value(bool v) : storage_(v) {}                                     // NOLINT
  Value(std::uint8_t v) : storage_(v) {}                             // NOLINT
  Value(std::int16_t v) : storage_(v) {}                             // NOLINT
  Value(std::int32_t v) : storage_(v) {}                             // NOLINT
  Value(std::int64_t v) : storage_(v) {}                             // NOLINT
  Value(float v) : storage_(v) {}                                    // NOLINT
  Value(double v) : storage_(v) {}                                   // NOLINT
  Value(Currency v) : storage_(v) {}                                 // NOLINT
  Value(Date v) : storage_(v) {}                                     // NOLINT
  Value(Decimal v) : storage_(v) {}                                  // NOLINT
  Value(std::string v) : storage_(std::move(v)) {}                   // NOLINT
  Value(std::string_view v) : storage_(std::string(v)) {}            // NOLINT
  Value(const char* v) : storage_(std::string(v)) {}                 // NOLINT
  Value(Bytes v) : storage_(std::move(v)) {}                         // NOLINT
  Value(Array v);                                                    // NOLINT
  Value(std::shared_ptr<const Array> v) : storage_(std::move(v)) {}  // NOLINT
  Value(ErrorCode v) : storage_(v) {}                                // NOLINT
  Value(ObjectRef v) : storage_(std::move(v)) {}                     // NOLINT
  template <typename Derived>
  requires std::is_base_of_v<Object, Derived> Value(std::shared_ptr<Derived> v)
      : storage_(ObjectRef(std::move(v))) {}  // NOLINT

  /// The type number; arrays answer their element type with `arrayFlag`, byte documents 2011h.
  [[nodiscard]] std::uint16_t typeNumber() const;
  /// The kind of a scalar; `variant` for arrays and byte documents.
  [[nodiscard]] ValueType type() const;

  [[nodiscard]] bool isEmpty() const noexcept { return std::holds_alternative<Empty>(storage_); }
  [[nodiscard]] bool isNull() const noexcept { return std::holds_alternative<Null>(storage_); }
  [[nodiscard]] bool isMissing() const noexcept;
  [[nodiscard]] bool isArray() const noexcept;
  [[nodiscard]] bool isObject() const noexcept { return std::holds_alternative<ObjectRef>(storage_); }
  [[nodiscard]] bool isNothing() const noexcept;

  /// The content if the value is of exactly that kind, else null.
  template <typename T>
  [[nodiscard]] const T* get() const noexcept {
    return std::get_if<T>(&storage_);
  }
  /// The array, else null. Byte documents are not arrays here; ask for `get<Bytes>()`.
  [[nodiscard]] const Array* array() const noexcept;
  /// The object as `T`, else null.
  template <typename T>
  [[nodiscard]] std::shared_ptr<T> objectAs() const {
    const auto* object = get<ObjectRef>();
    return object ? std::dynamic_pointer_cast<T>(*object) : nullptr;
  }
  [[nodiscard]] const Storage& storage() const noexcept { return storage_; }

  /// Same kind and same content; arrays and bytes by content and bounds, objects by identity.
  friend bool operator==(const Value& a, const Value& b);

 private:
  Storage storage_;
};

/// One dimension of an array.
struct Bound {
  std::int32_t lower = 0;
  std::uint32_t count = 0;
  friend bool operator==(const Bound&, const Bound&) = default;
};

/// An array with any bounds. No dimensions at all means "not dimensioned". Elements stand with the first index fastest.
struct Array {
  ValueType elementType = ValueType::variant;
  std::vector<Bound> bounds;
  std::vector<Value> elements;

  friend bool operator==(const Array&, const Array&) = default;

  /// A one-dimensional array.
  [[nodiscard]] static Array of(ValueType elementType, std::vector<Value> elements, std::int32_t lower = 0);
};

}  // namespace tolvane
