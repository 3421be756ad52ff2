#pragma once

#include <string>
#include <string_view>

namespace tolvane::tsql {

// The collation of an account set: how its texts compare, and the code page of its varchar columns.
// Implementations are thread-safe for reading, and all texts are UTF-8; ill-formed sequences count as U+FFFD.
class Collation {
 public:
  Collation() = default;
  Collation(const Collation&) = delete;
  Collation& operator=(const Collation&) = delete;
  virtual ~Collation() = default;

  // Less than, equal to or greater than 0. Letter case, character width and trailing blanks do not count, accents do.
  [[nodiscard]] virtual int compare(std::string_view left, std::string_view right) const = 0;

  // The representative of all characters that are equal to this one: fold(a) == fold(b) exactly when the collation
  // finds the two one-character texts equal. fold of an ASCII character is that character in lower case.
  [[nodiscard]] virtual char32_t fold(char32_t character) const = 0;

  // The order of two characters, as LIKE ranges want it; 0 exactly when their folds are equal.
  [[nodiscard]] virtual int compareCharacters(char32_t left, char32_t right) const = 0;

  // Simple case mapping, one character to one character.
  [[nodiscard]] virtual char32_t upper(char32_t character) const = 0;
  [[nodiscard]] virtual char32_t lower(char32_t character) const = 0;

  // Text to the bytes of the code page of varchar data and back. What the code page does not have becomes '?', one for
  // each UTF-16 unit. Callers need not ask for texts of ASCII characters: those are the same in every code page.
  [[nodiscard]] virtual std::string toCodePage(std::string_view text) const = 0;
  [[nodiscard]] virtual std::string fromCodePage(std::string_view bytes) const = 0;
};

}  // namespace tolvane::tsql
