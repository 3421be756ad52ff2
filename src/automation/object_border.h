// Objects at the automation border: who stands for whom.
#pragma once

#include <memory>

#include "automation/com_ptr.h"
#include "platform/objects.h"

namespace tolvane::automation {

/// A portable object that stands for an automation object of someone else's.
class RemoteReference {
 public:
  virtual ~RemoteReference() = default;
  [[nodiscard]] virtual IDispatch* dispatch() const = 0;
};

/// What a caller is handed for an object: the automation object behind it where there is one, else a new automation
/// object around a bag or list. Null for nothing. Error 458 for objects that cannot be handed out.
[[nodiscard]] ComPtr<IDispatch> dispatchOf(const ObjectRef& object);

/// What the services are given for a caller's object: the bag or list that this module handed out before, else one that
/// asks the caller's object by its members' names. Nothing for null.
[[nodiscard]] ObjectRef objectOf(IDispatch* object);

}  // namespace tolvane::automation
