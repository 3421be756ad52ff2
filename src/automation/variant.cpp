#include "automation/variant.h"

#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "automation/error_translation.h"
#include "automation/object_border.h"
#include "automation/safe_array.h"
#include "automation/text.h"
#include "platform/error.h"

namespace tolvane::automation {
namespace {

// Numbers and dates in texts are written without regard to the user's settings: these texts go into SQL.
constexpr LCID invariant = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

VARIANT ofType(VARTYPE type) {
  VARIANT result;
  VariantInit(&result);
  result.vt = type;
  return result;
}

VARIANT_BOOL nativeBool(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

DECIMAL nativeDecimal(const Decimal& value) {
  DECIMAL result{};
  result.scale = value.scale;
  result.sign = value.negative ? DECIMAL_NEG : 0;
  result.Hi32 = value.high;
  result.Lo64 = value.low;
  return result;
}

Decimal portableDecimal(const DECIMAL& value) {
  return {value.Hi32, value.Lo64, value.scale, (value.sign & DECIMAL_NEG) != 0};
}

Value unsignedValue(std::uint64_t value) {
  if (value <= std::numeric_limits<std::int32_t>::max()) return static_cast<std::int32_t>(value);
  if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) raise(RuntimeError::overflow);
  return static_cast<std::int64_t>(value);
}

/// One overload for each kind of value.
struct Giver {
  VARIANT operator()(Empty) const { return ofType(VT_EMPTY); }
  VARIANT operator()(Null) const { return ofType(VT_NULL); }
  VARIANT operator()(bool v) const { return with(VT_BOOL, &VARIANT::boolVal, nativeBool(v)); }
  VARIANT operator()(std::uint8_t v) const { return with(VT_UI1, &VARIANT::bVal, v); }
  VARIANT operator()(std::int16_t v) const { return with(VT_I2, &VARIANT::iVal, v); }
  VARIANT operator()(std::int32_t v) const { return with(VT_I4, &VARIANT::lVal, LONG{v}); }
  VARIANT operator()(std::int64_t v) const { return with(VT_I8, &VARIANT::llVal, LONGLONG{v}); }
  VARIANT operator()(float v) const { return with(VT_R4, &VARIANT::fltVal, v); }
  VARIANT operator()(double v) const { return with(VT_R8, &VARIANT::dblVal, v); }
  VARIANT operator()(Date v) const { return with(VT_DATE, &VARIANT::date, v.days); }
  VARIANT operator()(ErrorCode v) const { return with(VT_ERROR, &VARIANT::scode, static_cast<SCODE>(v.code)); }
  VARIANT operator()(const std::string& v) const { return with(VT_BSTR, &VARIANT::bstrVal, newBstr(v)); }
  VARIANT operator()(Currency v) const {
    VARIANT result = ofType(VT_CY);
    result.cyVal.int64 = v.scaled;
    return result;
  }
  VARIANT operator()(const Decimal& v) const {
    VARIANT result = ofType(VT_EMPTY);
    result.decVal = nativeDecimal(v);
    result.vt = VT_DECIMAL;  // shares its place with the decimal's reserved word
    return result;
  }
  VARIANT operator()(const ObjectRef& v) const { return with(VT_DISPATCH, &VARIANT::pdispVal, dispatchOf(v).detach()); }

 private:
  template <typename Member, typename T>
  static VARIANT with(VARTYPE type, Member member, T value) {
    VARIANT result = ofType(type);
    result.*member = value;
    return result;
  }
};

bool isArrayValue(const Value& value) {
  return value.isArray() || value.get<Bytes>();
}

VARIANT give(Value&& value) {
  if (isArrayValue(value)) {
    VARIANT result = ofType(static_cast<VARTYPE>(VT_ARRAY | elementTypeOf(value)));
    result.parray = giveArray(std::move(value));
    return result;
  }
  return std::visit(
      [](const auto& content) -> VARIANT {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, Bytes> || std::is_same_v<Content, std::shared_ptr<const Array>>) {
          return ofType(VT_EMPTY);  // arrays went the other way above
        } else {
          return Giver{}(content);
        }
      },
      value.storage());
}

/// The variant behind a reference of any kind, as one that owns nothing.
VARIANT dereferenced(const VARIANT& source) {
  if (source.vt == (VT_BYREF | VT_VARIANT)) {
    if (!source.pvarVal) throw AutomationError(RuntimeError::invalidArgument, std::string(applicationName));
    return *source.pvarVal;
  }
  if (!(source.vt & VT_BYREF)) return source;
  if (!source.byref) throw AutomationError(RuntimeError::invalidArgument, std::string(applicationName));
  const auto type = static_cast<VARTYPE>(source.vt & ~VT_BYREF);
  VARIANT result = ofType(type);
  if (type & VT_ARRAY) {
    result.parray = *source.pparray;
    return result;
  }
  switch (type) {
    case VT_DECIMAL:
      result.decVal = *source.pdecVal;
      result.vt = VT_DECIMAL;
      return result;
    case VT_UI1:
    case VT_I1:
      result.bVal = *source.pbVal;
      return result;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      result.iVal = *source.piVal;
      return result;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      result.lVal = *source.plVal;
      return result;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      result.llVal = *source.pllVal;
      return result;
    case VT_BSTR:
      result.bstrVal = *source.pbstrVal;
      return result;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      result.pdispVal = *source.ppdispVal;
      return result;
    default:
      raise(RuntimeError::typeNotSupported);
  }
}

/// Bytes of a plain number of that type.
std::size_t scalarSize(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    default:
      return 4;
  }
}

Value objectValue(const VARIANT& source) {
  if (source.vt == VT_DISPATCH) return objectOf(source.pdispVal);
  if (!source.punkVal) return ObjectRef();
  const auto object = ComPtr<IUnknown>(source.punkVal).as<IDispatch>(IID_IDispatch);
  if (!object) raise(RuntimeError::typeMismatch);
  return objectOf(object.get());
}

Value scalarValue(const VARIANT& source) {
  switch (source.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null{};
    case VT_I1:
      return static_cast<std::int16_t>(source.cVal);
    case VT_UI1:
      return source.bVal;
    case VT_I2:
      return static_cast<std::int16_t>(source.iVal);
    case VT_UI2:
      return static_cast<std::int32_t>(source.uiVal);
    case VT_I4:
    case VT_INT:
      return static_cast<std::int32_t>(source.lVal);
    case VT_UI4:
    case VT_UINT:
      return unsignedValue(source.ulVal);
    case VT_I8:
      return static_cast<std::int64_t>(source.llVal);
    case VT_UI8:
      return unsignedValue(source.ullVal);
    case VT_R4:
      return source.fltVal;
    case VT_R8:
      return source.dblVal;
    case VT_CY:
      return Currency{source.cyVal.int64};
    case VT_DATE:
      return Date{source.date};
    case VT_BSTR:
      return utf8(viewOf(source.bstrVal));
    case VT_BOOL:
      return source.boolVal != VARIANT_FALSE;
    case VT_ERROR:
      return ErrorCode{static_cast<std::uint32_t>(source.scode)};
    case VT_DECIMAL:
      return portableDecimal(source.decVal);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return objectValue(source);
    default:
      raise(RuntimeError::typeNotSupported);
  }
}

Value ownCopy(Value value) {
  if (const auto* bytes = value.get<Bytes>()) {
    return Bytes(std::vector<std::uint8_t>(bytes->view().begin(), bytes->view().end()), bytes->lower());
  }
  const Array* array = value.array();
  if (!array || array->elementType != ValueType::variant) return value;
  Array copy = *array;
  for (Value& element : copy.elements) element = ownCopy(std::move(element));
  return copy;
}

}  // namespace

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    clear();
    content_ = other.content_;
    lent_ = other.lent_;
    other.forget();
  }
  return *this;
}

Variant::Variant(bool value) noexcept : content_(ofType(VT_BOOL)) {
  content_.boolVal = nativeBool(value);
}
Variant::Variant(std::int16_t value) noexcept : content_(ofType(VT_I2)) {
  content_.iVal = value;
}
Variant::Variant(std::int32_t value) noexcept : content_(ofType(VT_I4)) {
  content_.lVal = value;
}
Variant::Variant(double value) noexcept : content_(ofType(VT_R8)) {
  content_.dblVal = value;
}
Variant::Variant(std::string_view text) : content_(ofType(VT_BSTR)) {
  content_.bstrVal = newBstr(text);
}
Variant::Variant(IDispatch* object) noexcept : content_(ofType(VT_DISPATCH)) {
  content_.pdispVal = object;
  if (object) object->AddRef();
}

Variant Variant::of(Value&& value) {
  Variant result;
  result.content_ = give(std::move(value));
  return result;
}

Variant Variant::lent(const Value& value) {
  const auto* bytes = value.get<Bytes>();
  SAFEARRAY* array = bytes ? arrayBehind(*bytes) : nullptr;
  if (!array) return of(Value(value));
  Variant result;
  result.content_.vt = VT_ARRAY | VT_UI1;
  result.content_.parray = array;
  result.lent_ = true;
  return result;
}

Variant Variant::missing() noexcept {
  Variant result;
  result.content_.vt = VT_ERROR;
  result.content_.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

Variant Variant::reference(std::int32_t& value) noexcept {
  Variant result;
  result.content_.vt = VT_BYREF | VT_I4;
  result.content_.byref = &value;
  return result;
}
Variant Variant::reference(BSTR* text) noexcept {
  Variant result;
  result.content_.vt = VT_BYREF | VT_BSTR;
  result.content_.pbstrVal = text;
  return result;
}
Variant Variant::reference(IDispatch** object) noexcept {
  Variant result;
  result.content_.vt = VT_BYREF | VT_DISPATCH;
  result.content_.ppdispVal = object;
  return result;
}
Variant Variant::reference(VARIANT* content) noexcept {
  Variant result;
  result.content_.vt = VT_BYREF | VT_VARIANT;
  result.content_.pvarVal = content;
  return result;
}

VARIANT* Variant::receive() noexcept {
  clear();
  return &content_;
}

VARIANT Variant::detach() noexcept {
  const VARIANT content = content_;
  VariantInit(&content_);
  return content;
}

void Variant::changeType(VARTYPE type) {
  if (content_.vt == type) return;
  check(VariantChangeTypeEx(&content_, &content_, invariant, VARIANT_NOUSEROVERRIDE, type));
}

Value Variant::take() {
  if ((content_.vt & VT_ARRAY) && !(content_.vt & VT_BYREF)) {
    const VARIANT content = detach();
    return adoptArray(content.parray, static_cast<VARTYPE>(content.vt & ~VT_ARRAY));
  }
  return borrowVariant(content_);
}

ComPtr<IDispatch> Variant::object() const {
  if (content_.vt == VT_DISPATCH) return ComPtr<IDispatch>(content_.pdispVal);
  if (content_.vt == VT_UNKNOWN) return ComPtr<IUnknown>(content_.punkVal).as<IDispatch>(IID_IDispatch);
  if (content_.vt == VT_EMPTY) return {};
  raise(RuntimeError::objectRequired);
}

Value borrowVariant(const VARIANT& source) {
  const VARIANT content = dereferenced(source);
  if (content.vt & VT_BYREF) return borrowVariant(content);  // a variant's variant may hold a reference again
  if (content.vt & VT_ARRAY) return borrowArray(content.parray, static_cast<VARTYPE>(content.vt & ~VT_ARRAY));
  return scalarValue(content);
}

Value copyVariant(const VARIANT& source) {
  return ownCopy(borrowVariant(source));
}

bool holdsAlready(const VARIANT& argument, const Value& value) {
  if (!(argument.vt & VT_BYREF)) return true;
  const VARIANT content = dereferenced(argument);
  if (const auto* bytes = value.get<Bytes>()) {
    return content.vt == (VT_ARRAY | VT_UI1) && content.parray && content.parray->pvData == bytes->data();
  }
  if (const auto* text = value.get<std::string>()) {
    return content.vt == VT_BSTR && utf8(viewOf(content.bstrVal)) == *text;
  }
  return false;
}

WriteBack::WriteBack(const VARIANT& target, Value&& value) : target_(target) {
  const auto type = static_cast<VARTYPE>(target.vt & ~VT_BYREF);
  if (!(target.vt & VT_BYREF)) return;
  if (type & VT_ARRAY) {
    VARIANT* content = content_.receive();
    content->parray = giveArray(std::move(value), static_cast<VARTYPE>(type & ~VT_ARRAY));
    content->vt = type;
    return;
  }
  content_ = Variant::of(std::move(value));
  if (type == VT_VARIANT) return;
  if (content_.get().vt == VT_EMPTY && (type == VT_DISPATCH || type == VT_UNKNOWN))
    content_ = Variant(static_cast<IDispatch*>(nullptr));
  content_.changeType(type);
}

void WriteBack::commit() noexcept {
  if (!(target_.vt & VT_BYREF)) return;
  VARIANT content = content_.detach();
  const auto type = static_cast<VARTYPE>(target_.vt & ~VT_BYREF);
  if (type == VT_VARIANT) {
    VariantClear(target_.pvarVal);
    *target_.pvarVal = content;
  } else if (type & VT_ARRAY) {
    if (*target_.pparray) SafeArrayDestroy(*target_.pparray);
    *target_.pparray = content.parray;
  } else if (type == VT_BSTR) {
    SysFreeString(std::exchange(*target_.pbstrVal, content.bstrVal));
  } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    IUnknown* old = std::exchange(*target_.ppunkVal, content.punkVal);
    if (old) old->Release();
  } else if (type == VT_DECIMAL) {
    *target_.pdecVal = content.decVal;
  } else {
    std::memcpy(target_.byref, &content.llVal, scalarSize(type));
  }
}

}  // namespace tolvane::automation
