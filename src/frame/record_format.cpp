#include "frame/record_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <string>
#include <vector>

#include "platform/error.h"

namespace tolvane {
namespace {

constexpr std::uint16_t tagOf(ValueType type) {
  return static_cast<std::uint16_t>(type);
}
constexpr std::uint16_t byteArrayTag = arrayFlag | tagOf(ValueType::byte);

[[noreturn]] void refuse() {
  raise(RuntimeError::typeNotSupported);
}

/// The least number of bytes that an element of an array takes; 0 for types that no array has.
std::uint64_t leastSize(ValueType element) {
  switch (element) {
    case ValueType::byte:
      return 1;
    case ValueType::int16:
    case ValueType::boolean:
    case ValueType::string:
    case ValueType::variant:
      return 2;
    case ValueType::int32:
    case ValueType::single:
    case ValueType::error:
      return 4;
    case ValueType::int64:
    case ValueType::real:
    case ValueType::currency:
    case ValueType::date:
      return 8;
    case ValueType::decimal:
      return 16;
    case ValueType::empty:
    case ValueType::null:
    case ValueType::object:
      break;
  }
  return 0;
}

class Writer {
 public:
  Writer(AnsiCodePage& ansi, const std::function<void(std::span<const std::uint8_t>)>& sink)
      : ansi_(ansi), sink_(sink) {
    buffer_.reserve(blockSize);
  }

  void variant(const Value& value, int depth) {
    if (value.isArray() && depth >= maximalNesting) refuse();
    if (const auto* bytes = value.get<Bytes>()) return byteArray(*bytes);
    if (const Array* elements = value.array()) return array(*elements, depth);
    integer(value.typeNumber());
    data(value);
  }

  void flush() {
    if (!buffer_.empty()) sink_(buffer_);
    buffer_.clear();
  }

 private:
  static constexpr std::size_t blockSize = 64 * 1024;

  void put(std::span<const std::uint8_t> bytes) {
    if (buffer_.size() + bytes.size() > blockSize) flush();
    if (bytes.size() > blockSize) return sink_(bytes);
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  }

  template <typename Integer>
  void integer(Integer value) {
    std::array<std::uint8_t, sizeof value> bytes;
    auto rest = static_cast<std::make_unsigned_t<Integer>>(value);
    for (auto& byte : bytes) {
      byte = static_cast<std::uint8_t>(rest & 0xFF);
      if constexpr (sizeof value > 1) rest = static_cast<decltype(rest)>(rest >> 8);
    }
    put(bytes);
  }

  void text(const std::string& utf8) {
    const std::string bytes = ansi_.fromUtf8(utf8);
    if (bytes.size() > std::numeric_limits<std::uint16_t>::max()) raise(RuntimeError::overflow);
    integer(static_cast<std::uint16_t>(bytes.size()));
    put({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }

  void decimal(const Decimal& value) {
    integer(tagOf(ValueType::decimal));
    integer(value.scale);
    integer(static_cast<std::uint8_t>(value.negative ? 0x80 : 0));
    integer(value.high);
    integer(static_cast<std::uint32_t>(value.low));
    integer(static_cast<std::uint32_t>(value.low >> 32));
  }

  /// What stands behind a scalar's tag.
  void data(const Value& value) {
    if (value.isEmpty() || value.isNull()) return;
    if (const auto* v = value.get<std::int16_t>()) return integer(*v);
    if (const auto* v = value.get<std::int32_t>()) return integer(*v);
    if (const auto* v = value.get<std::int64_t>()) return integer(*v);
    if (const auto* v = value.get<std::uint8_t>()) return integer(*v);
    if (const auto* v = value.get<float>()) return integer(std::bit_cast<std::int32_t>(*v));
    if (const auto* v = value.get<double>()) return integer(std::bit_cast<std::int64_t>(*v));
    if (const auto* v = value.get<Currency>()) return integer(v->scaled);
    if (const auto* v = value.get<Date>()) return integer(std::bit_cast<std::int64_t>(v->days));
    if (const auto* v = value.get<bool>()) return integer(static_cast<std::int16_t>(*v ? -1 : 0));
    if (const auto* v = value.get<ErrorCode>()) return integer(v->code);
    if (const auto* v = value.get<std::string>()) return text(*v);
    if (const auto* v = value.get<Decimal>()) return decimal(*v);
    refuse();
  }

  void descriptor(std::span<const Bound> bounds) {
    if (bounds.size() > maximalDimensions) refuse();
    integer(static_cast<std::uint16_t>(bounds.size()));
    for (auto bound = bounds.rbegin(); bound != bounds.rend(); ++bound) {
      integer(bound->count);
      integer(bound->lower);
    }
  }

  void byteArray(const Bytes& bytes) {
    integer(byteArrayTag);
    const Bound bound{bytes.lower(), static_cast<std::uint32_t>(bytes.size())};
    descriptor({&bound, 1});
    put(bytes.view());
  }

  /// An array whose elements are not what it says cannot be told apart from another one once it is written.
  static void check(const Array& array) {
    if (leastSize(array.elementType) == 0) refuse();
    std::uint64_t count = array.bounds.empty() ? 0 : 1;
    for (const Bound& bound : array.bounds) count *= bound.count;
    const bool typed = array.elementType != ValueType::variant;
    const auto fits = [&](const Value& element) { return !typed || element.typeNumber() == tagOf(array.elementType); };
    if (count != array.elements.size() || !std::all_of(array.elements.begin(), array.elements.end(), fits)) {
      raise(RuntimeError::typeMismatch);
    }
  }

  void array(const Array& array, int depth) {
    check(array);
    integer(static_cast<std::uint16_t>(arrayFlag | tagOf(array.elementType)));
    descriptor(array.bounds);
    for (const Value& element : array.elements) {
      if (array.elementType == ValueType::variant) {
        variant(element, depth + 1);
      } else {
        data(element);
      }
    }
  }

  AnsiCodePage& ansi_;
  const std::function<void(std::span<const std::uint8_t>)>& sink_;
  std::vector<std::uint8_t> buffer_;
};

class Reader {
 public:
  Reader(RecordSource& source, AnsiCodePage& ansi) : source_(source), ansi_(ansi) {}

  Value variant(int depth) {
    const auto tag = integer<std::uint16_t>();
    return (tag & arrayFlag) != 0 ? array(static_cast<std::uint16_t>(tag & ~arrayFlag), depth) : data(tag);
  }

 private:
  template <typename Integer>
  Integer integer() {
    std::array<std::uint8_t, sizeof(Integer)> bytes;
    source_.read(bytes);
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
    return static_cast<Integer>(value);
  }

  std::vector<std::uint8_t> block(std::uint64_t size) {
    if (size > source_.remaining()) refuse();
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    source_.read(bytes);
    return bytes;
  }

  Value decimal() {
    Decimal value;
    (void)integer<std::uint16_t>();  // writers differ in what they leave here
    value.scale = integer<std::uint8_t>();
    value.negative = integer<std::uint8_t>() != 0;
    value.high = integer<std::uint32_t>();
    const auto low = integer<std::uint32_t>();
    value.low = static_cast<std::uint64_t>(integer<std::uint32_t>()) << 32 | low;
    if (value.scale > 28) refuse();
    return value;
  }

  Value data(std::uint16_t tag) {
    switch (static_cast<ValueType>(tag)) {
      case ValueType::empty:
        return Empty{};
      case ValueType::null:
        return Null{};
      case ValueType::int16:
        return integer<std::int16_t>();
      case ValueType::int32:
        return integer<std::int32_t>();
      case ValueType::int64:
        return integer<std::int64_t>();
      case ValueType::single:
        return std::bit_cast<float>(integer<std::uint32_t>());
      case ValueType::real:
        return std::bit_cast<double>(integer<std::uint64_t>());
      case ValueType::currency:
        return Currency{integer<std::int64_t>()};
      case ValueType::date:
        return Date{std::bit_cast<double>(integer<std::uint64_t>())};
      case ValueType::string:
        return ansi_.toUtf8(block(integer<std::uint16_t>()));
      case ValueType::error:
        return ErrorCode{integer<std::uint32_t>()};
      case ValueType::boolean:
        return integer<std::int16_t>() != 0;
      case ValueType::decimal:
        return decimal();
      case ValueType::byte:
        return integer<std::uint8_t>();
      case ValueType::object:
      case ValueType::variant:
        break;
    }
    refuse();
  }

  std::vector<Bound> descriptor() {
    const auto dimensions = integer<std::uint16_t>();
    if (dimensions > maximalDimensions) refuse();
    std::vector<Bound> bounds(dimensions);
    for (auto bound = bounds.rbegin(); bound != bounds.rend(); ++bound) {
      const auto count = integer<std::int32_t>();
      if (count < 0) refuse();
      *bound = {integer<std::int32_t>(), static_cast<std::uint32_t>(count)};
      if (static_cast<std::int64_t>(bound->lower) + count - 1 > std::numeric_limits<std::int32_t>::max()) refuse();
    }
    return bounds;
  }

  /// How many elements there are, once it is sure that the bytes for them can be there.
  std::uint64_t elementCount(std::span<const Bound> bounds, std::uint64_t size) const {
    if (bounds.empty()) return 0;
    if (std::any_of(bounds.begin(), bounds.end(), [](const Bound& bound) { return bound.count == 0; })) return 0;
    const std::uint64_t most = source_.remaining() / size;
    std::uint64_t count = 1;
    for (const Bound& bound : bounds) {
      if (bound.count > most / count) refuse();
      count *= bound.count;
    }
    return count;
  }

  Value array(std::uint16_t elementTag, int depth) {
    if (depth >= maximalNesting) refuse();
    const std::uint64_t size = leastSize(static_cast<ValueType>(elementTag));
    if (size == 0) refuse();
    std::vector<Bound> bounds = descriptor();
    const std::uint64_t count = elementCount(bounds, size);
    if (elementTag == tagOf(ValueType::byte) && bounds.size() == 1) return Bytes(block(count), bounds.front().lower);
    Array array{static_cast<ValueType>(elementTag), std::move(bounds), {}};
    array.elements.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) {
      array.elements.push_back(elementTag == tagOf(ValueType::variant) ? variant(depth + 1) : data(elementTag));
    }
    return array;
  }

  RecordSource& source_;
  AnsiCodePage& ansi_;
};

}  // namespace

void writeRecord(const Value& value, AnsiCodePage& ansi,
                 const std::function<void(std::span<const std::uint8_t>)>& sink) {
  Writer writer(ansi, sink);
  writer.variant(value, 0);
  writer.flush();
}

Value readRecord(RecordSource& source, AnsiCodePage& ansi) {
  return Reader(source, ansi).variant(0);
}

}  // namespace tolvane
