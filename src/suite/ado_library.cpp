#include "suite/ado_library.h"

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::suite {

using automation::LateBound;
using automation::RemoteMember;
using automation::Variant;

void putReference(const LateBound& object, RemoteMember& member, IDispatch* value) {
  try {
    object.putObject(member, value);
  } catch (const AutomationError& error) {
    // Some classes know the one way only, as they know the property: `let` and no `set`.
    if (error.number() != errorNumber(RuntimeError::memberNotFound)) throw;
    object.put(member, Variant(value));
  }
}

std::int32_t readInt32(const LateBound& object, RemoteMember& member) {
  return toInt32(object.read(member).take());
}

bool readBoolean(const LateBound& object, RemoteMember& member) {
  return toBoolean(object.read(member).take());
}

std::string readText(const LateBound& object, RemoteMember& member) {
  return toText(object.read(member).take());
}

LateBound readObject(const LateBound& object, RemoteMember& member) {
  return LateBound(object.read(member).object());
}

}  // namespace tolvane::suite
