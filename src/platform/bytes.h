// A byte document: contiguous, shared, never copied on its way from a database to a caller.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/document_memory.h"

namespace tolvane {

/// A read-only run of bytes together with whatever keeps it alive (a buffer, an automation array, a mapped file).
/// Copying a Bytes copies a reference. As an automation value it is a one-dimensional byte array whose lower bound
/// travels with it.
class Bytes {
 public:
  Bytes() = default;

  /// Takes over a buffer.
  explicit Bytes(std::vector<std::uint8_t> buffer, std::int32_t lower = 0) : lower_(lower) {
    auto owner = std::make_shared<std::vector<std::uint8_t>>(std::move(buffer));
    view_ = *owner;
    owner_ = std::move(owner);
  }

  /// Shows memory that `owner` keeps alive and unchanged.
  Bytes(std::shared_ptr<const void> owner, std::span<const std::uint8_t> view, std::int32_t lower = 0)
      : owner_(std::move(owner)), view_(view), lower_(lower) {}

  /// A buffer of `size` bytes that `fill(span)` writes before anyone can read it. Not zeroed first.
  template <typename Fill>
  [[nodiscard]] static Bytes filled(std::size_t size, Fill&& fill, std::int32_t lower = 0) {
    std::shared_ptr<std::uint8_t[]> buffer = newDocumentMemory(size);
    fill(std::span<std::uint8_t>(buffer.get(), size));
    const std::span<const std::uint8_t> view(buffer.get(), size);
    return Bytes(std::move(buffer), view, lower);
  }

  [[nodiscard]] std::span<const std::uint8_t> view() const noexcept { return view_; }
  [[nodiscard]] const std::uint8_t* data() const noexcept { return view_.data(); }
  [[nodiscard]] std::size_t size() const noexcept { return view_.size(); }
  [[nodiscard]] bool empty() const noexcept { return view_.empty(); }
  [[nodiscard]] std::int32_t lower() const noexcept { return lower_; }
  /// What keeps the memory alive, for adapters that can hand their own array back without a copy.
  [[nodiscard]] const std::shared_ptr<const void>& owner() const noexcept { return owner_; }

  /// Content and bounds.
  friend bool operator==(const Bytes& a, const Bytes& b) {
    return a.lower_ == b.lower_ && a.view_.size() == b.view_.size() &&
           std::equal(a.view_.begin(), a.view_.end(), b.view_.begin());
  }

 private:
  std::shared_ptr<const void> owner_;
  std::span<const std::uint8_t> view_;
  std::int32_t lower_ = 0;
};

}  // namespace tolvane
