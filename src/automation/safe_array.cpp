#include "automation/safe_array.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "automation/error_translation.h"
#include "automation/variant.h"
#include "platform/error.h"
#include "platform/windows_document_memory.h"

namespace tolvane::automation {
namespace {

/// The owner of Bytes that show a caller's array; the other kind is OwnedAutomationArray.
struct BorrowedArray {
  SAFEARRAY* array = nullptr;
  void operator()(const void*) { SafeArrayUnlock(array); }
};

struct ArrayDestroyer {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using ArrayHandle = std::unique_ptr<SAFEARRAY, ArrayDestroyer>;

/// Access to an array's elements while it lives.
class ElementAccess {
 public:
  explicit ElementAccess(SAFEARRAY* array) : array_(array) { check(SafeArrayAccessData(array, &data_)); }
  ElementAccess(const ElementAccess&) = delete;
  ElementAccess& operator=(const ElementAccess&) = delete;
  ~ElementAccess() { SafeArrayUnaccessData(array_); }
  [[nodiscard]] std::uint8_t* at(std::size_t index) const {
    return static_cast<std::uint8_t*>(data_) + index * SafeArrayGetElemsize(array_);
  }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

bool isByteVector(SAFEARRAY* array, VARTYPE elementType) {
  return array && elementType == VT_UI1 && SafeArrayGetDim(array) == 1;
}

std::size_t elementCount(const std::vector<Bound>& bounds) {
  std::size_t count = bounds.empty() ? 0 : 1;
  for (const Bound& bound : bounds) count *= bound.count;
  return count;
}

template <typename Owner>
Value bytesOf(SAFEARRAY* array) {
  check(SafeArrayLock(array));
  const SAFEARRAYBOUND& bound = array->rgsabound[0];
  std::shared_ptr<const void> owner(array->pvData ? array->pvData : array, Owner{array});
  return Bytes(std::move(owner), {static_cast<const std::uint8_t*>(array->pvData), bound.cElements}, bound.lLbound);
}

/// The portable element type; error 458 for those that there are none for.
ValueType portableType(VARTYPE type) {
  switch (type) {
    case VT_I2:
      return ValueType::int16;
    case VT_I4:
    case VT_INT:
      return ValueType::int32;
    case VT_R4:
      return ValueType::single;
    case VT_R8:
      return ValueType::real;
    case VT_CY:
      return ValueType::currency;
    case VT_DATE:
      return ValueType::date;
    case VT_BSTR:
      return ValueType::string;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ValueType::object;
    case VT_BOOL:
      return ValueType::boolean;
    case VT_DECIMAL:
      return ValueType::decimal;
    case VT_UI1:
      return ValueType::byte;
    case VT_I8:
      return ValueType::int64;
    case VT_VARIANT:
      return ValueType::variant;
    default:
      raise(RuntimeError::typeNotSupported);
  }
}

/// The element as a variant that shows it: nothing in it is owned.
VARIANT shown(const std::uint8_t* element, VARTYPE type, std::size_t size) {
  VARIANT result;
  if (type == VT_VARIANT) {
    std::memcpy(&result, element, sizeof result);
    return result;
  }
  VariantInit(&result);
  if (type == VT_DECIMAL) {
    std::memcpy(&result.decVal, element, sizeof result.decVal);
  } else {
    std::memcpy(&result.llVal, element, std::min(size, sizeof result.llVal));
  }
  result.vt = type;
  return result;
}

Value copyArray(SAFEARRAY* array, VARTYPE elementType) {
  Array result{portableType(elementType), {}, {}};
  if (!array) return result;
  // Bounds are kept last dimension first; elements stand with the first index fastest, as here.
  for (UINT i = SafeArrayGetDim(array); i > 0; --i) {
    const SAFEARRAYBOUND& bound = array->rgsabound[i - 1];
    result.bounds.push_back({bound.lLbound, bound.cElements});
  }
  const std::size_t count = elementCount(result.bounds);
  const ElementAccess elements(array);
  const std::size_t size = SafeArrayGetElemsize(array);
  result.elements.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    result.elements.push_back(borrowVariant(shown(elements.at(i), elementType, size)));
  }
  return result;
}

ArrayHandle newArray(VARTYPE type, const std::vector<Bound>& bounds) {
  std::vector<SAFEARRAYBOUND> native;
  for (const Bound& bound : bounds) native.push_back({bound.count, bound.lower});
  ArrayHandle array(SafeArrayCreate(type, static_cast<UINT>(native.size()), native.data()));
  if (!array) raise(RuntimeError::outOfMemory);
  return array;
}

SAFEARRAY* copyBytes(const Bytes& bytes) {
  ArrayHandle array(SafeArrayCreateVector(VT_UI1, bytes.lower(), static_cast<ULONG>(bytes.size())));
  if (!array) raise(RuntimeError::outOfMemory);
  if (!bytes.empty()) std::memcpy(array->pvData, bytes.data(), bytes.size());
  return array.release();
}

SAFEARRAY* giveBytes(const Bytes& bytes) {
  auto* owned = std::get_deleter<OwnedAutomationArray>(bytes.owner());
  const bool alone = owned && bytes.owner().use_count() == 1;
  if (!alone || owned->array->rgsabound[0].cElements != bytes.size()) return copyBytes(bytes);
  SAFEARRAY* array = std::exchange(owned->array, nullptr);
  SafeArrayUnlock(array);
  array->rgsabound[0].lLbound = bytes.lower();
  return array;
}

void putElement(std::uint8_t* place, VARTYPE type, std::size_t size, const Value& element) {
  Variant native = Variant::of(Value(element));
  if (type == VT_VARIANT) {
    *reinterpret_cast<VARIANT*>(place) = native.detach();
    return;
  }
  native.changeType(type);
  const VARIANT content = native.detach();  // what it owns is the array's from here on
  if (type == VT_DECIMAL) {
    std::memcpy(place, &content.decVal, size);
  } else {
    std::memcpy(place, &content.llVal, size);
  }
}

SAFEARRAY* giveElements(const Array& source, VARTYPE type) {
  if (source.bounds.empty()) return nullptr;
  ArrayHandle array = newArray(type, source.bounds);
  const ElementAccess elements(array.get());
  const std::size_t size = SafeArrayGetElemsize(array.get());
  for (std::size_t i = 0; i < source.elements.size(); ++i) {
    putElement(elements.at(i), type, size, source.elements[i]);
  }
  return array.release();
}

Array arrayOf(const Bytes& bytes) {
  std::vector<Value> elements(bytes.view().begin(), bytes.view().end());
  return Array::of(ValueType::byte, std::move(elements), bytes.lower());
}

}  // namespace

Value borrowArray(SAFEARRAY* array, VARTYPE elementType) {
  return isByteVector(array, elementType) ? bytesOf<BorrowedArray>(array) : copyArray(array, elementType);
}

Value adoptArray(SAFEARRAY* array, VARTYPE elementType) {
  ArrayHandle handle(array);
  if (!isByteVector(array, elementType)) return copyArray(array, elementType);
  Value result = bytesOf<OwnedAutomationArray>(array);
  handle.release();
  return result;
}

SAFEARRAY* giveArray(Value&& value, VARTYPE elementType) {
  const Value content = std::move(value);
  if (const auto* bytes = content.get<Bytes>()) {
    return elementType == VT_EMPTY || elementType == VT_UI1 ? giveBytes(*bytes)
                                                            : giveElements(arrayOf(*bytes), elementType);
  }
  const Array* array = content.array();
  if (!array) raise(RuntimeError::typeMismatch);
  return giveElements(*array, elementType == VT_EMPTY ? elementTypeOf(content) : elementType);
}

SAFEARRAY* arrayBehind(const Bytes& bytes) {
  SAFEARRAY* array = nullptr;
  if (const auto* owned = std::get_deleter<OwnedAutomationArray>(bytes.owner())) array = owned->array;
  if (const auto* borrowed = std::get_deleter<BorrowedArray>(bytes.owner())) array = borrowed->array;
  if (!array) return nullptr;
  const SAFEARRAYBOUND& bound = array->rgsabound[0];
  return bound.cElements == bytes.size() && bound.lLbound == bytes.lower() ? array : nullptr;
}

VARTYPE elementTypeOf(const Value& value) {
  if (value.get<Bytes>()) return VT_UI1;
  const Array* array = value.array();
  if (!array) raise(RuntimeError::typeMismatch);
  return array->elementType == ValueType::object ? VARTYPE{VT_DISPATCH} : static_cast<VARTYPE>(array->elementType);
}

}  // namespace tolvane::automation
