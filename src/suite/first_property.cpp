#include "suite/first_property.h"

#include "automation/com_ptr.h"
#include "automation/error_translation.h"
#include "suite/type_description.h"

namespace tolvane::suite {

std::wstring firstPropertyOf(IDispatch& object) {
  automation::ComPtr<ITypeInfo> info;
  std::wstring name;
  if (SUCCEEDED(object.GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, info.receive())) && info) {
    visitFunctions(*info, [&](ITypeInfo& owner, const FUNCDESC& function) {
      const bool restricted = (function.wFuncFlags & FUNCFLAG_FRESTRICTED) != 0;
      if (function.invkind != INVOKE_PROPERTYGET || restricted || argumentCount(function).atLeast > 0) return false;
      name = memberName(owner, function.memid);
      return true;
    });
  }
  if (name.empty()) raise(RuntimeError::memberNotFound);
  return name;
}

}  // namespace tolvane::suite
