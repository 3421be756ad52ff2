// Binary files, as far as the services need them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tolvane {

/// A file open for reading and writing. Positions are counted from 1, as the platform's file statements do.
/// Failures are the platform's file errors (53, 57, 61, 70, 75, 76).
class BinaryFile {
 public:
  virtual ~BinaryFile() = default;
  virtual void put(std::uint64_t position, std::span<const std::uint8_t> bytes) = 0;
  /// Fills `bytes` and answers how many there were: fewer at the end of the file.
  [[nodiscard]] virtual std::size_t get(std::uint64_t position, std::span<std::uint8_t> bytes) = 0;
  [[nodiscard]] virtual std::uint64_t length() = 0;
  /// Also done on destruction, where a failure is not reported.
  virtual void close() = 0;
};

class Files {
 public:
  virtual ~Files() = default;
  /// Names without a directory lie in the process's current directory.
  [[nodiscard]] virtual bool exists(const std::string& name) = 0;
  /// Opens, creating the file when it is not there.
  [[nodiscard]] virtual std::unique_ptr<BinaryFile> openBinary(const std::string& name) = 0;
  virtual void remove(const std::string& name) = 0;
};

/// The platform's ANSI code page (936 in the suite's home), which files of variants are written in.
class AnsiCodePage {
 public:
  virtual ~AnsiCodePage() = default;
  /// Characters outside the code page become '?'.
  [[nodiscard]] virtual std::string fromUtf8(const std::string& text) = 0;
  /// Half a double-byte character at the end is decoded as the code page does; never fails.
  [[nodiscard]] virtual std::string toUtf8(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace tolvane
