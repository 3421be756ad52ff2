// Little-endian numbers and UTF-16 texts, read from a message and put into one.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/unicode.h"

namespace tolvane::tds {

using Buffer = std::vector<std::uint8_t>;

/// What a client sent is not what the protocol allows here.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class WireReader {
 public:
  explicit WireReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  [[nodiscard]] bool atEnd() const { return at_ >= bytes_.size(); }

  template <typename Number>
  Number number() {
    Number value{};
    const auto bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
  }

  std::span<const std::uint8_t> take(std::size_t count) {
    if (count > bytes_.size() - at_) throw ProtocolError("the message ends too early");
    const auto part = bytes_.subspan(at_, count);
    at_ += count;
    return part;
  }

  std::string text(std::size_t units) { return textOf(take(units * 2)); }

  static std::string textOf(std::span<const std::uint8_t> bytes) {
    std::u16string wide(bytes.size() / 2, u'\0');
    std::memcpy(wide.data(), bytes.data(), wide.size() * 2);
    return tsql::fromUtf16(wide);
  }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

template <typename Number>
void put(Buffer& to, Number value) {
  const auto start = to.size();
  to.resize(start + sizeof value);
  std::memcpy(to.data() + start, &value, sizeof value);
}

inline void putBytes(Buffer& to, std::span<const std::uint8_t> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

inline void putWide(Buffer& to, std::u16string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  to.insert(to.end(), bytes, bytes + text.size() * 2);
}

/// A text behind its length in units.
template <typename Length>
void putText(Buffer& to, std::string_view text) {
  const auto wide = tsql::toUtf16(text);
  put(to, static_cast<Length>(wide.size()));
  putWide(to, wide);
}

}  // namespace tolvane::tds
