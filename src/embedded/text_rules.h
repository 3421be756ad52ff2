// What the operating system or its library of texts knows about texts: the account set's collation is made of it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tolvane::embedded {

/// The rules of simplified Chinese: other letters in front, then Chinese by pinyin; letter case, character width and
/// kind of kana do not count, accents do. Texts are UTF-8, ill-formed sequences count as U+FFFD. Thread-safe.
class TextRules {
 public:
  TextRules() = default;
  TextRules(const TextRules&) = delete;
  TextRules& operator=(const TextRules&) = delete;
  virtual ~TextRules() = default;

  /// Trailing blanks count here.
  [[nodiscard]] virtual int compare(std::string_view left, std::string_view right) const = 0;

  /// Bytes that are in the order of the one-character texts, and equal where these are; empty for a character that does
  /// not count at all.
  [[nodiscard]] virtual std::string sortKey(char32_t character) const = 0;

  /// Simple case mapping. foldCase answers the same for all letter cases of a character.
  [[nodiscard]] virtual char32_t upper(char32_t character) const = 0;
  [[nodiscard]] virtual char32_t lower(char32_t character) const = 0;
  [[nodiscard]] virtual char32_t foldCase(char32_t character) const = 0;

  /// Code page 936. What it does not have becomes '?', one for each UTF-16 unit, as SQL Server does.
  [[nodiscard]] virtual std::string toCodePage(std::string_view text) const = 0;
  [[nodiscard]] virtual std::string fromCodePage(std::string_view bytes) const = 0;
};

/// The rules of the system that the program was built for.
[[nodiscard]] std::unique_ptr<TextRules> systemTextRules();

}  // namespace tolvane::embedded
