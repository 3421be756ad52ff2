// Automation variants and the portable values that stand for them.
#pragma once

#include <cstdint>
#include <string_view>

#include "automation/com_ptr.h"
#include "automation/windows_headers.h"
#include "platform/value.h"

namespace tolvane::automation {

/// Owns a VARIANT and what is in it.
class Variant {
 public:
  Variant() noexcept { VariantInit(&content_); }
  Variant(Variant&& other) noexcept : content_(other.content_), lent_(other.lent_) { other.forget(); }
  Variant& operator=(Variant&& other) noexcept;
  ~Variant() { clear(); }

  Variant(bool value) noexcept;                                          // NOLINT(google-explicit-constructor)
  Variant(std::int16_t value) noexcept;                                  // NOLINT
  Variant(std::int32_t value) noexcept;                                  // NOLINT
  Variant(double value) noexcept;                                        // NOLINT
  Variant(std::string_view text);                                        // NOLINT
  Variant(const std::string& text) : Variant(std::string_view(text)) {}  // NOLINT
  Variant(const char* text) : Variant(std::string_view(text)) {}         // NOLINT
  /// "Nothing" for a null pointer.
  Variant(IDispatch* object) noexcept;  // NOLINT
  template <typename T>
  Variant(const ComPtr<T>& object) noexcept : Variant(static_cast<IDispatch*>(object.get())) {}  // NOLINT
  /// The value's content; Bytes that nobody else holds give their array away.
  [[nodiscard]] static Variant of(Value&& value);
  /// The same for an argument that is only looked at during a call: Bytes that lie in an automation array are shown
  /// there, not copied. The value outlives the variant.
  [[nodiscard]] static Variant lent(const Value& value);
  /// The mark of an argument that is not given.
  [[nodiscard]] static Variant missing() noexcept;
  /// References to what the caller keeps, for arguments that go by reference.
  [[nodiscard]] static Variant reference(std::int32_t& value) noexcept;
  [[nodiscard]] static Variant reference(BSTR* text) noexcept;
  [[nodiscard]] static Variant reference(IDispatch** object) noexcept;
  [[nodiscard]] static Variant reference(VARIANT* content) noexcept;

  [[nodiscard]] const VARIANT& get() const noexcept { return content_; }
  /// Where a function puts its result; what was held before is let go.
  [[nodiscard]] VARIANT* receive() noexcept;
  /// Gives the content away. Not for what was lent.
  [[nodiscard]] VARIANT detach() noexcept;
  /// Converts in place, by automation's own rules for the invariant language; error 13 or 6 when it cannot be done.
  void changeType(VARTYPE type);

  /// The content as a value, given away to it.
  [[nodiscard]] Value take();
  /// The object in it; nothing when there is none. Error 424 when the content is no object.
  [[nodiscard]] ComPtr<IDispatch> object() const;

 private:
  void clear() noexcept {
    if (!lent_) VariantClear(&content_);
    forget();
  }
  void forget() noexcept {
    VariantInit(&content_);
    lent_ = false;
  }

  VARIANT content_;
  bool lent_ = false;
};

/// What a caller's variant holds, references followed. Byte arrays are shown, not copied, and stay locked while the
/// value lives; objects become what objectOf() says. Error 458 for types that automation's languages do not have.
[[nodiscard]] Value borrowVariant(const VARIANT& source);

/// The same for a value that outlives the call: byte arrays are copied, so that the caller may change or free his.
[[nodiscard]] Value copyVariant(const VARIANT& source);

/// Whether writing back the value that an in/out argument holds after the call would change nothing.
[[nodiscard]] bool holdsAlready(const VARIANT& argument, const Value& value);

/// A value on its way into a caller's by-reference argument: made ready first, put there afterwards, so that a value
/// that does not fit leaves all arguments as they were.
class WriteBack {
 public:
  /// Prepares `value` for what `target` points to: VT_BYREF with a type, with VT_VARIANT, or with VT_ARRAY and a type.
  /// Arguments without VT_BYREF take nothing. Error 13 or 6 when the value does not convert to the declared type.
  WriteBack(const VARIANT& target, Value&& value);
  /// Puts the value there; what was there is freed.
  void commit() noexcept;

 private:
  VARIANT target_;
  Variant content_;
};

}  // namespace tolvane::automation
