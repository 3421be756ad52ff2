#include "embedded/account_set_collation.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "embedded/text_rules.h"
#include "tsql/unicode.h"

namespace tolvane::embedded {
namespace {

constexpr char32_t planeSize = 0x10000;
// Characters up to the last of the common Chinese ones get a rank; what lies above is rare in texts.
constexpr char32_t rankedEnd = 0xA000;
// The system answers this many comparisons before the ranks of all characters are worked out: a program that compares a
// few texts only should not wait for the table.
constexpr std::uint32_t comparisonsBeforeRanks = 500;

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool isPrintableAscii(unsigned char c) {
  return c >= 0x20 && c < 0x7F;
}

bool isSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

char32_t asciiLower(char32_t c) {
  return c >= U'A' && c <= U'Z' ? c + 32 : c;
}

// Windows sorts words: these signs decide only where texts are equal without them, so that 'co-op' stands beside 'coop'
// and account 1001-1 beside 10011. The wide forms equal the narrow ones.
constexpr char32_t wordSigns[] = {U'\'', U'-', U'\uFF07', U'\uFF0D'};

bool isWordSign(char32_t c) {
  return std::ranges::find(wordSigns, c) != std::end(wordSigns);
}

bool hasWordSigns(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    if (isWordSign(tsql::nextCharacter(text, i))) return true;
  }
  return false;
}

struct Words {
  std::string text;                                 // without the signs
  std::vector<std::pair<std::size_t, char>> signs;  // behind how many characters, which one
};

Words wordsOf(std::string_view text) {
  Words words;
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t begin = i;
    const char32_t c = tsql::nextCharacter(text, i);
    if (isWordSign(c)) {
      words.signs.emplace_back(characters, c == U'\'' || c == U'\uFF07' ? '\'' : '-');
    } else {
      words.text += text.substr(begin, i - begin);
      ++characters;
    }
  }
  return words;
}

// The rank of the next character, 0 when it has none; the position moves behind it.
std::uint16_t nextRank(std::string_view text, std::size_t& position, const std::vector<std::uint16_t>& ranks) {
  const auto first = static_cast<unsigned char>(text[position]);
  if (first < 0x80) {
    ++position;
    return ranks[first];
  }
  const char32_t character = tsql::nextCharacter(text, position);
  return character < rankedEnd ? ranks[character] : std::uint16_t{0};
}

struct Keyed {
  std::string key;
  char32_t character;
};

std::atomic<std::uint64_t> keysMade{0};

std::vector<Keyed> sortedKeys(const TextRules& rules, char32_t end) {
  std::vector<Keyed> keys;
  keys.reserve(end);
  for (char32_t c = 1; c < end; ++c) {
    if (isSurrogate(c)) continue;
    keysMade.fetch_add(1, std::memory_order_relaxed);
    if (auto key = rules.sortKey(c); !key.empty()) keys.push_back({std::move(key), c});
  }
  std::sort(keys.begin(), keys.end(),
            [](const Keyed& a, const Keyed& b) { return a.key != b.key ? a.key < b.key : a.character < b.character; });
  return keys;
}

// Whether the character is one that compares on its own, by the first level alone, whatever stands around it.
bool isPlain(char32_t c) {
  return (c < 0x80 && isPrintableAscii(static_cast<unsigned char>(c))) || (c >= 0x4E00 && c < rankedEnd);
}

constexpr std::uint16_t lastSignRank = 2;

// Ranks of the plain characters, 0 for all others. Two plain texts compare as their ranks do; those of the signs
// between words only tell that they are such.
std::vector<std::uint16_t> makeRanks(const TextRules& rules, char32_t end) {
  std::vector<std::uint16_t> ranks(end, 0);
  ranks['\''] = 1;
  ranks['-'] = lastSignRank;
  std::uint16_t rank = lastSignRank;
  std::string_view last;
  const auto keys = sortedKeys(rules, end);
  for (const auto& [key, character] : keys) {
    if (!isPlain(character) || isWordSign(character)) continue;
    if (key != last) ++rank;
    last = key;
    ranks[character] = rank;
  }
  return ranks;
}

// An ASCII letter in lower case stands for all that are equal to it, or a common Chinese character, or the first of
// them.
char32_t representativeOf(const std::vector<Keyed>& keys, std::size_t first, std::size_t end) {
  for (auto i = first; i < end; ++i) {
    const auto c = keys[i].character;
    if (isPlain(c)) return asciiLower(c);
  }
  return keys[first].character;
}

std::vector<char16_t> makeFolds(const TextRules& rules) {
  std::vector<char16_t> folds(planeSize);
  for (char32_t c = 0; c < planeSize; ++c) folds[c] = static_cast<char16_t>(c);
  const auto keys = sortedKeys(rules, planeSize);
  for (std::size_t first = 0; first < keys.size();) {
    std::size_t end = first;
    while (end < keys.size() && keys[end].key == keys[first].key) ++end;
    const auto representative = representativeOf(keys, first, end);
    for (; first < end; ++first) folds[keys[first].character] = static_cast<char16_t>(representative);
  }
  return folds;
}

std::string toUtf8(char32_t character) {
  std::string text;
  tsql::appendCharacter(text, character);
  return text;
}

class AccountSetCollation final : public tsql::Collation {
 public:
  AccountSetCollation() : rules_(systemTextRules()), asciiRanks_(makeRanks(*rules_, 0x80)) {}

  int compare(std::string_view left, std::string_view right) const override {
    left = withoutTrailingBlanks(left);
    right = withoutTrailingBlanks(right);
    const auto* ranks = ready_.load(std::memory_order_acquire) ? &ranks_ : nullptr;
    std::size_t i = 0;
    for (const auto common = std::min(left.size(), right.size()); i < common; ++i) {
      const auto a = static_cast<unsigned char>(left[i]);
      const auto b = static_cast<unsigned char>(right[i]);
      if (!isPrintableAscii(a) || !isPrintableAscii(b)) {
        return ranks ? compareRanked(left, right, i, *ranks) : compareByRules(left, right, i);
      }
      // A difference of the first level decides, whatever follows.
      if (a != b && asciiRanks_[a] != asciiRanks_[b]) {
        return compareByRank(asciiRanks_[a], asciiRanks_[b], left, right);
      }
    }
    if (left.size() == right.size()) return 0;
    const auto next = static_cast<unsigned char>(left.size() > i ? left[i] : right[i]);
    // A longer text is greater, unless what follows are marks that belong to the letter before or count for nothing.
    if (!isPrintableAscii(next)) return ranks ? compareRanked(left, right, i, *ranks) : compareByRules(left, right, i);
    return left.size() > i ? 1 : -1;
  }

  char32_t fold(char32_t character) const override {
    if (character < 0x80) return asciiLower(character);
    if (character >= planeSize) return rules_->foldCase(character);
    std::call_once(foldsOnce_, [this] { folds_ = makeFolds(*rules_); });
    return folds_[character];
  }

  int compareCharacters(char32_t left, char32_t right) const override {
    if (fold(left) == fold(right)) return 0;
    const int order = rules_->compare(toUtf8(left), toUtf8(right));
    if (order != 0) return order;
    return left < right ? -1 : 1;
  }

  char32_t upper(char32_t character) const override { return rules_->upper(character); }
  char32_t lower(char32_t character) const override { return rules_->lower(character); }

  std::string toCodePage(std::string_view text) const override { return rules_->toCodePage(text); }
  std::string fromCodePage(std::string_view bytes) const override { return rules_->fromCodePage(bytes); }

 private:
  // Compares texts that are equal, plain ASCII before byte `from`. The character before goes with the rest, since marks
  // that follow belong to it.
  int compareByRules(std::string_view left, std::string_view right, std::size_t from) const {
    if (slowComparisons_.fetch_add(1, std::memory_order_relaxed) == comparisonsBeforeRanks) {
      std::call_once(ranksOnce_, [this] {
        ranks_ = makeRanks(*rules_, rankedEnd);
        ready_.store(true, std::memory_order_release);
      });
    }
    return compareWhole(left, right, from == 0 ? 0 : from - 1);
  }

  // By the system's rules; texts are equal before byte `start`.
  int compareWhole(std::string_view left, std::string_view right, std::size_t start = 0) const {
    if (hasWordSigns(left) || hasWordSigns(right)) return compareAsWords(left, right);
    return rules_->compare(left.substr(start), right.substr(start));
  }

  // Texts whose first difference is in characters of these ranks.
  int compareByRank(std::uint16_t rankA, std::uint16_t rankB, std::string_view left, std::string_view right) const {
    if (std::min(rankA, rankB) <= lastSignRank) return compareAsWords(left, right);
    return rankA < rankB ? -1 : 1;
  }

  [[gnu::noinline]] int compareAsWords(std::string_view left, std::string_view right) const {
    const Words a = wordsOf(left);
    const Words b = wordsOf(right);
    if (const int order = compare(a.text, b.text); order != 0) return order;
    const auto order = a.signs <=> b.signs;
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
  }

  // The same by ranks, as long as both texts hold plain characters only; else the rules decide on the whole.
  int compareRanked(std::string_view left, std::string_view right, std::size_t from,
                    const std::vector<std::uint16_t>& ranks) const {
    auto i = from;
    auto j = from;
    while (i < left.size() && j < right.size()) {
      const auto rankA = nextRank(left, i, ranks);
      const auto rankB = nextRank(right, j, ranks);
      if (rankA == 0 || rankB == 0) return compareWhole(left, right);
      if (rankA != rankB) return compareByRank(rankA, rankB, left, right);
    }
    if (i == left.size() && j == right.size()) return 0;
    const bool leftIsLonger = i < left.size();
    const auto next = leftIsLonger ? nextRank(left, i, ranks) : nextRank(right, j, ranks);
    if (next == 0) return compareWhole(left, right);
    return leftIsLonger ? 1 : -1;
  }

  std::unique_ptr<TextRules> rules_;
  std::vector<std::uint16_t> asciiRanks_;
  mutable std::atomic<std::uint32_t> slowComparisons_{0};
  mutable std::once_flag ranksOnce_;
  mutable std::atomic<bool> ready_{false};
  mutable std::vector<std::uint16_t> ranks_;
  mutable std::once_flag foldsOnce_;
  mutable std::vector<char16_t> folds_;
};

}  // namespace

std::uint64_t sortKeysMade() {
  return keysMade.load();
}

const tsql::Collation& accountSetCollation() {
  static const AccountSetCollation collation;
  return collation;
}

namespace {

class AccountSetTextOrder final : public rowset::TextOrder {
 public:
  [[nodiscard]] int compare(std::string_view left, std::string_view right) const override {
    return accountSetCollation().compare(left, right);
  }
  [[nodiscard]] std::u32string folded(std::string_view text) const override {
    std::u32string result;
    for (std::size_t i = 0; i < text.size();) result += accountSetCollation().fold(tsql::nextCharacter(text, i));
    return result;
  }
};

}  // namespace

const rowset::TextOrder& accountSetTextOrder() {
  static const AccountSetTextOrder order;
  return order;
}

}  // namespace tolvane::embedded
