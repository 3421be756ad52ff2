#include "com/server.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "automation/error_translation.h"
#include "automation/per_thread.h"
#include "automation/text.h"
#include "catalogue/catalogue.h"
#include "com/service_object.h"
#include "com/type_library.h"
#include "platform/error.h"
#include "suite/binding.h"

namespace tolvane::com {
namespace {

using automation::Registration;
using automation::RegistrationScope;

/// The objects of one thread share its application object and its resource loader.
std::shared_ptr<suite::SuitePlatform> threadPlatform() {
  static automation::PerThread<suite::SuitePlatform> platforms;
  return platforms.get([] { return std::make_shared<suite::SuitePlatform>(suite::loadBinding()); });
}

std::vector<Registration> registrations() {
  std::vector<Registration> result;
  for (const ClassDescription& description : classes()) {
    Registration registration;
    registration.identifier = nativeIdentifier(typelib::classIdentifier(description.name));
    registration.name = automation::wide(typelib::programmaticIdentifier(description.name));
    registration.description = automation::wide(description.summary);
    registration.typeLibrary = nativeIdentifier(typelib::libraryIdentifier());
    result.push_back(std::move(registration));
  }
  return result;
}

void storeComponents(RegistrationScope scope, Components components) {
  const HKEY root = automation::rootOf(scope);
  if (components == Components::standalone) {
    suite::storeBinding(root, suite::standaloneBinding());
  } else {
    suite::removeBinding(root);
  }
  // The user's choice would hide the one that is made for everyone.
  if (scope == RegistrationScope::machine) suite::removeBinding(HKEY_CURRENT_USER);
}

void unregisterFrom(RegistrationScope scope) {
  automation::unregisterClasses(registrations(), scope);
  static_cast<void>(unregisterTypeLibrary(scope == RegistrationScope::user));  // it may not have been there
  suite::removeBinding(automation::rootOf(scope));
}

std::vector<std::wstring> wordsOf(std::wstring_view text) {
  std::vector<std::wstring> words(1);
  for (const wchar_t c : text) {
    if (c != L' ' && c != L',') {
      words.back() += (c >= L'A' && c <= L'Z') ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) words.pop_back();
  return words;
}

}  // namespace

automation::ObjectMaker objectMaker(REFCLSID identifier) {
  const auto& all = classes();
  const auto found = std::find_if(all.begin(), all.end(), [&](const ClassDescription& description) {
    return nativeIdentifier(typelib::classIdentifier(description.name)) == identifier;
  });
  if (found == all.end()) return nullptr;
  return [&description = *found] {
    const auto object = automation::makeObject<ServiceObject>(description, threadPlatform());
    return automation::ComPtr<IDispatch>(object.get());
  };
}

RegistrationRequest parseRequest(std::wstring_view words) {
  RegistrationRequest request{automation::availableScope(), Components::suite};
  for (const std::wstring& word : wordsOf(words)) {
    if (word == L"standalone") {
      request.components = Components::standalone;
    } else if (word == L"suite") {
      request.components = Components::suite;
    } else if (word == L"user") {
      request.scope = RegistrationScope::user;
    } else if (word == L"machine") {
      request.scope = RegistrationScope::machine;
    } else {
      raise(RuntimeError::invalidArgument);
    }
  }
  return request;
}

void registerServer(const RegistrationRequest& request) {
  automation::registerClasses(registrations(), automation::modulePath(moduleInstance()), request.scope);
  try {
    automation::check(registerTypeLibrary(request.scope == RegistrationScope::user));
    storeComponents(request.scope, request.components);
  } catch (const AutomationError&) {
    unregisterFrom(request.scope);
    throw;
  }
}

void unregisterServer() {
  unregisterFrom(RegistrationScope::user);
  if (automation::availableScope() == RegistrationScope::machine) unregisterFrom(RegistrationScope::machine);
}

}  // namespace tolvane::com
