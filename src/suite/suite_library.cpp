#include "suite/suite_library.h"

#include "suite/first_property.h"

namespace tolvane::suite {

automation::RemoteMember& SuiteLibrary::callText(IDispatch& object) {
  if (!callText_) {
    if (callTextName_.empty()) callTextName_ = firstPropertyOf(object);
    callText_.emplace(callTextName_.c_str());
  }
  return *callText_;
}

}  // namespace tolvane::suite
