// References to automation objects.
#pragma once

#include <utility>

#include "automation/windows_headers.h"

namespace tolvane::automation {

/// Holds one reference, or none. Used from the object's own apartment.
template <typename T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
  /// Shares an object that someone else holds too.
  explicit ComPtr(T* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  /// Takes over a reference that the caller had.
  [[nodiscard]] static ComPtr owning(T* object) {
    ComPtr result;
    result.object_ = object;
    return result;
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_) object_->Release();
  }

  [[nodiscard]] T* get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  /// Where a function puts the object that it gives; what was held before is let go.
  [[nodiscard]] T** receive() {
    *this = ComPtr();
    return &object_;
  }
  [[nodiscard]] void** receiveAny() { return reinterpret_cast<void**>(receive()); }
  /// For arguments that go by reference: the callee may let the object go and put another in its place.
  [[nodiscard]] T** reference() noexcept { return &object_; }
  /// Gives the reference away.
  [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }

  /// The object's other interface; nothing when it has none such.
  template <typename Other>
  [[nodiscard]] ComPtr<Other> as(REFIID iid) const {
    ComPtr<Other> other;
    if (object_) object_->QueryInterface(iid, other.receiveAny());
    return other;
  }

 private:
  T* object_ = nullptr;
};

}  // namespace tolvane::automation
