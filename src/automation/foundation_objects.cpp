#include "automation/foundation_objects.h"

#include <array>

#include "automation/error_translation.h"
#include "platform/conversions.h"

namespace tolvane::automation {
namespace {

enum : DISPID { memberItem = DISPID_VALUE, memberCount = 1, memberName = 2, memberGetValue = 3, memberAdd = 4 };

constexpr std::array bagMembers{Member{L"Item", memberItem}, Member{L"Count", memberCount},
                                Member{L"Name", memberName}, Member{L"GetValue", memberGetValue},
                                Member{L"Add", memberAdd},   Member{L"_NewEnum", DISPID_NEWENUM}};
constexpr std::array listMembers{Member{L"Item", memberItem}, Member{L"Count", memberCount}, Member{L"Add", memberAdd},
                                 Member{L"_NewEnum", DISPID_NEWENUM}};

/// Not an IDispatch: "for each" asks for this interface alone.
class Enumeration : public IEnumVARIANT {
 public:
  Enumeration(std::function<std::int32_t()> count, std::function<Variant(std::int32_t)> item, std::int32_t next = 1)
      : count_(std::move(count)), item_(std::move(item)), next_(next) {
    ModuleUse::enter();
  }
  virtual ~Enumeration() { ModuleUse::leave(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IEnumVARIANT ? static_cast<IEnumVARIANT*>(this) : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP Next(ULONG wanted, VARIANT* items, ULONG* fetched) noexcept override {
    if (!items || (wanted > 1 && !fetched)) return E_POINTER;
    if (fetched) *fetched = 0;
    ULONG got = 0;
    try {
      for (; got < wanted && next_ <= count_(); ++got) items[got] = item_(next_++).detach();
    } catch (...) {
      while (got > 0) VariantClear(&items[--got]);
      return reportException(nullptr, nullptr);
    }
    if (fetched) *fetched = got;
    return got == wanted ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG wanted) noexcept override {
    try {
      const std::int64_t left = std::int64_t{count_()} - next_ + 1;
      const bool enough = std::int64_t{wanted} <= left;
      next_ += static_cast<std::int32_t>(enough ? std::int64_t{wanted} : left);
      return enough ? S_OK : S_FALSE;
    } catch (...) {
      return reportException(nullptr, nullptr);
    }
  }
  STDMETHODIMP Reset() noexcept override {
    next_ = 1;
    return S_OK;
  }
  STDMETHODIMP Clone(IEnumVARIANT** copy) noexcept override {
    if (!copy) return E_POINTER;
    try {
      *copy = ComPtr<Enumeration>(new Enumeration(count_, item_, next_)).detach();
      return S_OK;
    } catch (...) {
      *copy = nullptr;
      return E_OUTOFMEMORY;
    }
  }

 private:
  std::function<std::int32_t()> count_;
  std::function<Variant(std::int32_t)> item_;
  std::int32_t next_;
  std::atomic<ULONG> references_{0};
};

}  // namespace

Variant enumerationResult(std::function<std::int32_t()> count, std::function<Variant(std::int32_t)> item) {
  Variant result;
  VARIANT* content = result.receive();
  content->punkVal = ComPtr<Enumeration>(new Enumeration(std::move(count), std::move(item))).detach();
  content->vt = VT_UNKNOWN;
  return result;
}

Members BagObject::members() const {
  return bagMembers;
}

Variant BagObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case memberItem:
      if (!call.isPut()) return Variant::of(bag_->item(toText(call.value(0))));
      bag_->set(toText(call.value(0)), call.keptValue(1));
      return {};
    case memberCount:
      return bag_->count();
    case memberName:
      return bag_->name(toInt32(call.value(0)));
    case memberGetValue:
      return Variant::of(bag_->getValue(toText(call.value(0)), call.value(1, {})));
    case memberAdd:
      bag_->set(toText(call.value(0)), call.keptValue(1));
      return {};
    case DISPID_NEWENUM:
      return enumerationResult([bag = bag_] { return bag->count(); },
                               [bag = bag_](std::int32_t index) { return Variant(bag->name(index)); });
    default:
      raiseNoSuchMember();
  }
}

Members ListObject::members() const {
  return listMembers;
}

Variant ListObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case memberItem:
      return Variant::of(list_->item(toInt32(call.value(0))));
    case memberCount:
      return list_->count();
    case memberAdd:
      list_->add(call.keptValue(0));
      return {};
    case DISPID_NEWENUM:
      return enumerationResult([list = list_] { return list->count(); },
                               [list = list_](std::int32_t index) { return Variant::of(list->item(index)); });
    default:
      raiseNoSuchMember();
  }
}

}  // namespace tolvane::automation
