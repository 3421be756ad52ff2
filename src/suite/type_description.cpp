#include "suite/type_description.h"

#include <memory>

#include "automation/com_ptr.h"
#include "automation/error_translation.h"
#include "automation/text.h"

namespace tolvane::suite {
namespace {

using automation::check;
using automation::ComPtr;

/// Descriptions belong to the type information that gave them.
struct Releaser {
  ITypeInfo* owner = nullptr;
  void operator()(TYPEATTR* attributes) const { owner->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const { owner->ReleaseFuncDesc(function); }
};
template <typename T>
using Description = std::unique_ptr<T, Releaser>;

Description<TYPEATTR> attributesOf(ITypeInfo& info) {
  TYPEATTR* found = nullptr;
  check(info.GetTypeAttr(&found));
  return {found, Releaser{&info}};
}

/// The interface at a place among those that this one refers to; null when there is none.
ComPtr<ITypeInfo> referred(ITypeInfo& info, UINT place) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> found;
  if (SUCCEEDED(info.GetRefTypeOfImplType(place, &reference))) check(info.GetRefTypeInfo(reference, found.receive()));
  return found;
}

bool visitOwn(ITypeInfo& info, const FunctionVisitor& visit) {
  const UINT count = attributesOf(info)->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* found = nullptr;
    if (FAILED(info.GetFuncDesc(i, &found))) continue;  // what cannot be described cannot be chosen either
    const Description<FUNCDESC> function(found, Releaser{&info});
    if (visit(info, *function)) return true;
  }
  return false;
}

}  // namespace

bool visitInterfaces(ITypeInfo& info, const InterfaceVisitor& visit) {
  const auto attributes = attributesOf(info);
  if (attributes->guid == IID_IDispatch || attributes->guid == IID_IUnknown) return false;
  if (attributes->typekind == TKIND_DISPATCH) {
    // The form for compiled callers, where there is one, tells which functions come from which interface.
    constexpr auto compiledForm = static_cast<UINT>(-1);
    const bool dual = (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
    if (const auto compiled = dual ? referred(info, compiledForm) : ComPtr<ITypeInfo>()) {
      return visitInterfaces(*compiled, visit);
    }
  } else if (const auto base = attributes->cImplTypes > 0 ? referred(info, 0) : ComPtr<ITypeInfo>()) {
    if (visitInterfaces(*base, visit)) return true;
  }
  return visit(info);
}

bool visitFunctions(ITypeInfo& info, const FunctionVisitor& visit) {
  return visitInterfaces(info, [&](ITypeInfo& each) { return visitOwn(each, visit); });
}

ArgumentCount argumentCount(const FUNCDESC& function) {
  const bool puts = function.invkind == INVOKE_PROPERTYPUT || function.invkind == INVOKE_PROPERTYPUTREF;
  const SHORT count = static_cast<SHORT>(function.cParams - (puts ? 1 : 0));
  ArgumentCount result;
  for (SHORT i = 0; i < count; ++i) {
    const USHORT flags = function.lprgelemdescParam[i].paramdesc.wParamFlags;
    if ((flags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)) != 0) continue;
    ++result.atMost;
    if ((flags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) == 0) ++result.atLeast;
  }
  return result;
}

std::wstring memberName(ITypeInfo& info, MEMBERID member) {
  automation::Bstr name;
  UINT count = 0;
  check(info.GetNames(member, name.receive(), 1, &count));
  return std::wstring(automation::viewOf(name.get()));
}

}  // namespace tolvane::suite
