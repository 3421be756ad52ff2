#include "frame/variant_record.h"

#include <algorithm>
#include <memory>
#include <string>

#include "frame/record_format.h"
#include "platform/error.h"

namespace tolvane {
namespace {

/// How many names the helpers draw from.
constexpr double nameCount = 888888;

/// A temporary file in the process's current directory, gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(Platform& platform) : files_(platform.files()) {
    do {
      name_ = std::to_string(static_cast<std::int64_t>(platform.random() * nameCount)) + ".tmp";
    } while (files_.exists(name_));
    file_ = files_.openBinary(name_);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!file_) return;
    file_.reset();
    try {
      files_.remove(name_);
    } catch (const AutomationError&) {
      // An error is on its way to the caller already; a file left behind only makes later calls draw another name.
    }
  }

  [[nodiscard]] BinaryFile& file() { return *file_; }

  void closeAndRemove() {
    file_->close();
    file_.reset();
    files_.remove(name_);
  }

 private:
  Files& files_;
  std::string name_;
  std::unique_ptr<BinaryFile> file_;
};

/// Reads a file from its first byte on, a block at a time.
class FileSource : public RecordSource {
 public:
  explicit FileSource(BinaryFile& file) : file_(file), length_(file.length()) {}

  void read(std::span<std::uint8_t> bytes) override {
    if (bytes.size() > remaining()) raise(RuntimeError::typeNotSupported);
    while (!bytes.empty()) {
      if (used_ == block_.size() && bytes.size() >= blockSize) return direct(bytes);
      if (used_ == block_.size()) refill();
      const std::size_t count = std::min(bytes.size(), block_.size() - used_);
      std::copy_n(block_.begin() + static_cast<std::ptrdiff_t>(used_), count, bytes.begin());
      used_ += count;
      bytes = bytes.subspan(count);
    }
  }

  [[nodiscard]] std::uint64_t remaining() const override { return length_ - position_ + (block_.size() - used_); }

 private:
  static constexpr std::size_t blockSize = 64 * 1024;

  void direct(std::span<std::uint8_t> bytes) {
    if (file_.get(position_ + 1, bytes) != bytes.size()) raise(RuntimeError::deviceInput);
    position_ += bytes.size();
  }

  void refill() {
    block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, length_ - position_)));
    used_ = 0;
    direct(block_);
  }

  BinaryFile& file_;
  std::uint64_t length_;
  std::uint64_t position_ = 0;
  std::vector<std::uint8_t> block_;
  std::size_t used_ = 0;
};

}  // namespace

Bytes encodeVariant(Platform& platform, const Value& value) {
  TemporaryFile temporary(platform);
  BinaryFile& file = temporary.file();
  std::uint64_t position = 1;
  writeRecord(value, platform.ansi(), [&](std::span<const std::uint8_t> block) {
    file.put(position, block);
    position += block.size();
  });
  const auto read = [&](std::span<std::uint8_t> bytes) {
    if (file.get(1, bytes) != bytes.size()) raise(RuntimeError::deviceInput);
  };
  Bytes bytes = Bytes::filled(static_cast<std::size_t>(file.length()), read, 1);
  temporary.closeAndRemove();
  return bytes;
}

Value decodeVariant(Platform& platform, const Value& document) {
  const auto* bytes = document.get<Bytes>();
  if (!bytes) raise(RuntimeError::typeMismatch);
  TemporaryFile temporary(platform);
  temporary.file().put(1, bytes->view());
  FileSource source(temporary.file());
  Value value = readRecord(source, platform.ansi());
  temporary.closeAndRemove();
  return value;
}

}  // namespace tolvane
