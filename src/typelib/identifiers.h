// The identifiers under which automation knows the library and its classes.
//
// Clients compile them into themselves and registries keep them, so none may ever change. Each is made from the name
// of what it stands for by one fixed rule: a class that is added to the catalogue has its identifiers at once, and
// nobody has to keep a list.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane::typelib {

/// The name of the type library, and the first part of every programmatic identifier.
inline constexpr std::string_view libraryName = "NorvTolvane";
/// The version of the library's interfaces and of the programmatic identifiers.
inline constexpr std::uint16_t majorVersion = 1;
inline constexpr std::uint16_t minorVersion = 0;

/// A 128-bit identifier in the four parts that Windows gives it.
struct Identifier {
  std::uint32_t first = 0;
  std::uint16_t second = 0;
  std::uint16_t third = 0;
  std::array<std::uint8_t, 8> rest{};
  friend bool operator==(const Identifier&, const Identifier&) = default;
};

[[nodiscard]] Identifier libraryIdentifier();
[[nodiscard]] Identifier classIdentifier(std::string_view className);
[[nodiscard]] Identifier interfaceIdentifier(std::string_view className);
/// Of an enumeration of the library.
[[nodiscard]] Identifier enumerationIdentifier(std::string_view name);

/// "01234567-89AB-8DEF-8123-456789ABCDEF", without braces.
[[nodiscard]] std::string text(const Identifier& identifier);

/// "NorvTolvane.SrvRptRetrieve", the identifier without a version.
[[nodiscard]] std::string programmaticIdentifier(std::string_view className);
/// "NorvTolvane.SrvRptRetrieve.1".
[[nodiscard]] std::string versionedProgrammaticIdentifier(std::string_view className);

}  // namespace tolvane::typelib
