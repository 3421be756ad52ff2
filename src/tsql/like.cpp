#include "tsql/like.h"

#include <algorithm>

#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

bool isSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

char16_t foldedUnit(char16_t unit, const Collation& collation) {
  if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
  if (isSurrogate(unit)) return unit;
  const char32_t folded = collation.fold(unit);
  return folded < 0x10000 ? static_cast<char16_t>(folded) : unit;
}

}  // namespace

std::u16string foldedUnits(std::string_view text, const Collation& collation) {
  std::u16string units = toUtf16(text);
  std::transform(units.begin(), units.end(), units.begin(), [&](char16_t unit) { return foldedUnit(unit, collation); });
  return units;
}

LikePattern::LikePattern(std::string_view pattern, std::optional<char16_t> escape, const Collation& collation)
    : collation_(collation) {
  const std::u16string units = toUtf16(pattern);
  for (std::size_t i = 0; i < units.size();) {
    const char16_t unit = units[i++];
    if (unit == escape && i < units.size()) {
      elements_.push_back({Element::Sort::Unit, foldedUnit(units[i++], collation)});
    } else if (unit == u'%') {
      const bool repeated = !elements_.empty() && elements_.back().sort == Element::Sort::AnyText;
      if (!repeated) elements_.push_back({Element::Sort::AnyText});
    } else if (unit == u'_') {
      elements_.push_back({Element::Sort::AnyUnit});
    } else if (unit == u'[') {
      addClass(units, i, escape);
    } else {
      elements_.push_back({Element::Sort::Unit, foldedUnit(unit, collation)});
    }
  }
}

// `position` is behind the opening bracket, and comes to be behind the closing one.
void LikePattern::addClass(std::u16string_view pattern, std::size_t& position, std::optional<char16_t> escape) {
  Element element{Element::Sort::Class};
  element.negated = position < pattern.size() && pattern[position] == u'^';
  if (element.negated) ++position;
  const auto take = [&] {
    if (pattern[position] == escape && position + 1 < pattern.size()) ++position;
    return pattern[position++];
  };
  while (position < pattern.size() && pattern[position] != u']') {
    const char16_t first = take();
    const bool range = position + 1 < pattern.size() && pattern[position] == u'-' && pattern[position + 1] != u']';
    if (range) ++position;
    element.ranges.push_back({first, range ? take() : first});
  }
  if (position == pattern.size()) element.sort = Element::Sort::Nothing;
  ++position;
  elements_.push_back(std::move(element));
}

bool LikePattern::matchesUnit(const Element& element, char16_t unit) const {
  switch (element.sort) {
    case Element::Sort::AnyText:
    case Element::Sort::AnyUnit:
      return true;
    case Element::Sort::Unit:
      return element.unit == foldedUnit(unit, collation_);
    case Element::Sort::Nothing:
      return false;
    case Element::Sort::Class:
      break;
  }
  const char16_t folded = foldedUnit(unit, collation_);
  const bool inside = std::any_of(element.ranges.begin(), element.ranges.end(), [&](const Range& range) {
    if (range.first == range.last) return foldedUnit(range.first, collation_) == folded;
    if (isSurrogate(unit) || isSurrogate(range.first) || isSurrogate(range.last)) {
      return unit >= range.first && unit <= range.last;
    }
    return collation_.compareCharacters(range.first, unit) <= 0 && collation_.compareCharacters(unit, range.last) <= 0;
  });
  return inside != element.negated;
}

// Tries again from the last % only: what stands before it has matched as early as it can.
bool LikePattern::matchesFrom(std::u16string_view text, std::size_t start, std::size_t element,
                              bool blanksAtEndCount) const {
  std::size_t position = start;
  std::optional<std::size_t> retryElement;
  std::size_t retryPosition = 0;
  while (true) {
    const bool patternEnds = element == elements_.size();
    const bool textEnds = position == text.size();
    if (patternEnds && (textEnds || (!blanksAtEndCount && text.find_first_not_of(u' ', position) == text.npos))) {
      return true;
    }
    if (!patternEnds && elements_[element].sort == Element::Sort::AnyText) {
      retryElement = ++element;
      retryPosition = position;
      continue;
    }
    if (!patternEnds && !textEnds && matchesUnit(elements_[element], text[position])) {
      ++element;
      ++position;
      continue;
    }
    if (!retryElement || retryPosition == text.size()) return false;
    element = *retryElement;
    position = ++retryPosition;
  }
}

bool LikePattern::matches(std::string_view text, bool blanksAtEndCount) const {
  return matchesFrom(toUtf16(text), 0, 0, blanksAtEndCount);
}

std::size_t LikePattern::find(std::string_view text) const {
  const std::u16string units = toUtf16(text);
  const bool anywhere = elements_.size() > 1 && elements_[0].sort == Element::Sort::AnyText;
  if (!anywhere) return matchesFrom(units, 0, 0, false) ? 1 : 0;
  for (std::size_t start = 0; start < std::max<std::size_t>(units.size(), 1); ++start) {
    if (matchesFrom(units, start, 1, false)) return start + 1;
  }
  return 0;
}

}  // namespace tolvane::tsql
