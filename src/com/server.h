// What this DLL serves, and how it is registered.
#pragma once

#include <string_view>

#include "automation/class_factory.h"
#include "automation/registry.h"

namespace tolvane::com {

/// Makes objects of the class with that identifier; null when the catalogue has none such.
[[nodiscard]] automation::ObjectMaker objectMaker(REFCLSID identifier);

/// Which components the server stands on: the suite and ADO, or the standalone ones.
enum class Components { suite, standalone };

/// What a registration is asked for.
struct RegistrationRequest {
  automation::RegistrationScope scope = automation::RegistrationScope::machine;
  Components components = Components::suite;
};

/// Reads "standalone", "suite", "user" and "machine", in any order, with blanks or commas between, in any letter case;
/// what is not said is the suite, and for everyone where this process may do that. Error 5 for other words.
[[nodiscard]] RegistrationRequest parseRequest(std::wstring_view words);

/// Registers all classes and the type library, and the components that they stand on. Raises the system's error; what
/// was registered before it is taken away again.
void registerServer(const RegistrationRequest& request);
/// Takes every registration away that this process may write: for everyone, and for the user. Raises the system's error
/// when those for everyone are there and may not be written.
void unregisterServer();

}  // namespace tolvane::com
