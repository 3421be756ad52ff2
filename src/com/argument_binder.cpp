#include "com/argument_binder.h"

#include <utility>

#include "automation/error_translation.h"
#include "automation/late_bound.h"
#include "automation/remote_object.h"
#include "frame/dispatcher.h"
#include "platform/error.h"

namespace tolvane::com {
namespace {

using automation::ArgumentFault;
using automation::invokeCode;

bool isScalar(ParameterType type) {
  switch (type) {
    case ParameterType::boolean:
    case ParameterType::int32:
    case ParameterType::string:
    case ParameterType::date:
      return true;
    default:
      return false;
  }
}

/// An error of reading or converting the argument at `place`, as Invoke reports it.
[[noreturn]] void blame(const AutomationError& error, std::size_t place) {
  const std::uint32_t number = error.number() & 0xFFFF;
  HRESULT code = invokeCode(static_cast<RuntimeError>(number));
  if (code == S_OK && error.number() == errorNumber(RuntimeError::typeNotSupported)) code = DISP_E_BADVARTYPE;
  if (code == S_OK && error.number() == errorNumber(RuntimeError::invalidArgument)) code = E_INVALIDARG;
  if (code == S_OK) throw error;  // a caller's object that failed when it was asked: its own words count
  throw ArgumentFault(code, static_cast<UINT>(place));
}

/// The value of an object's default member: what a client means that passes a field where a number is asked for.
Value defaultValueOf(const Value& object) {
  const auto dispatch = automation::dispatchOf(*object.get<ObjectRef>());
  DISPPARAMS none{};
  automation::Variant result;
  EXCEPINFO error{};
  const HRESULT code = dispatch->Invoke(DISPID_VALUE, IID_NULL, LOCALE_SYSTEM_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                        result.receive(), &error, nullptr);
  if (FAILED(code)) automation::raiseFailure(code, &error);
  return result.take();
}

/// The array in a caller's variant, as far as clients of that kind can use it: scripts index arrays of variants only.
/// Arrays of another type that the caller brought keep it, and documents are byte arrays for everyone.
Value forVariant(Value&& value, const VARIANT& target) {
  const Array* array = value.array();
  if (!array || target.vt != (VT_BYREF | VT_VARIANT)) return std::move(value);
  const VARTYPE held = target.pvarVal->vt;
  if ((held & VT_ARRAY) && held != (VT_ARRAY | VT_VARIANT)) return std::move(value);
  Array copy = *array;
  copy.elementType = ValueType::variant;
  return copy;
}

}  // namespace

ArgumentBinder::ArgumentBinder(const MethodDescription& method, const DISPPARAMS& given)
    : method_(method), given_(given), places_(method.parameters.size(), notGiven) {
  assignPlaces();
  bind();
}

void ArgumentBinder::assignPlaces() {
  const std::size_t named = given_.cNamedArgs;
  const std::size_t count = given_.cArgs;
  if (named > count || count > places_.size()) throw ArgumentFault(DISP_E_BADPARAMCOUNT, 0);
  for (std::size_t i = 0; i < count - named; ++i) take(i, count - 1 - i);
  for (std::size_t i = 0; i < named; ++i) {
    const DISPID parameter = given_.rgdispidNamedArgs[i];
    if (parameter < 0 || static_cast<std::size_t>(parameter) >= places_.size()) {
      throw ArgumentFault(DISP_E_PARAMNOTFOUND, static_cast<UINT>(i));
    }
    take(static_cast<std::size_t>(parameter), i);
  }
}

void ArgumentBinder::take(std::size_t parameter, std::size_t place) {
  if (places_[parameter] != notGiven) throw ArgumentFault(DISP_E_BADPARAMCOUNT, static_cast<UINT>(place));
  if (isGiven(place)) places_[parameter] = place;
}

bool ArgumentBinder::isGiven(std::size_t place) const {
  const VARIANT* content = &argument(place);
  if (content->vt == (VT_BYREF | VT_VARIANT) && content->pvarVal) content = content->pvarVal;
  return content->vt != VT_ERROR || content->scode != DISP_E_PARAMNOTFOUND;
}

Value ArgumentBinder::read(std::size_t parameter) const {
  const std::size_t place = places_[parameter];
  if (place == notGiven) return missingArgument;
  const ParameterDescription& description = method_.parameters[parameter];
  try {
    Value value = automation::borrowVariant(argument(place));
    if (isScalar(description.type) && value.isObject() && !value.isNothing()) return defaultValueOf(value);
    // A script's variable that nothing was put into yet is passed for an object or an array that the method gives.
    const bool emptyGives = description.direction == Direction::inOut && !isScalar(description.type) &&
                            description.type != ParameterType::variant;
    return emptyGives && value.isEmpty() ? emptyValue(description.type) : value;
  } catch (const AutomationError& error) {
    blame(error, place);
  }
}

void ArgumentBinder::bind() {
  CallArguments arguments;
  arguments.positional.reserve(places_.size());
  for (std::size_t i = 0; i < places_.size(); ++i) arguments.positional.push_back(read(i));
  try {
    bound_ = bindArguments(method_, arguments);
  } catch (const ArgumentError& error) {
    const std::size_t place = places_[error.position()];
    blame(error, place == notGiven ? 0 : place);
  }
}

void ArgumentBinder::prepareResults() {
  for (std::size_t i = 0; i < bound_.size(); ++i) {
    const std::size_t place = places_[i];
    if (method_.parameters[i].direction != Direction::inOut || place == notGiven) continue;
    const VARIANT& target = argument(place);
    if (automation::holdsAlready(target, bound_[i])) continue;
    try {
      results_.emplace_back(target, forVariant(std::move(bound_[i]), target));
    } catch (const AutomationError& error) {
      blame(error, place);
    }
  }
  // Documents of the caller's are locked as long as anyone looks at them; they could not be replaced.
  bound_.clear();
}

void ArgumentBinder::writeResults() noexcept {
  for (auto& result : results_) result.commit();
}

}  // namespace tolvane::com
