#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/collation.h"

namespace tolvane::tsql {

// A text as the collation sees it for searching: UTF-16 units, each folded, so that equal characters are equal units.
[[nodiscard]] std::u16string foldedUnits(std::string_view text, const Collation& collation);

// A LIKE pattern: % any text, _ any unit, [a-f] and [^..] classes whose ranges follow the collation, and the escape
// character that makes the one after it stand for itself. A class that is not closed matches nothing.
class LikePattern {
 public:
  LikePattern(std::string_view pattern, std::optional<char16_t> escape, const Collation& collation);

  // Whether the whole text matches; with blanksAtEndCount false, also when only blanks are left of the text.
  [[nodiscard]] bool matches(std::string_view text, bool blanksAtEndCount) const;
  // PATINDEX: where (from 1, in UTF-16 units) the first match begins; 0 for none. A pattern that does not begin with %
  // matches at the beginning only.
  [[nodiscard]] std::size_t find(std::string_view text) const;

 private:
  struct Range {
    char16_t first;
    char16_t last;
  };
  struct Element {
    enum class Sort { AnyText, AnyUnit, Unit, Class, Nothing };
    Sort sort;
    char16_t unit = 0;
    bool negated = false;
    std::vector<Range> ranges = {};
  };

  void addClass(std::u16string_view pattern, std::size_t& position, std::optional<char16_t> escape);
  [[nodiscard]] bool matchesUnit(const Element& element, char16_t unit) const;
  [[nodiscard]] bool matchesFrom(std::u16string_view text, std::size_t start, std::size_t element,
                                 bool blanksAtEndCount) const;

  std::vector<Element> elements_;
  const Collation& collation_;
};

}  // namespace tolvane::tsql
