// The layout of a variant's record: a 16-bit type number, then data that depends on it. All integers are little-endian.
//
//   scalar   tag data            texts: 16-bit byte count, bytes in the ANSI code page
//   array    tag|2000h dims { count lower }*dims elements      last dimension first; first index fastest
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "platform/files.h"
#include "platform/value.h"

namespace tolvane {

/// More dimensions than an automation array can have.
inline constexpr std::uint16_t maximalDimensions = 60;
/// How deep arrays may stand in variants of arrays.
inline constexpr int maximalNesting = 100;

/// Hands the record's bytes to `sink` in order.
void writeRecord(const Value& value, AnsiCodePage& ansi,
                 const std::function<void(std::span<const std::uint8_t>)>& sink);

/// Where a record's bytes come from.
class RecordSource {
 public:
  virtual ~RecordSource() = default;
  /// Fills all of `bytes` or raises 458.
  virtual void read(std::span<std::uint8_t> bytes) = 0;
  [[nodiscard]] virtual std::uint64_t remaining() const = 0;
};

[[nodiscard]] Value readRecord(RecordSource& source, AnsiCodePage& ansi);

}  // namespace tolvane
