#include "automation/error_translation.h"

#include <array>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include "automation/text.h"

namespace tolvane::automation {
namespace {

struct Pair {
  HRESULT code;
  RuntimeError error;
};
// What Visual Basic shows for the codes of Invoke.
constexpr std::array pairs{
    Pair{DISP_E_PARAMNOTOPTIONAL, RuntimeError::argumentNotOptional},
    Pair{DISP_E_BADPARAMCOUNT, RuntimeError::wrongArgumentCount},
    Pair{DISP_E_PARAMNOTFOUND, RuntimeError::namedArgumentNotFound},
    Pair{DISP_E_TYPEMISMATCH, RuntimeError::typeMismatch},
    Pair{DISP_E_OVERFLOW, RuntimeError::overflow},
    Pair{DISP_E_MEMBERNOTFOUND, RuntimeError::memberNotFound},
    Pair{DISP_E_UNKNOWNNAME, RuntimeError::memberNotFound},
    Pair{DISP_E_BADINDEX, RuntimeError::subscriptOutOfRange},
    Pair{DISP_E_BADVARTYPE, RuntimeError::typeNotSupported},
    Pair{E_OUTOFMEMORY, RuntimeError::outOfMemory},
    Pair{E_INVALIDARG, RuntimeError::invalidArgument},
    Pair{REGDB_E_CLASSNOTREG, RuntimeError::cannotCreateObject},
    Pair{CO_E_CLASSSTRING, RuntimeError::cannotCreateObject},
};

/// The platform's small numbers travel in the facility of run-time errors.
std::uint32_t travelling(std::uint32_t number) {
  return number < 0x10000 ? errorNumber(static_cast<RuntimeError>(number)) : number;
}

void fill(EXCEPINFO* info, std::uint32_t number, std::string_view source, std::string_view description,
          std::string_view helpFile = {}, std::uint32_t helpContext = 0) {
  if (!info) return;
  *info = EXCEPINFO{};
  info->scode = static_cast<SCODE>(travelling(number));
  info->bstrSource = newBstr(source);
  info->bstrDescription = newBstr(description);
  if (!helpFile.empty()) info->bstrHelpFile = newBstr(helpFile);
  info->dwHelpContext = helpContext;
}

void fillFromCurrent(EXCEPINFO* info) {
  try {
    throw;
  } catch (const AutomationError& error) {
    fill(info, error.number(), error.source(), error.description(), error.helpFile(), error.helpContext());
  } catch (const std::bad_alloc&) {
    fill(info, errorNumber(RuntimeError::outOfMemory), applicationName, errorText(RuntimeError::outOfMemory));
  } catch (const std::length_error&) {
    fill(info, errorNumber(RuntimeError::outOfMemory), applicationName, errorText(RuntimeError::outOfMemory));
  } catch (const std::exception& error) {
    fill(info, oledb::unspecified, applicationName, error.what());
  } catch (...) {
    fill(info, oledb::unspecified, applicationName, "Unspecified error");
  }
}

std::string systemText(HRESULT code) {
  std::array<wchar_t, 512> buffer{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      static_cast<DWORD>(code), 0, buffer.data(), buffer.size(), nullptr);
  std::wstring_view text(buffer.data(), length);
  while (!text.empty() && text.back() <= L' ') text.remove_suffix(1);
  return text.empty() ? "Automation error" : utf8(text);
}

std::string takeText(BSTR& text) {
  std::string result = utf8(viewOf(text));
  SysFreeString(std::exchange(text, nullptr));
  return result;
}

[[noreturn]] void raiseException(EXCEPINFO& info) {
  if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
  const auto number = info.scode != 0 ? static_cast<std::uint32_t>(info.scode) : travelling(info.wCode);
  std::string source = takeText(info.bstrSource);
  std::string description = takeText(info.bstrDescription);
  std::string helpFile = takeText(info.bstrHelpFile);
  if (description.empty()) description = systemText(static_cast<HRESULT>(number));
  AutomationError error(number, std::move(source), std::move(description));
  if (!helpFile.empty() || info.dwHelpContext != 0) error.withHelp(std::move(helpFile), info.dwHelpContext);
  throw error;
}

}  // namespace

HRESULT reportException(EXCEPINFO* info, UINT* argument) noexcept {
  try {
    try {
      throw;
    } catch (const ArgumentFault& fault) {
      if (argument) *argument = fault.argument();
      return fault.code();
    } catch (...) {
      fillFromCurrent(info);
      return DISP_E_EXCEPTION;
    }
  } catch (...) {
    return E_OUTOFMEMORY;  // not even the words of the error found room
  }
}

HRESULT currentCode() noexcept {
  EXCEPINFO info{};
  const HRESULT code = reportException(&info, nullptr);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  // A number that would pass for success says nothing.
  return code != DISP_E_EXCEPTION ? code : FAILED(info.scode) ? info.scode : E_FAIL;
}

HRESULT invokeCode(RuntimeError error) noexcept {
  switch (error) {
    case RuntimeError::argumentNotOptional:
    case RuntimeError::wrongArgumentCount:
    case RuntimeError::namedArgumentNotFound:
    case RuntimeError::typeMismatch:
    case RuntimeError::overflow:
      break;
    default:
      return S_OK;
  }
  for (const Pair& pair : pairs) {
    if (pair.error == error) return pair.code;
  }
  return S_OK;
}

void raiseFailure(HRESULT code, EXCEPINFO* info) {
  if (code == DISP_E_EXCEPTION && info) raiseException(*info);
  for (const Pair& pair : pairs) {
    if (pair.code == code) raise(pair.error);
  }
  throw AutomationError(static_cast<std::uint32_t>(code), std::string(applicationName), systemText(code));
}

}  // namespace tolvane::automation
