#include "automation/late_bound.h"

#include <vector>

#include "automation/error_translation.h"
#include "automation/text.h"
#include "platform/error.h"

namespace tolvane::automation {
namespace {

constexpr LCID language = LOCALE_SYSTEM_DEFAULT;

}  // namespace

DISPID RemoteMember::in(IDispatch& object) {
  if (id_ != DISPID_UNKNOWN) return id_;
  auto* name = const_cast<LPOLESTR>(name_);
  DISPID found = DISPID_UNKNOWN;
  check(object.GetIDsOfNames(IID_NULL, &name, 1, language, &found));
  return id_ = found;
}

LateBound RemoteClass::create() {
  HRESULT code = S_OK;
  if (!identifier_) {
    CLSID found{};
    const bool plain = name_.starts_with(L'{');
    code = plain ? CLSIDFromString(name_.c_str(), &found) : CLSIDFromProgID(name_.c_str(), &found);
    if (SUCCEEDED(code)) identifier_ = found;
  }
  ComPtr<IDispatch> object;
  if (identifier_) {
    code = CoCreateInstance(*identifier_, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                            object.receiveAny());
  }
  if (SUCCEEDED(code)) return LateBound(std::move(object));
  throw AutomationError(errorNumber(RuntimeError::cannotCreateObject), std::string(applicationName),
                        std::string(errorText(RuntimeError::cannotCreateObject)) + ": '" + utf8(name_) + "'");
}

Variant LateBound::run(RemoteMember& member, WORD flags, std::span<const Variant> arguments) const {
  if (!object_) raise(RuntimeError::objectNotSet);
  // Automation counts arguments from the last.
  constexpr std::size_t most = 8;
  std::array<VARIANT, most> given;
  if (arguments.size() > most) raise(RuntimeError::wrongArgumentCount);
  for (std::size_t i = 0; i < arguments.size(); ++i) given[arguments.size() - 1 - i] = arguments[i].get();
  DISPID newValue = DISPID_PROPERTYPUT;
  const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS parameters{given.data(), puts ? &newValue : nullptr, static_cast<UINT>(arguments.size()), puts ? 1U : 0U};
  Variant result;
  EXCEPINFO error{};
  UINT argument = 0;
  const HRESULT code = object_->Invoke(member.in(*object_), IID_NULL, language, flags, &parameters,
                                       puts ? nullptr : result.receive(), &error, &argument);
  if (FAILED(code)) raiseFailure(code, &error);
  return result;
}

}  // namespace tolvane::automation
