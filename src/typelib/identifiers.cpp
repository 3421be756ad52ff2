#include "typelib/identifiers.h"

#include <cstdio>

namespace tolvane::typelib {
namespace {

/// FNV-1a, 64 bits, from a starting value of the caller's.
std::uint64_t hashed(std::string_view text, std::uint64_t hash) {
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
  return hash;
}

/// "NorvTolvane/KIND/NAME" hashed twice, from two fixed starts, in the layout of identifiers that are made by a rule of
/// one's own (version 8, the variant of the standard).
Identifier identifierOf(std::string_view kind, std::string_view name) {
  std::string full(libraryName);
  full.append("/").append(kind).append("/").append(name);
  const std::uint64_t high = hashed(full, 0xCBF29CE484222325ULL);
  const std::uint64_t low = hashed(full, 0x9AE16A3B2F90404FULL);
  Identifier result;
  result.first = static_cast<std::uint32_t>(high >> 32);
  result.second = static_cast<std::uint16_t>(high >> 16);
  result.third = static_cast<std::uint16_t>((high & 0x0FFF) | 0x8000);
  for (std::size_t i = 0; i < 8; ++i) result.rest[i] = static_cast<std::uint8_t>(low >> (56 - 8 * i));
  result.rest[0] = static_cast<std::uint8_t>((result.rest[0] & 0x3F) | 0x80);
  return result;
}

}  // namespace

Identifier libraryIdentifier() {
  return identifierOf("library", libraryName);
}
Identifier classIdentifier(std::string_view className) {
  return identifierOf("class", className);
}
Identifier interfaceIdentifier(std::string_view className) {
  return identifierOf("interface", className);
}
Identifier enumerationIdentifier(std::string_view name) {
  return identifierOf("enumeration", name);
}

std::string text(const Identifier& identifier) {
  std::array<char, 37> buffer{};
  const auto& rest = identifier.rest;
  std::snprintf(buffer.data(), buffer.size(), "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X",
                static_cast<unsigned>(identifier.first), identifier.second, identifier.third, rest[0], rest[1], rest[2],
                rest[3], rest[4], rest[5], rest[6], rest[7]);
  return buffer.data();
}

std::string programmaticIdentifier(std::string_view className) {
  return std::string(libraryName).append(".").append(className);
}

std::string versionedProgrammaticIdentifier(std::string_view className) {
  return programmaticIdentifier(className) + "." + std::to_string(majorVersion);
}

}  // namespace tolvane::typelib
