#include <windows.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "embedded/text_rules.h"
#include "system/windows_text.h"

namespace tolvane::embedded {
namespace {

constexpr unsigned codePage = 936;
// Simplified Chinese by pinyin, the order that SQL Server takes from Windows for this collation.
constexpr const wchar_t* locale = L"zh-CN";
// A hyphen counts as any other sign here: what Windows makes of it in words is the collation's.
constexpr DWORD comparison = NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH | SORT_STRINGSORT;

std::wstring wideOf(char32_t character) {
  if (character < 0x10000) return {static_cast<wchar_t>(character)};
  const auto rest = character - 0x10000;
  return {static_cast<wchar_t>(0xD800 + (rest >> 10)), static_cast<wchar_t>(0xDC00 + (rest & 0x3FF))};
}

char32_t mapped(char32_t character, DWORD mapping) {
  const auto text = wideOf(character);
  std::array<wchar_t, 4> result{};
  const int size = LCMapStringEx(LOCALE_NAME_INVARIANT, mapping, text.data(), static_cast<int>(text.size()),
                                 result.data(), static_cast<int>(result.size()), nullptr, nullptr, 0);
  if (size == 2 && IS_SURROGATE_PAIR(result[0], result[1])) {
    return 0x10000 + ((static_cast<char32_t>(result[0]) - 0xD800) << 10) + (static_cast<char32_t>(result[1]) - 0xDC00);
  }
  return size == 1 ? static_cast<char32_t>(result[0]) : character;
}

// What a key holds after the weights of all levels: the levels end with 1, the key with 0.
bool holdsWeights(const std::string& key) {
  return std::any_of(key.begin(), key.end(), [](char byte) { return byte != 0 && byte != 1; });
}

class WindowsTextRules final : public TextRules {
 public:
  int compare(std::string_view left, std::string_view right) const override {
    const auto a = system::wideOf(left);
    const auto b = system::wideOf(right);
    const int order = CompareStringEx(locale, comparison, a.data(), static_cast<int>(a.size()), b.data(),
                                      static_cast<int>(b.size()), nullptr, nullptr, 0);
    if (order == 0) throw std::runtime_error("Windows cannot compare Chinese texts");
    return order - CSTR_EQUAL;
  }

  std::string sortKey(char32_t character) const override {
    const auto text = wideOf(character);
    std::array<wchar_t, 64> buffer{};
    // With this flag the buffer is counted in bytes.
    const int size =
        LCMapStringEx(locale, LCMAP_SORTKEY | comparison, text.data(), static_cast<int>(text.size()), buffer.data(),
                      static_cast<int>(buffer.size() * sizeof(wchar_t)), nullptr, nullptr, 0);
    std::string key(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(std::max(0, size - 1)));
    return holdsWeights(key) ? key : std::string();
  }

  char32_t upper(char32_t character) const override { return mapped(character, LCMAP_UPPERCASE); }
  char32_t lower(char32_t character) const override { return mapped(character, LCMAP_LOWERCASE); }
  char32_t foldCase(char32_t character) const override { return lower(upper(character)); }

  std::string toCodePage(std::string_view text) const override {
    return system::toCodePage(codePage, system::wideOf(text), system::QuestionMarks::oneEachUnit);
  }
  std::string fromCodePage(std::string_view bytes) const override {
    return system::utf8Of(system::fromCodePage(codePage, bytes));
  }
};

}  // namespace

std::unique_ptr<TextRules> systemTextRules() {
  return std::make_unique<WindowsTextRules>();
}

}  // namespace tolvane::embedded
