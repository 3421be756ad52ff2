#include "automation/remote_object.h"

#include <utility>

#include "automation/dispatch_object.h"
#include "automation/foundation_objects.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::automation {

std::int32_t RemoteObject::count() const {
  return toInt32(object_.read(count_).take());
}

std::string RemoteObject::name(std::int32_t index) const {
  return toText(object_.read(name_, index).take());
}

Value RemoteObject::item(std::string_view key) const {
  return object_.read(item_, key).take();
}

Value RemoteObject::getValue(std::string_view key, const Value& fallback) const {
  return object_.read(getValue_, key, Variant::of(Value(fallback))).take();
}

void RemoteObject::set(std::string_view key, Value value) {
  object_.put(item_, key, Variant::of(std::move(value)));
}

Value RemoteObject::item(std::int32_t index) const {
  return object_.read(item_, index).take();
}

void RemoteObject::add(Value value) {
  object_.call(add_, Variant::of(std::move(value)));
}

ComPtr<IDispatch> dispatchOf(const ObjectRef& object) {
  if (!object) return {};
  if (const auto* remote = dynamic_cast<const RemoteReference*>(object.get())) {
    return ComPtr<IDispatch>(remote->dispatch());
  }
  if (auto bag = std::dynamic_pointer_cast<PropertyBag>(object)) {
    return ComPtr<IDispatch>(makeObject<BagObject>(std::move(bag)).get());
  }
  if (auto list = std::dynamic_pointer_cast<ItemList>(object)) {
    return ComPtr<IDispatch>(makeObject<ListObject>(std::move(list)).get());
  }
  raise(RuntimeError::typeNotSupported);
}

ObjectRef objectOf(IDispatch* object) {
  if (!object) return {};
  if (const auto own = AutomationObject::ofThisModule(object)) {
    if (auto shown = own->shown()) return shown;
  }
  std::shared_ptr<PropertyBag> remote = std::make_shared<RemoteObject>(ComPtr<IDispatch>(object));
  return remote;
}

}  // namespace tolvane::automation
