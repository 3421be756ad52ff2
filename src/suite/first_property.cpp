#include "suite/first_property.h"

#include <memory>

#include "automation/com_ptr.h"
#include "automation/error_translation.h"
#include "automation/text.h"

namespace tolvane::suite {
namespace {

using automation::Bstr;
using automation::check;
using automation::ComPtr;

/// Descriptions belong to the type information that gave them.
struct Releaser {
  ITypeInfo* owner = nullptr;
  void operator()(TYPEATTR* attributes) const { owner->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const { owner->ReleaseFuncDesc(function); }
  void operator()(VARDESC* variable) const { owner->ReleaseVarDesc(variable); }
};
template <typename T>
using Description = std::unique_ptr<T, Releaser>;

Description<TYPEATTR> attributesOf(ITypeInfo& info) {
  TYPEATTR* found = nullptr;
  check(info.GetTypeAttr(&found));
  return {found, Releaser{&info}};
}

std::wstring nameOf(ITypeInfo& info, MEMBERID member) {
  Bstr name;
  UINT count = 0;
  check(info.GetNames(member, name.receive(), 1, &count));
  return std::wstring(automation::viewOf(name.get()));
}

/// Interfaces that are described by their dispatch form alone may keep their properties apart from their methods.
std::wstring firstVariable(ITypeInfo& info, UINT count) {
  for (UINT i = 0; i < count; ++i) {
    VARDESC* found = nullptr;
    check(info.GetVarDesc(i, &found));
    const Description<VARDESC> variable(found, Releaser{&info});
    if (variable->varkind == VAR_DISPATCH) return nameOf(info, variable->memid);
  }
  return {};
}

std::wstring firstGetter(ITypeInfo& info, UINT count) {
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* found = nullptr;
    check(info.GetFuncDesc(i, &found));
    const Description<FUNCDESC> function(found, Releaser{&info});
    const bool hidden = (function->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0;
    // An interface for compiled callers gives its result in an argument of its own.
    const int results = function->funckind == FUNC_DISPATCH ? 0 : 1;
    if (function->invkind == INVOKE_PROPERTYGET && !hidden && function->cParams <= results) {
      return nameOf(info, function->memid);
    }
  }
  return {};
}

}  // namespace

std::wstring firstPropertyOf(IDispatch& object) {
  ComPtr<ITypeInfo> info;
  if (SUCCEEDED(object.GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, info.receive())) && info) {
    const auto attributes = attributesOf(*info);
    std::wstring name = firstVariable(*info, attributes->cVars);
    if (name.empty()) name = firstGetter(*info, attributes->cFuncs);
    if (!name.empty()) return name;
  }
  raise(RuntimeError::memberNotFound);
}

}  // namespace tolvane::suite
